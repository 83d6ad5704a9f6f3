// From the start of the process to the first frame on the screen: the client in a small installation folder against a
// bare program with a window, a context and one shader program, without and with a triangle ("drawing"). All are whole
// processes that take turns. Needs a display; the programs are looked for beside this one.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/Turns.h"

namespace {

namespace fs = std::filesystem;

struct Start {
    double wallSeconds = 0.0;
    double processorSeconds = 0.0;
    double peakMiB = 0.0;
};

double Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

Start RunToFirstFrame(const fs::path& program, bool withArgument = false) {
    int ends[2] = {};
    bench::Require(pipe2(ends, O_CLOEXEC) == 0, "no pipe");
    setenv("FIRST_FRAME_FD", "9", 1);
    setenv("LD_PRELOAD", (program.parent_path() / "first_frame.so").c_str(), 1);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 9);
    std::string name = program.string();
    char draw[] = "draw";
    char* arguments[] = {name.data(), withArgument ? draw : nullptr, nullptr};
    pid_t child = 0;
    const double begin = Now();
    const int failure = posix_spawn(&child, name.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    unsetenv("LD_PRELOAD");
    close(ends[1]);
    bench::Require(failure == 0, "a program does not start");
    std::string text;
    char piece[256];
    for (ssize_t count = 0; (count = read(ends[0], piece, sizeof piece)) > 0;)
        text.append(piece, static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    double moment = 0.0;
    long peak = 0;
    Start start;
    const int found = std::sscanf(text.c_str(), "%lf %lf %ld", &moment, &start.processorSeconds, &peak);
    bench::Require(found == 3 && status == 0, "a program ended without a frame; is there a display?");
    start.wallSeconds = moment - begin;
    start.peakMiB = static_cast<double>(peak) / 1024.0;
    return start;
}

void FirstFrame(benchmark::State& state, const fs::path& programs) {
    bench::Turns wall;
    bench::Turns processor;
    bench::Turns peak;
    bench::Turns drawingWall;
    bench::Turns drawingPeak;
    // Caches of files, fonts and the driver are warm from here on.
    (void)RunToFirstFrame(programs / "start_bare");
    (void)RunToFirstFrame(programs / "kelvane");
    for (auto iteration : state) {
        (void)iteration;
        const Start bare = RunToFirstFrame(programs / "start_bare");
        const Start client = RunToFirstFrame(programs / "kelvane");
        wall.Add(client.wallSeconds, bare.wallSeconds);
        processor.Add(client.processorSeconds, bare.processorSeconds);
        peak.Add(client.peakMiB, bare.peakMiB);
        const Start drawing = RunToFirstFrame(programs / "start_bare", true);
        drawingWall.Add(client.wallSeconds, drawing.wallSeconds);
        drawingPeak.Add(client.peakMiB, drawing.peakMiB);
        state.SetIterationTime(client.wallSeconds);
    }
    state.counters["wall_ms"] = bench::Median(wall.ours) * 1e3;
    state.counters["bare_wall_ms"] = bench::Median(wall.theirs) * 1e3;
    state.counters["wall_ratio"] = bench::Median(wall.ratios);
    state.counters["wall_ratio_drawing"] = bench::Median(drawingWall.ratios);
    state.counters["cpu_ms"] = bench::Median(processor.ours) * 1e3;
    state.counters["bare_cpu_ms"] = bench::Median(processor.theirs) * 1e3;
    state.counters["cpu_ratio"] = bench::Median(processor.ratios);
    state.counters["peak_MiB"] = bench::Median(peak.ours);
    state.counters["more_MiB"] = bench::Median(peak.ours) - bench::Median(peak.theirs);
    state.counters["more_MiB_drawing"] = bench::Median(drawingPeak.ours) - bench::Median(drawingPeak.theirs);
}

// A folder with the client's data and one character.
std::string MakeInstallation() {
    std::string folder = (fs::temp_directory_path() / "kelvane-bench-XXXXXX").string();
    bench::Require(mkdtemp(folder.data()) != nullptr, "no temporary folder");
    fs::copy(KELVANE_DATA_DIR, fs::path(folder) / "data", fs::copy_options::recursive);
    std::ofstream(fs::path(folder) / "bench.ini")
        << "V1.6\nName=Bench\nPassword=none\nColors=!!!!!!!!!!\nDesc=A character\nSpec=00\n";
    return folder;
}

}  // namespace

int main(int argc, char** argv) {
    const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
    benchmark::Initialize(&argc, argv);
    const std::string folder = MakeInstallation();
    fs::current_path(folder);
    benchmark::RegisterBenchmark("first frame", [&](benchmark::State& state) { FirstFrame(state, programs); })
        ->UseManualTime()
        ->Iterations(21)
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    fs::current_path(fs::temp_directory_path());
    fs::remove_all(folder);
    return 0;
}
