// Server lines: cutting them out of a stream against a bare memchr loop, and bursts of up to 200 000 of them, handled
// as fast as frames take them.

#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <thread>

#include "bench/Turns.h"
#include "demo/formats/MapWriter.h"
#include "diag/CMemMan.h"
#include "formats/TolvMap.h"
#include "graphics/device/DXGDevice.h"
#include "graphics/text/GBTextWindow.h"
#include "net/NetClient.h"
#include "platform/Clock.h"
#include "platform/scripted/ScriptedDevice.h"
#include "session/LineFramer.h"
#include "session/TolvDataManager.h"
#include "session/TolvSession.h"
#include "session/WireNumbers.h"

namespace {

constexpr std::size_t chunkBytes = 1460;  // what one TCP segment carries over Ethernet

std::string Cell(unsigned place) {
    return EncodeBase95(static_cast<int>(4 + place % 32), true) +
           EncodeBase95(static_cast<int>(4 + place / 32 % 32), true);
}

// What a busy map sends: mostly characters that walk, some chat, floors, objects, the view.
std::string GameLine(std::mt19937& random) {
    const unsigned kind = random() % 20;
    const unsigned place = random() % 1024;
    if (kind < 11) return "/AAAAAAAAAA" + Cell(place) + "  " + Cell(place + 1);
    if (kind < 16) {
        std::string text = kind < 14 ? "(Somebody says, \"" : "[ ";
        text.append(random() % 120, 'w');
        return text + "\"";
    }
    if (kind == 16) return "1" + Cell(place) + " !";
    if (kind == 17) return ">" + Cell(place) + " !";
    if (kind == 18) return "<AAAAAAAAAA" + Cell(place) + "  ";
    return "@" + Cell(place);
}

std::string GameLines(std::size_t count) {
    std::mt19937 random(3);
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += GameLine(random) + "\n";
    return bytes;
}

std::string LongLines(std::size_t count) {
    std::mt19937 random(4);
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += std::string(400 + random() % 800, 'w') + "\n";
    return bytes;
}

struct Sum {
    std::size_t lines = 0;
    std::size_t bytes = 0;
    bool operator==(const Sum&) const = default;
};

Sum ByFramer(const std::string& stream) {
    Sum sum;
    LineFramer framer;
    for (std::size_t at = 0; at < stream.size(); at += chunkBytes)
        framer.Feed(std::string_view(stream).substr(at, chunkBytes), [&sum](std::string_view line) {
            ++sum.lines;
            sum.bytes += line.size();
            benchmark::DoNotOptimize(line.data());
        });
    return sum;
}

// Finds the line feeds of each chunk where it lies and copies nothing.
Sum ByMemchr(const std::string& stream) {
    Sum sum;
    for (std::size_t at = 0; at < stream.size(); at += chunkBytes) {
        const char* place = stream.data() + at;
        const char* const end = place + std::min(chunkBytes, stream.size() - at);
        while (place < end) {
            const auto* feed =
                static_cast<const char*>(std::memchr(place, '\n', static_cast<std::size_t>(end - place)));
            sum.bytes += static_cast<std::size_t>((feed ? feed : end) - place);
            if (!feed) break;
            ++sum.lines;
            place = feed + 1;
            benchmark::DoNotOptimize(place);
        }
    }
    return sum;
}

// The same with each whole line handed over as a string, which is what a framer is for.
Sum ByMemchrIntoStrings(const std::string& stream) {
    Sum sum;
    std::string line;
    std::string rest;
    for (std::size_t at = 0; at < stream.size(); at += chunkBytes) {
        const char* place = stream.data() + at;
        const char* const end = place + std::min(chunkBytes, stream.size() - at);
        while (place < end) {
            const auto* feed =
                static_cast<const char*>(std::memchr(place, '\n', static_cast<std::size_t>(end - place)));
            if (!feed) {
                rest.append(place, end);
                break;
            }
            if (rest.empty()) {
                line.assign(place, feed);
            } else {
                line = rest.append(place, feed);
                rest.clear();
            }
            ++sum.lines;
            sum.bytes += line.size();
            benchmark::DoNotOptimize(line.data());
            place = feed + 1;
        }
    }
    return sum;
}

void SplitLines(benchmark::State& state, std::string (*make)(std::size_t), std::size_t count) {
    const std::string stream = make(count);
    bench::Require(ByFramer(stream) == ByMemchr(stream) && ByFramer(stream) == ByMemchrIntoStrings(stream),
                   "the splitters disagree");
    bench::Turns bare;
    bench::Turns strings;
    for (auto iteration : state) {
        (void)iteration;
        const double ours = bench::SecondsOf([&] { benchmark::DoNotOptimize(ByFramer(stream)); });
        bare.Add(ours, bench::SecondsOf([&] { benchmark::DoNotOptimize(ByMemchr(stream)); }));
        strings.Add(ours, bench::SecondsOf([&] { benchmark::DoNotOptimize(ByMemchrIntoStrings(stream)); }));
        state.SetIterationTime(ours);
    }
    const auto bytes = static_cast<double>(stream.size());
    state.counters["line_bytes"] = bytes / static_cast<double>(count);
    state.counters["GBps"] = bytes / bench::Median(bare.ours) / 1e9;
    state.counters["memchr_GBps"] = bytes / bench::Median(bare.theirs) / 1e9;
    state.counters["of_memchr"] = 1.0 / bench::Median(bare.ratios);
    state.counters["of_memchr_into_strings"] = 1.0 / bench::Median(strings.ratios);
}

// A session that is logged in to a peer on the loopback address, and the chat window that shows its messages.
class Game {
  public:
    Game() {
        const int listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        const bool listens =
            bind(listener, any, length) == 0 && listen(listener, 1) == 0 && getsockname(listener, any, &length) == 0;
        bench::Require(listens && client.Connect("127.0.0.1", ntohs(address.sin_port)), "no connection");
        peer = accept(listener, nullptr, nullptr);
        close(listener);
        (void)TolvMap::Current().LoadMapBytes(demo::WriteMap(demo::MapDrawing(40, 40)), "bench");
        session.SetNetClient(&client);
        Arrive("END\n");
        session.PollServer();
        Arrive("&&&&&&&&&&&&&\n");
        session.PollServer();
        Show();
    }
    ~Game() { close(peer); }
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    // Sends the bytes and waits until all of them can be received.
    void Arrive(const std::string& bytes) {
        std::thread sender([&] {
            for (std::size_t sent = 0; sent < bytes.size();) {
                const ssize_t count = send(peer, bytes.data() + sent, bytes.size() - sent, 0);
                bench::Require(count > 0, "the peer cannot send");
                sent += static_cast<std::size_t>(count);
            }
        });
        while (client.IsConnected() && client.PendingBytes() < bytes.size())
            platform::SleepMs(5);
        sender.join();
        bench::Require(client.IsConnected(), "the connection was lost");
    }

    // What the main scene does with what has arrived, in as many frames as it takes.
    void Frames() {
        do {
            session.PollServer();
            Show();
        } while (session.HasUnhandled());
    }

  private:
    void Show() {
        std::string message;
        while (TolvDataManager::Default().PopMessage(message))
            chat.AddLine(G::ColouredText().Add(message));
    }

    NET::Client client;
    TolvSession session;
    G::TextWindow chat{40, 300, 700, 250, 60};
    int peer = -1;
};

// Bursts of growing size take turns, so that a cost per line that grows with the burst shows as a ratio above 1.
void Burst(benchmark::State& state) {
    constexpr std::size_t sizes[] = {50'000, 100'000, 200'000};
    Game game;
    std::vector<double> perLine[3];
    std::vector<double> ratios[3];
    for (auto iteration : state) {
        (void)iteration;
        for (int i = 0; i < 3; ++i) {
            TolvDataManager::Default().ClearCharacters();
            game.Arrive(GameLines(sizes[i]));
            perLine[i].push_back(bench::SecondsOf([&] { game.Frames(); }) / static_cast<double>(sizes[i]));
            ratios[i].push_back(perLine[i].back() / perLine[0].back());
        }
        state.SetIterationTime(perLine[2].back() * static_cast<double>(sizes[2]));
    }
    state.counters["ns_per_line_50k"] = bench::Median(perLine[0]) * 1e9;
    state.counters["ns_per_line_100k"] = bench::Median(perLine[1]) * 1e9;
    state.counters["ns_per_line_200k"] = bench::Median(perLine[2]) * 1e9;
    state.counters["ratio_100k"] = bench::Median(ratios[1]);
    state.counters["ratio_200k"] = bench::Median(ratios[2]);
}

BENCHMARK_CAPTURE(SplitLines, game_lines, GameLines, 100'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SplitLines, long_lines, LongLines, 10'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Burst)->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    // The logs belong into a folder that goes away.
    std::string folder = (std::filesystem::temp_directory_path() / "kelvane-bench-XXXXXX").string();
    bench::Require(mkdtemp(folder.data()) != nullptr, "no temporary folder");
    std::filesystem::current_path(folder);
    platform::ScriptedGraphics::Start();
    platform::ScriptedWindow window;
    DXG::Setup setup;
    setup.width = 800;
    setup.height = 600;
    bench::Require(DXG::Init(&window, &setup), "no scripted device");
    benchmark::RunSpecifiedBenchmarks();
    DXG::Shutdown();
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::remove_all(folder);
    return 0;
}
