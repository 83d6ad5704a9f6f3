#include <array>
#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

Shape LeafBall(float radius, float height, unsigned seed) {
    return Blob(radius, 1, 0.14F, seed, 1.4F).Scale(1, 1, height / radius);
}

Item Bush() {
    Item bush("bush");
    constexpr std::array<Vec3, 4> places = {
        Vec3{0, -0.08F, 0.30F}, {0.20F, 0.10F, 0.22F}, {-0.22F, 0.06F, 0.20F}, {0, 0.22F, 0.18F}};
    for (unsigned i = 0; i < places.size(); ++i) {
        const Vec3& p = places[i];
        bush.Put(materials::leaves, LeafBall(i == 0 ? 0.30F : 0.24F, i == 0 ? 0.30F : 0.22F, i).Move(p.x, p.y, p.z));
    }
    for (int i = 0; i < 9; ++i) {
        const float around = 40.0F * static_cast<float>(i);
        Shape spray =
            Picture(0.36F, 0.36F, plants::berrySpray).Move(0, 0.34F, -0.18F).Turn(Axis::X, Between(25, 60, 71, i));
        bush.Put(materials::flora, spray.Turn(Axis::Z, around)
                                       .Light({-0.6F * SinDegrees(around), 0.6F * CosDegrees(around), 0.8F})
                                       .Move(0, 0.03F, 0.16F));
    }
    return bush;
}

// A bush cut into a ball on a cone.
Item Topiary() {
    Item topiary("topiary");
    topiary.Put(materials::leaves,
                Lathe({{0.30F, 0}, {0.34F, 0.10F}, {0.16F, 0.62F}, {0.05F, 0.72F}}, 12, 3).Uv(1, 1.2F));
    topiary.Put(materials::leaves, Blob(0.24F, 1, 0.04F, 5, 1.6F).Move(0, 0, 0.90F));
    topiary.Put(materials::spray, Cards(2, 0.3F, 0.3F, {}).Move(0, 0, 1.04F));
    return topiary;
}

Item Tufts(const char* name, const Patch& patch, int count, float width, float height, unsigned seed) {
    Item item(name);
    for (int i = 0; i < count; ++i) {
        const float around = 360.0F / static_cast<float>(count) * static_cast<float>(i) + 50.0F * Chance(seed, i);
        const float reach = count == 1 ? 0.0F : Between(0.12F, 0.32F, seed, i + 40);
        Shape tuft = Cards(2, width, height * Between(0.8F, 1.1F, seed, i + 80), patch)
                         .Turn(Axis::Z, 70.0F * Chance(seed, i + 120));
        item.Put(materials::flora, tuft.Move(reach * CosDegrees(around), reach * SinDegrees(around), 0));
    }
    return item;
}

// A round bed with a stone rim.
Item FlowerBed() {
    Item bed("flower_bed");
    for (int i = 0; i < 12; ++i)
        bed.Put(materials::stone, Blob(0.10F, 0, 0.15F, static_cast<unsigned>(i), 1.5F)
                                      .Scale(0.9F, 1.1F, 0.8F)
                                      .Move(0.40F, 0, 0.04F)
                                      .Turn(Axis::Z, 30.0F * static_cast<float>(i)));
    bed.Paint(DarkBrown, Lathe({{0.38F, 0.02F}, {0.30F, 0.09F}, {0, 0.12F}}, 12));
    const std::array<Patch, 3> kinds = {plants::roses, plants::daisies, plants::bluebells};
    for (int i = 0; i < 9; ++i) {
        const float around = 40.0F * static_cast<float>(i);
        const float reach = i % 3 == 0 ? 0.10F : 0.26F;
        bed.Put(materials::flora, Cards(2, 0.30F, 0.34F, kinds[static_cast<std::size_t>(i) % 3])
                                      .Turn(Axis::Z, 25.0F * static_cast<float>(i))
                                      .Move(reach * CosDegrees(around), reach * SinDegrees(around), 0.06F));
    }
    return bed;
}

void PutMushroom(Item& item, float x, float y, float size) {
    item.Paint(Ivory, Lathe({{0.09F, 0}, {0.055F, 0.12F}, {0.05F, 0.26F}}, 7).Scale(size).Move(x, y, 0));
    item.Paint(Cream, Lathe({{0.05F, 0.25F}, {0.20F, 0.24F}}, 9).Scale(size).Move(x, y, 0));
    item.Paint(Red, Lathe({{0.20F, 0.235F}, {0.215F, 0.27F}, {0.17F, 0.36F}, {0.09F, 0.42F}, {0, 0.44F}}, 9)
                        .Scale(size)
                        .Move(x, y, 0));
    for (int i = 0; i < (size < 1.0F ? 5 : 7); ++i) {
        const bool upper = i >= 5;
        const float around = 72.0F * static_cast<float>(i) + 20.0F;
        const float reach = upper ? 0.07F : 0.165F;
        item.Paint(White, Blob(0.032F, 0, 0, 1)
                              .Scale(1, 1, 0.6F)
                              .Move(reach * CosDegrees(around), reach * SinDegrees(around), upper ? 0.425F : 0.36F)
                              .Scale(size)
                              .Move(x, y, 0));
    }
}

Item Mushroom() {
    Item mushroom("mushroom");
    PutMushroom(mushroom, 0, -0.05F, 1.0F);
    PutMushroom(mushroom, 0.24F, 0.12F, 0.62F);
    PutMushroom(mushroom, -0.20F, 0.16F, 0.48F);
    mushroom.Put(materials::flora, Cards(2, 0.3F, 0.22F, plants::grass).Move(0.05F, 0.22F, 0));
    return mushroom;
}

Item Flowerpot() {
    Item pot("flowerpot");
    pot.Paint(
        Terracotta,
        Lathe({{0, 0}, {0.17F, 0}, {0.24F, 0.30F}, {0.27F, 0.30F}, {0.27F, 0.37F}, {0.21F, 0.37F}, {0.20F, 0.31F}}, 10,
              1, 30));
    pot.Paint(DarkBrown, Disc(0.21F, 10).Move(0, 0, 0.33F));
    pot.Put(materials::flora, Cards(3, 0.60F, 0.50F, plants::geraniums).Move(0, 0, 0.31F));
    pot.Put(materials::flora, Picture(0.5F, 0.5F, plants::geraniums)
                                  .Move(0, 0, -0.25F)
                                  .Turn(Axis::X, 65)
                                  .Move(0, 0.05F, 0.58F)
                                  .Light({0, 0, 1}));
    return pot;
}

// A long box of roses.
Item Planter() {
    Item planter("planter");
    planter.Put(materials::planks, Block(0.86F, 0.34F, 0.30F, 0.02F, 1.6F));
    planter.Paint(DarkBrown, Box(0.78F, 0.26F, 0.02F).Move(0, 0, 0.295F));
    for (int i = 0; i < 4; ++i)
        planter.Put(materials::flora, Cards(2, 0.32F, 0.40F, i % 2 == 0 ? plants::roses : plants::geraniums)
                                          .Turn(Axis::Z, 30.0F * static_cast<float>(i))
                                          .Move(-0.30F + 0.2F * static_cast<float>(i), 0, 0.27F));
    for (const float side : {-0.3F, 0.3F})
        planter.Put(materials::flora, Picture(0.26F, 0.26F, plants::ivy)
                                          .Turn(Axis::X, 180)
                                          .Turn(Axis::Z, 180)
                                          .Move(side, 0.185F, 0.32F)
                                          .Light({0, 0.6F, 0.8F}));
    return planter;
}

Item Cabbages() {
    Item cabbages("cabbages");
    for (const auto& [x, y] : {std::pair{-0.24F, -0.22F}, {0.24F, -0.24F}, {-0.22F, 0.24F}, {0.26F, 0.22F}}) {
        cabbages.Put(materials::flora,
                     Sheet(2, 2,
                           [](float s, float t) {
                               const float dx = 2 * s - 1;
                               const float dy = 2 * t - 1;
                               return Vec3{0.23F * dx, 0.23F * dy, 0.03F + 0.08F * (dx * dx + dy * dy)};
                           })
                         .Uv(0.24F, 0.24F, 0.255F, 0.755F)
                         .Light({0, 0, 1})
                         .Move(x, y, 0));
        cabbages.Paint(Lime, Blob(0.12F, 1, 0.06F, 3).Scale(1, 1, 0.85F).Move(x, y, 0.10F));
    }
    return cabbages;
}

Item Pumpkins() {
    Item pumpkins("pumpkins");
    const auto put = [&](float x, float y, float size) {
        pumpkins.Paint(Pumpkin, Ball(0.24F, 16)
                                    .Bend(
                                        [](const Vec3& p) {
                                            const float rib = 1.0F + 0.07F * std::cos(8.0F * std::atan2(p.y, p.x));
                                            return Vec3{p.x * rib, p.y * rib, p.z * 0.72F};
                                        },
                                        60)
                                    .Move(0, 0, 0.16F)
                                    .Scale(size)
                                    .Move(x, y, 0));
        pumpkins.Paint(Moss, Tube({{0, 0, 0.30F}, {0.01F, 0, 0.38F}, {0.05F, 0.02F, 0.43F}}, {0.04F, 0.025F, 0.02F}, 5)
                                 .Scale(size)
                                 .Move(x, y, 0));
    };
    put(-0.14F, -0.10F, 1.0F);
    put(0.22F, 0.04F, 0.75F);
    put(-0.05F, 0.28F, 0.6F);
    pumpkins.Put(materials::flora,
                 Picture(0.4F, 0.4F, plants::ivy).Turn(Axis::X, 90).Move(0.1F, 0.45F, 0.02F).Light({0, 0, 1}));
    return pumpkins;
}

}  // namespace

std::vector<Item> PlantItems() {
    return {Bush(),
            Topiary(),
            FlowerBed(),
            Mushroom(),
            Flowerpot(),
            Planter(),
            Cabbages(),
            Pumpkins(),
            Tufts("grass_tuft", plants::grass, 4, 0.42F, 0.42F, 81),
            Tufts("daisies", plants::daisies, 4, 0.40F, 0.36F, 82),
            Tufts("poppies", plants::poppies, 4, 0.42F, 0.42F, 83),
            Tufts("bluebells", plants::bluebells, 4, 0.40F, 0.38F, 84),
            Tufts("fern", plants::fern, 3, 0.62F, 0.50F, 85),
            Tufts("reeds", plants::reeds, 4, 0.46F, 0.85F, 86),
            Tufts("wheat", plants::wheat, 6, 0.46F, 0.62F, 87),
            Tufts("seaweed", plants::seaweed, 3, 0.55F, 0.95F, 88)};
}

}  // namespace items
