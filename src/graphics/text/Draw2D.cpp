#include "graphics/text/Draw2D.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "diag/CallStack.h"
#include "graphics/device/DXGImmediate.h"
#include "graphics/device/DXGState.h"
#include "graphics/device/DXGTexture.h"

namespace G {
namespace {

// Keeps edges off the exact boundary between two pixels.
constexpr float pixelNudge = 0.005F;

struct Corner {
    float x, y, u, v;
    std::uint32_t colour;
};
using Corners = std::array<Corner, 4>;  // clockwise from the top left one

// One fan without shaders and without depth test, which is put back at the end.
class Fan {
  public:
    Fan() : depthTested(DXG::GetState(DXG::depthTest)) {
        DXG::UnbindShaders();
        DXG::SetState(DXG::depthTest, false);
        DXG::IMBegin(DXG::primitiveFan);
    }
    ~Fan() {
        DXG::IMEnd();
        DXG::SetState(DXG::depthTest, depthTested);
    }
    Fan(const Fan&) = delete;
    Fan& operator=(const Fan&) = delete;

    static void Add(const Corner& corner) {
        DXG::IMTexCoord(corner.u, corner.v);
        DXG::IMColor(corner.colour);
        DXG::IMPosition(corner.x + pixelNudge, corner.y + pixelNudge);
    }

  private:
    const bool depthTested;
};

Corners CornersOf(float x, float y, float width, float height, const CornerColours& colours) {
    return {{{x, y, 0.0F, 0.0F, colours.topLeft},
             {x + width, y, 1.0F, 0.0F, colours.topRight},
             {x + width, y + height, 1.0F, 1.0F, colours.bottomRight},
             {x, y + height, 0.0F, 1.0F, colours.bottomLeft}}};
}

CornerColours WhiteWith(float opacity) {
    const float clamped = opacity > 0.0F ? std::min(opacity, 1.0F) : 0.0F;
    const std::uint32_t colour = 0x00FFFFFFU | (static_cast<std::uint32_t>(clamped * 255.0F) << 24U);
    return {colour, colour, colour, colour};
}

void DrawTextured(const DXG::Texture& texture, const Corners& corners) {
    if (!texture.IsLoaded()) {
        ReportWithStack("Error: Attempt to draw using a blank texture.\n");
        return;
    }
    texture.Set(0);
    const Fan fan;
    for (const Corner& corner : corners)
        fan.Add(corner);
}

// Each channel divided by 4 before adding.
std::uint32_t AverageColour(const CornerColours& c) {
    const auto quarter = [](std::uint32_t colour) { return (colour >> 2U) & 0x3F3F3F3FU; };
    return quarter(c.topLeft) + quarter(c.topRight) + quarter(c.bottomRight) + quarter(c.bottomLeft);
}

}  // namespace

void DrawTexture(const DXG::Texture& texture, float x, float y, float opacity) {
    const auto width = static_cast<float>(texture.Width());
    const auto height = static_cast<float>(texture.Height());
    DrawTextured(texture, CornersOf(x, y, width, height, WhiteWith(opacity)));
}

void DrawTextureStretched(const DXG::Texture& texture, float x, float y, float width, float height,
                          const CornerColours& colours) {
    DrawTextured(texture, CornersOf(x, y, width, height, colours));
}

void DrawTextureRotated(const DXG::Texture& texture, float x, float y, float radians, float scale, float opacity) {
    const float width = static_cast<float>(texture.Width()) * scale;
    const float height = static_cast<float>(texture.Height()) * scale;
    const float cosine = std::cos(radians);
    const float sine = std::sin(radians);
    Corners corners = CornersOf(-width / 2, -height / 2, width, height, WhiteWith(opacity));
    for (Corner& corner : corners) {
        const float right = corner.x;
        const float down = corner.y;
        corner.x = x + right * cosine - down * sine;
        corner.y = y + right * sine + down * cosine;
    }
    DrawTextured(texture, corners);
}

void DrawRectangle(float x, float y, float width, float height, const CornerColours& colours) {
    const Corners corners = CornersOf(x, y, width, height, colours);
    DXG::UnbindTexture(0);
    const Fan fan;
    fan.Add({x + width / 2, y + height / 2, 0.5F, 0.5F, AverageColour(colours)});
    for (const Corner& corner : corners)
        fan.Add(corner);
    fan.Add(corners[0]);
}

}  // namespace G
