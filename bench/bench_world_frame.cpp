// Main-thread time of a full frame of the world and the chat, against the same triangles in batches made beforehand.
// Needs a display.
//
// Both sides take turns on one device. Their time is the main thread's own, so rasterising, which llvmpipe does on
// threads of its own, is left out, and what the driver does for a draw on the main thread weighs on both. What both
// draw and bind is counted where the device calls OpenGL. "own_ms" is our side again with draws that do nothing: what
// the program itself and its calls cost.

#include <benchmark/benchmark.h>
#include <epoxy/gl.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/Turns.h"
#include "demo/formats/MapWriter.h"
#include "formats/TolvMap.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGState.h"
#include "graphics/text/GBTextWindow.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"
#include "session/TolvDataManager.h"
#include "world/Camera.h"
#include "world/CharacterRenderer.h"
#include "world/FloorRenderer.h"
#include "world/TolvRenderer.h"
#include "world/WallRenderer.h"

namespace {

constexpr unsigned floorTextures = 20;
constexpr unsigned wallTextures = 40;
constexpr ViewCell view{40, 40};

TextureList MakeTextures(unsigned count) {
    TextureList list(count);
    for (DXG::Texture& texture : list) {
        (void)texture.Create(64, 64, DXG::TextureType::ColourAlpha, 1, false);
        const DXG::TextureLock lock = texture.Lock(false);
        if (lock) std::memset(lock.data[0], 0xA0, lock.rowPitch[0] * 64);
    }
    return list;
}

// 30 x 30 floors, 600 wall panels, 100 characters around the view.
void FillWorld() {
    TolvMap& map = TolvMap::Current();
    (void)map.LoadMapBytes(demo::WriteMap(demo::MapDrawing(20, 20)), "bench");
    for (int i = 0; i < 900; ++i) {
        const int gx = 25 + i % 30;
        const int gy = 25 + i / 30;
        map.SetFloor(gx, gy, static_cast<std::uint16_t>(i % static_cast<int>(floorTextures)));
        if (i % 3 == 0) map.SetLowXWall(gx, gy, static_cast<std::uint8_t>(1 + i / 3 % 19));
        if (i % 3 == 1) map.SetLowYWall(gx, gy, static_cast<std::uint8_t>(1 + i / 3 % 19));
        if (i % 9 != 0) continue;
        Character character;
        character.gx = gx;
        character.gy = gy;
        TolvDataManager::Default().MoveCharacter(0, 0, character);
    }
    TolvDataManager::Default().SetViewPosition(view.gx, view.gy);
}

// Triangles in one buffer, drawn range by range with a texture each.
struct Batches {
    struct Range {
        const DXG::Texture* texture;
        unsigned first;
        unsigned count;
    };
    DXG::VertexBuffer buffer;
    std::vector<FloorVertex> vertices;
    std::vector<Range> ranges;

    void Add(const DXG::Texture* texture, const std::vector<FloorVertex>& more) {
        ranges.push_back({texture, static_cast<unsigned>(vertices.size()), static_cast<unsigned>(more.size())});
        vertices.insert(vertices.end(), more.begin(), more.end());
    }
    void Upload() {
        (void)buffer.Create(static_cast<unsigned>(vertices.size()), {{2, 0}, {2, 1}, {4, 2}, {1, 3}},
                            sizeof(FloorVertex), false, true);
        const DXG::BufferLock lock = buffer.Lock(false);
        if (lock) std::memcpy(lock.Data(), vertices.data(), vertices.size() * sizeof(FloorVertex));
    }
    void Draw() const {
        SetWorldViewport();
        DXG::UnbindShaders();
        DXG::SetWorld(Identity());
        DXG::SetCullMode(2);
        WorldCamera().Apply();
        buffer.Set();
        for (const Range& range : ranges) {
            if (range.texture)
                range.texture->Set(0);
            else
                DXG::UnbindTexture(0);
            DXG::DrawTriangles(range.first, range.count / 3);
        }
    }
};

void FillBatches(const TextureList& floors, const TextureList& walls, Batches& out) {
    FloorGeometry geometry;
    BuildFloorGeometry(TolvMap::Current(), view, geometry);
    for (unsigned f = 0; f < floorTextures; ++f) {
        const auto first = geometry.vertices.begin() + geometry.first[f];
        out.Add(&floors[f], {first, first + geometry.count[f]});
    }
    std::vector<WallPanel> panels;
    CollectWallPanels(TolvMap::Current(), view, panels);
    for (unsigned t = 0; t < wallTextures; ++t) {
        std::vector<FloorVertex> vertices;
        for (const WallPanel& panel : panels) {
            if (panel.texture != static_cast<int>(t)) continue;
            const int corners[6][2] = {{0, 0}, {1, 0}, {0, 1}, {0, 1}, {1, 0}, {1, 1}};
            for (const auto& [along, up] : corners)
                vertices.push_back({static_cast<float>(panel.gx + (panel.onLowGxEdge ? 0 : along)) - 0.5F,
                                    static_cast<float>(panel.gy + (panel.onLowGxEdge ? along : 0)) - 0.5F,
                                    static_cast<float>(2 * up), 0, 0.2F, 0.8F, 0xFFFFFFFFU, static_cast<float>(along),
                                    static_cast<float>(1 - up)});
        }
        if (!vertices.empty()) out.Add(&walls[t], vertices);
    }
    std::vector<ArrowVertex> arrows;
    for (const Character& character : TolvDataManager::Default().GetCharacters())
        AppendArrowheads(character, arrows);
    std::vector<FloorVertex> vertices;
    for (const ArrowVertex& arrow : arrows)
        vertices.push_back({arrow.x, arrow.y, arrow.z, 0, 0, 1, arrow.color, 0, 0});
    out.Add(nullptr, vertices);
    out.Upload();
}

// What the device asks of OpenGL, counted in place of its calls, which are passed on when `pass` is set.
struct Calls {
    unsigned draws = 0;
    unsigned vertices = 0;
    unsigned textureBinds = 0;
};
Calls counted;
bool pass = true;
decltype(epoxy_glDrawArrays) realDrawArrays;
decltype(epoxy_glBindTexture) realBindTexture;

void DrawArrays(GLenum mode, GLint first, GLsizei count) {
    ++counted.draws;
    counted.vertices += static_cast<unsigned>(count);
    if (pass) realDrawArrays(mode, first, count);
}

void BindTexture(GLenum target, GLuint texture) {
    if (texture != 0) ++counted.textureBinds;
    realBindTexture(target, texture);
}

// In place of OpenGL's own calls while it lives.
class CountedCalls {
  public:
    explicit CountedCalls(bool passOn) {
        counted = Calls();
        pass = passOn;
        realDrawArrays = epoxy_glDrawArrays;
        realBindTexture = epoxy_glBindTexture;
        epoxy_glDrawArrays = DrawArrays;
        epoxy_glBindTexture = BindTexture;
    }
    ~CountedCalls() {
        epoxy_glDrawArrays = realDrawArrays;
        epoxy_glBindTexture = realBindTexture;
    }
    CountedCalls(const CountedCalls&) = delete;
    CountedCalls& operator=(const CountedCalls&) = delete;
};

// Seconds of the main thread for what `draw` does inside one frame.
template <typename Draw>
double FrameSeconds(Draw draw) {
    bench::Require(DXG::BeginFrame(0.02F, false, true), "no frame");
    DXG::Clear(0xFF000000U, true, true, true, 0);
    const double seconds = bench::SecondsOf(draw);
    DXG::EndFrame0();
    DXG::EndFrame1();
    return seconds;
}

template <typename Draw>
Calls CallsOf(Draw draw) {
    const CountedCalls counting(true);
    (void)FrameSeconds(draw);
    return counted;
}

// `extra` vertices are drawn by us alone.
template <typename Ours, typename Batched>
void Compare(benchmark::State& state, unsigned extra, Ours ours, Batched batched) {
    for (int warming = 0; warming < 10; ++warming) {
        (void)FrameSeconds(ours);
        (void)FrameSeconds(batched);
    }
    const Calls calls = CallsOf(ours);
    const Calls batchedCalls = CallsOf(batched);
    bench::Require(calls.vertices == batchedCalls.vertices + extra, "the sides draw different triangles");
    bench::Turns turns;
    std::vector<double> own;
    for (auto iteration : state) {
        (void)iteration;
        const double seconds = FrameSeconds(ours);
        turns.Add(seconds, FrameSeconds(batched));
        const CountedCalls none(false);
        own.push_back(FrameSeconds(ours));
        state.SetIterationTime(seconds);
    }
    state.counters["ours_ms"] = bench::Median(turns.ours) * 1e3;
    state.counters["batches_ms"] = bench::Median(turns.theirs) * 1e3;
    state.counters["ratio"] = bench::Median(turns.ratios);
    state.counters["own_ms"] = bench::Median(own) * 1e3;
    state.counters["triangles"] = calls.vertices / 3;
    state.counters["draws"] = calls.draws;
    state.counters["batches_draws"] = batchedCalls.draws;
    state.counters["texture_binds"] = calls.textureBinds;
    state.counters["batches_binds"] = batchedCalls.textureBinds;
}

// The two squares under the pointer.
constexpr unsigned hoverVertices = 12;

struct Scene {
    TextureList floors = MakeTextures(floorTextures);
    TextureList walls = MakeTextures(wallTextures);
    Batches batches;
    G::TextWindow chat{40, 300, 700, 250, 60};
    G::Text allLines;

    Scene() {
        FillWorld();
        TolvRenderer::Init();
        TolvRenderer::Update(0.02F);
        FloorRenderer::Current()->SetTextures(floors);
        WallRenderer::Current()->SetTextures(walls);
        TolvRenderer::SetHoverCell(0, 0);
        FillBatches(floors, walls, batches);
        std::string joined;
        for (int line = 0; line < 60; ++line) {
            const std::string text = "[ someone says something of a usual length, line " + std::to_string(line) + " ]";
            chat.AddLine(G::ColouredText().Add(text));
            joined += text + "\n";
        }
        allLines.SetText(joined);
        allLines.SetPosition(40, 550 - 60 * 16);
    }
    ~Scene() { TolvRenderer::Shutdown(); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
};

void World(benchmark::State& state, Scene& scene) {
    Compare(
        state, hoverVertices, [] { TolvRenderer::Render(); }, [&] { scene.batches.Draw(); });
}

void WorldAndChat(benchmark::State& state, Scene& scene) {
    const auto ours = [&] {
        TolvRenderer::Render();
        scene.chat.Draw();
    };
    const auto batched = [&] {
        scene.batches.Draw();
        DXG::Set2D(40, 300, 700, 250);
        scene.allLines.Draw();
    };
    Compare(state, hoverVertices, ours, batched);
}

void RunAll(platform::Window& window) {
    DXG::Setup setup;
    setup.width = 800;
    setup.height = 600;
    bench::Require(DXG::Init(&window, &setup), "no device");
    {
        Scene scene;
        const auto add = [&](const char* name, void (*run)(benchmark::State&, Scene&)) {
            benchmark::RegisterBenchmark(name, [run, &scene](benchmark::State& state) { run(state, scene); })
                ->UseManualTime()
                ->Iterations(400)
                ->Unit(benchmark::kMillisecond);
        };
        add("world", World);
        add("world and chat", WorldAndChat);
        benchmark::RunSpecifiedBenchmarks();
    }
    DXG::Shutdown();
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::string folder = (std::filesystem::temp_directory_path() / "kelvane-bench-XXXXXX").string();
    bench::Require(mkdtemp(folder.data()) != nullptr, "no temporary folder");
    std::filesystem::copy(KELVANE_DATA_DIR, folder + "/data", std::filesystem::copy_options::recursive);
    std::filesystem::current_path(folder);
    platform::UseOpenGl();
    platform::WindowFailure failure = platform::WindowFailure::None;
    const auto window = platform::CreateMainWindow({"KelvaneBench", "", 800, 600}, failure);
    bench::Require(window != nullptr, "no window");
    RunAll(*window);
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::remove_all(folder);
    return 0;
}
