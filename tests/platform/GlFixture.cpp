#include "platform/GlFixture.h"

#include <algorithm>
#include <cstring>

#include "platform/ShaderCompiler.h"
#include "platform/gl/OpenGl.h"

namespace glfixture {

using namespace platform;

DeviceMatrix Pixels(float x, float y, float width, float height) {
    return {2 / width, 0, 0, 0, 0, -2 / height, 0, 0, 0, 0, -1, 0, -2 * x / width - 1, 2 * y / height + 1, 0, 1};
}

std::vector<Vertex> Quad(float left, float top, float right, float bottom, float z, std::uint32_t colour) {
    const Vertex a{left, top, z, colour, 0, 0};
    const Vertex b{right, top, z, colour, 1, 0};
    const Vertex c{right, bottom, z, colour, 1, 1};
    const Vertex d{left, bottom, z, colour, 0, 1};
    return {a, b, c, a, c, d};
}

void GlDevice::SetUp() {
    SetOpenGlErrorSink([](const char* place, const std::string& error) { ADD_FAILURE() << place << ": " << error; });
    UseOpenGl();
    WindowFailure failure{};
    window = CreateMainWindow({"KelvaneTest", "Kelvane", pictureWidth, pictureHeight}, failure);
    ASSERT_TRUE(window);
    graphics = CreateGraphicsInterface();
    ASSERT_TRUE(graphics);
    parameters.backBufferWidth = pictureWidth;
    parameters.backBufferHeight = pictureHeight;
    parameters.backBufferFormat = PixelFormat::X8R8G8B8;
    parameters.depthFormat = PixelFormat::D24S8;
    ASSERT_EQ(graphics->CreateDevice(0, *window, VertexProcessing::Hardware, true, parameters, device),
              DeviceResult::Ok);
    layout = device->CreateVertexLayout({{0, VertexType::Float3, VertexUse::Position},
                                         {12, VertexType::PackedColour, VertexUse::Colour},
                                         {16, VertexType::Float2, VertexUse::TextureCoordinates}});
    ASSERT_EQ(device->BeginScene(), DeviceResult::Ok);
    Plain();
}

void GlDevice::TearDown() {
    layout.reset();
    device.reset();
    graphics.reset();
    window.reset();
    SetOpenGlErrorSink(nullptr);
}

void GlDevice::Plain() {
    Set(RenderState::DepthTest, 0);
    Set(RenderState::Lighting, 0);
    Set(RenderState::Cull, static_cast<std::uint32_t>(CullMode::None));
    device->SetStageOperation(0, StageOperation::TextureTimesDiffuse, StageOperation::TextureTimesDiffuse);
    device->SetVertexLayout(layout.get());
    device->SetTransform(TransformKind::Projection, Pixels(0, 0, pictureWidth, pictureHeight));
    device->Clear(true, true, true, black, 1.0F, 0);
}

void GlDevice::Draw(const std::vector<Vertex>& vertices, Primitive primitive) {
    auto count = static_cast<unsigned>(vertices.size());
    if (primitive == Primitive::Lines) count /= 2;
    if (primitive == Primitive::Triangles) count /= 3;
    if (primitive == Primitive::TriangleFan) count -= 2;
    device->DrawFromMemory(primitive, count, vertices.data(), sizeof(Vertex));
}

void GlDevice::Read() {
    unsigned width = 0;
    unsigned height = 0;
    ASSERT_TRUE(device->ReadBackBuffer(picture, width, height));
    ASSERT_EQ(width, pictureWidth);
    ASSERT_EQ(height, pictureHeight);
    // The back buffer's alpha is of no account.
    for (std::uint32_t& pixel : picture)
        pixel |= 0xFF000000;
}

GlDevice::Region GlDevice::RegionOf(std::uint32_t colour) const {
    Region region{0, pictureWidth, pictureHeight, 0, 0};
    for (unsigned y = 0; y < pictureHeight; ++y)
        for (unsigned x = 0; x < pictureWidth; ++x) {
            if (At(x, y) != colour) continue;
            ++region.count;
            region.left = std::min(region.left, x);
            region.right = std::max(region.right, x);
            region.top = std::min(region.top, y);
            region.bottom = std::max(region.bottom, y);
        }
    return region;
}

std::unique_ptr<DeviceTexture> GlDevice::Texture(PixelFormat format, unsigned width, unsigned height,
                                                 const std::vector<std::uint32_t>& texels, unsigned bytesPerTexel) {
    std::unique_ptr<DeviceTexture> texture;
    EXPECT_EQ(device->CreateTexture({TextureKind::Plain, width, height, 1, 1, format}, texture), DeviceResult::Ok);
    LockedTexels locked;
    if (!texture || !texture->Lock(0, 0, false, locked)) return nullptr;
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x)
            std::memcpy(static_cast<char*>(locked.data) + y * locked.rowPitch + x * bytesPerTexel,
                        &texels[y * width + x], bytesPerTexel);
    texture->Unlock(0, 0);
    return texture;
}

std::unique_ptr<DeviceShader> GlDevice::Shader(const std::string& source, const std::string& profile) {
    CompiledShader compiled;
    std::string messages;
    EXPECT_TRUE(CompileShader(source, "test", "main", profile, compiled, messages)) << messages;
    std::unique_ptr<DeviceShader> shader = device->CreateShader(compiled);
    EXPECT_TRUE(shader);
    return shader;
}

}  // namespace glfixture
