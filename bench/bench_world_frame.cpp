// Main-thread time of a full frame of the world and the chat, and of the world with an item on every cell, against the
// same triangles in batches made beforehand and the same meshes drawn sorted by kind. Needs a display.
//
// Both sides take turns on one device. Their time is the main thread's own, so rasterising, which llvmpipe does on
// threads of its own, is left out, and what the driver does for a draw on the main thread weighs on both. What both
// draw and bind is counted where the device calls OpenGL. "own_ms" is our side again with draws that do nothing: what
// the program itself and its calls cost.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "bench/GlCalls.h"
#include "bench/Turns.h"
#include "demo/formats/MapWriter.h"
#include "formats/TolvMap.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/device/DXGShader.h"
#include "graphics/device/DXGState.h"
#include "graphics/model/GBMesh.h"
#include "graphics/text/GBTextWindow.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"
#include "session/TolvDataManager.h"
#include "world/Camera.h"
#include "world/CharacterRenderer.h"
#include "world/FloorRenderer.h"
#include "world/ItemTable.h"
#include "world/TolvRenderer.h"
#include "world/WallRenderer.h"

namespace {

constexpr unsigned floorTextures = 20;
constexpr unsigned wallTextures = 40;
constexpr unsigned itemKinds = 40;
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

// The models of the items on the map, one kind after the other: drawn whole, or piece by piece, so that what a piece
// needs is bound once for all cells.
class SortedItems {
  public:
    SortedItems() {
        bench::Require(shader.Load("data\\shaders\\simple", ""), "no shader for the items");
        table.Load();
        for (int gy = view.gy - 15; gy < view.gy + 15; ++gy)
            for (int gx = view.gx - 15; gx < view.gx + 15; ++gx)
                if (const unsigned number = TolvMap::Current().GetObject(gx, gy)) cells[number].push_back({gx, gy});
        for (const auto& [number, places] : cells)
            AddBone(*table.Find(number)->TopBone(), *table.Find(number)->TopBone(), places);
    }
    void DrawWhole() {
        Begin();
        for (const auto& [number, places] : cells)
            for (const ViewCell& place : places) {
                table.Find(number)->TopBone()->SetPosition(PlaceOf(place), false);
                table.Find(number)->Draw(false);
            }
    }
    void DrawPieces() {
        Begin();
        for (const Part& part : parts) {
            part.chunk->vertexBuffer.Set();
            part.chunk->indexBuffer.Set();
            part.chunk->texture0.Set(0);
            for (const Mat4& world : part.worlds) {
                DXG::SetWorld(world);
                G::UpdateShaderMatrices();
                DXG::DrawIndexed(part.chunk->indexBuffer.Count() / 3);
            }
        }
    }

  private:
    struct Part {
        const G::MeshChunk* chunk;
        std::vector<Mat4> worlds;
    };
    static Vec3 PlaceOf(const ViewCell& cell) {
        return {static_cast<float>(cell.gx), static_cast<float>(cell.gy), 0.0F};
    }
    void Begin() {
        SetWorldViewport();
        WorldCamera().Apply();
        DXG::SetCullMode(0);
        shader.Set();
    }
    void AddBone(G::Bone& bone, G::Bone& top, const std::vector<ViewCell>& places) {
        for (G::Bone* child : bone.Children())
            AddBone(*child, top, places);
        std::vector<Mat4> worlds;
        for (const ViewCell& place : places) {
            top.SetPosition(PlaceOf(place), false);
            worlds.push_back(bone.WorldMatrix());
        }
        for (const G::MeshChunk& chunk : bone.mesh.Mesh().chunks)
            parts.push_back({&chunk, worlds});
    }

    G::Shader shader;
    ItemTable table;
    std::map<unsigned, std::vector<ViewCell>> cells;
    std::vector<Part> parts;
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
bench::GlCalls CallsOf(Draw draw) {
    const bench::CountedGl counting(true);
    (void)FrameSeconds(draw);
    return counting.Calls();
}

// `extra` vertices are drawn by us alone.
template <typename Ours, typename Batched>
void Compare(benchmark::State& state, unsigned extra, Ours ours, Batched batched) {
    for (int warming = 0; warming < 10; ++warming) {
        (void)FrameSeconds(ours);
        (void)FrameSeconds(batched);
    }
    const bench::GlCalls calls = CallsOf(ours);
    const bench::GlCalls batchedCalls = CallsOf(batched);
    bench::Require(calls.vertices == batchedCalls.vertices + extra, "the sides draw different triangles");
    bench::Turns turns;
    std::vector<double> own;
    for (auto iteration : state) {
        (void)iteration;
        const double seconds = FrameSeconds(ours);
        turns.Add(seconds, FrameSeconds(batched));
        const bench::CountedGl none(false);
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
    state.counters["states"] = calls.stateCalls;
    state.counters["batches_states"] = batchedCalls.stateCalls;
    state.counters["repeated_states"] = calls.repeatedStates;
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
        constexpr int lines = 60;
        constexpr int linesInView = 16;
        for (int line = 0; line < lines; ++line) {
            const std::string text = "[ someone says something of a usual length, line " + std::to_string(line) + " ]";
            chat.AddLine(G::ColouredText().Add(text));
            if (line >= lines - linesInView) joined += text + "\n";
        }
        allLines.SetText(joined);
        allLines.SetPosition(40, 550 - linesInView * 16);
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

// An item of another kind on every cell of the view, as many kinds as `itemKinds`.
void WorldAndItems(benchmark::State& state, Scene& scene, void (SortedItems::*draw)()) {
    TolvMap& map = TolvMap::Current();
    const auto place = [&map](bool there) {
        for (unsigned i = 0; i < 900; ++i)
            map.SetObject(25 + static_cast<int>(i % 30), 25 + static_cast<int>(i / 30),
                          static_cast<std::uint16_t>(there ? 1 + i % itemKinds : 0));
    };
    place(true);
    {
        SortedItems sorted;
        const auto batched = [&] {
            scene.batches.Draw();
            (sorted.*draw)();
        };
        Compare(
            state, hoverVertices, [] { TolvRenderer::Render(); }, batched);
    }
    place(false);
}

void WorldAndItemsByKind(benchmark::State& state, Scene& scene) {
    WorldAndItems(state, scene, &SortedItems::DrawWhole);
}

void WorldAndItemsByPiece(benchmark::State& state, Scene& scene) {
    WorldAndItems(state, scene, &SortedItems::DrawPieces);
}

void RunAll(platform::Window& window) {
    DXG::Setup setup;
    setup.width = 800;
    setup.height = 600;
    bench::Require(DXG::Init(&window, &setup), "no device");
    {
        Scene scene;
        const auto add = [&](const char* name, void (*run)(benchmark::State&, Scene&), int frames) {
            benchmark::RegisterBenchmark(name, [run, &scene](benchmark::State& state) { run(state, scene); })
                ->UseManualTime()
                ->Iterations(frames)
                ->Unit(benchmark::kMillisecond);
        };
        add("world", World, 400);
        add("world and chat", WorldAndChat, 400);
        add("world and items by kind", WorldAndItemsByKind, 60);
        add("world and items by piece", WorldAndItemsByPiece, 60);
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
