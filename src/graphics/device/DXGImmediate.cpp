#include "graphics/device/DXGImmediate.h"

#include <cmath>
#include <string>
#include <vector>

#include "diag/CallStack.h"
#include "diag/LogFile.h"
#include "graphics/device/DXGFoundation.h"
#include "graphics/device/DXGVert.h"
#include "platform/GraphicsDevice.h"

namespace DXG {

namespace {

struct ImmediateVertex {
    float position[3] = {};
    float normal[3] = {};
    std::uint32_t colour = 0xFFFFFFFFU;
    float texture[2] = {};
    float secondTexture[2] = {};  // carried, not read
};
static_assert(sizeof(ImmediateVertex) == 44);

constexpr std::size_t firstRoom = 32;

struct ImmediateMode {
    bool inBlock = false;
    unsigned primitiveType = primitivePoints;
    ImmediateVertex current;
    std::vector<ImmediateVertex> vertices;  // keeps its room from block to block
};

ImmediateMode& Mode() {
    static ImmediateMode mode;
    return mode;
}

const VertexFormat& DrawnFormat() {
    static const VertexFormat format{{2, 0}, {2, 1}, {4, 2}, {1, 3}};
    return format;
}

platform::Primitive PrimitiveOf(unsigned primitiveType) {
    switch (primitiveType) {
        case primitivePoints:
            return platform::Primitive::Points;
        case primitiveLines:
            return platform::Primitive::Lines;
        case primitiveTriangles:
            return platform::Primitive::Triangles;
        default:
            return platform::Primitive::TriangleFan;
    }
}

unsigned PrimitivesIn(std::size_t vertexCount, unsigned primitiveType) {
    const auto count = static_cast<unsigned>(vertexCount);
    if (primitiveType == primitiveFan) return count > 2 ? count - 2 : 0;
    return count / (primitiveType + 1);  // one, two or three vertices each
}

// Out of range is reported and wraps: the low 8 bits of the channel times 255.
std::uint32_t ChannelOf(float value) {
    if (!(value >= 0.0F && value <= 1.0F))
        ReportWithStack("Invalid float range for a color: " + FormatDouble(static_cast<double>(value), 20) + "\n");
    const float scaled = value * 255.0F;
    constexpr float wholeNumbers = 2147483520.0F;  // the largest float below 2^31
    if (!(std::fabs(scaled) <= wholeNumbers)) return 0;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled)) & 0xFFU;
}

std::uint32_t PackRgb(float red, float green, float blue) {
    const std::uint32_t packedRed = ChannelOf(red) << 16;
    const std::uint32_t packedGreen = ChannelOf(green) << 8;
    return packedRed | packedGreen | ChannelOf(blue);
}

}  // namespace

void IMBegin(unsigned primitiveType) {
    ImmediateMode& mode = Mode();
    if (mode.inBlock) return ReportWithStack("IMBegin used... but already inside a begin/end block.\n");
    if (primitiveType > primitiveFan) return ReportWithStack("bad primType passed ts IMBegin...\n");
    mode.primitiveType = primitiveType;
    mode.current = ImmediateVertex();
    mode.vertices.clear();
    mode.vertices.reserve(firstRoom);
    mode.inBlock = true;
}

void IMNormal(float x, float y, float z) {
    float* normal = Mode().current.normal;
    normal[0] = x;
    normal[1] = y;
    normal[2] = z;
}

void IMTexCoord(float u, float v) {
    Mode().current.texture[0] = u;
    Mode().current.texture[1] = v;
}

void IMTexCoord2(float u, float v) {
    Mode().current.secondTexture[0] = u;
    Mode().current.secondTexture[1] = v;
}

void IMColor(std::uint32_t argb) {
    Mode().current.colour = argb;
}
void IMColor(float red, float green, float blue) {
    Mode().current.colour = 0xFF000000U | PackRgb(red, green, blue);
}
void IMColor(float red, float green, float blue, float alpha) {
    const std::uint32_t rgb = PackRgb(red, green, blue);
    Mode().current.colour = ChannelOf(alpha) << 24 | rgb;
}

void IMPosition(float x, float y) {
    IMPosition(x, y, 0.0F);
}

void IMPosition(float x, float y, float z) {
    ImmediateMode& mode = Mode();
    if (!mode.inBlock) return;  // the next block would empty the list
    mode.current.position[0] = x;
    mode.current.position[1] = y;
    mode.current.position[2] = z;
    mode.vertices.push_back(mode.current);
}

void IMPosition(float, float, float, float) {
    errorLog.Write("Warning: IMPosition4 not correctly implemented correctly for D3D yet.\n");
}

void IMEnd() {
    ImmediateMode& mode = Mode();
    if (!mode.inBlock) {
        errorLog.Write("IMEnd used, but am not within a begin/end block.\n");
        return;
    }
    mode.inBlock = false;
    const unsigned count = PrimitivesIn(mode.vertices.size(), mode.primitiveType);
    platform::GraphicsDevice* device = DeviceOrNull();
    if (!device) return ReportMisuse(NotInitializedMessage("DXG::IMEnd"));
    platform::VertexLayout* declaration = count > 0 ? DeclarationOf(DrawnFormat()) : nullptr;
    if (!declaration) return;
    device->SetVertexLayout(declaration);
    device->DrawFromMemory(PrimitiveOf(mode.primitiveType), count, mode.vertices.data(), sizeof(ImmediateVertex));
}

}  // namespace DXG
