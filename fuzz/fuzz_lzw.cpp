#include "demo/formats/LzwEncoder.h"
#include "formats/Lzw.h"
#include "fuzz/FuzzEntry.h"

std::vector<std::string> fuzz::Seeds() {
    std::string varied;
    for (int i = 0; i < 20000; ++i)
        varied.push_back(static_cast<char>(i * i / 7 % 251));
    return {demo::LzwEncode("a text, a text"), demo::LzwEncode(varied), demo::LzwEncode(varied, 60000),
            demo::LzwEncode(std::string(50000, 'x'))};
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::BeginRun();
    std::string out;
    LzwDecode(fuzz::Text(data, size), out, 1U << 19);
    return 0;
}
