#pragma once
// The examination of the hardware before a device is made, and what it found.

#include <string>

namespace DXG {

// Examines and reports the hardware; true when `warningText` should be shown to the user. `noGraphics` is set when
// there is no graphics interface at all.
bool CheckHardware(unsigned& vertexProcessing, std::string& warningText, bool& noGraphics);

// As the examination found them; before it: pixel shaders, vertex shaders of version 1, no volume textures.
bool HasPixelShaders();
unsigned VertexShaderMajor();
bool HasVolumeTextures();
// The results as they were before the first examination.
void ForgetCapabilities();

}  // namespace DXG
