#pragma once
// Render states: their values as Direct3D has them, and OpenGL brought to them when something is drawn.

#include <epoxy/gl.h>

#include <array>
#include <cstdint>

#include "platform/GraphicsDevice.h"

namespace platform::gl {

class States {
  public:
    States() { SetDefaults(false); }

    // As Direct3D 9 has them after creation and reset, so that everything is sent again.
    void SetDefaults(bool hasStencil);
    void Set(RenderState state, std::uint32_t value);
    [[nodiscard]] std::uint32_t Get(RenderState state) const { return values[static_cast<unsigned>(state)]; }
    // Sends what changed.
    void Apply();
    // OpenGL's masks were changed by a clear.
    void ForgetMasks();

    // The alpha test as StageInterface.h wants it; `changed` is set when it differs from the last call's.
    std::array<float, 4> AlphaTest(bool& changed);

  private:
    void Send(RenderState state) const;
    [[nodiscard]] bool Has(RenderState state) const { return Get(state) != 0; }

    static constexpr unsigned count = static_cast<unsigned>(RenderState::Count);
    std::array<std::uint32_t, count> values{};
    std::uint32_t changes = 0;  // a bit for each state
    bool alphaChanged = true;
    bool stencilUsable = false;
};

}  // namespace platform::gl
