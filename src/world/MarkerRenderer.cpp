#include "world/MarkerRenderer.h"

#include <algorithm>
#include <cmath>

#include "diag/CMemMan.h"
#include "graphics/device/DXGImmediate.h"
#include "graphics/device/DXGState.h"
#include "graphics/device/DXGTexture.h"
#include "platform/Caps.h"
#include "session/TolvDataManager.h"
#include "world/Camera.h"

namespace {

constexpr int segments = 10;
constexpr float radius = 0.45F;
constexpr float pillarHeight = 2.0F;
constexpr float topV = 0.05F;  // below the picture's first rows
constexpr float labelHeight = 1.5F;
constexpr float halfCharacter = 4.0F;       // of a label's line, in pixels
constexpr std::size_t keptLabels = 64;      // more share the last text object
constexpr std::size_t leastCharacters = 8;  // that a label counts for: a short one takes as long as this
constexpr std::uint32_t labelColor = 0xFFFFFFFFU;
constexpr std::uint32_t subLabelColor = 0xFFC8C8C8U;

std::string CentredLine(const std::string& line, std::size_t length) {
    std::string centred((length - line.size()) / 2, ' ');
    centred += line;
    std::replace(centred.begin(), centred.end(), '|', ' ');
    return centred;
}

G::Text* NewLabelText() {
    return new2<G::Text>({"G::Text", "G::Text", "TolvRenderer", __LINE__});
}

}  // namespace

void AppendPillar(int gx, int gy, std::vector<PillarVertex>& out) {
    constexpr float fullTurn = 6.2831855F;
    const auto corner = [&](int segment, float z, float v) {
        const float angle = static_cast<float>(segment) * fullTurn / segments;
        return PillarVertex{static_cast<float>(gx) + radius * std::sin(angle),
                            static_cast<float>(gy) + radius * std::cos(angle), z, 2.0F * angle / fullTurn, v};
    };
    for (int k = 0; k < segments; ++k) {
        const PillarVertex foot = corner(k, 0.0F, 1.0F);
        const PillarVertex nextFoot = corner(k + 1, 0.0F, 1.0F);
        const PillarVertex head = corner(k, pillarHeight, topV);
        const PillarVertex nextHead = corner(k + 1, pillarHeight, topV);
        out.insert(out.end(), {foot, nextFoot, head, nextFoot, head, nextHead});
    }
}

G::ColouredText MarkerLabel(const Marker& marker, std::size_t& length) {
    length = std::max(marker.label.size(), marker.subLabel.size());
    G::ColouredText text;
    text.Colour(labelColor).Add(CentredLine(marker.label, length) + "\n");
    text.Colour(subLabelColor).Add(CentredLine(marker.subLabel, length));
    return text;
}

void MarkerRenderer::Create() {
    if (texture) return;
    texture = new2<DXG::Texture>({"G::Texture", "G::Texture", "TolvRenderer", __LINE__});
    (void)texture->Load("data\\misc\\dream0.png", DXG::TextureType::AsFile, true, true);
    if (texture->IsLoaded()) texture->SetWrap(true, false, true);
    labels.resize(1);
    labels[0].text = NewLabelText();
}

void MarkerRenderer::Destroy() {
    for (const Label& label : labels)
        delete2(label.text, "TolvRenderer", __LINE__);
    labels.clear();
    if (texture) delete2(texture, "TolvRenderer", __LINE__);
    texture = nullptr;
}

void MarkerRenderer::Draw(const ViewCell& view) {
    const std::vector<Marker>& markers = TolvDataManager::Default().GetMarkers();
    if (markers.empty()) return;
    DrawPillars(markers, view);
    std::size_t next = 0;
    std::size_t room = caps::drawnLabelCharacters;
    for (const Marker& marker : markers) {
        if (!IsNearView(view, marker.gx, marker.gy)) continue;
        const std::size_t characters = std::max(marker.label.size() + marker.subLabel.size(), leastCharacters);
        if (characters > room) continue;
        room -= characters;
        if (next == labels.size() && next < keptLabels) labels.push_back({NewLabelText(), {}, {}, 0});
        DrawLabel(labels[next], marker);
        next = std::min(next + 1, keptLabels - 1);
    }
}

void MarkerRenderer::DrawPillars(const std::vector<Marker>& markers, const ViewCell& view) {
    pillars.clear();
    std::size_t count = 0;
    for (const Marker& marker : markers)
        if (IsNearView(view, marker.gx, marker.gy) && count++ < caps::drawnMarkers)
            AppendPillar(marker.gx, marker.gy, pillars);
    DXG::SetWorld(Identity());
    // Without its picture a pillar is plain white.
    if (texture && texture->IsLoaded())
        texture->Set(0);
    else
        DXG::UnbindTexture(0);
    DXG::SetState(DXG::alphaBlend, true);
    DXG::SetCullMode(1);
    DXG::SetState(DXG::depthWrite, false);
    WorldCamera().Apply();
    DXG::IMBegin(DXG::primitiveTriangles);
    DXG::IMColor(1.0F, 1.0F, 1.0F);
    DXG::IMNormal(0.0F, 0.0F, 1.0F);
    for (const PillarVertex& vertex : pillars) {
        DXG::IMTexCoord(vertex.u, vertex.v);
        DXG::IMPosition(vertex.x, vertex.y, vertex.z);
    }
    DXG::IMEnd();
    DXG::SetState(DXG::depthWrite, true);
    DXG::SetCullMode(2);
}

void MarkerRenderer::DrawLabel(Label& label, const Marker& marker) {
    SetWorldViewport();
    WorldCamera().Apply();
    Vec3 screen;
    const Vec3 top{static_cast<float>(marker.gx), static_cast<float>(marker.gy), labelHeight};
    if (!label.text || !ProjectToScreen(top, screen)) return;
    if (label.line != marker.label || label.subLine != marker.subLabel) {
        label.line = marker.label;
        label.subLine = marker.subLabel;
        label.text->SetText(MarkerLabel(marker, label.length));
    }
    label.text->SetPosition(screen.x - halfCharacter * static_cast<float>(label.length), screen.y);
    DXG::Set2DWholeBackBuffer();
    label.text->Draw();
}
