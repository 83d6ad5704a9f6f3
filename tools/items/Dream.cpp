#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::metal;
using materials::wood;

// A six-sided crystal that stands at the origin.
Shape Crystal(float radius, float height) {
    return Lathe({{radius * 0.7F, 0}, {radius, height * 0.30F}, {radius * 0.85F, height * 0.72F}, {0, height}}, 6, 2,
                 10);
}

Item CrystalCluster() {
    Item cluster("crystal_cluster");
    cluster.Put(materials::stone, Blob(0.34F, 1, 0.2F, 6).Scale(1.1F, 1, 0.4F));
    cluster.Put(materials::crystal, Crystal(0.15F, 1.0F).Turn(Axis::X, -4));
    for (int i = 0; i < 6; ++i) {
        const float size = Between(0.40F, 0.72F, 98, i);
        cluster.Put(materials::crystal, Crystal(0.16F, 1.0F)
                                            .Scale(size)
                                            .Turn(Axis::Y, Between(22, 44, 99, i))
                                            .Turn(Axis::Z, 60.0F * static_cast<float>(i) + 20)
                                            .Move(0.10F * CosDegrees(60.0F * static_cast<float>(i) + 20),
                                                  0.10F * SinDegrees(60.0F * static_cast<float>(i) + 20), 0.03F));
    }
    return cluster;
}

// A crystal that floats over a stand; the rings around it are bones.
Item StarLamp() {
    Item lamp("star_lamp");
    lamp.Put(
        materials::stone,
        Lathe({{0.26F, 0}, {0.26F, 0.08F}, {0.14F, 0.14F}, {0.09F, 0.48F}, {0.20F, 0.60F}, {0.14F, 0.58F}, {0, 0.52F}},
              8, 2, 30));
    lamp.Bone("star", "star_lamp", {0, 0, 0.92F});
    lamp.Put(materials::crystal, Crystal(0.11F, 0.30F))
        .Put(materials::crystal, Crystal(0.11F, 0.22F).Turn(Axis::X, 180));
    for (int i = 0; i < 2; ++i) {
        lamp.Bone(i == 0 ? "inner_ring" : "outer_ring", i == 0 ? "star" : "inner_ring", {0, 0, 0}, Axis::X,
                  i == 0 ? 24.0F : -50.0F);
        std::vector<Vec3> ring;
        for (int k = 0; k <= 16; ++k)
            ring.push_back({(0.24F + 0.08F * static_cast<float>(i)) * CosDegrees(22.5F * static_cast<float>(k)),
                            (0.24F + 0.08F * static_cast<float>(i)) * SinDegrees(22.5F * static_cast<float>(k)), 0});
        lamp.Paint(Gold, Tube(ring, 0.014F, 4));
    }
    return lamp;
}

// A globe in its stand; the ball turns on a bone.
Item Globe() {
    Item globe("globe");
    globe.Put(wood, Lathe({{0.30F, 0}, {0.28F, 0.05F}, {0.08F, 0.10F}, {0.05F, 0.30F}, {0.08F, 0.36F}, {0, 0.38F}}, 10,
                          2, 35));
    std::vector<Vec3> arc;
    for (int i = 0; i <= 10; ++i) {
        const float a = -90.0F + 18.0F * static_cast<float>(i) - 23.0F;
        arc.push_back({0.42F * CosDegrees(a), 0, 0.80F + 0.42F * SinDegrees(a)});
    }
    globe.Paint(Brass, Tube(arc, 0.025F, 5));
    std::vector<Vec3> horizon;
    for (int i = 0; i <= 16; ++i)
        horizon.push_back({0.43F * CosDegrees(22.5F * static_cast<float>(i)),
                           0.43F * SinDegrees(22.5F * static_cast<float>(i)), 0.72F});
    globe.Put(wood, Tube(horizon, 0.03F, 5));
    for (int i = 0; i < 4; ++i)
        globe.Put(wood, Tube({{0.06F, 0, 0.20F}, {0.34F, 0, 0.36F}, {0.43F, 0, 0.72F}}, 0.022F, 4)
                            .Turn(Axis::Z, 90.0F * static_cast<float>(i) + 45.0F));
    globe.Bone("ball", "globe", {0, 0, 0.80F}, Axis::Y, 23);
    globe.Put(materials::globe, Ball(0.36F, 18)).Paint(Gold, Blob(0.035F, 0, 0, 1).Move(0, 0, 0.38F));
    return globe;
}

Item Lectern() {
    Item lectern("lectern");
    lectern.Put(wood, Block(0.48F, 0.40F, 0.08F, 0.02F))
        .Put(wood,
             Lathe({{0.16F, 0.08F}, {0.07F, 0.16F}, {0.06F, 0.42F}, {0.09F, 0.48F}, {0.06F, 0.54F}, {0.07F, 0.74F}}, 8,
                   1));
    lectern.Bone("desk", "lectern", {0, 0, 0.78F}, Axis::X, -26);
    lectern.Put(materials::planks, Block(0.62F, 0.48F, 0.05F, 0.012F, 1.4F))
        .Put(wood, Box(0.62F, 0.04F, 0.05F).Move(0, 0.23F, 0.04F));
    lectern.Paint(DarkRed, Block(0.54F, 0.38F, 0.03F, 0.008F).Move(0, -0.01F, 0.05F));
    const Patch& p = pictures::openBook;
    lectern.Put(materials::signs, Sheet(8, 1,
                                        [](float s, float t) {
                                            const float x = 2.0F * s - 1.0F;
                                            return Vec3{0.25F * x, 0.17F * (2.0F * t - 1.0F) * -1.0F,
                                                        0.085F + 0.05F * std::sqrt(std::abs(x)) * (1.0F - std::abs(x))};
                                        })
                                      .Flip()
                                      .Uv(p.right - p.left, p.bottom - p.top, p.left, p.top));
    lectern.Paint(Red, Box(0.025F, 0.14F, 0.008F).Move(0.02F, 0.24F, 0.08F));
    return lectern;
}

// The tube is a bone that tilts on the stand.
Item Telescope() {
    Item scope("telescope");
    for (int i = 0; i < 3; ++i)
        scope.Put(
            wood,
            Tube({{0.38F, 0, 0}, {0.03F, 0, 0.80F}}, 0.03F, 5).Turn(Axis::Z, 120.0F * static_cast<float>(i) + 30.0F));
    scope.Paint(Brass, Lathe({{0.07F, 0.76F}, {0.09F, 0.82F}, {0.05F, 0.88F}, {0, 0.90F}}, 8));
    scope.Bone("tube", "telescope", {0, 0, 0.94F}, Axis::X, 38);
    const auto along = [](Shape shape) { return shape.Turn(Axis::X, -90); };
    scope.Paint(Brass, along(Lathe({{0.05F, -0.42F}, {0.055F, -0.38F}, {0.06F, -0.06F}, {0.085F, -0.04F}}, 9)));
    scope.Put(metal, along(Lathe({{0.085F, -0.06F}, {0.10F, 0.50F}}, 9, 2)))
        .Paint(Brass, along(Lathe({{0.11F, 0.46F}, {0.12F, 0.58F}, {0.09F, 0.58F}}, 9)));
    scope.Paint(SkyBlue, along(Disc(0.10F, 9).Move(0, 0, 0.565F)))
        .Paint(Black, Disc(0.05F, 8).Turn(Axis::X, 90).Move(0, -0.42F, 0));
    return scope;
}

Item BookPile() {
    Item pile("book_pile");
    constexpr int colours[] = {DarkRed, DarkBlue, DarkGreen, Brown, Violet, Teal, Leather};
    const auto book = [&](float x, float y, float z, float turn, int colour) {
        const auto place = [&](Shape shape) { return shape.Turn(Axis::Z, turn).Move(x, y, z); };
        pile.Paint(colour, place(Block(0.34F, 0.25F, 0.02F, 0.006F)))
            .Paint(colour, place(Block(0.34F, 0.25F, 0.02F, 0.006F).Move(0, 0, 0.065F)));
        pile.Paint(colour, place(Box(0.34F, 0.02F, 0.08F).Move(0, -0.12F, 0)))
            .Paint(Parchment, place(Box(0.31F, 0.22F, 0.05F).Move(0, 0.005F, 0.018F)));
    };
    for (int i = 0; i < 6; ++i)
        book(-0.12F + 0.03F * Chance(7, i), -0.10F + 0.03F * Chance(8, i), 0.087F * static_cast<float>(i),
             Between(-25, 25, 9, i), colours[i]);
    for (int i = 0; i < 3; ++i)
        book(0.22F, 0.18F, 0.087F * static_cast<float>(i), 40.0F + 35.0F * static_cast<float>(i), colours[6 - i]);
    const Patch& p = pictures::openBook;
    pile.Put(materials::signs,
             Picture(0.36F, 0.26F, p).Turn(Axis::X, 90).Turn(Axis::Z, 10).Move(-0.10F, 0.03F, 0.533F));
    return pile;
}

// Planets around a sun; each ring is a bone within the next.
Item Orrery() {
    Item orrery("orrery");
    orrery.Put(wood, Lathe({{0.28F, 0}, {0.26F, 0.06F}, {0.08F, 0.12F}, {0.05F, 0.50F}}, 10, 2, 35))
        .Paint(Brass, Cylinder(0.025F, 0.34F, 6).Move(0, 0, 0.5F));
    const auto ring = [](float radius) {
        std::vector<Vec3> path;
        for (int i = 0; i <= 20; ++i)
            path.push_back({radius * CosDegrees(18.0F * static_cast<float>(i)),
                            radius * SinDegrees(18.0F * static_cast<float>(i)), 0});
        return Tube(path, 0.012F, 4);
    };
    orrery.Paint(Gold, Blob(0.13F, 1, 0, 1).Move(0, 0, 0.88F));
    orrery.Bone("inner_orbit", "orrery", {0, 0, 0.88F}, Axis::X, 14);
    orrery.Paint(Brass, ring(0.25F)).Paint(Orange, Blob(0.05F, 1, 0, 1).Move(0.22F, 0.12F, 0));
    orrery.Bone("middle_orbit", "inner_orbit", {0, 0, 0}, Axis::Y, -22);
    orrery.Paint(Brass, ring(0.36F)).Paint(Teal, Blob(0.07F, 1, 0, 1).Move(-0.30F, 0.20F, 0));
    orrery.Bone("outer_orbit", "middle_orbit", {0, 0, 0}, Axis::X, 20);
    orrery.Paint(Brass, ring(0.46F))
        .Paint(Plum, Blob(0.08F, 1, 0, 1).Move(0.10F, 0.45F, 0))
        .Paint(Cream, Lathe({{0.12F, 0}, {0.15F, 0.01F}}, 10).Move(0.10F, 0.45F, 0));
    return orrery;
}

// A table with a chart of the stars.
Item ChartTable() {
    Item table("chart_table");
    table.Put(wood, Lathe({{0.26F, 0}, {0.24F, 0.06F}, {0.09F, 0.12F}, {0.07F, 0.42F}, {0.16F, 0.50F}}, 10, 2, 35));
    table.Put(wood, Lathe({{0.10F, 0.50F}, {0.44F, 0.50F}, {0.46F, 0.53F}, {0.44F, 0.56F}}, 16, 3, 30))
        .Put(wood, Disc(0.44F, 16).Move(0, 0, 0.56F));
    const Patch& p = pictures::starChart;
    table.Put(materials::signs,
              Disc(0.40F, 16).Uv(p.right - p.left, p.bottom - p.top, p.left, p.top).Move(0, 0, 0.566F));
    table.Bone("compasses", "chart_table", {0.10F, 0.06F, 0.57F}, Axis::Z, 30);
    table.Paint(Gold, Tube({{-0.08F, 0, 0}, {0, 0, 0.20F}, {0.08F, 0, 0}}, 0.012F, 4))
        .Paint(Gold, Blob(0.022F, 0, 0, 1).Move(0, 0, 0.21F));
    return table;
}

}  // namespace

std::vector<Item> DreamItems() {
    return {CrystalCluster(), StarLamp(), Globe(), Lectern(), Telescope(), BookPile(), Orrery(), ChartTable()};
}

}  // namespace items
