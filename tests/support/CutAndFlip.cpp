#include "support/CutAndFlip.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <ctime>
#include <set>
#include <vector>

#include "diag/CMemMan.h"
#include "support/TestFolder.h"

namespace support {
namespace {

constexpr unsigned hangSeconds = 30;
constexpr std::clock_t longest = 2 * CLOCKS_PER_SEC;  // of the processor
// The address sanitizer keeps freed memory for a while, 256 MiB of it and what it writes down of that.
#ifdef __SANITIZE_ADDRESS__
constexpr long mostKib = (64 + 512) << 10;
#else
constexpr long mostKib = 64 << 10;
#endif

long PeakKib() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Lines that begin a message: what belongs to one is indented.
std::size_t MessagesIn(const std::string& log) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < log.size(); at = log.find('\n', at) + 1)
        count += log[at] != ' ' && log[at] != '\n' ? 1 : 0;
    return count;
}

class Damage {
  public:
    explicit Damage(const SoundFile& toDamage) : file(toDamage) {}

    bool Read(const std::string& bytes, const std::string& what) {
        ClearErrorLog();
        const std::vector<char> exact(bytes.begin(), bytes.end());
        alarm(hangSeconds);
        const std::clock_t start = std::clock();
        const bool accepted = file.read({exact.data(), exact.size()});
        EXPECT_LT(std::clock() - start, longest) << file.name << ", " << what;
        alarm(0);
        return accepted;
    }

    void Cut() {
        for (std::size_t length = 0; length < file.bytes.size(); ++length) {
            const std::string what = "cut to " + std::to_string(length);
            const bool accepted = Read(file.bytes.substr(0, length), what);
            const bool expected = file.acceptsCut ? file.acceptsCut(length) : accepted;
            EXPECT_EQ(accepted, expected) << file.name << ", " << what;
            const std::string log = ErrorLogWithoutStacks();
            EXPECT_LE(MessagesIn(log), file.mostMessages) << file.name << ", " << what << ": " << log;
            EXPECT_TRUE(accepted || !log.empty() || file.refusesSilently) << file.name << ", " << what;
        }
    }

    void Flip() {
        for (std::size_t at = 0; at < file.bytes.size(); ++at)
            for (const int bits : {0x01, 0xFF})
                Put(at, 1, std::string(1, static_cast<char>(file.bytes[at] ^ bits)), "flipped");
    }

    void Count() {
        for (std::size_t at = 0; at < file.bytes.size(); ++at) {
            if (file.isText)
                CountInDigits(at);
            else
                for (const std::size_t width : {1, 2, 4})
                    CountInBytes(at, width);
        }
    }

  private:
    void Put(std::size_t at, std::size_t length, const std::string& bytes, const char* what) {
        std::string damaged = file.bytes;
        damaged.replace(at, length, bytes);
        if (damaged != file.bytes) (void)Read(damaged, std::to_string(at) + " " + what);
    }

    void CountInBytes(std::size_t at, std::size_t width) {
        if (width > file.bytes.size() - at) return;
        const std::size_t following = file.bytes.size() - at - width;
        for (const std::size_t number : std::set<std::size_t>{0, 1, ~std::size_t{0}, following + 1}) {
            std::string count;
            for (std::size_t i = 0; i < width; ++i)
                count += static_cast<char>(number >> (8 * i));
            Put(at, width, count, "a count");
        }
    }

    void CountInDigits(std::size_t at) {
        const auto isDigit = [&](std::size_t i) { return std::isdigit(static_cast<unsigned char>(file.bytes[i])); };
        if (!isDigit(at) || (at > 0 && isDigit(at - 1))) return;
        const std::size_t end = std::min(file.bytes.find_first_not_of("0123456789", at), file.bytes.size());
        const std::string more = std::to_string(file.bytes.size() - end + 1);
        for (const std::string& number : {std::string("0"), std::string("1"), std::string("2147483647"),
                                          std::string("4294967295"), std::string("-1"), more})
            Put(at, end - at, number, "a count");
    }

    const SoundFile& file;
};

}  // namespace

void CutAndFlip(const SoundFile& file) {
    Damage damage(file);
    EXPECT_TRUE(damage.Read(file.bytes, "sound")) << file.name << ": " << ErrorLogText();
    const long peakBefore = PeakKib();
    const std::size_t blocksBefore = MemoryManager::Default().LiveBlocks();
    damage.Cut();
    damage.Flip();
    if (file.hasCounts) damage.Count();
    EXPECT_LT(PeakKib() - peakBefore, mostKib) << file.name;
    EXPECT_TRUE(damage.Read(file.bytes, "sound again")) << file.name << ": " << ErrorLogText();
    EXPECT_EQ(MemoryManager::Default().LiveBlocks(), blocksBefore) << file.name;
}

}  // namespace support
