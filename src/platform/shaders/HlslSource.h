#pragma once
// What has to be known of an HLSL source before the compiler sees it: refusals that the compiler would word badly, the
// registers of its samplers and the initial values of its constants, which the compiler drops.

#include <map>
#include <string>
#include <vector>

namespace platform {

struct HlslSource {
    std::map<std::string, unsigned> samplerRegisters;
    // The numbers of "type name = initialiser;" at file level, in order; true and false are 1 and 0.
    std::map<std::string, std::vector<double>> initialValues;
    // Constants whose initialiser is more than a list of numbers; it is not applied.
    std::vector<std::string> unreadInitialisers;
};

// False with `reason` ("line 3: ...") when the source is too large or too deeply nested for the compiler's recursion,
// or its macros grow without measure: at most 256 KiB, 128 open brackets and statements, 2048 tokens in a statement,
// 50000 in all.
[[nodiscard]] bool CheckHlslText(const std::string& source, std::string& reason);

// Reads a source whose macros are replaced. False with `reason` when it uses what is not supported, or has one of the
// faults that end the compiler: a name declared twice at file level, a declaration that goes on after its name, a
// parameter of the entry function without a name.
[[nodiscard]] bool ReadHlslSource(const std::string& preprocessed, const std::string& entry, HlslSource& out,
                                  std::string& reason);

}  // namespace platform
