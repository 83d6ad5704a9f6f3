#include "fuzz/FuzzEntry.h"
#include "fuzz/FuzzModels.h"

namespace {

// Little-endian fields after each other.
std::string Bytes(std::initializer_list<std::pair<unsigned, std::uint32_t>> fields) {
    std::string bytes;
    for (auto [count, number] : fields)
        for (; count > 0; --count, number >>= 8)
            bytes += static_cast<char>(number & 0xFFU);
    return bytes;
}

constexpr std::uint32_t half = 0x3F000000;  // the identifier 0.5

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    using namespace std::string_literals;
    const std::string pose(48, '\0');
    const std::string low = "\x02\0\0\0\0\x03low\x01m\0"s + pose;
    const std::string top = "\x02\0\0\0\0\x03top\0\x01\x03low"s + pose;
    const std::string mesh = "\x01\x01m\x01\xFF\x05x.png\0\0"s + Bytes({{1, 16}, {4, 2}, {4, 0}, {4, 2}, {4, 1}}) +
                             Bytes({{2, 1}, {1, 24}}) + std::string(24, '\0') + Bytes({{2, 3}}) + std::string(6, '\0') +
                             Bytes({{2, 1}}) + std::string(12, '\0') + Bytes({{2, 3}}) + std::string(6, '\0');
    return {Bytes({{4, 1335}, {4, half}}) + mesh + low + top + "\0"s,
            Bytes({{4, 1335}, {4, half}}) + low + low + "\0"s};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    fuzz::BeginModels();
    fuzz::WriteFile("m.mbm", "RandomID { 0.5 } Bone { }\n");
    fuzz::WriteFile("gen/m.bmbm", fuzz::Text(data, size));
    G::Mesh model;
    (void)model.Load("m.mbm", true, size % 2 == 0, true);
    fuzz::EndModels(model);
    fuzz::RemoveFolder("gen");
    return 0;
}
