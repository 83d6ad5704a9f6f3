// The life of the foundation on the scripted device: hardware check, start, frames, loss and end.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <tuple>

#include "graphics/device/DXGState.h"
#include "support/ScriptedFoundation.h"

namespace {

using support::TakeErrors;

using platform::DeviceResult;
using platform::PixelFormat;
using enum platform::PixelFormat;

// What stands in a log after the system report.
std::string DeviceReport() {
    const std::string text = support::LogText("_stat.txt");
    const std::size_t start = text.find("Video card");
    return start == std::string::npos ? "" : text.substr(start);
}

struct Device : testing::Test {
    support::TestFolder folder;
    support::ScriptedFoundation foundation{false};
    platform::DeviceScript& script = foundation.scripted.script;
    unsigned processing = 9;
    bool noGraphics = true;
    std::string warning;
    bool Check() { return DXG::CheckHardware(processing, warning, noGraphics); }
    ~Device() override { EXPECT_TRUE(foundation.scripted.faults.empty()) << foundation.scripted.faults.front(); }
};

TEST_F(Device, HardwareCheckReportsTheCard) {
    script.capabilities.vertexShaderMajor = 3;
    script.capabilities.volumePowerOfTwoOnly = true;
    EXPECT_FALSE(Check() || noGraphics);
    EXPECT_EQ(processing, 2U);
    EXPECT_TRUE(DXG::VertexShaderMajor() == 3 && DXG::HasVolumeTextures());
    script.capabilities = platform::DeviceCapabilities();
    support::ClearLog("_stat.txt");
    EXPECT_FALSE(Check());
    EXPECT_EQ(processing, 0U);
    EXPECT_FALSE(DXG::HasPixelShaders() || DXG::HasVolumeTextures());
    EXPECT_EQ(DeviceReport(),
              "Video card: Scripted card\nVideo card does NOT support Hardware TnL.\n"
              "Video card does NOT support pixel shaders.\n"
              "Video card does NOT support vertex shaders... will use software vertex processing\n"
              "Cube maps NOT supported.\nMax texture dimesnions: 0 x 0\n3D textures NOT supported.\n"
              "Max vertex stearms supported: 1 (ancient driver too!)\n"
              "Device DOES NOT support vertex declarations (have to use software vertex processing now).\n"
              "Max silmutaneous render targets: 0\n\n");
}

TEST_F(Device, HardwareCheckWithoutAnswers) {
    script.hasCapabilities = false;
    EXPECT_FALSE(Check());
    EXPECT_EQ(TakeErrors(), "Could not retrieve graphics device capabilities\n");
    script.hasInterface = false;
    EXPECT_TRUE(Check());
    EXPECT_TRUE(noGraphics);
    EXPECT_TRUE(warning.starts_with("DirectX9.0c or greater is required to run this program.\n"));
    EXPECT_TRUE(warning.ends_with("\n\n"));
}

TEST_F(Device, OldDriversAreKnownForTwoVendors) {
    const std::tuple<unsigned, unsigned, unsigned, bool> rows[] = {// vendor, high and low part of the version, old
                                                                   {0x1002, 0x6000D, ~0U, true},
                                                                   {0x1002, 0x6000E, 0xA19C6, true},
                                                                   {0x1002, 0x6000E, 0xA19C7, false},
                                                                   {0x10DE, 0x6000E, 0xA1E60, true},
                                                                   {0x10DE, 0x6000E, 0xA1E61, false},
                                                                   {0x10DE, 0x6000F, 0, false},
                                                                   {0x8086, 0, 0, false}};
    for (const auto& [vendor, high, low, old] : rows) {
        script.identity = {"", vendor, high, low};
        warning.clear();
        EXPECT_EQ(Check(), old) << high << ' ' << low;
        EXPECT_EQ(warning.starts_with("It has been detected that you may be using an older driver"), old);
    }
}

TEST_F(Device, FormatsFallBackInTheirOrder) {
    const std::string noDisplay =
        "No valid display formats available\nProbably going to die... but never give up!  I'll just try a common 32 "
        "bit format anyways.\n";
    const std::string noStencil =
        "Warning: Couldn't find compatible stencil buffer format... reverting to plain depth buffer formats.\n";
    const std::string noDepth =
        "No valid z buffer formats available\nThis is bad... but never give up! I'll just pick somethething and try it "
        "anyways.\n";
    const std::string oddDesktop =
        "Windows desktop should be set to either 16 or 32 bit color to run in windowed mode... but will try it "
        "anyways...\n";
    struct Row {
        const char* name;
        unsigned desktop;
        bool fullscreen, colour32, stencil;
        std::vector<PixelFormat> displays, depths;
        PixelFormat display, depth;
        std::string errors;
    };
    const Row rows[] = {
        {"deep", 32, false, false, false, {A2R10G10B10, X8R8G8B8, R5G6B5}, {D24X8, D16}, A2R10G10B10, D24X8, ""},
        {"common", 32, false, true, true, {X8R8G8B8, R5G6B5}, {D24S8, D15S1, D32}, X8R8G8B8, D24S8, ""},
        {"desktop of 16 bits wins", 16, false, true, true, {X8R8G8B8, X1R5G5B5}, {D15S1}, X1R5G5B5, D15S1, ""},
        {"fullscreen keeps the wish", 16, true, true, false, {X8R8G8B8}, {D24X8, D32}, X8R8G8B8, D32, ""},
        {"nothing", 24, false, true, true, {}, {}, X8R8G8B8, D16, oddDesktop + noDisplay + noStencil + noDepth},
        {"no stencil", 32, false, true, true, {X8R8G8B8}, {D16}, X8R8G8B8, D16, noStencil}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        script.desktopBits = row.desktop;
        script.displayFormats = row.displays;
        script.depthFormats = row.depths;
        foundation.setup.fullscreen = row.fullscreen;
        foundation.setup.colour32 = row.colour32;
        foundation.setup.stencil = row.stencil;
        ASSERT_TRUE(foundation.Start());
        EXPECT_EQ(foundation.scripted.lastParameters.backBufferFormat, row.display);
        EXPECT_EQ(foundation.scripted.lastParameters.depthFormat, row.depth);
        EXPECT_EQ(DXG::GetSetup().stencil, row.stencil && (row.depth == D24S8 || row.depth == D15S1));
        EXPECT_EQ(DXG::Uses32BitColour(), row.fullscreen ? row.colour32 : row.desktop == 32);
        EXPECT_EQ(TakeErrors(), row.errors);
        foundation.Stop();
    }
}

TEST_F(Device, CreationIsTriedThreeTimes) {
    const std::string again = "CreateDevice failed... trying again in case the API fixed a parameter...";
    const std::string bad = again + "bad.\nFailed to create D3D device:\n";
    const DeviceResult no = DeviceResult::Failed;
    const std::pair<std::deque<DeviceResult>, std::string> rows[] = {
        {{no}, again},
        {{no, no}, again + " good.\n"},
        {{no, no, DeviceResult::InvalidCall}, bad + "  -bad parameters\n"},
        {{no, no, DeviceResult::NotAvailable}, bad + "  -device doesn't support requested features\n"},
        {{no, no, DeviceResult::OutOfVideoMemory}, bad + "  -device doesn't have enough video memory free\n"},
        {{no, no, no}, bad}};
    foundation.setup.stencil = true;
    for (const auto& [answers, errors] : rows) {
        foundation.scripted.ForgetCalls();
        script.createDevice = answers;
        const bool third = answers.size() >= 2;
        EXPECT_EQ(foundation.Start(), answers.size() < 3);
        EXPECT_EQ(TakeErrors(), errors);
        EXPECT_EQ(foundation.scripted.CallsNamed("CreateDevice").size(), third ? 3U : 2U);
        EXPECT_EQ(foundation.scripted.lastParameters.depthFormat, third ? D16 : D24S8);
        EXPECT_EQ(DXG::GetSetup().stencil, !third);
        EXPECT_EQ(DXG::HasFailed(), answers.size() == 3);
        foundation.Stop();
    }
}

TEST_F(Device, StartIsRefusedAndThenSilent) {
    EXPECT_FALSE(DXG::Init(nullptr, &foundation.setup));
    EXPECT_FALSE(foundation.Start());
    EXPECT_EQ(TakeErrors(), "Null window passed to DXG::Init\n");
    EXPECT_TRUE(DXG::HasFailed());
    DXG::ForgetFailure();
    EXPECT_FALSE(DXG::Init(&foundation.window, nullptr));
    DXG::ForgetFailure();
    (void)DXG::GetSetup();
    EXPECT_TRUE(foundation.Start());
    EXPECT_FALSE(foundation.Start());
    EXPECT_TRUE(DXG::IsInitialized());
    EXPECT_EQ(TakeErrors(),
              "DXG::Init failed:\n  -Invalid pointer passed for Setup struct.\n"
              "Warning: GetSetup used, and setup is not valid.\nAttempt to call DXG::Init while already ready\n");
}

TEST_F(Device, ReportsItsStartAndItsEnd) {
    foundation.setup.tripleBuffer = true;
    script.occlusionQueries = false;
    ASSERT_TRUE(foundation.Start());
    EXPECT_NE(DeviceReport().find("Using Vertex Shader version: vs_2_0\nUsing Pixel Shader version: ps_2_0\n"
                                  "Initial free texture memory(vid mem + agp mem): 256MB.\n"
                                  "Device does NOT support Occlusion Queries.\n\n"),
              std::string::npos);
    script.freeTextureMemory = 200ULL << 20;
    DXG::FreeTextureMemory();
    script.freeTextureMemory = 250ULL << 20;
    DXG::FreeTextureMemory();
    for (int frame = 0; frame < 5; ++frame) {
        ASSERT_TRUE(DXG::BeginFrame(0.3F, frame != 2, true));
        DXG::EndFrame0();
        DXG::EndFrame1();
    }
    support::ClearLog("_stat.txt");
    foundation.Stop();
    // 56 MB went, and three buffers of 800 x 600 x 4 bytes and 512 KiB make 5.99 MB. Four frames were counted in 1.2 s.
    EXPECT_EQ(support::LogText("_stat.txt"),
              "Approximate max video memory used: 61MB\n\n"
              "Average framerate (over 1 seconds): 3 frames/second\n\n");
    EXPECT_EQ(foundation.scripted.CallsNamed("Present").size(), 5U);
}

TEST_F(Device, FrameCallsInTheWrongOrderAreReported) {
    EXPECT_FALSE(DXG::BeginFrame(0.1F, true, true));
    DXG::EndFrame0();
    DXG::EndFrame1();
    EXPECT_EQ(DXG::GetDevice(), nullptr);
    std::string expected;
    for (const char* name : {"BeginFrame", "EndFrame0", "EndFrame1", "GetDevice"})
        expected += std::string("Error: DXG::") + name +
                    " used when graphics foundation is not initialized.\n  -call made from:\n\n";
    EXPECT_EQ(TakeErrors(), expected);
    ASSERT_TRUE(foundation.Start());
    DXG::EndFrame0();
    EXPECT_TRUE(DXG::BeginFrame(0.1F, true, true));
    EXPECT_FALSE(DXG::BeginFrame(0.1F, true, true));
    EXPECT_EQ(TakeErrors(),
              "EndFrame should not be called if BeginFrame was not successfully called before.\n"
              "Error: Previous BeginFrame call was not matched with an EndFrame call\n  -2nd call made from:\n\n");
}

int released = 0;
int restored = 0;

TEST_F(Device, ALostDeviceComesBack) {
    static const bool registered =
        (DXG::AddReleaseHook([] { ++released; }), DXG::AddRestoreHook([] { ++restored; }), true);
    ASSERT_TRUE(registered && foundation.Start());
    released = restored = 0;
    foundation.scripted.device->ProvokeLoss(2);
    EXPECT_FALSE(DXG::BeginFrame(0.1F, true, true));
    EXPECT_TRUE(DXG::IsDeviceLost());
    foundation.scripted.ForgetCalls();
    DXG::Clear(0, true, true, false, 0);
    EXPECT_FALSE(DXG::BeginFrame(0.1F, true, true));
    EXPECT_TRUE(foundation.scripted.calls.empty()) << "nothing is drawn on a lost device";
    EXPECT_TRUE(DXG::BeginFrame(0.1F, true, true)) << "the reset frame";
    EXPECT_EQ(released, 1);
    EXPECT_EQ(restored, 1);
    EXPECT_FALSE(DXG::IsDeviceLost());
    EXPECT_TRUE(foundation.scripted.Called("SetRenderState AlphaFunction 3")) << "default states";
    DXG::EndFrame0();
    foundation.Stop();
    EXPECT_EQ(support::LogText("_stat.txt").find("Average framerate"), std::string::npos) << "it is not counted";
}

TEST_F(Device, ResetsFailInTheirWays) {
    const auto fails = [&](DeviceResult reset, DeviceResult scene, bool allowReset, const std::string& error) {
        ASSERT_TRUE(foundation.Start());
        script.cooperativeLevel = {DeviceResult::DeviceNotReset};
        script.reset = {reset};
        script.beginScene = {scene};
        EXPECT_FALSE(DXG::BeginFrame(0.1F, true, allowReset));
        EXPECT_TRUE(DXG::IsDeviceLost());
        EXPECT_EQ(DXG::HasFailed(), !error.empty());
        EXPECT_EQ(TakeErrors(), error);
        script.beginScene.clear();
        foundation.scripted.ForgetCalls();
        EXPECT_TRUE(DXG::BeginFrame(0.1F, true, true)) << "the device is fine by itself";
        EXPECT_FALSE(DXG::IsDeviceLost());
        EXPECT_EQ(foundation.scripted.Called("SetRenderState AlphaFunction 3"), scene == DeviceResult::Failed)
            << "states that a reset took away come back with the next frame";
        foundation.Stop();
    };
    const DeviceResult ok = DeviceResult::Ok;
    fails(DeviceResult::DriverInternalError, ok, true, "Internal graphics driver error occured\n");
    fails(DeviceResult::OutOfVideoMemory, ok, true, "Graphics device out of memory\n");
    fails(DeviceResult::DeviceLost, ok, true, "");
    fails(ok, DeviceResult::Failed, true, "");
    fails(ok, ok, false, "");
}

TEST_F(Device, AForgottenFoundationIsShutDownAtExit) {
    EXPECT_EXIT(
        {
            foundation.Start();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(TakeErrors(), "Warning: Graphics foundation never shut down\n -Attempting automatic shutdown... OK\n");
}

TEST_F(Device, StatesTranslateBothWays) {
    foundation.setup.stencil = true;
    ASSERT_TRUE(foundation.Start());
    platform::ScriptedDevice& device = *foundation.scripted.device;
    device.SetRenderState(platform::RenderState::DepthTest, static_cast<unsigned>(platform::DepthMode::UseW));
    device.SetRenderState(platform::RenderState::ColourWrite, 7);
    EXPECT_FALSE(DXG::GetState(DXG::depthTest) || DXG::GetState(DXG::colourWrite));
    for (const unsigned mode : {0U, 1U, 2U, 7U}) {
        DXG::SetCullMode(mode);
        EXPECT_EQ(DXG::GetCullMode(), std::min(mode, 2U));
    }
    device.SetRenderState(platform::RenderState::Cull, 99);
    EXPECT_EQ(DXG::GetCullMode(), 1U);
    foundation.scripted.ForgetCalls();
    DXG::SetAlphaReference(NAN);  // 0, as it is
    DXG::SetAlphaReference(0.999F);
    DXG::SetBlend(9, 77);
    DXG::Clear(0xFF, true, false, true, 5);
    script.hasStencil = false;
    DXG::Clear(0, false, true, true, 5);
    EXPECT_EQ(foundation.scripted.calls,
              (std::vector<std::string>{"SetRenderState AlphaReference 0", "SetRenderState AlphaReference 254",
                                        "SetRenderState BlendSource 9", "SetRenderState BlendDestination 10",
                                        "Clear 1 0 1 255 1 5", "Clear 0 1 0 0 1 5"}));
}

}  // namespace
