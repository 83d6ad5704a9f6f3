#include <array>
#include <cmath>
#include <numbers>

#include "tools/items/Items.h"

namespace items {

namespace {

Shape Boulder(float width, float depth, float height, unsigned seed) {
    return Blob(0.5F, 1, 0.22F, seed, 1.0F).Scale(width, depth, height).Smooth(35).BoxUv(1.3F);
}

Item Rock() {
    Item rock("rock");
    rock.Put(materials::stone, Boulder(0.72F, 0.62F, 0.70F, 1).Move(-0.04F, -0.04F, 0.20F));
    rock.Put(materials::stone, Boulder(0.36F, 0.34F, 0.34F, 2).Move(0.28F, 0.20F, 0.08F));
    rock.Put(materials::flora, Cards(2, 0.26F, 0.20F, plants::grass).Move(-0.26F, 0.30F, 0));
    rock.Put(materials::flora, Cards(2, 0.22F, 0.18F, plants::grass).Move(0.30F, -0.20F, 0));
    return rock;
}

Item RockPile() {
    Item pile("rock_pile");
    constexpr std::array<std::array<float, 4>, 6> stones = {{{-0.2F, -0.15F, 0.10F, 0.44F},
                                                             {0.2F, -0.12F, 0.10F, 0.40F},
                                                             {0, 0.2F, 0.10F, 0.44F},
                                                             {-0.02F, 0, 0.34F, 0.36F},
                                                             {0.32F, 0.25F, 0.05F, 0.22F},
                                                             {-0.34F, 0.22F, 0.05F, 0.20F}}};
    for (unsigned i = 0; i < stones.size(); ++i)
        pile.Put(materials::stone, Boulder(stones[i][3], stones[i][3], stones[i][3] * 0.85F, 10 + i)
                                       .Move(stones[i][0], stones[i][1], stones[i][2]));
    return pile;
}

// A stone with runes on the side that is seen.
Item StandingStone() {
    Item stone("standing_stone");
    stone.Put(
        materials::stone,
        Block(0.52F, 0.30F, 1.35F, 0.07F, 1.2F)
            .Bend(
                [](const Vec3& p) {
                    const float narrow = 1.0F - 0.16F * p.z;
                    return Vec3{p.x * narrow + 0.04F * p.z, p.y * narrow, p.z + (p.z > 1.0F ? 0.12F * p.x : 0.0F)};
                },
                20));
    stone.Put(materials::signs, Picture(0.30F, 0.84F, pictures::runes).Turn(Axis::X, 1.4F).Move(0.03F, 0.15F, 0.24F));
    stone.Put(materials::flora, Cards(2, 0.30F, 0.24F, plants::grass).Move(0.28F, 0.16F, 0));
    stone.Put(materials::flora, Cards(2, 0.26F, 0.22F, plants::grass).Move(-0.26F, 0.18F, 0));
    return stone;
}

Shape Flutes(float height, int flutes) {
    Shape shaft = Cylinder(0.20F, height, flutes * 2, flutes / 2);
    return shaft
        .Bend(
            [flutes](const Vec3& p) {
                const auto corner = static_cast<int>(
                    std::lround(std::atan2(p.y, p.x) * static_cast<float>(flutes) / std::numbers::pi_v<float>));
                const float in = (corner % 2 == 0 ? 1.0F : 0.86F) * (1.0F - 0.10F * p.z);
                return Vec3{p.x * in, p.y * in, p.z};
            },
            20)
        .BoxUv(1.0F);
}

Item Column() {
    Item column("column");
    column.Put(materials::stone, Block(0.58F, 0.58F, 0.12F, 0.02F));
    column.Put(materials::stone, Lathe({{0.27F, 0.12F}, {0.29F, 0.17F}, {0.22F, 0.24F}}, 16, 3));
    column.Put(materials::stone, Flutes(1.45F, 10).Move(0, 0, 0.22F));
    column.Put(materials::stone, Lathe({{0.17F, 1.62F}, {0.27F, 1.76F}, {0.27F, 1.80F}}, 16, 3));
    column.Put(materials::stone, Block(0.60F, 0.60F, 0.13F, 0.02F).Move(0, 0, 1.80F));
    return column;
}

Item BrokenColumn() {
    Item column("broken_column");
    column.Put(materials::stone, Block(0.58F, 0.58F, 0.12F, 0.02F).Move(-0.12F, -0.1F, 0));
    column.Put(materials::stone, Lathe({{0.27F, 0.12F}, {0.29F, 0.17F}, {0.22F, 0.24F}}, 16, 3).Move(-0.12F, -0.1F, 0));
    column.Put(materials::stone,
               Flutes(0.5F, 10)
                   .Bend(
                       [](const Vec3& p) {
                           return Vec3{
                               p.x, p.y,
                               p.z > 0.4F ? p.z + 0.55F * p.x - 0.3F * p.y + 0.08F * std::sin(30.0F * p.x) : p.z};
                       },
                       20)
                   .Move(-0.12F, -0.1F, 0.22F));
    column.Put(materials::stone, Flutes(0.42F, 10).Turn(Axis::Y, 90).Turn(Axis::Z, 55).Move(0.12F, 0.16F, 0.18F));
    column.Put(materials::flora,
               Picture(0.4F, 0.42F, plants::ivy).Move(-0.12F, 0.12F, 0.16F).TwoSided().Light({0, 0.5F, 0.86F}));
    column.Put(materials::flora, Cards(2, 0.3F, 0.24F, plants::grass).Move(0.28F, -0.22F, 0));
    return column;
}

// An arch along x, of squared stones; one walks through it along y.
Item StoneArch() {
    Item arch("stone_arch");
    for (const float side : {-0.40F, 0.40F}) {
        arch.Put(materials::masonry, Block(0.22F, 0.34F, 1.25F, 0.02F, 1.1F).Move(side, 0, 0));
        arch.Put(materials::stone, Block(0.28F, 0.40F, 0.10F, 0.02F).Move(side, 0, 1.22F));
    }
    constexpr int stones = 7;
    for (int i = 0; i < stones; ++i) {
        const float around = 180.0F * (static_cast<float>(i) + 0.5F) / stones;
        const float tall = i == stones / 2 ? 0.32F : 0.25F;
        Shape wedge = Block(0.20F, 0.34F, tall, 0.02F, 1.1F).Move(0, 0, 0.29F).Turn(Axis::Y, 90.0F - around);
        arch.Put(materials::masonry, wedge.Move(0, 0, 1.30F));
    }
    arch.Put(materials::flora,
             Picture(0.44F, 0.6F, plants::ivy).Turn(Axis::Y, 180).Move(-0.36F, 0.19F, 1.75F).Light({0, 0.6F, 0.8F}));
    return arch;
}

Item Statue() {
    Item statue("statue");
    statue.Put(materials::masonry, Block(0.66F, 0.66F, 0.16F, 0.02F, 1.1F));
    statue.Put(materials::masonry, Block(0.50F, 0.50F, 0.42F, 0.02F, 1.1F).Move(0, 0, 0.15F));
    statue.Put(materials::stone, Block(0.58F, 0.58F, 0.08F, 0.02F).Move(0, 0, 0.56F));
    statue.Bone("figure", "statue", {0, 0, 0.64F}, Axis::Z, -20);
    const auto marble = [&](Shape shape) { statue.Put(materials::stone, shape.Uv(0.6F, 0.6F)); };
    marble(Lathe({{0.20F, 0},
                  {0.17F, 0.12F},
                  {0.13F, 0.42F},
                  {0.16F, 0.62F},
                  {0.15F, 0.70F},
                  {0.06F, 0.76F},
                  {0.05F, 0.80F}},
                 12, 2)
               .Scale(1, 0.75F, 1)
               .Bend(
                   [](const Vec3& p) {
                       const float fold = p.z < 0.4F ? 1.0F + 0.10F * std::sin(7.0F * std::atan2(p.y, p.x)) : 1.0F;
                       return Vec3{p.x * fold, p.y * fold, p.z};
                   },
                   60));
    marble(Blob(0.105F, 1, 0, 1).Scale(0.9F, 1, 1.15F).Move(0, 0, 0.89F));
    marble(Tube({{0.15F, 0, 0.68F}, {0.23F, 0.04F, 0.55F}, {0.22F, 0.16F, 0.46F}}, {0.055F, 0.045F, 0.035F}, 6));
    marble(Tube({{-0.15F, 0, 0.68F}, {-0.26F, 0.02F, 0.74F}, {-0.30F, 0.05F, 0.98F}}, {0.055F, 0.045F, 0.035F}, 6));
    statue.Paint(Brass, Tube({{-0.30F, 0.05F, 0.30F}, {-0.30F, 0.05F, 1.25F}}, 0.016F, 5));
    statue.Paint(Brass, Blob(0.05F, 0, 0, 1).Move(-0.30F, 0.05F, 1.28F));
    return statue;
}

// A fountain with a basin, a bowl and falling water.
Item Fountain() {
    Item fountain("fountain");
    fountain.Put(materials::masonry, Lathe({{0.60F, 0}, {0.60F, 0.24F}}, 16, 4).Uv(1, 0.28F));
    fountain.Put(materials::stone,
                 Lathe({{0.60F, 0.24F}, {0.63F, 0.25F}, {0.63F, 0.31F}, {0.52F, 0.31F}, {0.51F, 0.20F}}, 16, 5, 30));
    fountain.Put(materials::stone, Lathe({{0.20F, 0.18F}, {0.12F, 0.28F}, {0.09F, 0.62F}, {0.14F, 0.72F}}, 10, 2));
    fountain.Put(materials::stone,
                 Lathe({{0.12F, 0.70F}, {0.34F, 0.82F}, {0.36F, 0.87F}, {0.31F, 0.87F}, {0.28F, 0.82F}}, 14, 3));
    fountain.Put(materials::stone,
                 Lathe({{0.07F, 0.80F}, {0.05F, 1.05F}, {0.09F, 1.12F}, {0.03F, 1.20F}, {0, 1.21F}}, 8));
    fountain.Put(materials::water, Disc(0.52F, 16).Move(0, 0, 0.245F));
    fountain.Put(materials::water, Disc(0.31F, 14).Scale(1, 1, 1).Uv(0.6F, 0.6F).Move(0, 0, 0.85F));
    fountain.Bone("jets", "fountain", {0, 0, 0});
    for (int i = 0; i < 6; ++i) {
        const auto jet = [i](std::vector<Vec3> path, float radius) {
            return Tube(path, {radius, radius * 0.9F, radius * 0.8F, radius * 1.2F}, 4, 2.0F)
                .Turn(Axis::Z, 60.0F * static_cast<float>(i) + 15.0F);
        };
        fountain.Paint(SkyBlue,
                       jet({{0.35F, 0, 0.86F}, {0.41F, 0, 0.82F}, {0.44F, 0, 0.6F}, {0.45F, 0, 0.26F}}, 0.022F));
        fountain.Paint(SkyBlue, jet({{0, 0, 1.19F}, {0.06F, 0, 1.30F}, {0.14F, 0, 1.24F}, {0.20F, 0, 0.87F}}, 0.018F));
    }
    return fountain;
}

}  // namespace

std::vector<Item> RockItems() {
    return {Rock(), RockPile(), StandingStone(), Column(), BrokenColumn(), StoneArch(), Statue(), Fountain()};
}

}  // namespace items
