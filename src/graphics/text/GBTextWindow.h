#pragma once
// A scrolling list of text lines in a rectangle of the screen. Main thread.

#include <deque>
#include <string>

#include "graphics/text/GBText.h"

namespace G {

class TextWindow {
  public:
    // The rectangle in pixels; the oldest line goes when there are more than maxLines.
    TextWindow(float x, float y, float width, float height, int maxLines, float fontSize = 16.0F,
               const std::string& faceName = std::string(), bool centred = false, float fixedAdvance = 0.5F);
    ~TextWindow();
    TextWindow(const TextWindow&) = delete;
    TextWindow& operator=(const TextWindow&) = delete;

    // Wrapped at the window's width in whole pixels.
    void AddLine(const ColouredText& text);
    // 0 shows the oldest lines, 1 the newest; clamped.
    void SetScroll(float value);
    [[nodiscard]] float Scroll() const { return scroll; }
    [[nodiscard]] int LineLimit() const { return maxLines; }
    [[nodiscard]] const std::deque<Text*>& Lines() const { return lines; }  // oldest first
    // Leaves the viewport and the 2D projection on the rectangle: callers set their own again.
    void Draw();

  private:
    void LayOut();
    void DeleteOldest();

    std::deque<Text*> lines;  // owned, made by the checked allocator
    int maxLines;
    float x;
    float y;
    float width;
    float height;
    float fontSize;
    std::string faceName;
    bool centred;
    float fixedAdvance;
    float scroll = 1.0F;
};

}  // namespace G
