// Models: welding against meshoptimizer, the text's floats against strtod, a whole model against assimp's import of the
// same mesh, and its cache against reading the file. Needs a display.
//
// Both sides of a comparison run in turn inside every iteration, on the processor time of the one thread, so that other
// load on the machine weighs on both. The counters give each side's median time and "times_as_fast".

#include <assimp/scene.h>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <meshoptimizer.h>
#include <sys/stat.h>
#include <unistd.h>

#include <assimp/Importer.hpp>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "bench/Turns.h"
#include "formats/CappedMessages.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/model/GBMesh.h"
#include "graphics/model/GBMesh_LoadMBM.h"
#include "graphics/model/MeshTokenizer.h"
#include "graphics/model/MeshWeld.h"
#include "platform/FileSystem.h"
#include "platform/Window.h"
#include "platform/gl/OpenGl.h"

namespace {

struct Vertex {  // position, normal and texture coordinates, as PNT2
    float numbers[8];
};

// Two triangles a square of a hilly ground, each with vertices of its own: those of neighbours are equal when the
// normals are smooth and differ when each triangle has its own.
std::vector<Vertex> Ground(std::size_t vertexCount, bool smooth) {
    const auto side = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(vertexCount) / 6.0)));
    std::mt19937 random(3);
    std::uniform_real_distribution<float> height(0.0F, 1.0F);
    std::vector<Vertex> corners((side + 1) * (side + 1));
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const float x = static_cast<float>(i % (side + 1)) / 10.0F;
        const float y = static_cast<float>(i / (side + 1)) / 10.0F;
        corners[i] = {{x, y, height(random), height(random), height(random), 1.0F, x / 10.0F, y / 10.0F}};
    }
    std::vector<Vertex> vertices;
    for (std::size_t triangle = 0; vertices.size() + 3 <= vertexCount; ++triangle) {
        const std::size_t low = triangle / 2 / side * (side + 1) + triangle / 2 % side;
        const std::size_t high = low + side + 1;
        const std::size_t numbers[2][3] = {{low, low + 1, high}, {low + 1, high + 1, high}};
        const float slope[2] = {height(random), height(random)};
        for (const std::size_t number : numbers[triangle % 2]) {
            vertices.push_back(corners[number]);
            if (!smooth) std::copy(slope, slope + 2, vertices.back().numbers + 3);
        }
    }
    return vertices;
}

// Runs both in turn. `prepare` comes before each and is not timed.
template <typename Prepare, typename Ours, typename Peer>
void Compare(benchmark::State& state, Prepare prepare, Ours ours, Peer peer) {
    bench::Turns turns;
    for (auto iteration : state) {
        (void)iteration;
        prepare();
        const double seconds = bench::SecondsOf(ours);
        prepare();
        turns.Add(seconds, bench::SecondsOf(peer));
        state.SetIterationTime(seconds);
    }
    state.counters["ours_us"] = bench::Median(turns.ours) * 1e6;
    state.counters["peer_us"] = bench::Median(turns.theirs) * 1e6;
    state.counters["times_as_fast"] = 1.0 / bench::Median(turns.ratios);
}

const auto nothing = [] {};

const unsigned char* BytesOf(const std::vector<Vertex>& vertices) {
    return reinterpret_cast<const unsigned char*>(vertices.data());
}

void Weld(benchmark::State& state, bool smooth) {
    const std::vector<Vertex> vertices = Ground(static_cast<std::size_t>(state.range(0)), smooth);
    const std::size_t count = vertices.size();
    std::vector<unsigned> indices(count);
    std::iota(indices.begin(), indices.end(), 0U);
    const std::vector<std::uint16_t> shortIndices(indices.begin(), indices.end());
    WeldedVertices ourVertices;
    std::vector<std::uint16_t> ourIndices;
    const auto ours = [&] {
        ourIndices = shortIndices;
        ourVertices = WeldVertices(BytesOf(vertices), count, sizeof(Vertex), ourIndices);
        benchmark::DoNotOptimize(ourVertices.bytes.get());
    };
    std::unique_ptr<Vertex[]> peerVertices;
    std::vector<unsigned> peerIndices(count);
    std::size_t peerCount = 0;
    const auto peer = [&] {
        std::vector<unsigned> remap(count);
        peerCount =
            meshopt_generateVertexRemap(remap.data(), indices.data(), count, vertices.data(), count, sizeof(Vertex));
        meshopt_remapIndexBuffer(peerIndices.data(), indices.data(), count, remap.data());
        peerVertices = std::make_unique_for_overwrite<Vertex[]>(peerCount);
        meshopt_remapVertexBuffer(peerVertices.get(), vertices.data(), count, sizeof(Vertex), remap.data());
        benchmark::DoNotOptimize(peerVertices.get());
    };
    ours();
    peer();
    bench::Require(ourVertices.count == peerCount &&
                       std::memcmp(ourVertices.bytes.get(), peerVertices.get(), peerCount * sizeof(Vertex)) == 0 &&
                       std::equal(ourIndices.begin(), ourIndices.end(), peerIndices.begin()),
                   "the welded meshes differ");
    Compare(state, nothing, ours, peer);
    state.counters["kept"] = static_cast<double>(peerCount);
}

void Floats(benchmark::State& state, const char* format) {
    constexpr int count = 200'000;
    std::mt19937 random(5);
    std::uniform_real_distribution<double> number(-3.0, 3.0);
    std::string text;
    for (int i = 0; i < count; ++i) {
        char word[64];
        text.append(word, static_cast<std::size_t>(std::snprintf(word, sizeof word, format, number(random))));
        text += i % 8 == 7 ? '\n' : ' ';
    }
    std::vector<float> byUs(count);
    std::vector<float> byLibrary(count);
    const auto ours = [&] {
        CappedMessages messages(1);
        G::MeshTokenizer tokens(text, messages);
        for (float& value : byUs)
            value = tokens.ReadFloat();
        bench::Require(!tokens.HasError(), "a float is refused");
    };
    const auto library = [&] {
        const char* at = text.c_str();
        char* end = nullptr;
        for (float& value : byLibrary) {
            value = static_cast<float>(std::strtod(at, &end));
            at = end;
        }
    };
    ours();
    library();
    bench::Require(byUs == byLibrary, "the floats differ");
    Compare(state, nothing, ours, library);
    state.counters["ours_ns_each"] = state.counters["ours_us"] * 1e3 / count;
}

constexpr std::size_t modelVertices = 60'000;
const std::string modelName = "ground.mbm";
const std::string cacheName = "gen\\ground.bmbm";

void Append(std::string& text, const char* before, const float* numbers, std::size_t count) {
    text += before;
    char word[64];
    for (std::size_t i = 0; i < count; ++i)
        text.append(word, static_cast<std::size_t>(std::snprintf(word, sizeof word, " %.6f", numbers[i])));
    text += '\n';
}

// The same mesh as a model text and as an OBJ file, in which all three numbers of a corner are the same.
void WriteModel() {
    const std::vector<Vertex> vertices = Ground(modelVertices, false);
    std::string text = "RandomID { 0.75 }\nMesh { Name { ground } Chunk { Vertices { PNT2 ";
    text += std::to_string(vertices.size()) + "\n";
    std::string object;
    for (const Vertex& vertex : vertices) {
        Append(text, "", vertex.numbers, 8);
        Append(object, "v", vertex.numbers, 3);
        Append(object, "vn", vertex.numbers + 3, 3);
        Append(object, "vt", vertex.numbers + 6, 2);
    }
    text += "} Indices { " + std::to_string(vertices.size()) + "\n";
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        text += std::to_string(i) + (i % 3 == 2 ? "\n" : " ");
        object += (i % 3 == 0 ? "f " : " ") + number + "/" + number + "/" + number + (i % 3 == 2 ? "\n" : "");
    }
    text += "} } }\nBone { Name { root } Mesh { ground } }\n";
    std::ofstream(modelName, std::ios::binary) << text;
    std::ofstream("ground.obj", std::ios::binary) << object;
}

void LoadModel() {
    G::Mesh model;
    bench::Require(model.Load(modelName, true, false, true), "the model does not load");
    const auto& chunks = model.TopBone()->mesh.Mesh().chunks;
    bench::Require(chunks.size() == 1 && chunks[0].vertexBuffer.Count() == modelVertices, "vertices are missing");
}

void ModelFromText(benchmark::State& state) {
    WriteModel();
    const auto prepare = [] {
        G::EmptyModelRegistry();
        platform::RemoveFile(cacheName);
    };
    const auto import = [] {
        Assimp::Importer importer;
        const aiScene* scene = importer.ReadFile("ground.obj", 0);
        bench::Require(scene && scene->mMeshes[0]->mNumVertices == modelVertices, "the import fails");
    };
    Compare(state, prepare, LoadModel, import);
}

// `freshMemory`: the heap gives back what it has to spare, so that both sides fill pages that are new to the process,
// as at the start of a program. Else both get memory that was used just before.
void ModelFromCache(benchmark::State& state, bool freshMemory) {
    // No block comes from the system alone, which would make it fresh.
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TRIM_THRESHOLD, 256 << 20);
    const auto prepare = [freshMemory] {
        G::EmptyModelRegistry();
        if (freshMemory) malloc_trim(0);
    };
    WriteModel();
    G::EmptyModelRegistry();
    LoadModel();
    // Through the system alone, into memory of the file's size that nobody filled before.
    const auto read = [] {
        const int file = open("gen/ground.bmbm", O_RDONLY | O_CLOEXEC);
        struct stat about {};
        bench::Require(file >= 0 && fstat(file, &about) == 0, "there is no cache");
        const auto size = static_cast<std::size_t>(about.st_size);
        const auto bytes = std::make_unique_for_overwrite<char[]>(size);
        bench::Require(::read(file, bytes.get(), size) == about.st_size, "the cache cannot be read");
        benchmark::DoNotOptimize(bytes.get());
        close(file);
    };
    Compare(state, prepare, LoadModel, read);
    state.counters["cache_MB"] = static_cast<double>(std::filesystem::file_size("gen/ground.bmbm")) / 1e6;
}

BENCHMARK_CAPTURE(Weld, shared corners, true)->Arg(1'000)->Arg(10'000)->Arg(60'000)->UseManualTime()->MinTime(0.5);
BENCHMARK_CAPTURE(Weld, all different, false)->Arg(1'000)->Arg(10'000)->Arg(60'000)->UseManualTime()->MinTime(0.5);
BENCHMARK_CAPTURE(Floats, six decimals, "%.6f")->UseManualTime()->MinTime(0.5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Floats, six digits, "%g")->UseManualTime()->MinTime(0.5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Floats, nine digits, "%.9g")->UseManualTime()->MinTime(0.5)->Unit(benchmark::kMillisecond);
BENCHMARK(ModelFromText)->UseManualTime()->MinTime(0.5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ModelFromCache, memory used before, false)
    ->UseManualTime()
    ->MinTime(0.5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ModelFromCache, fresh memory, true)->UseManualTime()->MinTime(0.5)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    // The logs, the model and its cache belong into a folder that goes away.
    std::string folder = (std::filesystem::temp_directory_path() / "kelvane-bench-XXXXXX").string();
    bench::Require(mkdtemp(folder.data()) != nullptr, "no temporary folder");
    std::filesystem::current_path(folder);
    platform::UseOpenGl();
    platform::WindowFailure failure = platform::WindowFailure::None;
    const auto window = platform::CreateMainWindow({"KelvaneBench", "", 800, 600}, failure);
    bench::Require(window != nullptr, "no window");
    DXG::Setup setup;
    setup.width = 800;
    setup.height = 600;
    bench::Require(DXG::Init(window.get(), &setup), "no device");
    benchmark::RunSpecifiedBenchmarks();
    G::EmptyModelRegistry();
    G::DestroyModelBones();
    DXG::Shutdown();
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::remove_all(folder);
    return 0;
}
