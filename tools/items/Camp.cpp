#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::planks;
using materials::stone;
using materials::wood;

Item Campfire() {
    Item fire("campfire");
    for (int i = 0; i < 9; ++i)
        fire.Put(stone, Blob(0.095F, 0, 0.2F, static_cast<unsigned>(i), 1.5F)
                            .Scale(1, 1.1F, 0.8F)
                            .Move(0.36F, 0, 0.05F)
                            .Turn(Axis::Z, 40.0F * static_cast<float>(i)));
    fire.Paint(Black, Disc(0.33F, 12).Move(0, 0, 0.012F));
    for (int i = 0; i < 5; ++i)
        fire.Put(materials::bark, Tube({{0.30F, 0, 0.05F}, {0.03F, 0, 0.24F}}, {0.05F, 0.04F}, 6)
                                      .Turn(Axis::Z, 72.0F * static_cast<float>(i) + 12.0F));
    fire.Paint(Ember, Blob(0.15F, 1, 0.2F, 3).Scale(1, 1, 0.5F).Move(0, 0, 0.04F));
    fire.Bone("flames", "campfire", {0, 0, 0.06F});
    fire.Put(materials::fire, Cards(3, 0.40F, 0.62F, {}));
    for (int i = 0; i < 4; ++i)
        fire.Put(materials::fire,
                 Card(0.22F, 0.34F, {}).Move(0, 0.13F, 0).Turn(Axis::Z, 90.0F * static_cast<float>(i) + 45.0F));
    return fire;
}

// A ridge tent of striped cloth, open toward +y; its pennant is a bone.
Item Tent() {
    Item tent("tent");
    const auto slope = [](float side) {
        return Sheet(4, 4, [side](float s, float t) {
            const float sag = 0.05F * std::sin(3.14F * t) * (0.6F + 0.4F * std::sin(3.14F * s));
            return Vec3{side * (0.52F * (1.0F - t) - sag), side * (s - 0.5F) * 1.16F, 0.02F + 0.98F * t - sag * 0.4F};
        });
    };
    tent.Put(materials::stripes, slope(1).Uv(1.5F, 1).TwoSided())
        .Put(materials::stripes, slope(-1).Uv(1.5F, 1).TwoSided());
    Shape back;
    back.Triangle({{0.5F, -0.54F, 0.02F}, {}, 0.1F, 1}, {{-0.5F, -0.54F, 0.02F}, {}, 0.9F, 1},
                  {{0, -0.54F, 0.97F}, {}, 0.5F, 0});
    tent.Put(materials::stripes, back.Smooth(0).TwoSided());
    // The flaps are tied open.
    for (const float side : {-1.0F, 1.0F}) {
        Shape flap;
        flap.Triangle({{side * 0.50F, 0.56F, 0.02F}, {}, 0.05F, 1}, {{side * 0.26F, 0.62F, 0.02F}, {}, 0.3F, 1},
                      {{0, 0.56F, 0.98F}, {}, 0.1F, 0});
        tent.Put(materials::stripes, flap.Smooth(0).TwoSided().Light({side * 0.3F, 0.8F, 0.5F}));
        tent.Put(wood, Tube({{side * 0.62F, 0.5F, 0}, {side * 0.60F, 0.5F, 0.10F}}, 0.018F, 4))
            .Put(wood, Tube({{side * 0.62F, -0.5F, 0}, {side * 0.60F, -0.5F, 0.10F}}, 0.018F, 4));
    }
    tent.Put(wood, Tube({{0, 0.56F, 0}, {0, 0.56F, 1.22F}}, 0.022F, 5))
        .Put(wood, Tube({{0, -0.55F, 0}, {0, -0.55F, 1.04F}}, 0.022F, 5));
    tent.Paint(DarkBrown, Box(0.92F, 1.0F, 0.015F))
        .Put(materials::quilt, Block(0.36F, 0.70F, 0.08F, 0.03F, 2.0F).Move(0.12F, -0.06F, 0.01F));
    tent.Bone("pennant", "tent", {0, 0.56F, 1.12F}, Axis::Z, -30);
    tent.Paint(Yellow, Sheet(4, 2, [](float s, float t) {
                           return Vec3{0.30F * s, 0.03F * std::sin(6.0F * s), (0.10F - 0.10F * s) * (2.0F * t - 1.0F)};
                       }).TwoSided());
    return tent;
}

// A round pavilion; the flag is a bone.
Item Pavilion() {
    Item tent("pavilion");
    tent.Put(materials::stripes, Lathe({{0.52F, 0}, {0.50F, 0.82F}}, 14, 3)
                                     .Bend(
                                         [](const Vec3& p) {
                                             const float fold = 1.0F + 0.04F * std::sin(14.0F * std::atan2(p.y, p.x));
                                             return Vec3{p.x * fold, p.y * fold, p.z};
                                         },
                                         70));
    tent.Put(materials::stripes,
             Lathe({{0.62F, 0.74F}, {0.58F, 0.86F}, {0.30F, 1.16F}, {0.10F, 1.46F}, {0.02F, 1.62F}}, 14, 3));
    tent.Put(materials::stripes, Lathe({{0.50F, 0.80F}, {0.62F, 0.74F}}, 14, 3));
    // The way in, between curtains.
    tent.Paint(
        DarkBrown,
        Extrude({{-0.17F, 0}, {0.17F, 0}, {0.13F, 0.46F}, {0, 0.66F}, {-0.13F, 0.46F}}, 0.10F).Move(0, 0.485F, 0));
    for (const float side : {-1.0F, 1.0F})
        tent.Put(materials::stripes, Sheet(2, 3,
                                           [side](float s, float t) {
                                               return Vec3{
                                                   side * (0.10F + 0.16F * (1.0F - s) * (1.0F - 0.6F * t) - 0.10F * t),
                                                   0.55F + 0.02F * s - 0.02F * t, 0.68F * t};
                                           })
                                         .Uv(0.5F, 1)
                                         .TwoSided()
                                         .Light({0, 0.8F, 0.6F}));
    tent.Put(wood, Cylinder(0.02F, 0.34F, 5).Move(0, 0, 1.58F)).Paint(Gold, Blob(0.045F, 1, 0, 1).Move(0, 0, 1.94F));
    tent.Bone("flag", "pavilion", {0, 0, 1.80F}, Axis::Z, -25);
    tent.Paint(Red,
               Sheet(4, 1, [](float s, float t) {
                   return Vec3{0.36F * s, 0.04F * std::sin(7.0F * s), 0.10F * (2.0F * t - 1.0F) * (1.0F - 0.5F * s)};
               }).TwoSided());
    return tent;
}

Item Bedroll() {
    Item roll("bedroll");
    roll.Put(materials::quilt, Sheet(4, 6,
                                     [](float s, float t) {
                                         return Vec3{
                                             0.56F * (s - 0.5F), 0.40F - 0.74F * t,
                                             0.05F + 0.035F * std::sin(3.14F * s) + 0.01F * std::sin(11.0F * t)};
                                     })
                                   .Flip()
                                   .Uv(1, 1.2F));
    roll.Paint(Leather, Block(0.60F, 0.84F, 0.05F, 0.02F));
    roll.Paint(Cream, Blob(0.17F, 1, 0.05F, 4).Scale(1.3F, 0.7F, 0.5F).Move(0, -0.30F, 0.12F));
    roll.Paint(Brown, Block(0.20F, 0.16F, 0.24F, 0.04F).Move(0.40F, -0.26F, 0))
        .Paint(Leather, Block(0.22F, 0.17F, 0.10F, 0.03F).Move(0.40F, -0.26F, 0.16F));
    return roll;
}

Item Target() {
    Item target("target");
    for (const float x : {-0.26F, 0.26F})
        target.Put(wood, Tube({{x, 0.10F, 0}, {x * 0.35F, -0.05F, 1.12F}}, 0.03F, 5));
    target.Put(wood, Tube({{0, -0.40F, 0}, {0, -0.06F, 1.08F}}, 0.03F, 5));
    target.Bone("face", "target", {0, 0.06F, 0.64F}, Axis::X, 10);
    target.Put(materials::straw, Lathe({{0.38F, -0.06F}, {0.40F, 0}, {0.38F, 0.06F}}, 16, 5).Turn(Axis::X, -90));
    const Patch& p = pictures::target;
    target.Put(
        materials::signs,
        Disc(0.385F, 16).Uv(p.right - p.left, p.bottom - p.top, p.left, p.top).Turn(Axis::X, -90).Move(0, 0.062F, 0));
    for (const auto& [x, z] : {std::pair{0.05F, 0.03F}, {-0.14F, 0.10F}, {0.10F, -0.16F}}) {
        target.Put(wood, Tube({{x, 0.04F, z}, {x * 1.4F, 0.34F, z + 0.05F}}, 0.011F, 4));
        target.Paint(Red, Cards(2, 0.05F, 0.08F, {}).Turn(Axis::X, -80).Move(x * 1.36F, 0.29F, z + 0.045F));
    }
    return target;
}

Item Gravestone() {
    Item grave("gravestone");
    grave.Put(
        stone,
        Extrude({{-0.24F, 0}, {0.24F, 0}, {0.24F, 0.46F}, {0.17F, 0.60F}, {0, 0.67F}, {-0.17F, 0.60F}, {-0.24F, 0.46F}},
                0.13F, 1.2F)
            .Turn(Axis::X, -4)
            .Move(0, -0.20F, 0));
    grave.Put(stone, Block(0.62F, 0.30F, 0.08F, 0.02F).Move(0, -0.18F, 0));
    for (int i = 0; i < 3; ++i)
        grave.Paint(DarkGrey, Box(0.28F - 0.06F * static_cast<float>(i), 0.01F, 0.03F)
                                  .Move(0, -0.118F, 0.42F - 0.09F * static_cast<float>(i)));
    grave.Put(materials::flora, Cards(2, 0.26F, 0.26F, plants::daisies).Move(-0.14F, 0.12F, 0))
        .Put(materials::flora, Cards(2, 0.24F, 0.28F, plants::bluebells).Move(0.16F, 0.10F, 0));
    return grave;
}

Item TrainingDummy() {
    Item dummy("training_dummy");
    dummy.Put(planks, Block(0.52F, 0.10F, 0.06F, 0.012F))
        .Put(planks, Block(0.10F, 0.52F, 0.06F, 0.012F))
        .Put(wood, Cylinder(0.045F, 0.5F, 6).Move(0, 0, 0.04F));
    dummy.Bone("body", "training_dummy", {0, 0, 0.46F}, Axis::Z, 15);
    dummy.Put(materials::straw,
              Lathe({{0.10F, 0}, {0.19F, 0.10F}, {0.18F, 0.34F}, {0.20F, 0.46F}, {0.07F, 0.54F}}, 10, 3));
    dummy.Put(materials::straw, Blob(0.14F, 1, 0.03F, 5, 2).Move(0, 0, 0.66F));
    for (const float z : {0.12F, 0.40F})
        dummy.Paint(Leather, Lathe({{0.195F, z}, {0.20F, z + 0.05F}}, 10));
    dummy.Put(wood, Tube({{-0.46F, 0, 0.42F}, {0.46F, 0, 0.42F}}, 0.03F, 5));
    dummy.Bone("dummy_shield", "body", {-0.40F, 0.06F, 0.42F}, Axis::X, -90);
    dummy.Paint(Red, Lathe({{0.19F, 0}, {0.14F, 0.03F}, {0, 0.05F}}, 10))
        .Paint(Gold, Blob(0.05F, 1, 0, 1).Move(0, 0, 0.05F))
        .Put(wood, Disc(0.19F, 10).Flip());
    return dummy;
}

}  // namespace

std::vector<Item> CampItems() {
    return {Campfire(), Tent(), Pavilion(), Bedroll(), Target(), Gravestone(), TrainingDummy()};
}

}  // namespace items
