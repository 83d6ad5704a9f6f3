// Textures, buffers, layouts and shaders of the scripted device.

#include <algorithm>
#include <cstring>

#include "platform/PixelFormats.h"
#include "platform/scripted/ScriptedDevice.h"

namespace platform {

namespace {

// Counts an object in at its birth and out at its end, when its device must still be there.
void Enter(ScriptedDevice* device, const void* object) {
    device->liveObjects.push_back(object);
    ++device->graphics.liveObjects;
}

void Leave(ScriptedDevice* device, const void* object, const char* kind) {
    ScriptedGraphics& graphics = ScriptedGraphics::Default();
    --graphics.liveObjects;
    if (graphics.device != device) return graphics.Fault(std::string(kind) + " outlived its device");
    std::erase(device->liveObjects, object);
}

unsigned LevelExtent(unsigned extent, unsigned level) {
    return std::max(1U, extent >> level);
}

}  // namespace

ScriptedTexture::ScriptedTexture(ScriptedDevice* maker, const TextureRequest& asked, PixelFormat given)
    : request(asked), device(maker) {
    request.format = given;
    if (request.levels == 0)
        for (unsigned extent = std::max(request.width, request.height); extent > 0; extent /= 2)
            ++request.levels;
    const unsigned faces = request.kind == TextureKind::Cube ? 6 : 1;
    for (unsigned face = 0; face < faces; ++face)
        for (unsigned level = 0; level < request.levels; ++level)
            images.emplace_back(RowPitch(level) * Height(level) * LevelExtent(request.depth, level), 0xCD);
    Enter(device, this);
}

ScriptedTexture::~ScriptedTexture() {
    ScriptedGraphics& graphics = ScriptedGraphics::Default();
    if (openLocks != 0) graphics.Fault("texture destroyed while locked");
    if (graphics.device == device)
        for (const DeviceTexture* bound : device->current.textures)
            if (bound == this) graphics.Fault("texture destroyed while bound");
    Leave(device, this, "texture");
}

unsigned ScriptedTexture::Width(unsigned level) const {
    return LevelExtent(request.width, level);
}
unsigned ScriptedTexture::Height(unsigned level) const {
    return LevelExtent(request.height, level);
}
std::size_t ScriptedTexture::RowPitch(unsigned level) const {
    return std::size_t{Width(level)} * BitsPerTexel(request.format) / 8 + 4;
}

std::vector<unsigned char>& ScriptedTexture::Texels(unsigned level, unsigned face) {
    return images.at(std::size_t{face} * request.levels + level);
}

std::uint32_t ScriptedTexture::TexelAt(unsigned level, unsigned x, unsigned y, unsigned slice) {
    const std::size_t bytes = BitsPerTexel(request.format) / 8;
    const std::size_t row = std::size_t{slice} * Height(level) + y;
    std::uint32_t texel = 0;
    for (std::size_t i = std::min<std::size_t>(bytes, 4); i-- > 0;)
        texel = texel << 8 | Texels(level, 0).at(row * RowPitch(level) + x * bytes + i);
    return texel;
}

bool ScriptedTexture::Lock(unsigned level, unsigned face, bool readOnly, LockedTexels& out) {
    const ScriptedGraphics& graphics = ScriptedGraphics::Default();
    if (!graphics.script.texturesLock || graphics.script.refusedFace == static_cast<int>(face)) return false;
    if (level >= request.levels || (face > 0 && request.kind != TextureKind::Cube) || face > 5) return false;
    lastLockReadOnly = readOnly;
    ++openLocks;
    out.data = Texels(level, face).data();
    out.rowPitch = RowPitch(level);
    out.slicePitch = RowPitch(level) * Height(level);
    return true;
}

void ScriptedTexture::Unlock(unsigned, unsigned) {
    if (--openLocks < 0) ScriptedGraphics::Default().Fault("texture unlocked without a lock");
}

ScriptedBuffer::ScriptedBuffer(ScriptedDevice* maker, std::size_t byteCount, bool dynamicUse, bool writeOnlyUse)
    : bytes(byteCount), dynamic(dynamicUse), writeOnly(writeOnlyUse), device(maker) {
    Enter(device, this);
}

ScriptedBuffer::~ScriptedBuffer() {
    ScriptedGraphics& graphics = ScriptedGraphics::Default();
    if (openLocks != 0) graphics.Fault("buffer destroyed while locked");
    if (graphics.device == device && (device->vertexBuffer == this || device->indexBuffer == this))
        graphics.Fault("buffer destroyed while bound");
    Leave(device, this, "buffer");
}

void* ScriptedBuffer::Lock(bool discard) {
    if (!ScriptedGraphics::Default().script.buffersLock) return nullptr;
    ++openLocks;
    if (discard) ++discards;
    return bytes.data();
}

void ScriptedBuffer::Unlock() {
    if (--openLocks < 0) ScriptedGraphics::Default().Fault("buffer unlocked without a lock");
}

ScriptedLayout::ScriptedLayout(ScriptedDevice* maker, std::vector<VertexElement> list)
    : elements(std::move(list)), device(maker) {
    Enter(device, this);
}

ScriptedLayout::~ScriptedLayout() {
    ScriptedGraphics& graphics = ScriptedGraphics::Default();
    if (graphics.device == device && device->layout == this) graphics.Fault("layout destroyed while bound");
    Leave(device, this, "layout");
}

ScriptedShader::ScriptedShader(ScriptedDevice* maker, const CompiledShader& from) : compiled(from), device(maker) {
    Enter(device, this);
}

ScriptedShader::~ScriptedShader() {
    ScriptedGraphics& graphics = ScriptedGraphics::Default();
    if (graphics.device == device && (device->current.vertexShader == this || device->current.fragmentShader == this))
        graphics.Fault("shader destroyed while bound");
    Leave(device, this, "shader");
}

int ScriptedShader::FindConstant(const std::string& name) const {
    const std::string plain = name.ends_with("[0]") ? name.substr(0, name.size() - 3) : name;
    for (std::size_t i = 0; i < compiled.constants.size(); ++i)
        if (compiled.constants[i].name == plain) return static_cast<int>(i);
    return -1;
}

ScriptedShader::Value& ScriptedShader::Write(int constant, const float* first, std::size_t count) {
    Value& value = values[compiled.constants.at(static_cast<std::size_t>(constant)).name];
    value.floats.assign(first, first + count);
    value.transposed = false;
    ++value.writes;
    return value;
}

void ScriptedShader::SetFloats(int constant, const float* first, std::size_t count) {
    Write(constant, first, count);
}
void ScriptedShader::SetVectors(int constant, const float (*first)[4], std::size_t count) {
    Write(constant, first[0], 4 * count);
}
void ScriptedShader::SetMatrix(int constant, const float first[16], bool transpose) {
    Write(constant, first, 16).transposed = transpose;
}

}  // namespace platform
