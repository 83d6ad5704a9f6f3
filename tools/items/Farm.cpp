#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::metal;
using materials::planks;
using materials::straw;
using materials::wood;

Item Haystack() {
    Item hay("haystack");
    hay.Put(straw, Lathe({{0.42F, 0}, {0.46F, 0.18F}, {0.42F, 0.50F}, {0.28F, 0.80F}, {0.08F, 1.0F}, {0, 1.04F}}, 12, 4)
                       .Uv(1, 1.6F)
                       .Bend(
                           [](const Vec3& p) {
                               const float lump = 1.0F + 0.06F * std::sin(4.0F * std::atan2(p.y, p.x) + 5.0F * p.z);
                               return Vec3{p.x * lump, p.y * lump, p.z};
                           },
                           70));
    hay.Put(materials::flora, Cards(3, 0.95F, 0.22F, plants::wheat).Move(0, 0, 0));
    hay.Put(wood, Tube({{0.34F, 0.30F, 0.0F}, {0.20F, 0.16F, 0.98F}}, 0.022F, 5));
    for (const float x : {-0.07F, 0.0F, 0.07F})
        hay.Put(metal,
                Tube({{0.20F, 0.16F, 0.96F}, {0.20F + x, 0.14F + x, 1.02F}, {0.18F + x, 0.12F + x, 1.20F}}, 0.012F, 3));
    return hay;
}

Item HayBale() {
    Item bale("hay_bale");
    bale.Put(straw, Cylinder(0.32F, 0.66F, 14, 5).Turn(Axis::Y, 90).Move(-0.33F, 0, 0.31F))
        .Put(straw, Disc(0.32F, 14).Flip().Turn(Axis::Y, 90).Move(-0.33F, 0, 0.31F));
    for (const float x : {-0.16F, 0.16F})
        bale.Paint(Brown, Lathe({{0.326F, -0.015F}, {0.326F, 0.015F}}, 14).Turn(Axis::Y, 90).Move(x, 0, 0.31F));
    bale.Put(materials::flora, Cards(2, 0.5F, 0.2F, plants::wheat).Move(0.1F, 0.3F, 0));
    return bale;
}

// Its arms and head are bones.
Item Scarecrow() {
    Item crow("scarecrow");
    crow.Put(wood, Tube({{0, 0, 0}, {0.02F, 0, 0.7F}, {0, 0, 1.15F}}, 0.035F, 5));
    crow.Paint(Blue, Lathe({{0.20F, 0.44F}, {0.17F, 0.62F}, {0.19F, 0.88F}, {0.06F, 0.98F}}, 8))
        .Paint(Brown, Lathe({{0.19F, 0.58F}, {0.185F, 0.62F}}, 8));
    crow.Put(materials::flora, Cards(3, 0.42F, 0.26F, plants::wheat).Turn(Axis::X, 180).Move(0, 0, 0.48F));
    crow.Bone("arms", "scarecrow", {0, 0, 0.86F}, Axis::Y, 5);
    crow.Put(wood, Tube({{-0.52F, 0, 0}, {0.52F, 0, 0}}, 0.024F, 5));
    for (const float side : {-1.0F, 1.0F}) {
        crow.Paint(Blue, Cone(0.085F, 0.11F, 0.30F, 7).Turn(Axis::Y, side * 90.0F).Move(side * 0.12F, 0, 0));
        crow.Put(materials::flora,
                 Cards(2, 0.2F, 0.22F, plants::wheat).Turn(Axis::Y, side * 90.0F).Move(side * 0.38F, 0, 0));
    }
    crow.Bone("head", "scarecrow", {0, 0, 1.12F}, Axis::Z, 12);
    crow.Paint(Tan, Blob(0.15F, 1, 0.04F, 4).Scale(1, 0.95F, 1.05F));
    for (const float x : {-0.055F, 0.055F})
        crow.Paint(Black, Blob(0.026F, 0, 0, 1).Move(x, 0.135F, 0.02F));
    crow.Paint(Orange, Cone(0.03F, 0, 0.13F, 5).Turn(Axis::X, -90).Move(0, 0.13F, -0.03F));
    crow.Put(straw, Lathe({{0.27F, 0.07F}, {0.15F, 0.10F}, {0.12F, 0.24F}, {0, 0.30F}}, 10, 2))
        .Put(straw, Lathe({{0.10F, 0.07F}, {0.27F, 0.065F}}, 10, 2));
    crow.Paint(Red, Lathe({{0.155F, 0.09F}, {0.145F, 0.14F}}, 10));
    return crow;
}

Item Beehive() {
    Item hive("beehive");
    for (const float x : {-0.22F, 0.22F})
        for (const float y : {-0.18F, 0.18F})
            hive.Put(wood, Box(0.06F, 0.06F, 0.24F).Move(x, y, 0));
    hive.Put(planks, Block(0.62F, 0.52F, 0.05F, 0.012F).Move(0, 0, 0.23F));
    hive.Put(straw, Lathe({{0.24F, 0.28F},
                           {0.27F, 0.32F},
                           {0.25F, 0.38F},
                           {0.27F, 0.42F},
                           {0.24F, 0.49F},
                           {0.25F, 0.53F},
                           {0.20F, 0.60F},
                           {0.19F, 0.65F},
                           {0.11F, 0.72F},
                           {0, 0.76F}},
                          12, 4)
                        .Uv(1, 2));
    hive.Paint(Black, Disc(0.06F, 8).Turn(Axis::X, -90).Move(0, 0.268F, 0.36F));
    hive.Bone("bees", "beehive", {0, 0, 0.6F});
    for (int i = 0; i < 5; ++i) {
        const Vec3 p{0.34F * CosDegrees(75.0F * static_cast<float>(i)),
                     0.34F * SinDegrees(75.0F * static_cast<float>(i)), Between(-0.2F, 0.3F, 91, i)};
        hive.Paint(Yellow, Blob(0.024F, 0, 0, 1).Scale(1.5F, 1, 1).Move(p.x, p.y, p.z))
            .Paint(White, Blob(0.02F, 0, 0, 1).Scale(0.7F, 1.6F, 0.5F).Move(p.x, p.y, p.z + 0.025F));
    }
    return hive;
}

Item Trough() {
    Item trough("trough");
    trough.Put(planks, Box(0.92F, 0.04F, 0.26F).Turn(Axis::X, -10).Move(0, 0.20F, 0.10F))
        .Put(planks, Box(0.92F, 0.04F, 0.26F).Turn(Axis::X, 10).Move(0, -0.20F, 0.10F));
    for (const float x : {-0.45F, 0.45F})
        trough
            .Put(planks, Extrude({{-0.18F, 0}, {0.18F, 0}, {0.25F, 0.27F}, {-0.25F, 0.27F}}, 0.04F)
                             .Turn(Axis::Z, 90)
                             .Move(x, 0, 0.08F))
            .Put(wood, Box(0.07F, 0.52F, 0.09F).Move(x * 0.8F, 0, 0));
    trough.Put(materials::water, Box(0.88F, 0.40F, 0.02F).Move(0, 0, 0.28F));
    return trough;
}

Item LogPile() {
    Item pile("log_pile");
    int number = 0;
    for (int row = 0; row < 3; ++row)
        for (int i = 0; i < 4 - row; ++i, ++number) {
            const float x = -0.30F + 0.20F * static_cast<float>(i) + 0.10F * static_cast<float>(row);
            const float radius = Between(0.092F, 0.105F, 93, number);
            const float slide = Between(-0.03F, 0.03F, 94, number);
            const auto put = [&](const Material& material, Shape shape) {
                pile.Put(material, shape.Move(x, slide, 0.10F + 0.175F * static_cast<float>(row)));
            };
            put(materials::bark, Lathe({{radius, 0}, {radius, 0.80F}}, 9, 1).Turn(Axis::X, -90).Move(0, -0.40F, 0));
            put(wood, Disc(radius, 9).Turn(Axis::X, -90).Move(0, 0.40F, 0));
        }
    for (const float x : {-0.46F, 0.46F})
        pile.Put(wood, Box(0.05F, 0.06F, 0.62F).Move(x, 0.15F, 0))
            .Put(wood, Box(0.05F, 0.06F, 0.62F).Move(x, -0.15F, 0));
    return pile;
}

// A mill as high as a house; the sails are a bone with one child for each arm.
Item Windmill() {
    Item mill("windmill");
    mill.Put(materials::masonry, Lathe({{0.62F, 0}, {0.58F, 0.40F}}, 10, 4).Uv(1, 0.45F));
    mill.Put(planks, Lathe({{0.56F, 0.40F}, {0.36F, 1.90F}}, 10, 3, 20).Uv(1, 1.5F));
    mill.Put(wood, Lathe({{0.64F, 0.38F}, {0.66F, 0.44F}, {0.56F, 0.46F}}, 10, 3, 20));
    mill.Put(materials::tiles, Lathe({{0.50F, 1.84F}, {0.38F, 2.10F}, {0, 2.55F}}, 10, 3).Uv(1, 0.9F))
        .Put(wood, Lathe({{0.34F, 1.86F}, {0.50F, 1.845F}}, 10));
    mill.Put(planks, Block(0.26F, 0.06F, 0.52F, 0.012F, 1.5F).Turn(Axis::X, 6).Move(0, 0.58F, 0.02F));
    mill.Put(materials::signs, Picture(0.20F, 0.26F, pictures::lattice).Turn(Axis::X, 8).Move(0, 0.475F, 1.15F));
    mill.Put(materials::signs,
             Picture(0.20F, 0.26F, pictures::lattice).Turn(Axis::X, 8).Move(0, 0.5F, 0.95F).Turn(Axis::Z, -72));
    mill.Put(metal, Cylinder(0.05F, 0.34F, 7).Turn(Axis::X, -90).Move(0, 0.34F, 1.98F));
    mill.Bone("sails", "windmill", {0, 0.66F, 1.98F}, Axis::Y, 24);
    mill.Paint(Brass, Blob(0.09F, 1, 0, 1));
    for (int i = 0; i < 4; ++i) {
        mill.Bone("sail" + std::to_string(i + 1), "sails", {0, 0, 0}, Axis::Y, 90.0F * static_cast<float>(i));
        mill.Put(wood, Box(0.045F, 0.045F, 1.12F));
        for (int k = 0; k < 4; ++k)
            mill.Put(wood, Box(0.26F, 0.02F, 0.02F).Move(0.13F, 0, 0.34F + 0.24F * static_cast<float>(k)));
        mill.Paint(Cream,
                   Sheet(2, 4,
                         [](float s, float t) {
                             return Vec3{0.02F + 0.25F * s, 0.03F + 0.03F * std::sin(3.1F * s), 0.32F + 0.76F * t};
                         })
                       .Flip()
                       .TwoSided());
    }
    return mill;
}

Item WeatherVane() {
    Item vane("weather_vane");
    vane.Put(wood, Block(0.11F, 0.11F, 1.2F, 0.02F)).Put(metal, Cylinder(0.02F, 0.5F, 5).Move(0, 0, 1.18F));
    vane.Put(metal, Box(0.34F, 0.02F, 0.02F).Move(0, 0, 1.30F)).Put(metal, Box(0.02F, 0.34F, 0.02F).Move(0, 0, 1.30F));
    vane.Bone("cock", "weather_vane", {0, 0, 1.56F}, Axis::Z, -35);
    vane.Paint(Gold, Box(0.62F, 0.025F, 0.03F).Move(0, 0, 0.02F))
        .Paint(Gold, Extrude({{0.30F, -0.05F}, {0.42F, 0.035F}, {0.30F, 0.12F}}, 0.025F));
    vane.Paint(Gold, Extrude({{-0.10F, 0.06F},
                              {0.08F, 0.06F},
                              {0.16F, 0.20F},
                              {0.10F, 0.34F},
                              {0.03F, 0.24F},
                              {-0.08F, 0.22F},
                              {-0.20F, 0.36F},
                              {-0.26F, 0.22F}},
                             0.03F))
        .Paint(Red, Extrude({{0.06F, 0.32F}, {0.14F, 0.32F}, {0.13F, 0.40F}, {0.07F, 0.40F}}, 0.035F));
    return vane;
}

}  // namespace

std::vector<Item> FarmItems() {
    return {Haystack(), HayBale(), Scarecrow(), Beehive(), Trough(), LogPile(), Windmill(), WeatherVane()};
}

}  // namespace items
