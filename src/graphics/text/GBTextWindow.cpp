#include "graphics/text/GBTextWindow.h"

#include <algorithm>
#include <cmath>

#include "diag/CMemMan.h"
#include "graphics/device/DXGState.h"

namespace G {

TextWindow::TextWindow(float left, float top, float wide, float high, int lineLimit, float lineFontSize,
                       const std::string& lineFace, bool isCentred, float lineFixedAdvance)
    : maxLines(lineLimit),
      x(left),
      y(top),
      width(wide),
      height(high),
      fontSize(lineFontSize),
      faceName(lineFace),
      centred(isCentred),
      fixedAdvance(lineFixedAdvance) {}

TextWindow::~TextWindow() {
    while (!lines.empty())
        DeleteOldest();
}

void TextWindow::DeleteOldest() {
    delete2(lines.front(), "GBTextWindow", __LINE__);
    lines.pop_front();
}

void TextWindow::AddLine(const ColouredText& text) {
    Text* line = new2<Text>({"G::Text", "G::Text", "GBTextWindow", __LINE__});
    line->SetText(text);
    lines.push_back(line);
    line->SetFont(faceName, fontSize, centred);
    line->SetSize(fontSize);
    line->SetFixedAdvance(fixedAdvance);
    line->SetWrapWidth(std::trunc(width));
    float lineWidth = 0.0F;
    float lineHeight = 0.0F;
    line->Measure(lineWidth, lineHeight);
    if (static_cast<long long>(lines.size()) > maxLines) DeleteOldest();
    LayOut();
}

void TextWindow::SetScroll(float value) {
    scroll = value > 0.0F ? std::min(value, 1.0F) : 0.0F;
    LayOut();
}

void TextWindow::LayOut() {
    float total = 0.0F;
    for (const Text* line : lines)
        total += line->Height();
    const float overflow = std::max(total - height, 0.0F);
    float bottom = y + height + (1.0F - scroll) * overflow;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        const float top = bottom - (*line)->Height();
        (*line)->SetPosition(x, top);
        bottom = top;
    }
}

void TextWindow::Draw() {
    if (lines.empty()) return;
    DXG::Set2D(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)), static_cast<int>(std::lround(width)),
               static_cast<int>(std::lround(height)));
    for (Text* line : lines) {
        if (line->Y() < y + height && line->Y() + line->Height() > y)
            line->Draw();
        else
            line->ReleaseQuads();
    }
}

}  // namespace G
