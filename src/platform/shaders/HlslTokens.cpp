#include "platform/shaders/HlslTokens.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace platform {

namespace {

class Lexer {
  public:
    explicit Lexer(std::string_view source) : rest(source) {}

    HlslTokens out;

    void Run() {
        while (!rest.empty())
            Step();
    }

  private:
    void Step() {
        const char letter = rest.front();
        if (letter == '\n') {
            ++line;
            lineStart = true;
            rest.remove_prefix(1);
        } else if (std::isspace(static_cast<unsigned char>(letter))) {
            rest.remove_prefix(1);
        } else if (rest.starts_with("//")) {
            rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
        } else if (rest.starts_with("/*")) {
            SkipComment();
        } else if (letter == '#' && lineStart) {
            Directive();
        } else {
            out.tokens.push_back({TakeToken(), line});
            lineStart = false;
        }
    }

    void SkipComment() {
        const std::size_t end = rest.find("*/", 2);
        const std::size_t length = end == std::string_view::npos ? rest.size() : end + 2;
        for (const char letter : rest.substr(0, length))
            line += letter == '\n';
        rest.remove_prefix(length);
    }

    std::string TakeToken() {
        std::size_t length = 1;
        const bool number =
            std::isdigit(static_cast<unsigned char>(rest.front())) ||
            (rest.front() == '.' && rest.size() > 1 && std::isdigit(static_cast<unsigned char>(rest[1])));
        if (number) {
            char* end = nullptr;
            const std::string digits(rest.substr(0, 64));
            std::strtod(digits.c_str(), &end);
            length = std::max<std::size_t>(1, static_cast<std::size_t>(end - digits.c_str()));
            while (length < rest.size() && IsWordLetter(rest[length]))
                ++length;
        } else if (IsWordLetter(rest.front())) {
            while (length < rest.size() && IsWordLetter(rest[length]))
                ++length;
        }
        std::string token(rest.substr(0, length));
        rest.remove_prefix(length);
        return token;
    }

    // One directive with its continued lines.
    void Directive() {
        std::vector<std::string> words;
        bool takesParameters = false;
        rest.remove_prefix(1);
        while (!rest.empty() && rest.front() != '\n') {
            if (rest.starts_with("\\\n")) {
                rest.remove_prefix(2);
                ++line;
            } else if (rest.starts_with("//")) {
                rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
            } else if (rest.starts_with("/*")) {
                SkipComment();
            } else if (std::isspace(static_cast<unsigned char>(rest.front()))) {
                rest.remove_prefix(1);
            } else {
                words.push_back(TakeToken());
                // Only a bracket right behind the name opens a list of parameters.
                if (words.size() == 2) takesParameters = rest.starts_with("(");
            }
        }
        if (words.size() >= 2 && words[0] == "define") Define(words, takesParameters);
        if (!words.empty() && (words[0] == "if" || words[0] == "elif"))
            out.conditions.insert(out.conditions.end(), words.begin() + 1, words.end());
    }

    void Define(const std::vector<std::string>& words, bool takesParameters) {
        // Of several definitions under different conditions all are counted.
        HlslMacro& macro = out.macros[words[1]];
        std::size_t at = 2;
        if (takesParameters)
            for (; at < words.size() && words[at] != ")"; ++at)
                macro.parameters.insert(words[at]);
        macro.body.insert(macro.body.end(), words.begin() + static_cast<std::ptrdiff_t>(std::min(at, words.size())),
                          words.end());
    }

    std::string_view rest;
    unsigned line = 1;
    bool lineStart = true;
};

}  // namespace

bool IsWordLetter(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) || letter == '_';
}

HlslTokens SplitHlsl(std::string_view source) {
    Lexer lexer(source);
    lexer.Run();
    return std::move(lexer.out);
}

}  // namespace platform
