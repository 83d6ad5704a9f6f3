#pragma once
// Immediate mode: begin, per-vertex calls, end. Main thread.

#include <cstdint>

namespace DXG {

enum : unsigned { primitivePoints = 0, primitiveLines = 1, primitiveTriangles = 2, primitiveFan = 3 };

void IMBegin(unsigned primitiveType);
void IMNormal(float x, float y, float z);
void IMTexCoord(float u, float v);
void IMTexCoord2(float u, float v);
void IMColor(std::uint32_t argb);
void IMColor(float red, float green, float blue);               // 0 to 1, opaque
void IMColor(float red, float green, float blue, float alpha);  // 0 to 1
void IMPosition(float x, float y);
void IMPosition(float x, float y, float z);  // appends a vertex with the current attributes
void IMPosition(float x, float y, float z, float w);
void IMEnd();

}  // namespace DXG
