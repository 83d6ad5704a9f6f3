#pragma once
// A device that only records, for the entries that load models.

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
        setup.width = 8;
        setup.height = 8;
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

// Draws what was loaded and lets all models go; whatever is left then is a leak.
inline void EndModels(G::Mesh& model) {
    if (DXG::BeginFrame(0, false, true)) {
        model.Draw(true);
        DXG::EndFrame0();
    }
    model.Release();
    G::EmptyModelRegistry();
    const bool clean = G::LiveBones() == 0 && DXG::VertexBuffer::Records().empty() &&
                       DXG::IndexBuffer::Records().empty() && DXG::Texture::Records().empty();
    if (!clean || !platform::ScriptedGraphics::Default().faults.empty()) std::abort();
}

}  // namespace fuzz
