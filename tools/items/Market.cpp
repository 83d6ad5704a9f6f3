#include <array>
#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::metal;
using materials::planks;
using materials::wood;

Shape Staves(float height) {
    const float r = 0.24F;
    return Lathe({{r, 0},
                  {r * 1.14F, height * 0.25F},
                  {r * 1.2F, height * 0.5F},
                  {r * 1.14F, height * 0.75F},
                  {r, height}},
                 12, 1, 60)
        .Uv(3, 0.9F);
}

// Planks run along u; staves stand, so the picture is turned.
Shape Upright(Shape shape) {
    for (Corner& corner : shape.corners)
        std::swap(corner.u, corner.v);
    return shape;
}

void PutBarrel(Item& item, bool open) {
    item.Put(planks, Upright(Staves(0.66F)));
    for (const float z : {0.08F, 0.24F, 0.42F, 0.58F}) {
        const float radius = 0.245F + 0.048F * (1.0F - std::abs(z - 0.33F) * 3.0F) + 0.004F;
        item.Put(metal, Lathe({{radius, z - 0.025F}, {radius, z + 0.025F}}, 12, 3));
    }
    item.Put(planks, Lathe({{0.24F, 0.66F}, {0.20F, 0.66F}, {0.19F, 0.60F}}, 12, 1, 20));
    if (!open) item.Put(planks, Disc(0.21F, 12).Move(0, 0, 0.63F));
}

// Full of apples.
Item Barrel() {
    Item barrel("barrel");
    PutBarrel(barrel, true);
    barrel.Paint(DarkBrown, Disc(0.20F, 10).Move(0, 0, 0.58F));
    for (int i = 0; i < 8; ++i) {
        const float around = 51.4F * static_cast<float>(i);
        const float reach = i == 7 ? 0.0F : 0.125F;
        barrel.Paint(i % 3 == 1 ? Lime : Red, Ball(0.07F, 7).Move(reach * CosDegrees(around),
                                                                  reach * SinDegrees(around), i == 7 ? 0.70F : 0.64F));
    }
    return barrel;
}

Item ClosedBarrel() {
    Item barrel("closed_barrel");
    PutBarrel(barrel, false);
    barrel.Put(wood, Cylinder(0.03F, 0.10F, 6).Turn(Axis::X, -90).Move(0, 0.26F, 0.16F));
    return barrel;
}

void PutCrate(Item& item, float size, float height) {
    item.Put(planks, Box(size * 0.94F, size * 0.94F, height * 0.96F, 1.8F).Move(0, 0, height * 0.02F));
    const float e = size / 2.0F - 0.03F;
    for (const float x : {-e, e})
        for (const float y : {-e, e})
            item.Put(wood, Box(0.07F, 0.07F, height).Move(x, y, 0));
    for (const float side : {-e, e})
        for (const float z : {0.0F, height - 0.06F})
            item.Put(wood, Box(size, 0.065F, 0.06F).Move(0, side, z))
                .Put(wood, Box(0.065F, size, 0.06F).Move(side, 0, z));
}

Item Crate() {
    Item crate("crate");
    PutCrate(crate, 0.60F, 0.52F);
    crate.Put(wood, Box(0.70F, 0.03F, 0.06F).Turn(Axis::Y, 38).Move(0, 0.285F, 0.24F));
    crate.Put(wood, Box(0.03F, 0.70F, 0.06F).Turn(Axis::X, 38).Move(0.285F, 0, 0.24F));
    crate.Put(planks, Block(0.30F, 0.30F, 0.26F, 0.012F, 2.0F).Turn(Axis::Z, 24).Move(-0.06F, -0.06F, 0.52F));
    return crate;
}

Item FruitCrate() {
    Item crate("fruit_crate");
    for (const float z : {0.02F, 0.15F})
        for (const float side : {-0.24F, 0.24F})
            crate.Put(planks, Box(0.66F, 0.03F, 0.11F).Move(0, side, z))
                .Put(planks, Box(0.03F, 0.50F, 0.11F).Move(side * 1.33F, 0, z));
    for (const float x : {-0.31F, 0.31F})
        for (const float y : {-0.22F, 0.22F})
            crate.Put(wood, Box(0.05F, 0.05F, 0.28F).Move(x, y, 0));
    const Patch& p = pictures::fruit;
    crate.Put(materials::signs, Sheet(5, 4, [](float s, float t) {
                                    const float bump = 0.03F * std::sin(16.0F * s) * std::sin(14.0F * t);
                                    return Vec3{0.60F * (s - 0.5F), 0.46F * (t - 0.5F),
                                                0.22F + 0.10F * std::sin(3.1F * s) * std::sin(3.1F * t) + bump};
                                }).Uv(p.right - p.left, p.bottom - p.top, p.left, p.top));
    return crate;
}

Item Sacks() {
    Item sacks("sacks");
    const auto sack = [&](float x, float y, float size, unsigned seed) {
        Shape bag = Lathe({{0, 0},
                           {0.20F, 0.01F},
                           {0.235F, 0.14F},
                           {0.19F, 0.34F},
                           {0.07F, 0.43F},
                           {0.06F, 0.46F},
                           {0.12F, 0.55F},
                           {0, 0.50F}},
                          10);
        bag.Bend(
            [seed](const Vec3& p) {
                const float dent =
                    1.0F + 0.06F * std::sin(3.0F * std::atan2(p.y, p.x) + static_cast<float>(seed) + 7.0F * p.z);
                return Vec3{p.x * dent, p.y * dent, p.z};
            },
            80);
        sacks.Paint(Tan, bag.Scale(size).Move(x, y, 0));
        sacks.Paint(DarkBrown, Lathe({{0.075F, 0.43F}, {0.075F, 0.455F}}, 8).Scale(size).Move(x, y, 0));
    };
    sack(-0.18F, -0.12F, 1.0F, 1);
    sack(0.20F, -0.06F, 0.86F, 3);
    sack(-0.02F, 0.24F, 0.78F, 5);
    return sacks;
}

Item Basket() {
    Item basket("basket");
    basket.Put(materials::wicker,
               Lathe({{0, 0}, {0.20F, 0}, {0.29F, 0.22F}, {0.31F, 0.24F}, {0.26F, 0.24F}, {0.22F, 0.14F}}, 12, 3));
    basket.Put(wood, Tube({{0, -0.28F, 0.22F}, {0, -0.22F, 0.42F}, {0, 0, 0.50F}, {0, 0.22F, 0.42F}, {0, 0.28F, 0.22F}},
                          0.018F, 5));
    for (int i = 0; i < 7; ++i) {
        const float around = 60.0F * static_cast<float>(i);
        const float reach = i == 6 ? 0.0F : 0.15F;
        basket.Paint(i % 2 == 0 ? Bread : Orange,
                     Blob(0.085F, 1, 0.05F, 6)
                         .Scale(1.2F, 0.9F, 0.8F)
                         .Turn(Axis::Z, around)
                         .Move(reach * CosDegrees(around), reach * SinDegrees(around), i == 6 ? 0.28F : 0.22F));
    }
    return basket;
}

// A counter under a striped awning, open toward +y.
Item Stall() {
    Item stall("stall");
    for (const float x : {-0.45F, 0.45F}) {
        stall.Put(wood, Box(0.05F, 0.05F, 1.38F).Move(x, -0.38F, 0))
            .Put(wood, Box(0.05F, 0.05F, 1.12F).Move(x, 0.30F, 0));
        stall.Put(planks, Box(0.04F, 0.50F, 0.44F).Move(x * 0.98F, 0.05F, 0.02F));
    }
    stall.Put(planks, Block(0.92F, 0.05F, 0.44F, 0.01F, 1.1F).Move(0, 0.30F, 0.02F));
    stall.Put(planks, Block(0.98F, 0.62F, 0.05F, 0.012F, 1.1F).Move(0, 0.06F, 0.46F));
    const auto heap = [&](float x, const Patch& p) {
        stall.Put(wood, Box(0.27F, 0.36F, 0.08F).Turn(Axis::X, 10).Move(x, 0.12F, 0.52F));
        stall.Put(materials::signs, Sheet(3, 3,
                                          [](float s, float t) {
                                              return Vec3{0.24F * (s - 0.5F), 0.32F * (t - 0.5F),
                                                          0.07F * std::sin(3.1F * s) * std::sin(3.1F * t)};
                                          })
                                        .Uv(p.right - p.left, p.bottom - p.top, p.left, p.top)
                                        .Turn(Axis::X, 10)
                                        .Move(x, 0.12F, 0.60F));
    };
    heap(-0.30F, pictures::fruit);
    heap(0.30F, pictures::fruit);
    for (int i = 0; i < 3; ++i)
        stall.Paint(
            Bread,
            Blob(0.075F, 1, 0.05F, 2).Scale(1.5F, 0.8F, 0.8F).Move(0, -0.02F + 0.12F * static_cast<float>(i), 0.56F));
    stall.Bone("awning", "stall", {0, 0.40F, 1.10F});
    stall.Put(materials::stripes, Sheet(8, 4,
                                        [](float s, float t) {
                                            const float sag = 0.02F * std::sin(18.8F * s) * std::sin(3.14F * t);
                                            return Vec3{1.06F * (0.5F - s), -0.84F * t, 0.34F * t - sag};
                                        })
                                      .Flip()
                                      .Uv(2, 1)
                                      .TwoSided());
    // Its hem hangs in scallops.
    stall.Put(
        materials::stripes,
        Sheet(
            16, 1,
            [](float s, float t) {
                return Vec3{1.06F * (0.5F - s), 0.012F, (t - 1.0F) * (0.09F + 0.05F * std::abs(std::sin(25.13F * s)))};
            })
            .Flip()
            .Uv(2, 1)
            .TwoSided()
            .Light({0, 0.8F, 0.6F}));
    return stall;
}

void PutWheel(Item& item, float radius) {
    Shape rim = Lathe({{radius * 0.84F, -0.03F},
                       {radius, -0.03F},
                       {radius, 0.03F},
                       {radius * 0.84F, 0.03F},
                       {radius * 0.84F, -0.03F}},
                      14, 4, 20);
    item.Put(wood, rim.Turn(Axis::Y, 90));
    item.Put(metal, Lathe({{0, -0.05F}, {0.055F, -0.05F}, {0.055F, 0.05F}, {0, 0.05F}}, 8, 1, 20).Turn(Axis::Y, 90));
    for (int i = 0; i < 4; ++i)
        item.Put(
            wood,
            Box(0.025F, 0.035F, radius * 1.8F).Move(0, 0, radius * -0.9F).Turn(Axis::X, 45.0F * static_cast<float>(i)));
}

// A hand cart with hay: the wheels are bones.
Item Cart() {
    Item cart("cart");
    cart.Put(planks, Block(0.62F, 0.90F, 0.05F, 0.012F, 1.2F).Move(0, -0.02F, 0.34F));
    for (const float x : {-0.31F, 0.31F})
        cart.Put(planks, Box(0.04F, 0.90F, 0.20F).Turn(Axis::Y, x > 0 ? 12.0F : -12.0F).Move(x, -0.02F, 0.36F));
    cart.Put(planks, Box(0.62F, 0.04F, 0.22F).Move(0, -0.46F, 0.36F));
    for (const float x : {-0.22F, 0.22F})
        cart.Put(wood, Tube({{x, 0.30F, 0.32F}, {x, 0.62F, 0.28F}, {x, 0.80F, 0.18F}}, 0.028F, 5));
    cart.Put(wood, Box(0.03F, 0.05F, 0.32F).Move(0, 0.30F, 0.02F));
    cart.Put(materials::straw, Blob(0.36F, 1, 0.16F, 9, 1.6F).Scale(0.86F, 1.15F, 0.62F).Move(0, -0.06F, 0.44F));
    cart.Put(wood, Tube({{0.05F, 0.1F, 0.5F}, {0.16F, -0.12F, 0.98F}}, 0.018F, 5));
    for (const float side : {-1.0F, 1.0F}) {
        cart.Bone(side < 0 ? "left_wheel" : "right_wheel", "cart", {side * 0.40F, -0.06F, 0.28F}, Axis::X, 20);
        PutWheel(cart, 0.28F);
    }
    return cart;
}

Item Wheelbarrow() {
    Item barrow("wheelbarrow");
    barrow.Put(planks, Lathe({{0.20F, 0}, {0.34F, 0.24F}, {0.31F, 0.24F}, {0.18F, 0.03F}, {0, 0.03F}}, 4, 2, 20)
                           .Turn(Axis::Z, 45)
                           .Scale(0.8F, 1.1F, 1)
                           .Move(0, -0.05F, 0.24F));
    barrow.Paint(DarkBrown, Blob(0.2F, 1, 0.12F, 3).Scale(0.9F, 1.2F, 0.5F).Move(0, -0.05F, 0.42F));
    barrow.Put(materials::flora, Cards(2, 0.34F, 0.30F, plants::bluebells).Move(0, -0.02F, 0.44F));
    for (const float x : {-0.20F, 0.20F}) {
        barrow.Put(wood, Tube({{x * 0.3F, -0.46F, 0.16F}, {x, 0, 0.26F}, {x * 1.2F, 0.48F, 0.36F}}, 0.024F, 5));
        barrow.Put(wood, Box(0.04F, 0.04F, 0.26F).Move(x, 0.20F, 0));
    }
    barrow.Bone("wheel", "wheelbarrow", {0, -0.42F, 0.15F}, Axis::X, 10);
    PutWheel(barrow, 0.15F);
    return barrow;
}

Item Amphora() {
    Item amphora("amphora");
    const auto jar = [&](float x, float y, float size, int colour) {
        amphora.Paint(colour, Lathe({{0.09F, 0},
                                     {0.10F, 0.02F},
                                     {0.22F, 0.26F},
                                     {0.20F, 0.40F},
                                     {0.08F, 0.52F},
                                     {0.075F, 0.60F},
                                     {0.12F, 0.66F},
                                     {0.09F, 0.66F},
                                     {0.05F, 0.56F}},
                                    12)
                                  .Scale(size)
                                  .Move(x, y, 0));
        for (const float side : {-1.0F, 1.0F})
            amphora.Paint(
                colour, Tube({{side * 0.07F, 0, 0.60F}, {side * 0.17F, 0, 0.58F}, {side * 0.17F, 0, 0.44F}}, 0.018F, 4)
                            .Scale(size)
                            .Move(x, y, 0));
        amphora.Paint(Cream, Lathe({{0.213F, 0.30F}, {0.214F, 0.35F}}, 12).Scale(size * 1.02F).Move(x, y, 0));
    };
    jar(-0.12F, -0.10F, 1.0F, Terracotta);
    jar(0.24F, 0.14F, 0.66F, Teal);
    return amphora;
}

}  // namespace

std::vector<Item> MarketItems() {
    return {Barrel(), ClosedBarrel(), Crate(), FruitCrate(),  Sacks(),
            Basket(), Stall(),        Cart(),  Wheelbarrow(), Amphora()};
}

}  // namespace items
