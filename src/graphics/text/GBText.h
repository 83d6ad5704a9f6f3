#pragma once
// A piece of text on the screen: one quad per character, rebuilt only when the text or its layout changed. Main thread.

#include <memory>
#include <string>

#include "diag/Vary.h"
#include "graphics/device/DXGVert.h"
#include "graphics/text/TextLayout.h"

namespace G {

struct FontAtlas;

class Text {
  public:
    Text();
    ~Text();
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;

    void SetText(const Vary& content);
    void SetText(const ColouredText& content);
    void SetPosition(float x, float y);  // of the first line's top left corner, in pixels
    void SetSize(float size);            // of a line and of each character's square, in pixels
    // At most 31 characters of name, empty for the default face; the size that the font is drawn for, at least 2, which
    // SetSize stretches.
    void SetFont(const std::string& faceName, float size, bool centred);
    void SetWrapWidth(float width);       // in pixels; 0: none
    void SetFixedAdvance(float advance);  // of centred fonts, as a fraction of the size
    void SetDynamic(bool isDynamic) { dynamic = isDynamic; }

    // Width and height of the wrapped text in pixels, 0 when the font cannot be had; keeps the height.
    void Measure(float& width, float& height);
    [[nodiscard]] float Height() const { return height; }  // as last measured or drawn
    [[nodiscard]] const std::string& Content() const { return text.text; }
    [[nodiscard]] float X() const { return x; }
    [[nodiscard]] float Y() const { return y; }

    // Nothing for an empty text. Leaves face culling off.
    void Draw();
    // Gives the memory of the quads back until the next drawing: those of the longest lines take megabytes.
    void ReleaseQuads();

  private:
    // Takes over a value that the quads depend on.
    template <typename Value>
    void Change(Value& field, const Value& value) {
        if (field == value) return;
        field = value;
        built = false;
    }
    [[nodiscard]] TextMetrics MetricsIn(const FontAtlas& font) const;
    bool BuildQuads(const FontAtlas& font);
    bool MakeRoom();

    ColouredText text;
    float x = 0.0F;
    float y = 0.0F;
    float wrapWidth = 0.0F;
    float size = 16.0F;
    float fixedAdvance = 0.5F;
    float fontSize = 16.0F;
    std::string faceName;
    bool centred = false;
    std::shared_ptr<const FontAtlas> atlas;  // the one that the quads were built for
    bool dynamic = false;
    float height = 0.0F;
    DXG::VertexBuffer quads;
    unsigned vertexCount = 0;
    bool built = false;  // the quads show the text as it is
};

// Draws a text at once with a process-wide Text made on first use.
void DrawFreeText(const ColouredText& text, float x, float y, float size, const std::string& faceName, bool centred);

}  // namespace G
