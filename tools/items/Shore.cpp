#include <array>
#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::metal;
using materials::planks;
using materials::wood;

// Half the width of a boat and the height of its rim at a place along it, -1 at the stern to 1 at the bow.
float BoatWidth(float along) {
    return 0.30F * std::sqrt(std::max(0.0F, 1.0F - along * along * (along > 0 ? 1.0F : 0.72F)));
}

float BoatRim(float along) {
    return 0.26F + 0.13F * along * along;
}

Vec3 Hull(float along, float around, float inset) {
    const float degrees = 180.0F * around;
    const float width = BoatWidth(along) - inset * 0.6F;
    const float keel = 0.02F + 0.14F * along * along * along * along + inset;
    const float depth = BoatRim(along) - keel;
    return {std::max(width, 0.004F) * CosDegrees(degrees), 0.74F * along,
            BoatRim(along) - depth * std::sqrt(std::max(0.0F, SinDegrees(degrees)))};
}

// A rowing boat along y; the oars are bones.
Item Boat() {
    Item boat("boat");
    boat.Put(planks, Sheet(8, 10, [](float s, float t) { return Hull(2.0F * t - 1.0F, 1.0F - s, 0); }).Uv(1, 1));
    boat.Put(planks, Sheet(8, 10, [](float s, float t) { return Hull(2.0F * t - 1.0F, s, 0.035F); }).Uv(1, 1));
    for (const float side : {-1.0F, 1.0F}) {
        std::vector<Vec3> rim;
        for (int i = 0; i <= 10; ++i) {
            const float along = -1.0F + 0.2F * static_cast<float>(i);
            rim.push_back({side * BoatWidth(along), 0.74F * along, BoatRim(along) + 0.01F});
        }
        boat.Put(wood, Tube(rim, 0.026F, 5));
    }
    for (const float y : {-0.36F, 0.04F, 0.40F})
        boat.Put(planks, Box(2.0F * BoatWidth(y / 0.74F) - 0.03F, 0.13F, 0.03F).Move(0, y, 0.19F));
    boat.Paint(Tan, Lathe({{0.09F, 0}, {0.11F, 0.02F}, {0.09F, 0.05F}, {0.05F, 0.06F}}, 8).Move(0, 0.56F, 0.20F));
    for (const float side : {-1.0F, 1.0F}) {
        boat.Bone(side < 0 ? "left_oar" : "right_oar", "boat", {side * 0.29F, -0.06F, 0.33F}, Axis::Y, side * -8.0F);
        boat.Put(wood, Tube({{side * -0.20F, 0.10F, 0}, {side * 0.42F, -0.24F, 0}}, 0.016F, 5));
        boat.Paint(Cream,
                   Block(0.09F, 0.24F, 0.02F, 0.006F).Turn(Axis::Z, side * 60.0F).Move(side * 0.50F, -0.29F, -0.01F));
    }
    return boat;
}

Item MooringPost() {
    Item post("mooring_post");
    post.Put(materials::bark, Tube({{0, 0, -0.2F}, {0.01F, 0, 0.3F}, {0, 0, 0.78F}}, 0.10F, 8))
        .Put(wood, Disc(0.10F, 8).Move(0, 0, 0.78F));
    for (int i = 0; i < 4; ++i)
        post.Paint(
            Tan,
            Lathe({{0.10F, 0}, {0.13F, 0.025F}, {0.10F, 0.05F}}, 9).Move(0, 0, 0.46F + 0.045F * static_cast<float>(i)));
    post.Paint(Tan, Tube({{0.10F, 0.04F, 0.52F}, {0.24F, 0.10F, 0.22F}, {0.34F, 0.16F, 0.04F}, {0.44F, 0.20F, 0.03F}},
                         0.02F, 5));
    post.Paint(
        Tan,
        Lathe({{0.20F, 0}, {0.22F, 0.03F}, {0.20F, 0.06F}, {0.13F, 0.06F}, {0.12F, 0.02F}}, 10).Move(-0.24F, 0.26F, 0));
    return post;
}

// Posts and a rope along x, for bridges and piers.
void PutRopeRail(Item& rail) {
    for (const float x : {-0.40F, 0.40F}) {
        rail.Put(
            wood,
            Lathe({{0.06F, -0.1F}, {0.055F, 0.60F}, {0.075F, 0.62F}, {0.075F, 0.68F}, {0, 0.72F}}, 7).Move(x, 0, 0));
        rail.Paint(Tan, Lathe({{0.06F, 0.50F}, {0.08F, 0.53F}, {0.06F, 0.56F}}, 7).Move(x, 0, 0));
    }
    std::vector<Vec3> rope;
    for (int i = 0; i <= 8; ++i) {
        const float x = -0.6F + 0.15F * static_cast<float>(i);
        const float inner = std::abs(x) < 0.40F ? (0.16F - x * x) : (std::abs(x) - 0.40F) * (0.6F - std::abs(x) + 0.2F);
        rope.push_back({x, 0, 0.53F - inner});
    }
    rail.Paint(Tan, Tube(rope, 0.02F, 5));
}

Item RopeRail() {
    Item rail("rope_rail");
    PutRopeRail(rail);
    return rail;
}

Item RopeRailEast() {
    Item rail("rope_rail_east");
    rail.Bone("turned", "rope_rail_east", {0, 0, 0}, Axis::Z, -90);
    PutRopeRail(rail);
    return rail;
}

// A stone pier with a lantern that carries the end of a bridge.
Item BridgePillar() {
    Item pillar("bridge_pillar");
    pillar.Put(materials::masonry, Block(0.46F, 0.46F, 0.86F, 0.02F, 1.1F))
        .Put(materials::stone, Block(0.56F, 0.56F, 0.09F, 0.02F).Move(0, 0, 0.84F));
    pillar.Put(materials::stone, Lathe({{0.33F, 0.93F}, {0, 1.10F}}, 4, 3).Turn(Axis::Z, 45));
    pillar.Paint(Brass, Blob(0.07F, 1, 0, 1).Move(0, 0, 1.14F));
    pillar.Put(materials::flora, Picture(0.30F, 0.42F, plants::ivy).Move(0.05F, 0.235F, 0.02F).Light({0, 0.7F, 0.7F}));
    pillar.Bone("lantern", "bridge_pillar", {0, 0.32F, 0.74F}, Axis::Z, 0);
    pillar.Put(metal, Tube({{0, -0.10F, 0}, {0, 0.02F, 0.02F}}, 0.016F, 4))
        .Put(metal, Cone(0.09F, 0.01F, 0.08F, 6).Move(0, 0.02F, -0.08F))
        .Paint(Lamplight, Cone(0.05F, 0.07F, 0.15F, 6).Move(0, 0.02F, -0.23F));
    return pillar;
}

// A humped stone bridge of one cell, crossed along x.
Item FootBridge() {
    Item bridge("foot_bridge");
    const auto rise = [](float s) { return 0.05F + 0.20F * std::sin(3.14159F * s); };
    bridge.Put(planks, Sheet(6, 1, [&](float s, float t) {
                           return Vec3{1.04F * (s - 0.5F), 0.72F * (t - 0.5F), rise(s)};
                       }).Uv(3, 0.7F));
    for (const float side : {-1.0F, 1.0F}) {
        bridge.Put(materials::masonry, Sheet(6, 1, [&](float s, float t) {
                                           return Vec3{side * 1.04F * (0.5F - s), side * 0.38F, t * (rise(s) + 0.10F)};
                                       }).Uv(1, 0.3F));
        bridge.Put(materials::stone,
                   Sheet(6, 1, [&](float s, float t) {
                       return Vec3{1.04F * (s - 0.5F), side * 0.38F + 0.10F * (t - 0.5F), rise(s) + 0.10F};
                   }).Uv(2, 0.3F));
        bridge.Put(materials::masonry, Sheet(6, 1, [&](float s, float t) {
                                           return Vec3{side * 1.04F * (s - 0.5F), side * 0.33F, rise(s) + t * 0.10F};
                                       }).Uv(1, 0.1F));
        for (const float x : {-0.42F, 0.42F})
            bridge.Put(wood, Box(0.06F, 0.06F, 0.52F).Move(x, side * 0.38F, 0.16F));
        std::vector<Vec3> hand;
        for (int i = 0; i <= 6; ++i)
            hand.push_back(
                {-0.52F + 0.173F * static_cast<float>(i), side * 0.38F, rise(static_cast<float>(i) / 6.0F) + 0.52F});
        bridge.Put(wood, Tube(hand, 0.028F, 5));
    }
    return bridge;
}

Item Anchor() {
    Item anchor("anchor");
    anchor.Bone("iron", "anchor", {0, -0.08F, 0.06F}, Axis::X, 16);
    anchor.Put(metal, Tube({{0, 0, 0}, {0, 0, 0.80F}}, 0.04F, 6))
        .Put(wood, Tube({{-0.30F, 0, 0.70F}, {0.30F, 0, 0.70F}}, 0.04F, 6));
    std::vector<Vec3> arms;
    for (int i = 0; i <= 8; ++i) {
        const float a = 200.0F + 17.5F * static_cast<float>(i);
        arms.push_back({0.38F * CosDegrees(a), 0, 0.38F + 0.38F * SinDegrees(a)});
    }
    anchor.Put(metal, Tube(arms, 0.04F, 6));
    for (const float side : {-1.0F, 1.0F})
        anchor.Put(metal, Cone(0.09F, 0, 0.16F, 4).Turn(Axis::Y, side * 18.0F).Move(side * 0.36F, 0, 0.24F));
    std::vector<Vec3> ring;
    for (int i = 0; i <= 8; ++i)
        ring.push_back({0.08F * CosDegrees(45.0F * static_cast<float>(i)), 0,
                        0.88F + 0.08F * SinDegrees(45.0F * static_cast<float>(i))});
    anchor.Put(metal, Tube(ring, 0.02F, 4));
    return anchor;
}

// Fish drying on a line; each hangs on a bone.
Item FishRack() {
    Item rack("fish_rack");
    for (const float x : {-0.40F, 0.40F}) {
        rack.Put(wood, Tube({{x, 0.18F, 0}, {x, -0.02F, 1.0F}}, 0.025F, 5))
            .Put(wood, Tube({{x, -0.18F, 0}, {x, 0.02F, 1.0F}}, 0.025F, 5));
    }
    rack.Put(wood, Tube({{-0.48F, 0, 0.94F}, {0.48F, 0, 0.94F}}, 0.022F, 5));
    for (int i = 0; i < 4; ++i) {
        rack.Bone("fish" + std::to_string(i + 1), "fish_rack", {-0.27F + 0.18F * static_cast<float>(i), 0, 0.92F},
                  Axis::Z, 20.0F - 12.0F * static_cast<float>(i));
        rack.Paint(i % 2 == 0 ? SkyBlue : Coral, Blob(0.16F, 1, 0, 1).Scale(0.38F, 0.22F, 1).Move(0, 0, -0.22F));
        rack.Paint(i % 2 == 0 ? Blue : Red,
                   Extrude({{0, 0}, {0.07F, 0.09F}, {0, 0.07F}, {-0.07F, 0.09F}}, 0.02F).Move(0, 0, -0.09F));
        rack.Paint(Black, Blob(0.014F, 0, 0, 1).Move(0.02F, 0.03F, -0.31F));
    }
    return rack;
}

// A scallop, standing half open: the upper half is a bone.
Shape ScallopHalf() {
    return Sheet(12, 4,
                 [](float s, float t) {
                     const float a = 20.0F + 140.0F * s;
                     const float rib = 1.0F + 0.07F * std::cos(3.14159F * 12.0F * s);
                     return Vec3{-0.34F * t * CosDegrees(a) * rib, 0.36F * t * SinDegrees(a) * rib,
                                 0.13F * std::sin(3.0F * t) * (0.8F + 0.2F * rib)};
                 })
        .Flip();
}

Item Shell() {
    Item shell("shell");
    shell.Paint(PaleCoral, ScallopHalf().Scale(1, 1, -0.6F).Move(0, -0.18F, 0.10F).TwoSided());
    shell.Paint(White, Blob(0.07F, 1, 0, 1).Move(0.02F, 0.06F, 0.12F));
    shell.Bone("upper_shell", "shell", {0, -0.18F, 0.11F}, Axis::X, 42);
    shell.Paint(Coral, ScallopHalf().TwoSided());
    return shell;
}

Item CoralTree() {
    Item coral("coral");
    for (int i = 0; i < 7; ++i) {
        const float a = 51.0F * static_cast<float>(i) + 25.0F * Chance(95, i);
        const float reach = Between(0.16F, 0.30F, 96, i);
        const float high = Between(0.42F, 0.85F, 97, i);
        const Vec3 out{CosDegrees(a), SinDegrees(a), 0};
        const Vec3 fork = out * (reach * 0.7F) + Vec3{0, 0, high * 0.5F};
        coral.Paint(Coral, Tube({{0, 0, 0}, fork, out * reach + Vec3{0, 0, high}}, {0.075F, 0.055F, 0.03F}, 5));
        coral.Paint(Pink, Blob(0.05F, 0, 0, 1).Move(out.x * reach, out.y * reach, high));
        const Vec3 twig = out * (reach + 0.12F) + Vec3{-0.1F * out.y, 0.1F * out.x, high * 0.72F};
        coral.Paint(Coral, Tube({fork, twig}, {0.045F, 0.025F}, 5))
            .Paint(Pink, Blob(0.04F, 0, 0, 1).Move(twig.x, twig.y, twig.z));
    }
    coral.Put(materials::stone, Blob(0.26F, 1, 0.15F, 8).Scale(1, 1, 0.4F));
    return coral;
}

Item SeaFanItem() {
    Item fan("sea_fan");
    fan.Put(materials::flora, Card(0.95F, 0.95F, plants::seaFan).Turn(Axis::Z, 8).Light({0, 0.5F, 0.86F}))
        .Put(materials::flora, Card(0.6F, 0.62F, plants::seaFan).Turn(Axis::Z, 70).Move(-0.14F, 0.12F, 0));
    fan.Put(materials::stone, Blob(0.18F, 1, 0.15F, 9).Scale(1.3F, 1, 0.5F))
        .Paint(Orange, Blob(0.06F, 1, 0.1F, 3).Move(0.22F, 0.16F, 0.04F));
    return fan;
}

}  // namespace

std::vector<Item> ShoreItems() {
    return {Boat(),   MooringPost(), RopeRail(), RopeRailEast(), BridgePillar(), FootBridge(),
            Anchor(), FishRack(),    Shell(),    CoralTree(),    SeaFanItem()};
}

}  // namespace items
