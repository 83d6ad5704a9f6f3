// Immediate mode and shaders as the OpenGL device shows them.

#include <gtest/gtest.h>

#include <algorithm>

#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGImmediate.h"
#include "graphics/device/DXGShader.h"
#include "graphics/device/DXGState.h"
#include "platform/GraphicsDevice.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"
#include "support/TestFolder.h"

namespace {

constexpr unsigned side = 64;
using Picture = std::vector<std::uint32_t>;

struct DeviceOnOpenGl : testing::Test {
    support::TestFolder folder;
    std::unique_ptr<platform::Window> window;
    DeviceOnOpenGl() {
        platform::UseOpenGl();
        platform::WindowFailure failure{};
        window = platform::CreateMainWindow({"KelvaneTest", "Kelvane", side, side}, failure);
        unsigned processing = 0;
        bool noGraphics = false;
        std::string warning;
        DXG::CheckHardware(processing, warning, noGraphics);
        DXG::Setup setup;
        setup.width = setup.height = side;
        setup.vertexProcessing = processing;
        EXPECT_TRUE(window && DXG::Init(window.get(), &setup));
    }
    ~DeviceOnOpenGl() override {
        DXG::Shutdown();
        EXPECT_EQ(support::ErrorLogText() + support::LogText("_shaders.txt"), "");
    }
    // One frame on dark green, without culling or depth.
    template <typename Draw>
    static Picture Frame(Draw draw) {
        Picture argb;
        unsigned width = 0, height = 0;
        if (!DXG::BeginFrame(0, false, true)) return argb;
        DXG::Clear(0xFF004000U, true, true, false, 0);
        DXG::SetState(DXG::depthTest, false);
        DXG::SetCullMode(2);
        DXG::UnbindTexture(0);
        draw();
        DXG::GetDevice()->ReadBackBuffer(argb, width, height);
        DXG::EndFrame0();
        return argb;
    }
};

// A lopsided triangle, so that no mirrored or transposed matrix gives the same picture.
void DrawTriangle() {
    DXG::IMBegin(DXG::primitiveTriangles);
    DXG::IMColor(0xFFFF0000U);
    DXG::IMPosition(-1.0F, -0.8F, 0.1F);
    DXG::IMColor(0xFF00FF00U);
    DXG::IMPosition(1.3F, -0.2F, -0.3F);
    DXG::IMColor(0xFF0000FFU);
    DXG::IMPosition(0.2F, 1.1F, 0.4F);
    DXG::IMEnd();
}

TEST_F(DeviceOnOpenGl, ShadersSeeTheFixedFunctionsMatrices) {
    Mat4 world = Identity();
    world.m = {0.8F, -0.6F, 0, 0.3F, 0.6F, 0.8F, 0, -0.2F, 0, 0, 1, 0.5F, 0, 0, 0, 1};
    const Mat4 view = *LookAt({0.7F, -2.4F, 1.3F}, {0.1F, 0.2F, 0.3F}, {0, 0, 1}, false, false);
    const Mat4 projection = Perspective(1.0F, 0.75F, 1.0F, 100.0F);
    const auto draw = [&](G::Shader* shader) {
        DXG::SetWorld(world);
        DXG::SetView(view);
        DXG::SetProjection(projection);
        if (shader)
            shader->Set();
        else
            DXG::UnbindShaders();
        DrawTriangle();
    };
    const Picture fixed = Frame([&] { draw(nullptr); });
    EXPECT_GT(std::count_if(fixed.begin(), fixed.end(), [](auto pixel) { return (pixel & 0xFFFFFF) != 0x004000; }),
              200);
    folder.Write("plain.hlsl_f", "float4 main(float4 colour : COLOR) : COLOR { return colour; }");
    const char* positions[] = {
        "mul(position, ModelViewProjectionMatrix)",
        "mul(ViewProjectionMatrix, mul(ModelMatrix, position))",
        "mul(ProjectionMatrix, mul(mul(ModelMatrix, position), ViewMatrix))",
    };
    for (const char* position : positions) {
        folder.Write("m.hlsl_v", std::string("float4x4 ModelViewProjectionMatrix, ViewProjectionMatrix, ModelMatrix, "
                                             "ViewMatrix, ProjectionMatrix;\n"
                                             "struct Out { float4 position : POSITION; float4 colour : COLOR; };\n"
                                             "Out main(float4 position : POSITION, float4 colour : COLOR) {\n"
                                             "    Out o; o.colour = colour; o.position = ") +
                                     position + ";\n    return o; }\n");
        G::Shader shader;
        ASSERT_TRUE(shader.Load("m", "plain"));
        const Picture shaded = Frame([&] { draw(&shader); });
        EXPECT_TRUE(shaded == fixed) << position;
    }
}

}  // namespace
