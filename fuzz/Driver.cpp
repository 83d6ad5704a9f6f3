// Runs a fuzz entry without libFuzzer: sound inputs and those of folders, then mutations of them, the same ones every
// time.
//
//   fuzz_map [-s SECONDS] [-r SEED] [FOLDER...]    for so long (else $FUZZ_SECONDS, else 3)
//   fuzz_map FILE...                               these alone
//   fuzz_map -w FOLDER                             writes the sound inputs, as seeds
//
// The input at hand lies in "<program>.input" in the folder where the program was started, so that it can be given
// again after a crash.

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <sstream>

#include "fuzz/FuzzEntry.h"

namespace {

constexpr std::size_t largestInput = 1U << 20;
// An input that takes this long hangs the reader.
constexpr unsigned hangSeconds = 60;

class Mutator {
  public:
    Mutator(std::vector<std::string> toMutate, unsigned seed) : seeds(std::move(toMutate)), random(seed) {}

    std::string Next() {
        std::string input = seeds.empty() ? std::string() : seeds[Below(seeds.size())];
        for (std::size_t step = 1 + Below(6); step > 0; --step)
            Mutate(input);
        if (input.size() > largestInput) input.resize(largestInput);
        return input;
    }

  private:
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : random() % limit; }

    void Mutate(std::string& input) {
        // Half of the changes go to the first bytes, where headers are.
        const std::size_t at = Below(random() % 2 ? std::min<std::size_t>(input.size(), 128) : input.size());
        const std::size_t length = Below(std::min<std::size_t>(input.size() - at, 64) + 1);
        switch (Below(8)) {
            case 0:
                if (!input.empty()) input[at] = static_cast<char>(input[at] ^ (1 << Below(8)));
                break;
            case 1:
                input.insert(at, 1 + Below(8), static_cast<char>(random()));
                break;
            case 2:
                input.erase(at, length);
                break;
            case 3:
                input.insert(at, std::string(input, at, length));
                break;
            case 4:
                PutNumber(input, at);
                break;
            case 5:
                input.resize(at);
                break;
            case 6:
                Splice(input, at);
                break;
            default:
                for (std::size_t i = 0; i < length; ++i)
                    input[at + i] = static_cast<char>(random());
        }
    }

    // Numbers at the edges of their types, little-endian over 1, 2 or 4 bytes, or as text.
    void PutNumber(std::string& input, std::size_t at) {
        static constexpr std::uint32_t edges[] = {0,     1,        16,         127,        128,         255,
                                                  256,   1023,     4096,       32767,      32768,       65535,
                                                  65536, 1U << 20, 0x7FFFFFFF, 0x80000000, 0xFFFFFFC2U, 0xFFFFFFFFU};
        const std::uint32_t number = edges[Below(std::size(edges))];
        if (random() % 3 == 0) {
            input.replace(at, Below(6), std::to_string(static_cast<std::int32_t>(number)));
            return;
        }
        const std::size_t width = std::size_t{1} << Below(3);
        for (std::size_t i = 0; i < width && at + i < input.size(); ++i)
            input[at + i] = static_cast<char>(number >> (8 * i));
    }

    void Splice(std::string& input, std::size_t at) {
        const std::string& other = seeds[Below(seeds.size())];
        input.replace(at, std::string::npos, other, Below(other.size() + 1), std::string::npos);
    }

    std::vector<std::string> seeds;
    std::mt19937 random;
};

std::string inputPath;

void Run(const std::string& input) {
    std::ofstream(inputPath, std::ios::binary).write(input.data(), static_cast<std::streamsize>(input.size()));
    alarm(hangSeconds);
    // A buffer of the exact size, so that a read past the end is seen.
    const std::vector<std::uint8_t> exact(input.begin(), input.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    alarm(0);
}

std::string FileContent(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

[[noreturn]] void Refuse(const std::string& why) {
    std::cerr << "error: " << why << "\n";
    std::exit(2);
}

void WriteSeeds(const std::string& where) {
    // Making the seeds may change the working folder.
    const std::filesystem::path folder = std::filesystem::absolute(where);
    std::filesystem::create_directories(folder);
    int number = 0;
    for (const std::string& seed : fuzz::Seeds())
        std::ofstream(folder / ("sound-" + std::to_string(number++)), std::ios::binary) << seed;
}

// The files of a folder in the order of their names.
void AddFolder(const std::filesystem::path& folder, std::vector<std::string>& inputs) {
    std::vector<std::filesystem::path> files;
    for (const auto& file : std::filesystem::directory_iterator(folder))
        files.push_back(file.path());
    if (files.empty()) Refuse("no inputs in " + folder.string());
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files)
        inputs.push_back(FileContent(file));
}

}  // namespace

int main(int argc, char** argv) {
    const char* environment = std::getenv("FUZZ_SECONDS");
    double seconds = environment ? std::atof(environment) : 3.0;
    unsigned seed = 1;
    for (int option = getopt(argc, argv, "s:r:w:"); option != -1; option = getopt(argc, argv, "s:r:w:")) {
        if (option == 's')
            seconds = std::atof(optarg);
        else if (option == 'r')
            seed = static_cast<unsigned>(std::atoi(optarg));
        else if (option == 'w')
            return WriteSeeds(optarg), 0;
        else
            return 2;
    }
    const std::string program = std::filesystem::path(argv[0]).filename().string();
    inputPath = (std::filesystem::current_path() / (program + ".input")).string();
    std::size_t runs = 0;
    std::vector<std::string> inputs;
    bool replay = false;
    for (int i = optind; i < argc; ++i) {
        if (std::filesystem::is_directory(argv[i])) {
            AddFolder(argv[i], inputs);
        } else if (std::filesystem::exists(argv[i])) {
            inputs.push_back(FileContent(argv[i]));
            replay = true;
        } else {
            Refuse(std::string("no file or folder ") + argv[i]);
        }
    }
    if (!replay) std::ranges::move(fuzz::Seeds(), std::back_inserter(inputs));
    for (const std::string& input : inputs)
        Run(input), ++runs;
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(replay ? 0.0 : seconds);
    for (Mutator mutator(inputs, seed); std::chrono::steady_clock::now() < end; ++runs)
        Run(mutator.Next());
    std::filesystem::remove(inputPath);
    std::cout << program << ": " << runs << " inputs\n";
    return 0;
}
