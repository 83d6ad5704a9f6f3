#pragma once
// Render states, clearing, viewport and transforms of the device. Nothing happens while the foundation is down.

#include <cstdint>

#include "math/VectorMatrix.h"

namespace DXG {

enum State : unsigned {
    depthTest = 0,
    depthWrite = 1,
    alphaBlend = 2,
    alphaTest = 3,
    stencil = 4,
    lighting = 5,
    wireframe = 6,
    colourWrite = 7,
    twoSidedStencil = 8,
};
void SetState(unsigned state, bool on);
bool GetState(unsigned state);

// 0 never, 1 always, 2 equal, 3 not equal, 4 less, 5 less or equal, 6 greater, 7 greater or equal.
void SetDepthFunction(unsigned function);
void SetAlphaFunction(unsigned function);
void SetAlphaReference(float reference);  // 0 to 1
// 0 zero, 1 one, 2 source colour, 3 inverse, 4 source alpha, 5 inverse, 6 destination alpha, 7 inverse, 8 destination
// colour, 9 inverse, else source alpha saturated.
void SetBlend(unsigned source, unsigned destination);

// 0 drops counter-clockwise faces, 1 clockwise ones, else none.
void SetCullMode(unsigned mode);
unsigned GetCullMode();

// Colour A8R8G8B8, depth to 1.0; stencil only when asked and present.
void Clear(std::uint32_t colour, bool target, bool depth, bool stencilToo, std::uint32_t stencilValue);

void SetViewport(int x, int y, int width, int height);
void GetViewport(int& x, int& y, int& width, int& height);
void SetViewportToBackBuffer();

// World and view act on column vectors and are transposed for the device; the projection is in the device's own layout.
void SetWorld(const Mat4& world);
void SetView(const Mat4& view);
void SetProjection(const Mat4& projection);
Mat4 GetWorld();
Mat4 GetView();
Mat4 GetProjection();

// Pixel coordinates with the origin at the rectangle's top left corner at (x, y), y down; the viewport becomes the
// rectangle.
void Set2D(int x, int y, int width, int height);
void Set2DWholeBackBuffer();

// Unbinds the vertex and fragment shaders: the fixed-function stages draw.
void UnbindShaders();
// Unbinds the texture of a stage.
void UnbindTexture(unsigned stage);
void ApplyDefaultStates();

}  // namespace DXG
