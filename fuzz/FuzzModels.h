#pragma once
// A device that only records, for the entries that load models.

#include <cstdlib>
#include <iostream>

#include "graphics/device/DXGDevice.h"
#include "graphics/model/GBMesh.h"
#include "platform/scripted/ScriptedDevice.h"

namespace fuzz {

// To be called by every run, after BeginRun.
inline void BeginModels() {
    static platform::ScriptedWindow window;
    static DXG::Setup setup;
    platform::ScriptedGraphics& graphics = platform::ScriptedGraphics::Default();
    if (!DXG::IsInitialized()) {
        platform::ScriptedGraphics::Start();
        setup.width = 800;
        setup.height = 600;
        DXG::Init(&window, &setup);
        // Down before the objects that the scripted device is made of.
        std::atexit([] {
            G::EmptyModelRegistry();
            G::DestroyModelBones();
            DXG::Shutdown();
        });
    }
    graphics.ForgetCalls();
}

// Whatever is left of models and textures now is a leak.
inline void CheckNothingIsLeft() {
    std::vector<std::string>& faults = platform::ScriptedGraphics::Default().faults;
    if (G::LiveBones() > 0) faults.push_back("bones are left");
    if (!DXG::VertexBuffer::Records().empty() || !DXG::IndexBuffer::Records().empty())
        faults.push_back("buffers are left");
    if (!DXG::Texture::Records().empty()) faults.push_back("textures are left");
    if (faults.empty()) return;
    std::cerr << faults[0] << "\n";
    std::abort();
}

// Draws what was loaded and lets all models go.
inline void EndModels(G::Mesh& model) {
    if (DXG::BeginFrame(0, false, true)) {
        model.Draw(true);
        DXG::EndFrame0();
    }
    model.Release();
    G::EmptyModelRegistry();
    CheckNothingIsLeft();
}

}  // namespace fuzz
