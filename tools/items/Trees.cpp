#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

// Leaves stuck on a ball of this radius, each facing outwards and lit as the ball would be.
Shape Fluff(float radius, float size, int count, unsigned seed) {
    Shape fluff;
    for (int i = 0; i < count; ++i) {
        // Even over the ball: equal steps of height, golden steps around. The underside is left out.
        const float z = 0.97F - 1.35F * (static_cast<float>(i) + 0.5F) / static_cast<float>(count);
        const float around = 137.5F * static_cast<float>(i) + 40.0F * Chance(seed, i);
        const float up = std::asin(z) * 57.29578F;
        Shape leaf = Picture(size, size, {}).Move(0, 0, -size / 2.0F);
        leaf.Turn(Axis::Y, 360.0F * Chance(seed, i + 500))
            .Move(0, radius, 0)
            .Turn(Axis::X, up + Between(-18, 18, seed, i + 900));
        const float side = std::sqrt(1.0F - z * z);
        leaf.Turn(Axis::Z, around);
        leaf.Light({-side * SinDegrees(around), side * CosDegrees(around), z});
        fluff.Add(leaf);
    }
    return fluff;
}

struct Crown {
    Vec3 middle;
    float radius = 0.5F;
    int leaves = 14;
};

void PutCrown(Item& tree, const std::vector<Crown>& crowns, float flatness, unsigned seed) {
    for (const Crown& crown : crowns) {
        ++seed;
        const Vec3& m = crown.middle;
        tree.Put(materials::leaves, Blob(crown.radius, 1, 0.13F, seed, 1.1F).Scale(1, 1, flatness).Move(m.x, m.y, m.z));
        if (crown.leaves == 0) continue;
        Shape fluff = Fluff(crown.radius * 1.02F, 0.34F, crown.leaves, seed).Scale(1, 1, flatness).Move(m.x, m.y, m.z);
        tree.Put(materials::spray, fluff);
    }
}

Shape Trunk(float height, float radius, int segments) {
    return Lathe(
        {{radius * 1.9F, 0}, {radius * 1.25F, height * 0.10F}, {radius, height * 0.4F}, {radius * 0.7F, height}},
        segments, 2);
}

Shape Branch(const Vec3& from, const Vec3& to, float radius) {
    const Vec3 middle = (from + to) / 2.0F + Vec3{0, 0, -0.06F};
    return Tube({from, middle, to}, {radius, radius * 0.75F, radius * 0.4F}, 5);
}

Item Oak() {
    Item tree("oak");
    tree.Put(materials::bark, Trunk(1.25F, 0.13F, 8));
    tree.Put(materials::bark, Branch({0, 0, 0.75F}, {0.42F, 0.2F, 1.35F}, 0.07F));
    tree.Put(materials::bark, Branch({0, 0, 0.85F}, {-0.38F, 0.25F, 1.4F}, 0.06F));
    PutCrown(tree,
             {{{0, 0, 1.95F}, 0.62F, 16},
              {{0.48F, 0.15F, 1.55F}, 0.46F, 12},
              {{-0.42F, 0.32F, 1.6F}, 0.45F, 12},
              {{0.02F, -0.5F, 1.6F}, 0.46F, 10},
              {{0.1F, 0.5F, 1.5F}, 0.38F, 10}},
             0.85F, 10);
    return tree;
}

Item Pine() {
    Item tree("pine");
    tree.Put(materials::bark, Trunk(0.7F, 0.10F, 6));
    for (int tier = 0; tier < 4; ++tier) {
        const auto t = static_cast<float>(tier);
        const float radius = 0.72F - 0.15F * t;
        const float low = 0.42F + 0.52F * t;
        const float height = 0.95F - 0.06F * t;
        // The skirt hangs lower at every other corner.
        Shape skirt = Lathe({{0.35F * radius, low + 0.10F},
                             {radius, low},
                             {0.55F * radius, low + 0.38F * height},
                             {0.0F, low + height}},
                            16, 4, 70);
        skirt.Bend(
            [&](const Vec3& p) {
                const float reach = std::sqrt(p.x * p.x + p.y * p.y) / radius;
                const auto spoke = static_cast<int>(std::lround(std::atan2(p.y, p.x) * 57.29578F / 22.5F));
                const float fall = reach > 0.8F ? (spoke % 2 == 0 ? 0.09F : -0.05F) : 0.0F;
                const float grow = reach > 0.8F ? (spoke % 2 == 0 ? 1.12F : 0.84F) : 1.0F;
                return Vec3{p.x * grow, p.y * grow, p.z - fall};
            },
            70);
        tree.Put(materials::needles, skirt.Turn(Axis::Z, 37.0F * t));
    }
    return tree;
}

Item Birch() {
    Item tree("birch");
    tree.Put(materials::birch, Tube({{0, 0, 0}, {0.03F, 0.02F, 0.7F}, {0, 0.05F, 1.5F}, {0.02F, 0.02F, 2.2F}},
                                    {0.11F, 0.085F, 0.07F, 0.03F}, 7));
    tree.Put(materials::birch, Branch({0.02F, 0.02F, 0.95F}, {0.3F, 0.12F, 1.5F}, 0.035F));
    PutCrown(tree,
             {{{0, 0, 2.35F}, 0.38F, 12},
              {{0.22F, 0.14F, 1.85F}, 0.40F, 14},
              {{-0.24F, 0.02F, 1.75F}, 0.38F, 14},
              {{0.02F, -0.2F, 1.5F}, 0.34F, 8}},
             1.1F, 30);
    return tree;
}

Item Willow() {
    Item tree("willow");
    tree.Put(materials::bark, Tube({{0, 0, 0}, {-0.06F, 0, 0.35F}, {0.03F, 0.02F, 0.8F}, {0, 0, 1.2F}},
                                   {0.24F, 0.16F, 0.13F, 0.10F}, 8));
    PutCrown(tree, {{{0, 0, 1.65F}, 0.58F, 10}, {{0.3F, 0.28F, 1.5F}, 0.40F, 8}, {{-0.32F, 0.2F, 1.5F}, 0.38F, 8}},
             0.72F, 50);
    for (int i = 0; i < 14; ++i) {
        const float around = 360.0F / 14.0F * static_cast<float>(i);
        const float reach = Between(0.60F, 0.78F, 51, i);
        Shape curtain = Card(0.46F, 1.15F, plants::willowTwigs).Move(0, reach, Between(0.28F, 0.5F, 52, i));
        const Vec3 out{-SinDegrees(around) * 0.6F, CosDegrees(around) * 0.6F, 0.8F};
        tree.Put(materials::flora, curtain.Turn(Axis::Z, around).Light(out));
    }
    return tree;
}

Item DeadTree() {
    Item tree("dead_tree");
    tree.Put(materials::bark, Trunk(1.3F, 0.12F, 7));
    const auto branch = [&](const std::vector<Vec3>& path, float radius) {
        std::vector<float> radii;
        for (std::size_t i = 0; i < path.size(); ++i)
            radii.push_back(radius * (1.0F - 0.9F * static_cast<float>(i) / static_cast<float>(path.size() - 1)));
        tree.Put(materials::bark, Tube(path, radii, 5));
    };
    branch({{0, 0, 1.2F}, {0.1F, 0, 1.6F}, {0.05F, 0.15F, 2.0F}, {0.2F, 0.2F, 2.35F}}, 0.09F);
    branch({{0, 0, 0.9F}, {0.35F, 0.1F, 1.2F}, {0.5F, 0.1F, 1.6F}, {0.75F, 0.2F, 1.8F}}, 0.07F);
    branch({{0, 0, 1.1F}, {-0.3F, 0.2F, 1.4F}, {-0.42F, 0.2F, 1.8F}, {-0.6F, 0.3F, 1.95F}}, 0.07F);
    branch({{0.42F, 0.1F, 1.4F}, {0.4F, -0.15F, 1.7F}, {0.5F, -0.25F, 1.95F}}, 0.04F);
    branch({{-0.35F, 0.2F, 1.6F}, {-0.2F, 0.35F, 1.85F}, {-0.25F, 0.45F, 2.1F}}, 0.04F);
    branch({{0, 0, 0.8F}, {0.05F, -0.3F, 1.05F}, {0, -0.5F, 1.4F}}, 0.05F);
    return tree;
}

Item Palm() {
    Item tree("palm");
    tree.Put(materials::bark, Tube({{0, 0, 0}, {0.10F, 0.04F, 0.6F}, {0.16F, 0.06F, 1.2F}, {0.12F, 0.06F, 1.85F}},
                                   {0.14F, 0.09F, 0.08F, 0.07F}, 7, 2.0F));
    for (int i = 0; i < 9; ++i) {
        const float length = Between(0.85F, 1.1F, 60, i);
        Shape frond = Sheet(2, 5, [&](float s, float t) {
            const float width = 0.15F * std::sin(3.0F * (0.08F + 0.92F * t)) + 0.01F;
            const float side = 2.0F * s - 1.0F;
            return Vec3{-side * width, length * t * (1.0F - 0.18F * t),
                        0.55F * t - 0.95F * t * t - 0.05F * std::abs(side)};
        });
        tree.Put(materials::needles, frond.Uv(0.25F, -0.8F, 0, 0.9F)
                                         .TwoSided()
                                         .Turn(Axis::Z, 40.0F * static_cast<float>(i))
                                         .Move(0.12F, 0.06F, 1.85F));
    }
    for (int i = 0; i < 3; ++i)
        tree.Paint(Brown, Blob(0.09F, 1, 0, 1)
                              .Move(0.12F + 0.1F * CosDegrees(120.0F * static_cast<float>(i) + 20),
                                    0.06F + 0.1F * SinDegrees(120.0F * static_cast<float>(i) + 20), 1.74F));
    return tree;
}

Item Stump() {
    Item stump("stump");
    stump.Put(materials::bark, Lathe({{0.40F, 0}, {0.30F, 0.08F}, {0.26F, 0.30F}}, 10, 3)
                                   .Bend(
                                       [](const Vec3& p) {
                                           const float ridge = 1.0F + 0.10F * std::sin(5.0F * std::atan2(p.y, p.x));
                                           return Vec3{p.x * ridge, p.y * ridge, p.z};
                                       },
                                       60));
    stump.Put(materials::wood, Disc(0.26F, 10).Scale(1.05F, 1.05F, 1).Move(0, 0, 0.295F));
    // An axe left in it.
    stump.Put(materials::wood, Tube({{-0.02F, 0, 0.40F}, {-0.20F, 0.16F, 0.56F}, {-0.36F, 0.32F, 0.64F}}, 0.022F, 5));
    stump.Put(materials::metal, Extrude({{-0.05F, -0.02F}, {0.05F, -0.02F}, {0.04F, 0.16F}, {-0.04F, 0.16F}}, 0.035F)
                                    .Turn(Axis::Z, -42)
                                    .Move(0.02F, -0.02F, 0.28F));
    return stump;
}

}  // namespace

std::vector<Item> TreeItems() {
    return {Oak(), Pine(), Birch(), Willow(), DeadTree(), Palm(), Stump()};
}

}  // namespace items
