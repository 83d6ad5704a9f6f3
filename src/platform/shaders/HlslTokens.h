#pragma once
// HLSL as words, numbers and signs.

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct HlslToken {
    std::string text;
    unsigned line = 1;
};

struct HlslMacro {
    std::vector<std::string> body;
    std::set<std::string> parameters;
};

struct HlslTokens {
    std::vector<HlslToken> tokens;        // without comments and directives
    std::vector<std::string> conditions;  // the words of every #if and #elif
    std::map<std::string, HlslMacro>
        macros;  // by name; of several definitions of one name all are here, one behind the other
};

[[nodiscard]] HlslTokens SplitHlsl(std::string_view source);

// Letters, digits and the underscore.
[[nodiscard]] bool IsWordLetter(char letter);

}  // namespace platform
