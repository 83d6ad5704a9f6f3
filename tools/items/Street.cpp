#include <cmath>

#include "tools/items/Items.h"

namespace items {

namespace {

using materials::metal;
using materials::planks;
using materials::wood;

// A lantern of glass between posts under a roof, hanging from its ring at the origin.
void PutLantern(Item& item, float size) {
    const auto part = [size](Shape shape) { return shape.Scale(size); };
    item.Put(metal, part(Tube({{0, 0, 0}, {0, 0, -0.06F}}, 0.012F, 4)));
    item.Put(metal, part(Lathe({{0.14F, -0.12F}, {0.13F, -0.11F}, {0.05F, -0.06F}, {0, -0.05F}}, 6)));
    item.Paint(Lamplight, part(Lathe({{0.075F, -0.32F}, {0.105F, -0.12F}}, 6, 1, 20)));
    item.Put(metal, part(Lathe({{0, -0.36F}, {0.09F, -0.35F}, {0.09F, -0.31F}}, 6)));
    for (int i = 0; i < 6; ++i)
        item.Put(metal, part(Tube({{0.078F, 0, -0.32F}, {0.108F, 0, -0.12F}}, 0.011F, 3)
                                 .Turn(Axis::Z, 60.0F * static_cast<float>(i))));
}

// A street lamp: the lantern hangs on a bone of its own and can swing.
Item Lamp() {
    Item lamp("lamp");
    lamp.Put(materials::stone, Lathe({{0.20F, 0}, {0.20F, 0.10F}, {0.14F, 0.14F}}, 8, 2));
    lamp.Put(metal, Lathe({{0.10F, 0.13F},
                           {0.10F, 0.22F},
                           {0.05F, 0.30F},
                           {0.042F, 1.0F},
                           {0.065F, 1.03F},
                           {0.065F, 1.07F},
                           {0.035F, 1.10F},
                           {0.03F, 1.78F},
                           {0.05F, 1.82F},
                           {0, 1.88F}},
                          8));
    lamp.Put(metal, Tube({{0, 0, 1.46F}, {0.16F, 0, 1.66F}, {0.32F, 0, 1.70F}, {0.37F, 0, 1.64F}}, 0.022F, 5));
    lamp.Put(metal, Tube({{0, 0, 1.58F}, {-0.14F, 0, 1.70F}, {-0.20F, 0, 1.62F}}, 0.018F, 5));
    lamp.Bone("lantern", "lamp", {0.37F, 0, 1.64F}, Axis::Z, 15);
    PutLantern(lamp, 1.15F);
    return lamp;
}

// A torch on a post, its flame on a bone.
Item Torch() {
    Item torch("torch");
    torch.Put(wood, Tube({{0, 0, 0}, {0.02F, 0, 0.6F}, {0, 0, 1.05F}}, {0.06F, 0.045F, 0.05F}, 6));
    for (int i = 0; i < 3; ++i)
        torch.Put(materials::stone, Blob(0.09F, 0, 0.1F, 4)
                                        .Move(0.12F * CosDegrees(120.0F * static_cast<float>(i)),
                                              0.12F * SinDegrees(120.0F * static_cast<float>(i)), 0.04F));
    torch.Put(metal, Lathe({{0.05F, 0.98F}, {0.11F, 1.16F}, {0.09F, 1.16F}, {0.04F, 1.04F}}, 8));
    torch.Paint(Ember, Blob(0.08F, 1, 0.1F, 3).Move(0, 0, 1.14F));
    torch.Bone("flame", "torch", {0, 0, 1.10F});
    torch.Put(materials::fire, Cards(3, 0.26F, 0.44F, {}));
    return torch;
}

// A well under a shingled roof: the windlass and the bucket are bones.
Item Well() {
    Item well("well");
    well.Put(materials::masonry, Lathe({{0.42F, 0}, {0.42F, 0.40F}}, 14, 3).Uv(1, 0.42F));
    well.Put(materials::stone, Lathe({{0.42F, 0.40F}, {0.45F, 0.41F}, {0.45F, 0.47F}, {0.31F, 0.47F}}, 14, 4, 30));
    well.Put(materials::masonry, Lathe({{0.31F, 0.47F}, {0.31F, 0.12F}}, 14, 2).Uv(1, 0.4F));
    well.Put(materials::water, Disc(0.31F, 12).Move(0, 0, 0.20F));
    for (const float x : {-0.38F, 0.38F})
        well.Put(wood, Box(0.07F, 0.09F, 0.90F).Move(x, 0, 0.44F));
    for (const float side : {-1.0F, 1.0F}) {
        Shape slope =
            Block(1.04F, 0.48F, 0.035F, 0.01F).Uv(1, 1).Turn(Axis::X, side * -38.0F).Move(0, side * 0.19F, 1.36F);
        Shape roof = Sheet(1, 1, [side](float s, float t) {
            return Vec3{side * (s - 0.5F) * -1.06F, side * (0.40F - 0.40F * t), 1.23F + 0.34F * t};
        });
        well.Put(materials::tiles, roof.Uv(1.2F, 0.8F));
        well.Put(planks, slope.Move(0, 0, -0.03F));
    }
    well.Put(wood, Box(1.06F, 0.07F, 0.05F).Move(0, 0, 1.55F));
    well.Bone("windlass", "well", {0, 0, 0.84F});
    well.Put(wood, Cylinder(0.07F, 0.68F, 8).Turn(Axis::Y, 90).Move(-0.34F, 0, 0));
    well.Paint(Tan, Cylinder(0.082F, 0.22F, 8).Turn(Axis::Y, 90).Move(-0.11F, 0, 0));
    well.Put(metal, Tube({{0.34F, 0, 0}, {0.48F, 0, 0}, {0.48F, 0.16F, 0.02F}, {0.58F, 0.16F, 0.02F}}, 0.018F, 5));
    well.Bone("bucket", "well", {0.04F, 0.08F, 0.56F});
    well.Put(planks, Lathe({{0, 0}, {0.08F, 0}, {0.11F, 0.16F}, {0.09F, 0.16F}, {0.08F, 0.06F}}, 9, 2));
    well.Paint(Tan, Tube({{0, 0, 0.28F}, {0, -0.04F, 0.14F}}, 0.012F, 4));
    well.Put(metal, Tube({{-0.10F, 0, 0.15F}, {-0.06F, 0, 0.24F}, {0, 0, 0.27F}, {0.06F, 0, 0.24F}, {0.10F, 0, 0.15F}},
                         0.01F, 4));
    return well;
}

// Boards that point three ways, each on its own bone.
Item Signpost() {
    Item sign("signpost");
    sign.Put(wood, Block(0.10F, 0.10F, 1.42F, 0.02F));
    sign.Paint(DarkBrown, Lathe({{0.10F, 1.42F}, {0, 1.52F}}, 4).Turn(Axis::Z, 45));
    for (int i = 0; i < 4; ++i)
        sign.Put(materials::stone, Blob(0.10F, 0, 0.15F, 7)
                                       .Move(0.14F * CosDegrees(90.0F * static_cast<float>(i)),
                                             0.14F * SinDegrees(90.0F * static_cast<float>(i)), 0.03F));
    const auto board = [&](const char* bone, float height, float degrees, int colour) {
        sign.Bone(bone, "signpost", {0, 0, height}, Axis::Z, degrees);
        sign.Put(planks,
                 Extrude({{-0.12F, -0.09F}, {0.42F, -0.09F}, {0.54F, 0}, {0.42F, 0.09F}, {-0.12F, 0.09F}}, 0.05F, 1.4F)
                     .Move(0, 0.07F, 0));
        for (int i = 0; i < 3; ++i)
            sign.Paint(colour, Box(0.09F - 0.015F * static_cast<float>(i), 0.02F, 0.035F)
                                   .Move(0.02F + 0.13F * static_cast<float>(i), 0.09F, -0.02F));
    };
    board("upper_board", 1.28F, -18, Cream);
    board("middle_board", 1.04F, 78, Cream);
    board("lower_board", 0.82F, 166, DarkBrown);
    return sign;
}

// A shop sign on a post; the board swings.
Item ShopSign(const char* name, const Patch& picture) {
    Item sign(name);
    sign.Put(wood, Block(0.09F, 0.09F, 1.55F, 0.015F).Move(-0.34F, 0, 0));
    sign.Put(metal, Box(0.72F, 0.03F, 0.03F).Move(0.02F, 0, 1.44F));
    sign.Put(metal, Tube({{-0.30F, 0, 1.16F}, {-0.16F, 0, 1.24F}, {-0.06F, 0, 1.44F}}, 0.014F, 4));
    sign.Bone(std::string(name) + "_board", name, {0.08F, 0, 1.44F});
    for (const float x : {-0.16F, 0.16F})
        sign.Put(metal, Box(0.015F, 0.015F, 0.07F).Move(x, 0, -0.07F));
    sign.Put(wood, Block(0.48F, 0.05F, 0.48F, 0.012F).Move(0, 0, -0.55F));
    sign.Put(materials::signs, Picture(0.42F, 0.42F, picture).Move(0, 0.028F, -0.52F));
    sign.Put(materials::signs, Picture(0.42F, 0.42F, picture).Turn(Axis::Z, 180).Move(0, -0.028F, -0.52F));
    return sign;
}

Item NoticeBoard() {
    Item board("notice_board");
    for (const float x : {-0.40F, 0.40F})
        board.Put(wood, Block(0.08F, 0.08F, 1.18F, 0.012F).Move(x, 0, 0));
    board.Put(planks, Block(0.80F, 0.05F, 0.62F, 0.01F, 1.3F).Move(0, 0, 0.42F));
    for (const float side : {-1.0F, 1.0F})
        board.Put(planks, Block(1.0F, 0.22F, 0.03F, 0.008F).Turn(Axis::X, side * -32.0F).Move(0, side * 0.08F, 1.16F));
    const auto paper = [&](const Patch& patch, float x, float z, float size, float lean) {
        board.Put(materials::signs, Picture(size, size, patch).Turn(Axis::Y, lean).Move(x, 0.03F, z));
    };
    paper(pictures::letter, -0.22F, 0.60F, 0.28F, 4);
    paper(pictures::map, 0.10F, 0.66F, 0.30F, -3);
    paper(pictures::letter, 0.24F, 0.46F, 0.20F, 7);
    paper(pictures::landscape, -0.06F, 0.45F, 0.20F, -6);
    return board;
}

// Cloth on a pole with a cross-bar: the cloth is a bone.
Item Banner() {
    Item banner("banner");
    banner.Put(materials::stone, Block(0.34F, 0.34F, 0.12F, 0.03F));
    banner.Put(wood, Cylinder(0.035F, 2.0F, 7).Move(0, 0, 0.10F));
    banner.Paint(Gold, Lathe({{0.03F, 2.08F}, {0.07F, 2.14F}, {0.03F, 2.20F}, {0, 2.30F}}, 7));
    banner.Put(wood, Cylinder(0.025F, 0.66F, 6).Turn(Axis::Y, 90).Move(-0.33F, 0.04F, 1.98F));
    banner.Bone("cloth", "banner", {0, 0.06F, 1.98F});
    Shape cloth = Sheet(4, 6, [](float s, float t) {
        const float down = 1.0F - t;
        return Vec3{0.58F * (s - 0.5F), 0.05F * std::sin(7.0F * s + 4.0F * down) * down,
                    -1.10F * down + (down > 0.9F ? 0.12F * std::abs(2.0F * s - 1.0F) - 0.05F : 0.0F)};
    });
    const Patch& p = pictures::crest;
    cloth.Flip().Uv(p.right - p.left, p.bottom - p.top, p.left, p.top);
    banner.Put(materials::signs, cloth.TwoSided());
    return banner;
}

// Bunting between posts along x, for feasts.
Item Bunting() {
    Item bunting("bunting");
    bunting.Put(wood, Cylinder(0.035F, 1.45F, 6).Move(-0.46F, 0, 0));
    bunting.Paint(Gold, Blob(0.05F, 0, 0, 1).Move(-0.46F, 0, 1.48F));
    std::vector<Vec3> rope;
    for (int i = 0; i <= 6; ++i) {
        const float s = static_cast<float>(i) / 6.0F;
        rope.push_back({-0.46F + s, 0, 1.40F - 0.9F * s * (1.0F - s)});
    }
    bunting.Paint(Cream, Tube(rope, 0.010F, 3));
    bunting.Bone("flags", "bunting", {0, 0, 0});
    constexpr int colours[] = {Red, Yellow, SkyBlue, Green, Orange, Violet};
    for (std::size_t i = 0; i < 6; ++i) {
        const Vec3 middle = (rope[i] + rope[i + 1]) / 2.0F;
        Shape flag;
        flag.Triangle({middle + Vec3{-0.075F, 0, 0}, {}, 0, 0}, {middle + Vec3{0, 0.03F, -0.20F}, {}, 0, 0},
                      {middle + Vec3{0.075F, 0, 0}, {}, 0, 0});
        bunting.Paint(colours[i], flag.Smooth(0).TwoSided().Light({0, 0.7F, 0.7F}));
    }
    return bunting;
}

// A post and two rails along x or, from the same pieces, along y; sections join at the cell's edges.
void PutFence(Item& fence) {
    for (const float x : {-0.25F, 0.25F}) {
        fence.Put(wood, Block(0.09F, 0.09F, 0.62F, 0.015F).Move(x, 0, 0));
        fence.Put(wood, Lathe({{0.065F, 0.62F}, {0, 0.68F}}, 4).Turn(Axis::Z, 45).Move(x, 0, 0));
    }
    for (const float z : {0.22F, 0.44F})
        fence.Put(planks, Box(1.0F, 0.045F, 0.09F, 0.9F).Move(0, 0.05F, z));
}

Item Fence() {
    Item fence("fence");
    PutFence(fence);
    return fence;
}

Item FenceEast() {
    Item fence("fence_east");
    fence.Bone("turned", "fence_east", {0, 0, 0}, Axis::Z, -90);
    PutFence(fence);
    return fence;
}

// A sundial on a pedestal.
Item Sundial() {
    Item sundial("sundial");
    sundial.Put(materials::stone, Lathe({{0.30F, 0},
                                         {0.30F, 0.08F},
                                         {0.20F, 0.12F},
                                         {0.13F, 0.24F},
                                         {0.12F, 0.50F},
                                         {0.18F, 0.60F},
                                         {0.30F, 0.63F},
                                         {0.30F, 0.69F}},
                                        12, 3, 35));
    sundial.Put(materials::stone, Disc(0.30F, 12).Move(0, 0, 0.69F));
    const Patch& p = pictures::sundial;
    sundial.Put(materials::signs,
                Disc(0.27F, 14).Uv(p.right - p.left, p.bottom - p.top, p.left, p.top).Move(0, 0, 0.70F));
    sundial.Bone("pointer", "sundial", {0, 0, 0.70F}, Axis::Z, 35);
    sundial.Paint(Brass, Extrude({{-0.16F, 0}, {0.16F, 0}, {-0.14F, 0.22F}}, 0.025F));
    return sundial;
}

Item Mailbox() {
    Item box("mailbox");
    box.Put(wood, Block(0.09F, 0.09F, 0.72F, 0.012F));
    box.Paint(Blue, Block(0.26F, 0.42F, 0.18F, 0.02F).Move(0, 0, 0.70F));
    box.Paint(Blue, Cylinder(0.13F, 0.42F, 10).Turn(Axis::X, 90).Move(0, 0.21F, 0.88F));
    box.Paint(Cream, Box(0.16F, 0.02F, 0.04F).Move(0, 0.21F, 0.82F));
    box.Bone("flag", "mailbox", {0.14F, 0.08F, 0.84F}, Axis::X, 0);
    box.Paint(Red, Box(0.025F, 0.04F, 0.24F)).Paint(Red, Box(0.025F, 0.12F, 0.09F).Move(0, 0.05F, 0.17F));
    return box;
}

}  // namespace

std::vector<Item> StreetItems() {
    return {Lamp(),
            Torch(),
            Well(),
            Signpost(),
            ShopSign("bakery_sign", pictures::breadSign),
            ShopSign("inn_sign", pictures::mugSign),
            ShopSign("smithy_sign", pictures::anvilSign),
            NoticeBoard(),
            Banner(),
            Bunting(),
            Fence(),
            FenceEast(),
            Sundial(),
            Mailbox()};
}

}  // namespace items
