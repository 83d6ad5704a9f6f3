#pragma once
// A piece of text on the screen: one quad per character, rebuilt only when the text or its layout changed.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "diag/Vary.h"
#include "graphics/device/DXGVert.h"

namespace G {

struct FontAtlas;

// From the character at `index` on, the text has this colour (A8R8G8B8).
struct ColourChange {
    std::uint32_t index = 0;
    std::uint32_t colour = 0;
};

// A text with its colour changes in increasing order, built piece by piece.
struct ColouredText {
    std::string text;
    std::vector<ColourChange> changes;

    ColouredText& Colour(std::uint32_t argb) {
        changes.push_back({static_cast<std::uint32_t>(text.size()), argb});
        return *this;
    }
    ColouredText& Add(const std::string& piece) {
        text += piece;
        return *this;
    }
};

class Text {
  public:
    Text();
    ~Text();
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    void SetText(const Vary& content);
    void SetText(const ColouredText& content);
    void SetPosition(float x, float y);
    void SetSize(float size);  // of a line and a quad, and the size asked of the font
    void SetFont(const std::string& faceName, float size, bool centred);
    void SetWrapWidth(float width);  // 0: none
    void SetFixedAdvance(float advance);
    void SetDynamic(bool isDynamic) { dynamic = isDynamic; }

    // Width and height of the wrapped text in pixels; keeps the height.
    void Measure(float& width, float& height);
    [[nodiscard]] float Height() const { return height; }
    [[nodiscard]] const std::string& Content() const { return text.text; }
    [[nodiscard]] float X() const { return x; }
    [[nodiscard]] float Y() const { return y; }

    void Draw();

  private:
    bool BuildQuads(const FontAtlas& atlas);

    ColouredText text;
    float x = 0.0F;
    float y = 0.0F;
    float wrapWidth = 0.0F;
    float size = 16.0F;
    float fontSize = 16.0F;
    float fixedAdvance = 0.5F;
    std::string faceName;
    bool centred = false;
    std::shared_ptr<const FontAtlas> atlas;
    bool dynamic = false;
    float height = 0.0F;
    DXG::VertexBuffer quads;
    unsigned vertexCount = 0;
    bool built = false;  // the quads show the text as it is
};

// Draws a text at once with a process-wide Text made on first use.
void DrawFreeText(const ColouredText& text, float x, float y, float size, const std::string& faceName, bool centred);

}  // namespace G
