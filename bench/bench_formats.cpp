// The LZW decoder against libtiff's on one code stream, and archives of bzip2 entries against bare libbz2.
//
// Both sides of a comparison run in turn inside every iteration, on the processor time of the one thread, so that other
// load on the machine weighs on both. The counters give each side's median time and "times_as_fast": how many times as
// fast as the library we are.

#include <benchmark/benchmark.h>
#include <bzlib.h>
#include <tiffio.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Turns.h"
#include "demo/formats/ArchiveWriter.h"
#include "demo/formats/LzwEncoder.h"
#include "formats/DreamArchive.h"
#include "formats/Lzw.h"
#include "platform/FileSystem.h"

namespace {

constexpr std::size_t contentBytes = 8U << 20;

// Floor and wall pictures: diamonds of a few dithered colours on a transparent ground, as the game's sprites are.
std::string SpriteLikeBytes() {
    std::mt19937 random(1);
    std::string bytes;
    while (bytes.size() < contentBytes) {
        const int width = 32 + static_cast<int>(random() % 64);
        const int height = 16 + static_cast<int>(random() % 48);
        const unsigned base = 16 + random() % 200;
        for (int y = 0; y < height; ++y) {
            const int half = width / 2 * (height - std::abs(2 * y - height)) / height;
            for (int x = 0; x < width; ++x) {
                const bool inside = std::abs(x - width / 2) < half;
                const unsigned shade = (x + y) % 4 == 0 ? random() % 4 : static_cast<unsigned>(x / 8 % 3);
                bytes.push_back(static_cast<char>(inside ? base + shade : 0));
            }
        }
    }
    bytes.resize(contentBytes);
    return bytes;
}

// Made-up words, the frequent ones far more often than the rare ones, in sentences and lines.
std::string TextBytes() {
    std::mt19937 random(2);
    std::vector<std::string> words(5000);
    for (std::string& word : words) {
        const std::size_t length = 2 + random() % 9;
        for (std::size_t i = 0; i < length; ++i)
            word.push_back("etaoinshrdlucmfwypvbgk"[std::min(random() % 22, random() % 22)]);
    }
    std::string bytes;
    while (bytes.size() < contentBytes) {
        const double share = static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
        bytes += words[static_cast<std::size_t>(share * share * share * static_cast<double>(words.size() - 1))];
        const unsigned mark = random() % 60;
        bytes += mark < 3 ? ".\n" : mark < 6 ? ", " : " ";
    }
    bytes.resize(contentBytes);
    return bytes;
}

// Runs both in turn and reports the median times and the median of the ratios of neighbours. `prepare` is not timed.
template <typename Prepare, typename Ours, typename Library>
void Compare(benchmark::State& state, std::size_t bytes, Prepare prepare, Ours ours, Library library) {
    bench::Turns turns;
    for (auto iteration : state) {
        (void)iteration;
        prepare();
        const double oursSeconds = bench::SecondsOf(ours);
        turns.Add(oursSeconds, bench::SecondsOf(library));
        state.SetIterationTime(oursSeconds);
    }
    state.counters["ours_ms"] = bench::Median(turns.ours) * 1e3;
    state.counters["library_ms"] = bench::Median(turns.theirs) * 1e3;
    state.counters["ours_MBps"] = static_cast<double>(bytes) / bench::Median(turns.ours) / 1e6;
    state.counters["times_as_fast"] = 1.0 / bench::Median(turns.ratios);
}

// A TIFF file in memory. libtiff reads it through the map, without copying.
struct MemoryFile {
    std::string bytes;
    std::size_t position = 0;

    static MemoryFile& Of(thandle_t handle) { return *static_cast<MemoryFile*>(handle); }
    static tmsize_t Read(thandle_t handle, void* out, tmsize_t count) {
        MemoryFile& file = Of(handle);
        const std::size_t left = file.bytes.size() - std::min(file.position, file.bytes.size());
        const std::size_t taken = std::min(left, static_cast<std::size_t>(count));
        std::memcpy(out, file.bytes.data() + file.position, taken);
        file.position += taken;
        return static_cast<tmsize_t>(taken);
    }
    static tmsize_t Write(thandle_t handle, void* from, tmsize_t count) {
        MemoryFile& file = Of(handle);
        file.bytes.resize(std::max(file.bytes.size(), file.position + static_cast<std::size_t>(count)));
        std::memcpy(file.bytes.data() + file.position, from, static_cast<std::size_t>(count));
        file.position += static_cast<std::size_t>(count);
        return count;
    }
    static toff_t Seek(thandle_t handle, toff_t offset, int whence) {
        MemoryFile& file = Of(handle);
        const std::size_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.position : file.bytes.size();
        file.position = base + offset;
        return file.position;
    }
    static int Close(thandle_t) { return 0; }
    static toff_t Size(thandle_t handle) { return Of(handle).bytes.size(); }
    static int Map(thandle_t handle, void** base, toff_t* size) {
        *base = Of(handle).bytes.data();
        *size = Of(handle).bytes.size();
        return 1;
    }
    static void Unmap(thandle_t, void*, toff_t) {}
    TIFF* Open(const char* mode) {
        position = 0;
        return TIFFClientOpen("memory", mode, this, Read, Write, Seek, Close, Size, Map, Unmap);
    }
};

// One strip of 8-bit samples whose stored data is the code stream.
MemoryFile TiffOf(const std::string& stream) {
    constexpr std::uint32_t width = 4096;
    MemoryFile file;
    TIFF* tiff = file.Open("w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(contentBytes / width));
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(contentBytes / width));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    std::string copy = stream;
    TIFFWriteRawStrip(tiff, 0, copy.data(), static_cast<tmsize_t>(copy.size()));
    TIFFClose(tiff);
    return file;
}

void Lzw(benchmark::State& state, std::string (*makeContent)()) {
    const std::string content = makeContent();
    const std::string stream = demo::LzwEncode(content);
    MemoryFile file = TiffOf(stream);
    TIFF* tiff = file.Open("r");
    std::string byLibrary(contentBytes, '\0');
    std::string byUs;
    const auto prepare = [&] { byUs.clear(); };
    const auto ours = [&] {
        LzwDecode(stream, byUs, contentBytes);
        benchmark::DoNotOptimize(byUs.data());
    };
    const auto library = [&] {
        TIFFReadEncodedStrip(tiff, 0, byLibrary.data(), static_cast<tmsize_t>(byLibrary.size()));
        benchmark::DoNotOptimize(byLibrary.data());
    };
    prepare();
    ours();
    library();
    bench::Require(byUs == content && byLibrary == content, "the decoders disagree");
    Compare(state, contentBytes, prepare, ours, library);
    state.counters["stream_MiB"] = static_cast<double>(stream.size()) / (1 << 20);
    TIFFClose(tiff);
}

// A whole archive with one bzip2 entry, unpacked into a folder, against one call of the library that knows the size.
void Bzip2Archive(benchmark::State& state, std::string (*makeContent)()) {
    const std::string content = makeContent();
    std::string packed = demo::StoredData(demo::ArchiveMethod::Bzip2, content);
    std::ofstream("bench.arc", std::ios::binary)
        << demo::WriteArchive({{"out.bin", demo::ArchiveMethod::Bzip2, content}});
    std::string byLibrary(contentBytes, '\0');
    const auto prepare = [&] {
        std::filesystem::remove("out.bin");
        platform::ForgetListings();
    };
    const auto ours = [&] { bench::Require(UnpackDreamArchive("bench.arc"), "the archive does not unpack"); };
    const auto library = [&] {
        auto size = static_cast<unsigned>(byLibrary.size());
        BZ2_bzBuffToBuffDecompress(byLibrary.data(), &size, packed.data(), static_cast<unsigned>(packed.size()), 0, 0);
        benchmark::DoNotOptimize(byLibrary.data());
    };
    prepare();
    ours();
    library();
    std::ifstream written("out.bin", std::ios::binary);
    std::stringstream byUs;
    byUs << written.rdbuf();
    bench::Require(byUs.str() == content && byLibrary == content, "the unpacked file differs");
    Compare(state, contentBytes, prepare, ours, library);
}

BENCHMARK_CAPTURE(Lzw, sprites, SpriteLikeBytes)->UseManualTime()->MinTime(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Lzw, text, TextBytes)->UseManualTime()->MinTime(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Bzip2Archive, sprites, SpriteLikeBytes)->UseManualTime()->MinTime(4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Bzip2Archive, text, TextBytes)->UseManualTime()->MinTime(4)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    // The logs and the unpacked files belong into a folder that goes away.
    std::string folder = (std::filesystem::temp_directory_path() / "kelvane-bench-XXXXXX").string();
    bench::Require(mkdtemp(folder.data()) != nullptr, "no temporary folder");
    std::filesystem::current_path(folder);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::remove_all(folder);
    return 0;
}
