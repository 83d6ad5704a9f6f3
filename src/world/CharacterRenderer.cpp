#include "world/CharacterRenderer.h"

#include "formats/Palette.h"
#include "graphics/device/DXGImmediate.h"
#include "graphics/device/DXGState.h"
#include "session/TolvDataManager.h"
#include "world/Camera.h"

namespace {

constexpr int layers = 9;

// Offsets from the cell's centre.
struct Arrowhead {
    float tip[2];
    float base[2][2];
};

Arrowhead ArrowheadOf(int facing) {
    constexpr float r = 0.2F;
    switch (facing) {
        case 0:
            return {{0, -r}, {{r, r}, {-r, r}}};
        case 2:
            return {{0, r}, {{-r, -r}, {r, -r}}};
        case 3:
            return {{r, 0}, {{-r, r}, {-r, -r}}};
        default:
            return {{-r, 0}, {{r, -r}, {r, r}}};
    }
}

// Digits count as signed bytes; one that names no colour of the table gives black.
std::uint32_t VestColor(std::uint8_t digit) {
    const ColorTable& table = GetColorTable(BodyPart::Vest);
    if (digit >= table.size()) return 0;
    const Color& color = table[digit];
    return static_cast<std::uint32_t>(color.red) << 16 | static_cast<std::uint32_t>(color.green) << 8 | color.blue;
}

}  // namespace

void AppendArrowheads(const Character& character, std::vector<ArrowVertex>& out) {
    const std::uint32_t tipColor = 0xFF000000U | VestColor(character.colorDigits[5]);
    const std::uint32_t bodyColor = 0x7F000000U | VestColor(character.colorDigits[0]);
    const Arrowhead head = ArrowheadOf(character.facing);
    const float x = static_cast<float>(character.gx);
    const float y = static_cast<float>(character.gy);
    for (int layer = 1; layer <= layers; ++layer) {
        const float z = 0.1F * static_cast<float>(layer);
        out.push_back({x + head.tip[0], y + head.tip[1], z, tipColor});
        for (const auto& corner : head.base)
            out.push_back({x + corner[0], y + corner[1], z, bodyColor});
    }
}

void CharacterRenderer::Draw(const ViewCell& view) {
    DXG::SetWorld(Identity());
    DXG::SetState(DXG::alphaBlend, true);
    DXG::UnbindTexture(0);
    WorldCamera().Apply();
    arrows.clear();
    for (const Character& character : TolvDataManager::Default().GetCharacters())
        if (IsNearView(view, character.gx, character.gy)) AppendArrowheads(character, arrows);
    DXG::IMBegin(DXG::primitiveTriangles);
    DXG::IMNormal(0.0F, 0.0F, 1.0F);
    for (const ArrowVertex& vertex : arrows) {
        DXG::IMColor(vertex.color);
        DXG::IMPosition(vertex.x, vertex.y, vertex.z);
    }
    DXG::IMEnd();
}
