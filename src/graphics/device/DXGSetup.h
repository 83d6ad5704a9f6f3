#pragma once
// What the caller of DXG::Init asks for.

namespace DXG {

struct Setup {
    unsigned adapter = 0;
    bool fullscreen = false;
    bool colour32 = false;  // in a window: replaced by whether the desktop has 32 bits per pixel
    unsigned width = 0;     // of the back buffer in pixels
    unsigned height = 0;
    bool tripleBuffer = false;
    unsigned vertexProcessing = 0;  // 0 software, 1 mixed, 2 hardware
    bool multithreaded = false;
    bool vsync = false;
    bool stencil = false;  // cleared by Init when there is none
};

}  // namespace DXG
