// The picture that the OpenGL device makes, pixel by pixel.

#include <SDL.h>
#include <epoxy/gl.h>

#include <algorithm>
#include <array>
#include <tuple>

#include "platform/Caps.h"
#include "platform/Clock.h"
#include "platform/GlFixture.h"
#include "platform/gl/OpenGl.h"

namespace glfixture {

using namespace platform;

TEST_F(GlDevice, ClearsTheWholeTargetWhateverTheMasks) {
    Set(RenderState::ColourWrite, 0);
    device->SetViewport({8, 8, 8, 8, 0, 1});
    Draw(Quad(0, 0, 64, 48));
    ClearTo(0xFF123456);
    Read();
    EXPECT_EQ(RegionOf(0xFF123456).count, pictureWidth * pictureHeight);
    Draw(Quad(0, 0, 64, 48));
    Read();
    EXPECT_EQ(RegionOf(0xFF123456).count, pictureWidth * pictureHeight) << "colour writes are still off";
}

// A vertex at a whole position lies on a pixel's centre, and a pixel on a left or top edge is inside.
TEST_F(GlDevice, CoversPixelsAsDirect3D9Does) {
    struct Row {
        const char* name;
        float left, top, right, bottom;
        Region covered;
    };
    const Row rows[] = {
        {"whole positions", 4, 6, 12, 10, {32, 4, 6, 11, 9}},
        {"the offset of drawn text", 4.005F, 6.005F, 12.005F, 10.005F, {32, 5, 7, 12, 10}},
        {"half a pixel up and left", 3.5F, 5.5F, 11.5F, 9.5F, {32, 4, 6, 11, 9}},
        {"the whole picture", 0, 0, 64, 48, {64 * 48, 0, 0, 63, 47}},
    };
    for (const Row& row : rows) {
        ClearTo(black);
        Draw(Quad(row.left, row.top, row.right, row.bottom, 0, red));
        Read();
        EXPECT_EQ(RegionOf(red), row.covered) << row.name;
    }
}

TEST_F(GlDevice, DropsFacesByTheirTurnOnScreen) {
    const std::vector<Vertex> clockwise{{10, 10, 0, red}, {30, 10, 0, red}, {10, 30, 0, red}};
    const std::vector<Vertex> counter{{40, 10, 0, green}, {40, 30, 0, green}, {60, 10, 0, green}};
    const std::tuple<CullMode, bool, bool> rows[] = {
        {CullMode::None, true, true}, {CullMode::Clockwise, false, true}, {CullMode::CounterClockwise, true, false}};
    for (const auto& [mode, drawsClockwise, drawsCounter] : rows) {
        ClearTo(black);
        Set(RenderState::Cull, mode);
        Draw(clockwise);
        Draw(counter);
        Read();
        EXPECT_EQ(At(12, 12) == red, drawsClockwise) << static_cast<int>(mode);
        EXPECT_EQ(At(42, 12) == green, drawsCounter) << static_cast<int>(mode);
    }
}

TEST_F(GlDevice, KeepsDepthOrderFromZeroToOne) {
    Set(RenderState::DepthTest, 1);
    device->SetTransform(TransformKind::Projection,
                         {0.75F, 0, 0, 0, 0, 1, 0, 0, 0, 0, 100 / 99.0F, 1, 0, 0, -100 / 99.0F, 0});
    // Drawn near, far, nearer than the near plane and beyond the far one.
    Draw(Quad(-50, -50, 50, 50, 20, red));
    Draw(Quad(-90, -90, 90, 90, 90, green));
    Draw(Quad(-1, -1, 1, 1, 0.9F, blue));
    Draw(Quad(-200, -200, 200, 200, 101, white));
    Read();
    EXPECT_EQ(At(32, 24), red);
    ClearTo(black);
    Draw(Quad(-90, -90, 90, 90, 90, green));
    Set(RenderState::DepthWrite, 0);
    Draw(Quad(-50, -50, 50, 50, 20, red));
    Draw(Quad(-60, -60, 60, 60, 50, blue));
    Read();
    EXPECT_EQ(At(32, 24), blue) << "the red face left no depth";
    // A cleared depth and the viewport's range lie on the same scale from 0 to 1.
    Set(RenderState::DepthWrite, 1);
    device->Clear(true, true, false, black, 0.5F, 0);
    device->SetTransform(TransformKind::Projection, Pixels(0, 0, 64, 48));
    Draw(Quad(0, 0, 32, 48, -0.6F, red));
    Draw(Quad(32, 0, 64, 48, -0.4F, green));
    device->SetViewport({0, 0, 64, 24, 0.0F, 0.5F});
    Draw(Quad(0, 0, 32, 48, -0.9F, blue));
    Read();
    EXPECT_EQ(At(16, 40), black);
    EXPECT_EQ(At(48, 40), green);
    EXPECT_EQ(At(16, 10), blue);
}

TEST_F(GlDevice, TestsAlphaByEachFunction) {
    struct Row {
        CompareFunction function;
        std::array<bool, 3> passes;  // below, equal, above
    };
    const Row rows[] = {
        {CompareFunction::Never, {false, false, false}},  {CompareFunction::Always, {true, true, true}},
        {CompareFunction::Equal, {false, true, false}},   {CompareFunction::NotEqual, {true, false, true}},
        {CompareFunction::Less, {true, false, false}},    {CompareFunction::LessEqual, {true, true, false}},
        {CompareFunction::Greater, {false, false, true}}, {CompareFunction::GreaterEqual, {false, true, true}},
    };
    const auto programmed = Shader("float4 main(float4 c : COLOR) : COLOR { return c; }", "ps_2_0");
    Set(RenderState::AlphaTest, 1);
    Set(RenderState::AlphaReference, 100);
    for (DeviceShader* stage : {static_cast<DeviceShader*>(nullptr), programmed.get()})
        for (const Row& row : rows) {
            device->SetFragmentShader(stage);
            Set(RenderState::AlphaFunction, row.function);
            ClearTo(black);
            for (const unsigned at : {0U, 1U, 2U}) {
                const auto left = static_cast<float>(at * 20);
                Draw(Quad(left, 0, left + 20, 48, 0, (99 + at) << 24 | 0xFFFFFF));
            }
            Read();
            EXPECT_EQ((std::array{At(10, 9) == white, At(30, 9) == white, At(50, 9) == white}), row.passes)
                << static_cast<int>(row.function);
        }
}

TEST_F(GlDevice, Blends) {
    struct Row {
        BlendFactor source, destination;
        std::uint32_t expected;
    };
    // Source: alpha 1/5, colour FF 80 00; destination 00 40 80.
    for (const Row& row : {Row{BlendFactor::SourceAlpha, BlendFactor::InverseSourceAlpha, 0xFF334D66},
                           Row{BlendFactor::One, BlendFactor::One, 0xFFFFC080},
                           Row{BlendFactor::DestinationColour, BlendFactor::Zero, 0xFF002000},
                           Row{BlendFactor::Zero, BlendFactor::InverseSourceColour, 0xFF002080}}) {
        ClearTo(0xFF004080);
        Set(RenderState::AlphaBlend, 1);
        Set(RenderState::BlendSource, row.source);
        Set(RenderState::BlendDestination, row.destination);
        Draw(Quad(0, 0, 64, 48, 0, 0x33FF8000));
        Read();
        for (const unsigned shift : {0U, 8U, 16U})
            EXPECT_NEAR(At(9, 9) >> shift & 255, row.expected >> shift & 255, 1) << static_cast<int>(row.source);
    }
}

TEST_F(GlDevice, SamplesEachFormat) {
    using enum PixelFormat;
    struct Row {
        PixelFormat format;
        unsigned bytes;
        std::uint32_t texel;
        std::uint32_t colour;  // over a picture of 0000FF with the texel's alpha
    };
    const Row rows[] = {{A8R8G8B8, 4, 0xFF123456, 0xFF123456},
                        {A8R8G8B8, 4, 0x00123456, blue},
                        {X8R8G8B8, 4, 0x00123456, 0xFF123456},
                        {A8B8G8R8, 4, 0xFF563412, 0xFF123456},
                        {R8G8B8, 3, 0x123456, 0xFF123456},
                        {R5G6B5, 2, 0xF81F, 0xFFFF00FF},
                        {R5G6B5, 2, 0x07E0, green},
                        {X1R5G5B5, 2, 0x7C00, red},
                        {A1R5G5B5, 2, 0x7C00, blue},
                        {A4R4G4B4, 2, 0xF1A3, 0xFF11AA33},
                        {X4R4G4B4, 2, 0x01A3, 0xFF11AA33},
                        {R3G3B2, 1, 0xE3, 0xFFFF00FF},
                        {A2R10G10B10, 4, 0xFFF00000, red},
                        {A2B10G10R10, 4, 0xC00003FF, red},
                        {A8, 1, 0xFF, black},
                        {A8, 1, 0x00, blue},
                        {L8, 1, 0x45, 0xFF454545}};
    Set(RenderState::AlphaBlend, 1);
    Set(RenderState::BlendSource, BlendFactor::SourceAlpha);
    Set(RenderState::BlendDestination, BlendFactor::InverseSourceAlpha);
    for (const Row& row : rows) {
        // Three to a row: pitches are not always the width.
        const auto texture = Texture(row.format, 3, 2, std::vector<std::uint32_t>(6, row.texel), row.bytes);
        device->SetTexture(0, texture.get());
        ClearTo(blue);
        Draw(Quad(0, 0, 64, 48));
        Read();
        EXPECT_EQ(RegionOf(row.colour).count, pictureWidth * pictureHeight)
            << static_cast<int>(row.format) << std::hex << At(9, 9);
    }
}

TEST_F(GlDevice, ReadsCubesVolumesAndMipmaps) {
    std::unique_ptr<DeviceTexture> cube;
    std::unique_ptr<DeviceTexture> volume;
    std::unique_ptr<DeviceTexture> chain;
    ASSERT_EQ(device->CreateTexture({TextureKind::Cube, 4, 4, 1, 0, PixelFormat::A8R8G8B8}, cube), DeviceResult::Ok);
    ASSERT_EQ(device->CreateTexture({TextureKind::Volume, 2, 2, 4, 1, PixelFormat::A8R8G8B8}, volume),
              DeviceResult::Ok);
    ASSERT_EQ(device->CreateTexture({TextureKind::Plain, 64, 32, 1, 3, PixelFormat::A8R8G8B8}, chain),
              DeviceResult::Ok);
    EXPECT_EQ(cube->Levels(), 3U);
    const auto fill = [](DeviceTexture& texture, unsigned level, unsigned face, unsigned slice, std::uint32_t colour) {
        LockedTexels texels;
        ASSERT_TRUE(texture.Lock(level, face, false, texels));
        for (unsigned y = 0; y < texture.Height(level); ++y) {
            auto* row = static_cast<char*>(texels.data) + slice * texels.slicePitch + y * texels.rowPitch;
            std::fill_n(reinterpret_cast<std::uint32_t*>(row), texture.Width(level), colour);
        }
        texture.Unlock(level, face);
    };
    for (unsigned face = 0; face < 6; ++face)
        for (unsigned level = 0; level < 3; ++level)
            fill(*cube, level, face, 0, face == 3 ? green : red);
    for (unsigned slice = 0; slice < 4; ++slice)
        fill(*volume, 0, 0, slice, slice == 2 ? green : red);
    fill(*chain, 0, 0, 0, red);
    fill(*chain, 1, 0, 0, green);
    fill(*chain, 2, 0, 0, blue);

    const auto shows = [&](DeviceTexture& texture, const char* read) {
        const auto shader = Shader(std::string("sampler2D plain; samplerCUBE cube; sampler3D volume;"
                                               "float4 main(float2 t : TEXCOORD0) : COLOR { return ") +
                                       read + "; }",
                                   "ps_2_0");
        device->SetFragmentShader(shader.get());
        device->SetTexture(0, &texture);
        Draw(Quad(0, 0, 32, 16));
        Read();
        device->SetFragmentShader(nullptr);
        return At(8, 8);
    };
    EXPECT_EQ(shows(*cube, "texCUBE(cube, float3(0, -1, 0))"), green) << "the fourth face looks down";
    EXPECT_EQ(shows(*volume, "tex3D(volume, float3(t, 0.625))"), green);
    // Drawn at half its size.
    EXPECT_EQ(shows(*chain, "tex2D(plain, t)"), green);
    SamplerState sampler;
    sampler.mipmap = TextureFilter::None;
    device->SetSampler(0, sampler);
    EXPECT_EQ(shows(*chain, "tex2D(plain, t)"), red);
}

TEST_F(GlDevice, FiltersAndWrapsAsTheSamplerSays) {
    const auto texture = Texture(PixelFormat::A8R8G8B8, 2, 1, {black, white}, 4);
    device->SetTexture(0, texture.get());
    std::vector<Vertex> twice = Quad(0, 0, 64, 48);
    for (Vertex& vertex : twice)
        vertex.u *= 2;
    Draw(twice);
    Read();
    EXPECT_EQ(At(40, 9), black) << "the second turn begins anew";
    SamplerState sampler;
    sampler.u = TextureAddress::Clamp;
    sampler.magnify = TextureFilter::Linear;
    device->SetSampler(0, sampler);
    Draw(twice);
    Read();
    EXPECT_EQ(At(40, 9), white);
    EXPECT_NEAR(At(16, 9) & 255, 128, 8) << "between the two texels";
}

TEST_F(GlDevice, DrawsFromBuffers) {
    std::vector<Vertex> vertices = Quad(4, 4, 20, 20, 0, red);
    const std::vector<Vertex> more = Quad(30, 4, 40, 20, 0, green);
    vertices.insert(vertices.end(), more.begin(), more.end());
    std::unique_ptr<DeviceBuffer> buffer;
    std::unique_ptr<DeviceBuffer> indices;
    EXPECT_EQ(device->CreateVertexBuffer(caps::bufferBytes + 1, false, true, buffer), DeviceResult::OutOfVideoMemory);
    ASSERT_EQ(device->CreateVertexBuffer(vertices.size() * sizeof(Vertex), false, true, buffer), DeviceResult::Ok);
    ASSERT_EQ(device->CreateIndexBuffer(12, false, true, indices), DeviceResult::Ok);
    EXPECT_EQ(device->CreateIndexBuffer(0, false, true, indices), DeviceResult::InvalidCall);
    std::copy(vertices.begin(), vertices.end(), static_cast<Vertex*>(buffer->Lock(false)));
    buffer->Unlock();
    const std::uint16_t order[6] = {0, 1, 2, 6, 7, 8};
    std::copy(order, order + 6, static_cast<std::uint16_t*>(indices->Lock(false)));
    indices->Unlock();
    device->SetVertexBuffer(buffer.get(), sizeof(Vertex));
    device->SetIndexBuffer(indices.get());

    device->DrawIndexed(Primitive::Triangles, 12, 3, 1);
    Read();
    EXPECT_EQ(At(37, 8), green);
    EXPECT_EQ(RegionOf(red).count, 0U);
    device->Draw(Primitive::Triangles, 0, 2);
    Draw({{50, 40, 0, blue}, {60, 40, 0, blue}, {60, 46, 0, blue}, {50, 46, 0, blue}}, Primitive::TriangleFan);
    Read();
    EXPECT_EQ(RegionOf(red), (Region{256, 4, 4, 19, 19}));
    EXPECT_EQ(RegionOf(blue), (Region{60, 50, 40, 59, 45}));
    // The buffer is pointed at again after vertices came from memory, and seen again after it was rewritten.
    static_cast<Vertex*>(buffer->Lock(true))[0].colour = blue;
    buffer->Unlock();
    ClearTo(black);
    device->Draw(Primitive::Points, 0, 1);
    Read();
    EXPECT_EQ(RegionOf(blue), (Region{1, 4, 4, 4, 4}));
    // What lies outside the buffers is not drawn, nor what has gone.
    device->Draw(Primitive::Triangles, 9, 2);
    device->DrawIndexed(Primitive::Triangles, 12, 3, 2);
    device->DrawIndexed(Primitive::Triangles, 13, 0, 1);
    buffer.reset();
    device->Draw(Primitive::Triangles, 0, 1);
    Read();
    EXPECT_EQ(RegionOf(black).count, pictureWidth * pictureHeight - 1);
}

TEST_F(GlDevice, FixedFunctionMultipliesTextureAndColour) {
    const auto texture = Texture(PixelFormat::A8R8G8B8, 1, 1, {0xFF80FF40}, 4);
    device->SetTexture(0, texture.get());
    Draw(Quad(0, 0, 16, 48, 0, 0xFFFF8000));
    device->SetStageOperation(0, StageOperation::Disable, StageOperation::Disable);
    Draw(Quad(16, 0, 32, 48, 0, 0xFFFF8000));
    device->SetStageOperation(0, StageOperation::TextureTimesDiffuse, StageOperation::TextureTimesDiffuse);
    device->SetTexture(0, nullptr);
    Draw(Quad(32, 0, 48, 48, 0, 0xFFFF8000));
    // Without colours in the vertices.
    const auto bare = device->CreateVertexLayout({{0, VertexType::Float3, VertexUse::Position}});
    device->SetVertexLayout(bare.get());
    Draw(Quad(48, 0, 64, 48, 0, red));
    Read();
    EXPECT_EQ(At(8, 8), 0xFF808000);
    EXPECT_EQ(At(24, 8), 0xFFFF8000);
    EXPECT_EQ(At(40, 8), 0xFFFF8000);
    EXPECT_EQ(At(56, 8), white);
}

// What a scene holds comes back with it; this is the order of answers and what the device itself forgets.
TEST_F(GlDevice, ComesBackFromALoss) {
    const auto shader = Shader("float tint; float4 main() : COLOR { return float4(tint, 1, 0, 1); }", "ps_2_0");
    const float one = 1;
    shader->SetFloats(shader->FindConstant("tint"), &one, 1);
    device->EndScene();
    device->ProvokeLoss(2);
    EXPECT_EQ(device->TestCooperativeLevel(), DeviceResult::DeviceLost);
    EXPECT_EQ(device->Reset(parameters), DeviceResult::DeviceLost);
    EXPECT_EQ(device->TestCooperativeLevel(), DeviceResult::DeviceLost);
    EXPECT_EQ(device->TestCooperativeLevel(), DeviceResult::DeviceNotReset);
    EXPECT_EQ(device->BeginScene(), DeviceResult::DeviceLost);
    Draw(Quad(0, 0, 64, 48));
    device->Present();
    const auto meanwhile = Texture(PixelFormat::A8, 4, 4, std::vector<std::uint32_t>(16), 1);
    Set(RenderState::AlphaReference, 77);
    ASSERT_EQ(device->Reset(parameters), DeviceResult::Ok);
    EXPECT_EQ(device->TestCooperativeLevel(), DeviceResult::Ok);
    EXPECT_EQ(device->GetRenderState(RenderState::AlphaReference), 0U) << "states begin anew";
    ASSERT_EQ(device->BeginScene(), DeviceResult::Ok);
    EXPECT_EQ(device->BeginScene(), DeviceResult::InvalidCall);
    Plain();
    device->SetFragmentShader(shader.get());
    Draw(Quad(0, 0, 64, 48));
    Read();
    EXPECT_EQ(RegionOf(0xFFFFFF00).count, pictureWidth * pictureHeight);
}

// A window manager may not keep to the size asked for.
TEST_F(GlDevice, KeepsThePictureAtTheTopLeftOfALargerWindow) {
    device->EndScene();
    auto* handle = static_cast<SDL_Window*>(window->NativeHandle());
    SDL_SetWindowSize(handle, pictureWidth + 40, pictureHeight + 30);
    SDL_PumpEvents();
    // The driver takes the new size with the next picture after the display has told it: within five seconds.
    for (int pass = 0; pass < 100 && (pass == 0 || RegionOf(red).count == 0); ++pass) {
        device->Present();
        if (pass > 0) SleepMs(50);
        ASSERT_EQ(device->BeginScene(), DeviceResult::Ok);
        ClearTo(blue);
        Draw(Quad(0, 0, 64, 1, 0, red));
        Draw(Quad(0, 47, 64, 48, 0, green));
        Read();
        device->EndScene();
    }
    EXPECT_EQ(RegionOf(red), (Region{64, 0, 0, 63, 0}));
    EXPECT_EQ(RegionOf(green), (Region{64, 0, 47, 63, 47}));
    int height = 0;
    SDL_GL_GetDrawableSize(handle, nullptr, &height);
    std::uint32_t corner = 0;
    glReadPixels(0, height - 1, 1, 1, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV, &corner);
    EXPECT_EQ(corner | black, red);
}

TEST_F(GlDevice, RefusesTexturesThatCannotBe) {
    using enum DeviceResult;
    const std::pair<TextureRequest, DeviceResult> rows[] = {
        {{TextureKind::Cube, 4, 8, 1, 1, PixelFormat::A8}, InvalidCall},
        {{TextureKind::Plain, 1U << 30, 1, 1, 1, PixelFormat::A8}, InvalidCall},
        {{TextureKind::Plain, 4, 4, 2, 1, PixelFormat::A8}, InvalidCall},
        {{TextureKind::Plain, 4, 4, 1, 1, PixelFormat::D16}, NotAvailable},
        {{TextureKind::Volume, 2048, 2048, 2048, 1, PixelFormat::A8R8G8B8}, OutOfVideoMemory}};
    for (std::size_t at = 0; at < std::size(rows); ++at) {
        std::unique_ptr<DeviceTexture> texture;
        EXPECT_EQ(device->CreateTexture(rows[at].first, texture), rows[at].second) << at;
        EXPECT_FALSE(texture) << at;
    }
    const std::uint64_t before = device->FreeTextureMemory();
    const auto texture = Texture(PixelFormat::A8, 512, 512, std::vector<std::uint32_t>(512 * 512), 1);
    EXPECT_EQ(before - device->FreeTextureMemory(), 512U * 512U);
}

TEST_F(GlDevice, MakesAnotherDeviceOnTheSameWindow) {
    // An object outlives its device.
    const auto texture = Texture(PixelFormat::A8, 1, 1, {1}, 1);
    device.reset();
    PresentParameters open;
    open.windowed = false;
    EXPECT_EQ(graphics->CreateDevice(0, *window, VertexProcessing::Hardware, true, open, device),
              DeviceResult::NotAvailable);
    open.windowed = true;
    ASSERT_EQ(graphics->CreateDevice(0, *window, VertexProcessing::Hardware, true, open, device), DeviceResult::Ok);
    EXPECT_EQ(open.backBufferWidth, pictureWidth);
    EXPECT_FALSE(device->RenderTargetHasStencil());
    Plain();
    Draw(Quad(0, 0, 64, 48, 0, red));
    Read();
    EXPECT_EQ(At(9, 9), red);
}

}  // namespace glfixture
