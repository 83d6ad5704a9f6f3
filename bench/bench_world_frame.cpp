// Main-thread time of a full frame of the world and the chat, against the same triangles in batches made beforehand.
// Needs a display. Run it in a folder with the client's data folder beside it.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

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

double ThreadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// The middle of 200 frames, in milliseconds.
template <typename Draw>
double FrameTime(Draw draw) {
    std::vector<double> times;
    for (int frame = 0; frame < 200; ++frame) {
        if (!DXG::BeginFrame(0.02F, false, true)) continue;
        DXG::Clear(0xFF000000U, true, true, true, 0);
        const double begin = ThreadSeconds();
        draw();
        times.push_back((ThreadSeconds() - begin) * 1e3);
        DXG::EndFrame0();
        DXG::EndFrame1();
    }
    if (times.empty()) return 0.0;
    std::nth_element(times.begin(), times.begin() + static_cast<long>(times.size() / 2), times.end());
    return times[times.size() / 2];
}

void Compare() {
    const TextureList floors = MakeTextures(floorTextures);
    const TextureList walls = MakeTextures(wallTextures);
    FillWorld();
    TolvRenderer::Init();
    TolvRenderer::Update(0.02F);
    FloorRenderer::Current()->SetTextures(floors);
    WallRenderer::Current()->SetTextures(walls);
    TolvRenderer::SetHoverCell(0, 0);
    Batches batches;
    FillBatches(floors, walls, batches);

    G::TextWindow chat(40, 300, 700, 250, 60);
    G::Text allLines;
    std::string joined;
    for (int line = 0; line < 60; ++line) {
        const std::string text = "[ someone says something of a usual length, line " + std::to_string(line) + " ]";
        chat.AddLine(G::ColouredText().Add(text));
        joined += text + "\n";
    }
    allLines.SetText(joined);
    allLines.SetPosition(40, 550 - 60 * 16);

    const double world = FrameTime([] { TolvRenderer::Render(); });
    const double worldBatches = FrameTime([&] { batches.Draw(); });
    const double whole = FrameTime([&] {
        TolvRenderer::Render();
        chat.Draw();
    });
    const double wholeBatches = FrameTime([&] {
        batches.Draw();
        DXG::Set2D(40, 300, 700, 250);
        allLines.Draw();
    });
    std::printf("world: %.3f ms, batches %.3f ms: %.2f times\n", world, worldBatches, world / worldBatches);
    std::printf("world and chat: %.3f ms, batches %.3f ms: %.2f times\n", whole, wholeBatches, whole / wholeBatches);
    TolvRenderer::Shutdown();
}

}  // namespace

int main() {
    platform::UseOpenGl();
    platform::WindowFailure failure = platform::WindowFailure::None;
    const auto window = platform::CreateMainWindow({"KelvaneBench", "", 800, 600}, failure);
    DXG::Setup setup;
    setup.width = 800;
    setup.height = 600;
    if (!window || !DXG::Init(window.get(), &setup)) {
        std::fputs("no window or no device\n", stderr);
        return 1;
    }
    Compare();
    DXG::Shutdown();
    return 0;
}
