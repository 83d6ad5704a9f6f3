#include <array>
#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::planks;
using materials::wood;

// A square leg of this height with its foot at (x, y).
Shape Leg(float x, float y, float height, float width) {
    return Box(width, width, height, 1.2F).Move(x, y, 0);
}

Shape FourLegs(float x, float y, float height, float width) {
    Shape legs;
    for (const float sx : {-1.0F, 1.0F})
        for (const float sy : {-1.0F, 1.0F})
            legs.Add(Leg(sx * x, sy * y, height, width));
    return legs;
}

Item Table() {
    Item table("table");
    table.Put(planks, Block(0.92F, 0.72F, 0.06F, 0.015F, 1.1F).Move(0, 0, 0.50F));
    table.Put(wood, FourLegs(0.38F, 0.28F, 0.50F, 0.07F));
    table.Put(wood, Box(0.74F, 0.03F, 0.09F).Move(0, 0.28F, 0.41F))
        .Put(wood, Box(0.74F, 0.03F, 0.09F).Move(0, -0.28F, 0.41F));
    table.Put(wood, Box(0.03F, 0.54F, 0.09F).Move(0.38F, 0, 0.41F))
        .Put(wood, Box(0.03F, 0.54F, 0.09F).Move(-0.38F, 0, 0.41F));
    // A loaf on a board, a jug and a bowl.
    table.Put(wood, Block(0.30F, 0.20F, 0.025F, 0.008F).Turn(Axis::Z, 15).Move(-0.18F, 0.08F, 0.56F));
    table.Paint(Bread, Blob(0.10F, 1, 0.05F, 4).Scale(1.3F, 0.8F, 0.75F).Turn(Axis::Z, 15).Move(-0.18F, 0.08F, 0.63F));
    table.Paint(
        SkyBlue,
        Lathe({{0.05F, 0}, {0.085F, 0.06F}, {0.05F, 0.15F}, {0.06F, 0.19F}, {0.045F, 0.19F}, {0.035F, 0.12F}}, 8)
            .Move(0.22F, -0.12F, 0.56F));
    table.Paint(Terracotta,
                Lathe({{0.04F, 0}, {0.10F, 0.07F}, {0.085F, 0.07F}, {0, 0.02F}}, 9).Move(0.20F, 0.16F, 0.56F));
    return table;
}

void PutChair(Item& chair) {
    chair.Put(wood, FourLegs(0.17F, 0.17F, 0.32F, 0.05F));
    chair.Put(wood, Block(0.42F, 0.42F, 0.05F, 0.012F).Move(0, 0, 0.31F));
    chair.Paint(DarkRed, Block(0.36F, 0.36F, 0.04F, 0.015F).Move(0, 0, 0.36F));
    for (const float x : {-0.17F, 0.17F})
        chair.Put(wood, Box(0.05F, 0.05F, 0.48F).Turn(Axis::X, 5).Move(x, -0.18F, 0.34F));
    for (const float z : {0.52F, 0.68F})
        chair.Put(wood, Block(0.36F, 0.035F, 0.10F, 0.01F).Turn(Axis::X, 5).Move(0, -0.20F, z));
}

Item Chair() {
    Item chair("chair");
    PutChair(chair);
    return chair;
}

// The same with its back to the light side, for the other end of a table.
Item ChairBack() {
    Item chair("chair_back");
    chair.Bone("turned", "chair_back", {0, 0, 0}, Axis::Z, 180);
    PutChair(chair);
    return chair;
}

void PutBench(Item& bench) {
    for (const float x : {-0.34F, 0.34F}) {
        bench.Put(materials::metal, Box(0.05F, 0.34F, 0.05F).Move(x, 0, 0.28F))
            .Put(materials::metal, Box(0.05F, 0.05F, 0.30F).Move(x, 0.14F, 0));
        bench.Put(materials::metal, Box(0.05F, 0.05F, 0.64F).Turn(Axis::X, 9).Move(x, -0.14F, 0));
        bench.Put(materials::metal, Box(0.05F, 0.28F, 0.04F).Move(x, 0.02F, 0.46F))
            .Put(materials::metal, Box(0.04F, 0.04F, 0.16F).Move(x, 0.14F, 0.31F));
    }
    for (int i = 0; i < 3; ++i)
        bench.Put(wood, Block(0.90F, 0.10F, 0.035F, 0.01F).Move(0, -0.09F + 0.115F * static_cast<float>(i), 0.33F));
    for (int i = 0; i < 2; ++i)
        bench.Put(wood, Block(0.90F, 0.035F, 0.11F, 0.01F)
                            .Turn(Axis::X, 9)
                            .Move(0, -0.17F - 0.022F * static_cast<float>(i), 0.42F + 0.135F * static_cast<float>(i)));
}

Item Bench() {
    Item bench("bench");
    PutBench(bench);
    return bench;
}

Item BenchEast() {
    Item bench("bench_east");
    bench.Bone("turned", "bench_east", {0, 0, 0}, Axis::Z, -90);
    PutBench(bench);
    return bench;
}

// The head is at the wall behind, the feet toward +y.
Item Bed() {
    Item bed("bed");
    bed.Put(planks, Block(0.80F, 0.07F, 0.62F, 0.02F, 1.2F).Move(0, -0.45F, 0))
        .Put(planks, Block(0.80F, 0.06F, 0.36F, 0.02F, 1.2F).Move(0, 0.46F, 0));
    for (const float x : {-0.39F, 0.39F}) {
        bed.Put(wood, Box(0.07F, 0.07F, 0.70F).Move(x, -0.45F, 0))
            .Put(wood, Box(0.07F, 0.07F, 0.44F).Move(x, 0.46F, 0));
        bed.Paint(Brass, Blob(0.05F, 1, 0, 1).Move(x, -0.45F, 0.74F))
            .Paint(Brass, Blob(0.05F, 1, 0, 1).Move(x, 0.46F, 0.48F));
        bed.Put(wood, Box(0.05F, 0.88F, 0.12F).Move(x, 0, 0.16F));
    }
    bed.Paint(White, Block(0.74F, 0.88F, 0.16F, 0.04F).Move(0, 0, 0.22F));
    // The quilt hangs over both sides.
    bed.Put(materials::quilt, Sheet(8, 6, [](float s, float t) {
                const float x = 0.86F * (0.5F - s);
                const float side = std::max(0.0F, std::abs(x) - 0.36F);
                return Vec3{(x > 0 ? 1.0F : -1.0F) * std::min(std::abs(x), 0.40F), 0.44F - 0.62F * t,
                            0.415F - 2.6F * side + 0.012F * std::sin(20.0F * t)};
            }));
    bed.Paint(Cream, Blob(0.2F, 1, 0.04F, 2).Scale(1.35F, 0.55F, 0.42F).Move(0, -0.31F, 0.43F));
    return bed;
}

void PutShelf(Item& shelf, bool books) {
    shelf.Put(planks, Box(0.88F, 0.04F, 1.40F, 1.1F).Move(0, -0.44F, 0));
    for (const float x : {-0.43F, 0.43F})
        shelf.Put(wood, Box(0.05F, 0.30F, 1.40F).Move(x, -0.32F, 0));
    shelf.Put(wood, Block(0.96F, 0.34F, 0.05F, 0.012F).Move(0, -0.31F, 1.40F));
    for (int row = 0; row < 4; ++row) {
        const float z = 0.06F + 0.34F * static_cast<float>(row);
        shelf.Put(wood, Box(0.82F, 0.28F, 0.035F).Move(0, -0.32F, z - 0.03F));
        const bool hasBooks = books || row == 2;
        const Material& front = hasBooks ? materials::books : materials::signs;
        Shape face = Picture(0.80F, 0.29F, hasBooks ? Patch{0, 0, 1, 1} : pictures::jars).Move(0, -0.225F, z);
        shelf.Put(front, face);
        // What stands there has a top, too.
        shelf.Paint(hasBooks ? DarkBrown : DarkRed, Box(0.80F, 0.20F, 0.01F).Move(0, -0.33F, z + 0.22F));
    }
}

Item Shelf() {
    Item shelf("shelf");
    PutShelf(shelf, false);
    shelf.Paint(Copper,
                Lathe({{0.07F, 0}, {0.10F, 0.08F}, {0.05F, 0.16F}, {0.07F, 0.20F}}, 8).Move(-0.2F, -0.3F, 1.45F));
    shelf.Put(materials::wicker,
              Lathe({{0.10F, 0}, {0.13F, 0.14F}, {0.11F, 0.14F}, {0, 0.08F}}, 9, 2).Move(0.2F, -0.3F, 1.45F));
    return shelf;
}

Item ShelfEast() {
    Item shelf("shelf_east");
    shelf.Bone("turned", "shelf_east", {0, 0, 0}, Axis::Z, -90);
    PutShelf(shelf, false);
    return shelf;
}

Item Bookcase() {
    Item shelf("bookcase");
    PutShelf(shelf, true);
    shelf.Put(materials::globe, Ball(0.11F, 10).Move(0.22F, -0.3F, 1.58F));
    shelf.Paint(Brass, Cone(0.08F, 0.02F, 0.06F, 7).Move(0.22F, -0.3F, 1.45F));
    return shelf;
}

Item Wardrobe() {
    Item wardrobe("wardrobe");
    wardrobe.Put(planks, Block(0.86F, 0.46F, 1.46F, 0.02F, 1.1F).Move(0, -0.22F, 0.06F));
    wardrobe.Put(wood, Block(0.94F, 0.54F, 0.07F, 0.02F).Move(0, -0.21F, 1.50F))
        .Put(wood, Block(0.92F, 0.52F, 0.08F, 0.02F).Move(0, -0.21F, 0));
    int door = 0;
    for (const float side : {-1.0F, 1.0F}) {
        // Doors turn at their outer edges.
        wardrobe.Bone(door++ == 0 ? "left_door" : "right_door", "wardrobe", {side * 0.40F, 0.01F, 0.12F}, Axis::Z,
                      side > 0 ? -14.0F : 0.0F);
        wardrobe.Put(wood, Block(0.38F, 0.04F, 1.34F, 0.012F).Move(-side * 0.19F, 0.015F, 0));
        for (const float z : {0.12F, 0.74F})
            wardrobe.Put(planks, Block(0.26F, 0.03F, 0.48F, 0.012F, 1.6F).Move(-side * 0.19F, 0.032F, z));
        wardrobe.Paint(Brass, Blob(0.028F, 0, 0, 1).Move(-side * 0.34F, 0.05F, 0.66F));
    }
    return wardrobe;
}

Item Chest() {
    Item chest("chest");
    chest.Put(planks, Block(0.66F, 0.42F, 0.28F, 0.015F, 1.4F));
    const auto strap = [](float x) { return Box(0.06F, 0.44F, 0.29F).Move(x, 0, 0); };
    chest.Put(materials::metal, strap(-0.22F)).Put(materials::metal, strap(0.22F));
    chest.Paint(Gold, Block(0.10F, 0.03F, 0.12F, 0.01F).Move(0, 0.22F, 0.17F));
    chest.Paint(Gold, Blob(0.15F, 1, 0.12F, 8).Scale(1.7F, 0.9F, 0.4F).Move(0, 0, 0.28F));
    chest.Paint(Red, Blob(0.03F, 0, 0, 1).Move(0.1F, 0.08F, 0.34F))
        .Paint(Aqua, Blob(0.03F, 0, 0, 1).Move(-0.12F, 0.05F, 0.345F));
    // The lid turns around its back edge and stands open.
    chest.Bone("lid", "chest", {0, -0.21F, 0.28F}, Axis::X, 52);
    const auto arch = [](float width, float radius) {
        return Sheet(1, 8, [&](float s, float t) {
            return Vec3{width * (s - 0.5F), 0.21F - radius * CosDegrees(180.0F * (1.0F - t)) * -1.0F,
                        0.75F * radius * SinDegrees(180.0F * t)};
        });
    };
    chest.Put(planks, arch(0.66F, 0.21F).Uv(0.9F, 0.9F).TwoSided());
    for (const float x : {-0.22F, 0.22F})
        chest.Put(materials::metal, arch(0.06F, 0.22F).Move(x, 0, 0).TwoSided());
    for (const float x : {-0.33F, 0.33F})
        chest.Put(wood, Extrude({{-0.21F, 0}, {0.21F, 0}, {0.15F, 0.11F}, {0, 0.157F}, {-0.15F, 0.11F}}, 0.012F)
                            .Turn(Axis::Z, 90)
                            .Move(x, 0.21F, 0));
    return chest;
}

Item Armchair() {
    Item chair("armchair");
    chair.Put(wood, FourLegs(0.26F, 0.24F, 0.12F, 0.06F));
    chair.Paint(DarkRed, Block(0.64F, 0.60F, 0.20F, 0.04F).Move(0, 0, 0.10F));
    chair.Paint(Red, Block(0.44F, 0.46F, 0.14F, 0.05F).Move(0, 0.05F, 0.28F));
    chair.Paint(DarkRed, Block(0.64F, 0.16F, 0.66F, 0.06F).Turn(Axis::X, 8).Move(0, -0.24F, 0.22F));
    for (const float x : {-0.28F, 0.28F})
        chair.Paint(DarkRed, Block(0.14F, 0.54F, 0.36F, 0.05F).Move(x, 0.03F, 0.12F));
    chair.Paint(Cream, Block(0.28F, 0.10F, 0.26F, 0.04F).Turn(Axis::X, 18).Move(0.02F, -0.08F, 0.42F));
    return chair;
}

Item Desk() {
    Item desk("desk");
    desk.Put(planks, Block(0.94F, 0.56F, 0.05F, 0.012F, 1.1F).Move(0, -0.12F, 0.52F));
    for (const float x : {-0.32F, 0.32F}) {
        desk.Put(wood, Block(0.26F, 0.48F, 0.52F, 0.012F, 1.2F).Move(x, -0.12F, 0));
        for (int row = 0; row < 3; ++row) {
            const float z = 0.05F + 0.155F * static_cast<float>(row);
            desk.Put(planks, Block(0.22F, 0.03F, 0.13F, 0.008F, 2.0F).Move(x, 0.125F, z));
            desk.Paint(Brass, Blob(0.02F, 0, 0, 1).Move(x, 0.15F, z + 0.065F));
        }
    }
    desk.Put(materials::signs,
             Picture(0.34F, 0.26F, pictures::letter).Turn(Axis::X, 90).Turn(Axis::Z, 12).Move(0.05F, 0.04F, 0.576F));
    desk.Put(materials::signs,
             Picture(0.30F, 0.22F, pictures::map).Turn(Axis::X, 90).Turn(Axis::Z, -20).Move(-0.26F, -0.04F, 0.578F));
    desk.Paint(Black, Lathe({{0.05F, 0}, {0.05F, 0.05F}, {0.02F, 0.07F}}, 7).Move(0.34F, -0.16F, 0.57F));
    desk.Paint(White,
               Picture(0.06F, 0.22F, {}).Move(0, 0, 0.03F).Turn(Axis::Y, 24).TwoSided().Move(0.34F, -0.16F, 0.57F));
    return desk;
}

}  // namespace

std::vector<Item> FurnitureItems() {
    return {Table(),     Chair(),    ChairBack(), Bench(), BenchEast(), Bed(), Shelf(),
            ShelfEast(), Bookcase(), Wardrobe(),  Chest(), Armchair(),  Desk()};
}

}  // namespace items
