#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::masonry;
using materials::metal;
using materials::planks;
using materials::stone;
using materials::wood;

// An iron stove with its pipe; the door is a bone.
Item Stove() {
    Item stove("stove");
    for (const float x : {-0.28F, 0.28F})
        for (const float y : {-0.36F, 0.12F})
            stove.Put(metal, Lathe({{0.03F, 0}, {0.05F, 0.14F}}, 6).Move(x, y, 0));
    stove.Put(metal, Block(0.74F, 0.62F, 0.52F, 0.03F, 1.3F).Move(0, -0.12F, 0.12F));
    stove.Paint(Iron, Block(0.82F, 0.70F, 0.05F, 0.015F).Move(0, -0.12F, 0.63F));
    stove.Put(metal, Cylinder(0.09F, 1.1F, 9).Move(-0.22F, -0.30F, 0.66F))
        .Put(metal, Lathe({{0.11F, 0.72F}, {0.11F, 0.78F}}, 9).Move(-0.22F, -0.30F, 0));
    stove.Paint(Black, Disc(0.12F, 10).Move(0.16F, -0.02F, 0.684F))
        .Paint(Black, Disc(0.10F, 10).Move(-0.16F, 0.04F, 0.684F));
    stove.Paint(
        Copper,
        Lathe({{0.11F, 0}, {0.15F, 0.06F}, {0.12F, 0.16F}, {0.05F, 0.19F}, {0, 0.20F}}, 10).Move(0.16F, -0.06F, 0.69F));
    stove.Paint(Copper, Tube({{0.28F, -0.06F, 0.76F}, {0.36F, -0.06F, 0.82F}, {0.38F, -0.06F, 0.86F}}, 0.02F, 5));
    stove.Paint(Black, Blob(0.025F, 0, 0, 1).Move(0.16F, -0.06F, 0.90F));
    stove.Paint(Ember, Box(0.30F, 0.02F, 0.20F).Move(0.12F, 0.185F, 0.28F));
    stove.Bone("door", "stove", {-0.05F, 0.20F, 0.26F}, Axis::Z, 40);
    stove.Paint(Iron, Block(0.34F, 0.03F, 0.26F, 0.01F).Move(0.17F, 0.01F, 0))
        .Paint(Brass, Blob(0.025F, 0, 0, 1).Move(0.30F, 0.04F, 0.13F));
    return stove;
}

Item Fireplace() {
    Item fireplace("fireplace");
    for (const float x : {-0.37F, 0.37F})
        fireplace.Put(masonry, Block(0.20F, 0.46F, 0.80F, 0.015F, 1.1F).Move(x, -0.24F, 0));
    fireplace.Put(masonry, Block(0.96F, 0.46F, 0.26F, 0.015F, 1.1F).Move(0, -0.24F, 0.72F));
    fireplace.Put(wood, Block(1.0F, 0.54F, 0.07F, 0.015F).Move(0, -0.21F, 0.97F));
    fireplace.Put(masonry, Block(0.62F, 0.36F, 0.92F, 0.015F, 1.1F).Move(0, -0.29F, 1.03F));
    fireplace.Paint(Black, Box(0.56F, 0.02F, 0.74F).Move(0, -0.44F, 0))
        .Put(stone, Block(1.0F, 0.30F, 0.06F, 0.015F).Move(0, 0.10F, 0));
    for (int i = 0; i < 3; ++i)
        fireplace.Put(materials::bark,
                      Cylinder(0.05F, 0.42F, 6)
                          .Turn(Axis::Y, 90)
                          .Turn(Axis::Z, -20.0F + 20.0F * static_cast<float>(i))
                          .Move(-0.2F, -0.26F + 0.08F * static_cast<float>(i), 0.06F + (i == 1 ? 0.08F : 0.0F)));
    fireplace.Put(materials::signs, Picture(0.34F, 0.30F, pictures::landscape).Move(0, -0.10F, 1.32F));
    fireplace.Paint(Cream, Cylinder(0.03F, 0.16F, 6).Move(-0.36F, -0.12F, 1.04F))
        .Paint(Cream, Cylinder(0.03F, 0.12F, 6).Move(0.38F, -0.12F, 1.04F));
    fireplace.Bone("flames", "fireplace", {0, -0.18F, 0.10F});
    for (int i = 0; i < 3; ++i)
        fireplace.Put(materials::fire, Cards(2, 0.26F, 0.34F + (i == 1 ? 0.14F : 0.0F), {})
                                           .Turn(Axis::Z, 30.0F * static_cast<float>(i))
                                           .Move(-0.14F + 0.14F * static_cast<float>(i), 0, 0));
    return fireplace;
}

// A grandfather clock; its pendulum is a bone.
Item Clock() {
    Item clock("clock");
    clock.Put(planks, Block(0.46F, 0.34F, 0.34F, 0.02F, 1.5F).Move(0, -0.28F, 0))
        .Put(planks, Block(0.34F, 0.26F, 0.84F, 0.015F, 1.5F).Move(0, -0.28F, 0.32F));
    clock.Put(wood, Block(0.46F, 0.34F, 0.44F, 0.02F).Move(0, -0.28F, 1.14F));
    clock.Put(wood, Extrude({{-0.27F, 0}, {0.27F, 0}, {0, 0.20F}}, 0.38F).Move(0, -0.28F, 1.57F));
    clock.Put(materials::signs, Picture(0.38F, 0.38F, pictures::clockFace).Move(0, -0.105F, 1.17F));
    clock.Paint(Black, Box(0.22F, 0.01F, 0.68F).Move(0, -0.15F, 0.40F));
    clock.Paint(Gold, Blob(0.05F, 0, 0, 1).Move(0, -0.28F, 1.80F));
    clock.Bone("pendulum", "clock", {0, -0.13F, 1.04F}, Axis::Y, 6);
    clock.Paint(Gold, Box(0.02F, 0.012F, 0.44F).Move(0, 0, -0.44F))
        .Paint(Gold, Blob(0.07F, 1, 0, 1).Scale(1, 0.3F, 1).Move(0, 0.01F, -0.46F));
    return clock;
}

Item Candelabra() {
    Item stand("candelabra");
    stand.Paint(Brass, Lathe({{0.20F, 0},
                              {0.18F, 0.03F},
                              {0.05F, 0.08F},
                              {0.025F, 0.20F},
                              {0.04F, 0.55F},
                              {0.022F, 0.60F},
                              {0.025F, 1.0F},
                              {0.06F, 1.03F}},
                             9));
    for (int i = 0; i < 5; ++i) {
        const float around = 90.0F * static_cast<float>(i) + 20.0F;
        const float reach = i == 4 ? 0.0F : 0.22F;
        const float top = i == 4 ? 1.06F : 1.0F;
        const float x = reach * CosDegrees(around);
        const float y = reach * SinDegrees(around);
        if (i < 4)
            stand.Paint(Brass,
                        Tube({{0, 0, 0.80F}, {x * 0.6F, y * 0.6F, 0.78F}, {x, y, 0.88F}, {x, y, top}}, 0.016F, 4));
        stand.Paint(Brass, Lathe({{0.02F, 0}, {0.055F, 0.03F}, {0, 0.02F}}, 7).Move(x, y, top));
        stand.Paint(Ivory, Cylinder(0.026F, 0.16F, 6).Move(x, y, top + 0.02F));
        stand.Put(materials::fire, Cards(2, 0.09F, 0.15F, {}).Move(x, y, top + 0.17F));
    }
    return stand;
}

Item Cauldron() {
    Item cauldron("cauldron");
    for (int i = 0; i < 3; ++i) {
        const float a = 120.0F * static_cast<float>(i) + 90.0F;
        cauldron.Put(wood, Tube({{0.42F * CosDegrees(a), 0.42F * SinDegrees(a), 0},
                                 {-0.03F * CosDegrees(a), -0.03F * SinDegrees(a), 1.08F}},
                                0.028F, 5));
        cauldron.Put(materials::bark,
                     Cylinder(0.05F, 0.34F, 6).Turn(Axis::Y, 90).Turn(Axis::Z, a + 30.0F).Move(0, 0, 0.05F));
    }
    cauldron.Put(materials::fire, Cards(3, 0.34F, 0.30F, {}).Move(0, 0, 0.04F));
    cauldron.Bone("pot", "cauldron", {0, 0, 0.98F});
    cauldron.Put(metal, Tube({{0, 0, 0}, {0, 0, -0.24F}}, 0.012F, 4))
        .Put(metal,
             Tube({{-0.22F, 0, -0.42F}, {-0.15F, 0, -0.28F}, {0, 0, -0.22F}, {0.15F, 0, -0.28F}, {0.22F, 0, -0.42F}},
                  0.014F, 4));
    cauldron.Paint(Iron, Lathe({{0, -0.74F},
                                {0.14F, -0.72F},
                                {0.24F, -0.60F},
                                {0.22F, -0.46F},
                                {0.25F, -0.42F},
                                {0.20F, -0.42F},
                                {0.19F, -0.48F}},
                               12));
    cauldron.Paint(Lime, Disc(0.195F, 12).Move(0, 0, -0.46F));
    for (int i = 0; i < 4; ++i)
        cauldron.Paint(Lime, Blob(0.035F, 0, 0, 1)
                                 .Move(0.09F * CosDegrees(95.0F * static_cast<float>(i)),
                                       0.1F * SinDegrees(80.0F * static_cast<float>(i)), -0.45F));
    return cauldron;
}

Item Anvil() {
    Item anvil("anvil");
    anvil.Put(materials::bark, Lathe({{0.27F, 0}, {0.24F, 0.30F}}, 10, 3)).Put(wood, Disc(0.24F, 10).Move(0, 0, 0.30F));
    anvil.Put(metal, Block(0.30F, 0.22F, 0.06F, 0.015F).Move(0, 0, 0.30F))
        .Put(metal, Block(0.18F, 0.15F, 0.14F, 0.01F).Move(0, 0, 0.35F));
    anvil.Put(metal, Block(0.42F, 0.20F, 0.11F, 0.02F).Move(-0.04F, 0, 0.47F));
    anvil.Put(metal, Cone(0.075F, 0.005F, 0.28F, 8).Turn(Axis::Y, 90).Scale(1, 1, 0.8F).Move(0.16F, 0, 0.535F));
    anvil.Bone("hammer", "anvil", {-0.06F, 0.02F, 0.60F}, Axis::Z, 35);
    anvil.Put(wood, Tube({{-0.05F, 0, 0.02F}, {0.26F, 0, 0.02F}}, 0.018F, 5))
        .Paint(DarkGrey, Block(0.08F, 0.18F, 0.08F, 0.015F).Move(-0.06F, 0, -0.02F));
    return anvil;
}

Item Easel() {
    Item easel("easel");
    for (const float x : {-0.26F, 0.26F})
        easel.Put(wood, Tube({{x, 0.18F, 0}, {x * 0.25F, -0.08F, 1.30F}}, 0.025F, 5));
    easel.Put(wood, Tube({{0, -0.34F, 0}, {0, -0.06F, 1.24F}}, 0.025F, 5))
        .Put(wood, Box(0.56F, 0.09F, 0.035F).Move(0, 0.11F, 0.46F));
    easel.Bone("canvas", "easel", {0, 0.12F, 0.50F}, Axis::X, 11.5F);
    easel.Put(wood, Block(0.60F, 0.035F, 0.60F, 0.008F))
        .Put(materials::signs, Picture(0.56F, 0.56F, pictures::landscape).Move(0, 0.02F, 0.02F));
    return easel;
}

Item WeaponRack() {
    Item rack("weapon_rack");
    for (const float x : {-0.40F, 0.40F})
        rack.Put(wood, Block(0.07F, 0.28F, 0.05F, 0.01F).Move(x, -0.2F, 0))
            .Put(wood, Block(0.06F, 0.07F, 0.92F, 0.01F).Move(x, -0.26F, 0));
    for (const float z : {0.28F, 0.74F})
        rack.Put(wood, Box(0.86F, 0.06F, 0.07F).Move(0, -0.24F, z));
    for (int i = 0; i < 3; ++i) {
        const float x = -0.26F + 0.26F * static_cast<float>(i);
        rack.Bone("weapon" + std::to_string(i + 1), "weapon_rack", {x, -0.10F, 0.04F}, Axis::X, 6);
        if (i == 1) {
            rack.Put(wood, Tube({{0, 0, 0}, {0, 0, 1.25F}}, 0.02F, 5))
                .Paint(Grey, Cone(0.06F, 0, 0.24F, 4).Move(0, 0, 1.22F));
            continue;
        }
        rack.Paint(Grey,
                   Extrude({{-0.035F, 0.12F}, {0, 0}, {0.035F, 0.12F}, {0.035F, 0.78F}, {-0.035F, 0.78F}}, 0.02F));
        rack.Paint(Gold, Block(0.22F, 0.05F, 0.05F, 0.012F).Move(0, 0, 0.78F))
            .Paint(Leather, Cylinder(0.024F, 0.16F, 6).Move(0, 0, 0.82F))
            .Paint(Gold, Blob(0.04F, 0, 0, 1).Move(0, 0, 1.0F));
    }
    rack.Bone("shield", "weapon_rack", {0, -0.04F, 0.16F}, Axis::X, 14);
    rack.Put(materials::signs,
             Sheet(4, 1,
                   [](float s, float t) {
                       return Vec3{0.30F * (s - 0.5F), 0.02F + 0.04F * std::sin(3.14F * s), 0.36F * t};
                   })
                 .Flip()
                 .Uv(0.24F, 0.24F, 0.005F, 0.255F)
                 .TwoSided());
    return rack;
}

}  // namespace

std::vector<Item> HouseItems() {
    return {Stove(), Fireplace(), Clock(), Candelabra(), Cauldron(), Anvil(), Easel(), WeaponRack()};
}

}  // namespace items
