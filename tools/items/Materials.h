#pragma once
// The pictures that the item models share, by file name in data\items\. Textures.cpp draws them.

#include "tools/items/Shape.h"

namespace items {

// Cut-out pictures go without mipmaps, so that their edges stay where they are.
struct Material {
    const char* file = "";
    bool mipmaps = true;
};

namespace materials {
constexpr Material bark{"bark.png"};
constexpr Material birch{"birch.png"};
constexpr Material wood{"wood.png"};      // smooth, for furniture; the grain runs along u
constexpr Material planks{"planks.png"};  // four boards along u
constexpr Material leaves{"leaves.png"};
constexpr Material spray{"spray.png", false};  // a handful of leaves, cut out
constexpr Material needles{"needles.png"};
constexpr Material flora{"flora.png", false};  // cut-out plants; see `plants`
constexpr Material stone{"stone.png"};
constexpr Material masonry{"masonry.png"};  // four courses of squared stones
constexpr Material straw{"straw.png"};      // stalks along v
constexpr Material tiles{"tiles.png"};      // roof tiles, eaves at the bottom
constexpr Material stripes{"stripes.png"};  // cloth, stripes along v
constexpr Material quilt{"quilt.png"};
constexpr Material wicker{"wicker.png"};
constexpr Material metal{"metal.png"};  // grey, brushed
constexpr Material water{"water.png"};
constexpr Material crystal{"crystal.png"};
constexpr Material globe{"globe.png"};
constexpr Material books{"books.png"};       // one row of book spines
constexpr Material signs{"signs.png"};       // flat pictures; see `pictures`
constexpr Material fire{"fire.png", false};  // a flame, cut out
constexpr Material paints{"paints.png"};     // see `Swatch`
}  // namespace materials

// Colours of the paint box: eight by eight squares of paints.png, numbered from the top left.
enum Swatch {
    Red,
    DarkRed,
    Orange,
    Yellow,
    Gold,
    Brass,
    Copper,
    Terracotta,
    Pink,
    Purple,
    Violet,
    Blue,
    DarkBlue,
    SkyBlue,
    Teal,
    Aqua,
    Green,
    DarkGreen,
    Lime,
    Moss,
    Olive,
    Cream,
    White,
    Ivory,
    Grey,
    DarkGrey,
    Black,
    Iron,
    Brown,
    DarkBrown,
    Tan,
    Bread,
    Lamplight,
    Ember,
    Coral,
    PaleCoral,
    Parchment,
    Leather,
    Plum,
    Pumpkin,
    SwatchCount
};

// Squares of flora.png, four by four.
namespace plants {
constexpr Patch Square(int column, int row) {
    // A texel's breadth of margin keeps the neighbours out.
    constexpr float side = 0.25F;
    constexpr float margin = 0.004F;
    return {side * static_cast<float>(column) + margin, side * static_cast<float>(row) + margin,
            side * static_cast<float>(column + 1) - margin, side * static_cast<float>(row + 1) - margin};
}
constexpr Patch grass = Square(0, 0);
constexpr Patch daisies = Square(1, 0);
constexpr Patch poppies = Square(2, 0);
constexpr Patch bluebells = Square(3, 0);
constexpr Patch fern = Square(0, 1);
constexpr Patch reeds = Square(1, 1);
constexpr Patch wheat = Square(2, 1);
constexpr Patch seaweed = Square(3, 1);
constexpr Patch berrySpray = Square(1, 2);
constexpr Patch geraniums = Square(2, 2);
constexpr Patch willowTwigs = Square(3, 2);
constexpr Patch ivy = Square(0, 3);
constexpr Patch cabbage = Square(1, 3);
constexpr Patch roses = Square(2, 3);
constexpr Patch seaFan = Square(3, 3);
}  // namespace plants

// Squares of signs.png, four by four.
namespace pictures {
using plants::Square;
constexpr Patch letter = Square(0, 0);
constexpr Patch openBook = Square(1, 0);
constexpr Patch clockFace = Square(2, 0);
constexpr Patch target = Square(3, 0);
constexpr Patch crest = Square(0, 1);
constexpr Patch breadSign = Square(1, 1);
constexpr Patch mugSign = Square(2, 1);
constexpr Patch anvilSign = Square(3, 1);
constexpr Patch map = Square(0, 2);
constexpr Patch runes = Square(1, 2);
constexpr Patch landscape = Square(2, 2);
constexpr Patch starChart = Square(3, 2);
constexpr Patch sundial = Square(0, 3);
constexpr Patch lattice = Square(1, 3);
constexpr Patch jars = Square(2, 3);
constexpr Patch fruit = Square(3, 3);
}  // namespace pictures

}  // namespace items
