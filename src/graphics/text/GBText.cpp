#include "graphics/text/GBText.h"

#include <algorithm>
#include <cstring>

#include "diag/CMemMan.h"
#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGShader.h"
#include "graphics/device/DXGState.h"
#include "graphics/text/GBFont.h"
#include "platform/Caps.h"

namespace G {
namespace {

constexpr unsigned cullNone = 2;

// What all texts share during one life of the graphics foundation.
struct SharedParts {
    Shader* shader = nullptr;
    Text* freeText = nullptr;
};
SharedParts sharedParts;

void ReleaseSharedParts() {
    SharedParts& parts = sharedParts;
    if (parts.freeText) delete2(parts.freeText, "GBText", __LINE__);
    if (parts.shader) delete2(parts.shader, "GBText", __LINE__);
    parts = SharedParts();
}

SharedParts& HookedParts() {
    static bool hooked = false;  // for the whole process, as the foundation keeps its hooks
    if (!hooked) DXG::AddShutdownHook(&ReleaseSharedParts);
    hooked = true;
    return sharedParts;
}

// Made on first use; one that does not load leaves the drawing to the fixed-function stages.
Shader& TextShader() {
    SharedParts& parts = HookedParts();
    if (!parts.shader) {
        parts.shader = new2<Shader>({"G::Shader", "G::Shader", "GBText", __LINE__});
        parts.shader->Load("", "data\\shaders\\gbfont");
    }
    return *parts.shader;
}

const DXG::VertexFormat& TextVertexFormat() {
    static const DXG::VertexFormat format = {{1, 0}, {4, 2}, {1, 3}};
    return format;
}

}  // namespace

Text::Text() = default;

Text::~Text() {
    if (!DXG::IsInitialized()) ReportWithStack("BAD: a G::Text is being destructed, but graphics is not inited...\n");
}

void Text::SetText(const Vary& content) {
    Change(text, ColouredText{content.AsString(), {}});
}
void Text::SetText(const ColouredText& content) {
    Change(text, content);
}

void Text::SetPosition(float newX, float newY) {
    Change(x, newX);
    Change(y, newY);
}

void Text::SetSize(float newSize) {
    Change(size, newSize);
}

void Text::SetFont(const std::string& newFace, float newSize, bool isCentred) {
    Change(faceName, newFace);
    Change(fontSize, newSize);
    Change(centred, isCentred);
}

void Text::SetWrapWidth(float width) {
    Change(wrapWidth, width);
}
void Text::SetFixedAdvance(float advance) {
    Change(fixedAdvance, advance);
}

TextMetrics Text::MetricsIn(const FontAtlas& font) const {
    return {font.widths, font.pixelHeight, centred, size, fixedAdvance};
}

void Text::Measure(float& measuredWidth, float& measuredHeight) {
    TextExtent extent;
    if (const auto font = text.text.empty() ? nullptr : GetFont(faceName, fontSize, centred))
        extent = ExtentOf(WrapText(text.text, MetricsIn(*font), wrapWidth), size);
    measuredWidth = extent.width;
    measuredHeight = extent.height;
    height = extent.height;
}

void Text::Draw() {
    if (text.text.empty()) return;
    const auto font = GetFont(faceName, fontSize, centred);
    if (!font) return;  // before the shader: a text drawn too early must not leave one that never loaded
    Shader& shader = TextShader();
    if (font != atlas || !built || vertexCount == 0) {
        // The buffer of an atlas that went with its device went too.
        if (atlas && !atlas->texture.IsLoaded()) quads = DXG::VertexBuffer();
        atlas = font;
        built = BuildQuads(*font);
        if (!built) vertexCount = 0;
    }
    if (vertexCount == 0) return;
    DXG::SetCullMode(cullNone);
    font->texture.Set(0);
    quads.Set();
    shader.Set();
    DXG::DrawTriangles(0, vertexCount / 3);
}

void Text::ReleaseQuads() {
    if (vertexCount == 0) return;
    quads = DXG::VertexBuffer();
    vertexCount = 0;
}

bool Text::MakeRoom() {
    const std::size_t characters = std::min(text.text.size(), caps::textCharacters);
    if (quads.Count() >= characters * verticesPerCharacter && quads.IsCreated()) return true;
    const auto capacity = static_cast<unsigned>((characters * 3 + 96) * 2);
    if (quads.Create(capacity, TextVertexFormat(), sizeof(TextVertex), dynamic, true)) return true;
    WriteReport(errorLog, "Failed to make G::Text's VB...\n  -call stack:", "", false);
    return false;
}

bool Text::BuildQuads(const FontAtlas& font) {
    const TextMetrics metrics = MetricsIn(font);
    const std::vector<TextLine> lines = WrapText(text.text, metrics, wrapWidth);
    height = ExtentOf(lines, size).height;
    if (!MakeRoom()) return false;
    const std::vector<TextVertex> vertices = BuildTextQuads(text, lines, metrics, x, y);
    const DXG::BufferLock lock = quads.Lock(true);
    if (!lock) {
        errorLog.Write("Failed to lock G::Text's VB...\n");
        return false;
    }
    vertexCount = static_cast<unsigned>(std::min<std::size_t>(vertices.size(), quads.Count()));
    if (vertexCount > 0) std::memcpy(lock.Data(), vertices.data(), vertexCount * sizeof(TextVertex));
    return true;
}

void DrawFreeText(const ColouredText& text, float x, float y, float size, const std::string& faceName, bool centred) {
    SharedParts& parts = HookedParts();
    if (!parts.freeText) {
        parts.freeText = new2<Text>({"G::Text", "G::Text", "GBText", __LINE__});
        parts.freeText->SetDynamic(true);
    }
    parts.freeText->SetText(text);
    parts.freeText->SetPosition(x, y);
    parts.freeText->SetSize(size);
    parts.freeText->SetFont(faceName, size, centred);
    parts.freeText->Draw();
}

}  // namespace G
