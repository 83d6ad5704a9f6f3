#pragma once
// What the programs made from HLSL look like to the device that links them, and to the fixed-function stages that stand
// in for a missing one.
//
// Every value that crosses from the vertex to the fragment stage is a vec4 named varyingPrefix + semantic; every vertex
// attribute is named attributePrefix + semantic. The constants of a stage lie in one std140 block.
//
// The vertex stage reads `uniform vec2 kvPixelShift` (half a pixel in clip units, see gl/) and turns the depth range 0
// to 1 of its source into OpenGL's. After the line extraOutputsMark the device may add outputs that the fragment stage
// reads and this stage does not write, and after extraWritesMark their values. The fragment stage reads `uniform vec4
// kvAlphaTest`: the reference (0 to 255) and whether a fragment passes (1) or not (0) whose alpha is below, equal to or
// above it.

namespace platform::stages {

inline constexpr const char* attributePrefix = "kvIn_";
inline constexpr const char* varyingPrefix = "kvVary_";
inline constexpr const char* vertexBlock = "VertexConstants";
inline constexpr const char* fragmentBlock = "FragmentConstants";
inline constexpr const char* extraOutputsMark = "//kvExtraOutputs\n";
inline constexpr const char* extraWritesMark = "//kvExtraWrites\n";

// The end of a vertex stage's main, after gl_Position has been written in Direct3D's clip space.
inline constexpr const char* vertexEnding =
    "    gl_Position.xy += kvPixelShift * gl_Position.w;\n"
    "    gl_Position.z = 2.0 * gl_Position.z - gl_Position.w;\n";
// The alpha test on a variable `kvColour`.
inline constexpr const char* alphaTest =
    "    float kvAlpha = floor(clamp(kvColour.a, 0.0, 1.0) * 255.0 + 0.5);\n"
    "    float kvPass = kvAlpha < kvAlphaTest.x ? kvAlphaTest.y\n"
    "        : kvAlpha > kvAlphaTest.x ? kvAlphaTest.w : kvAlphaTest.z;\n"
    "    if (kvPass < 0.5) discard;\n";

}  // namespace platform::stages
