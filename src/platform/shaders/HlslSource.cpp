#include "platform/shaders/HlslSource.h"

#include <cctype>
#include <cstdlib>
#include <set>
#include <string_view>

namespace platform {

namespace {

constexpr std::size_t maximumBytes = 256U << 10;
constexpr unsigned maximumNesting = 128;
constexpr unsigned maximumStatementTokens = 4096;
constexpr unsigned maximumElseChain = 256;
constexpr std::size_t maximumMacroTokens = 100000;

struct Token {
    std::string text;
    unsigned line = 1;
};

bool IsWord(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) || letter == '_';
}

// Words, numbers and single signs, without comments and directives. The directives' tokens go to `macros` by macro
// name.
class Lexer {
  public:
    explicit Lexer(std::string_view source) : rest(source) {}

    std::vector<Token> tokens;
    std::map<std::string, std::vector<std::string>> macros;

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
            tokens.push_back({TakeToken(), line});
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
            while (length < rest.size() && IsWord(rest[length]))
                ++length;
        } else if (IsWord(rest.front())) {
            while (length < rest.size() && IsWord(rest[length]))
                ++length;
        }
        std::string token(rest.substr(0, length));
        rest.remove_prefix(length);
        return token;
    }

    // One directive with its continued lines.
    void Directive() {
        std::vector<std::string> words;
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
            }
        }
        if (words.size() >= 2 && words[0] == "define") {
            auto& body = macros[words[1]];
            body.insert(body.end(), words.begin() + 2, words.end());
        }
    }

    std::string_view rest;
    unsigned line = 1;
    bool lineStart = true;
};

// How many tokens a macro may grow to; macros that feed each other double with each level.
class MacroSizes {
  public:
    explicit MacroSizes(const std::map<std::string, std::vector<std::string>>& table) : macros(table) {}

    std::size_t Of(const std::string& word, unsigned depth = 0) {
        const auto macro = macros.find(word);
        if (macro == macros.end()) return 1;
        const auto known = sizes.find(word);
        if (known != sizes.end()) return known->second;
        if (depth > 64) return maximumMacroTokens + 1;
        sizes[word] = 1;  // A macro is not replaced inside itself.
        std::size_t size = 0;
        for (const std::string& inner : macro->second) {
            size += Of(inner, depth + 1);
            if (size > maximumMacroTokens) break;
        }
        return sizes[word] = std::max<std::size_t>(size, 1);
    }

  private:
    const std::map<std::string, std::vector<std::string>>& macros;
    std::map<std::string, std::size_t> sizes;
};

std::string AtLine(const Token& token, const std::string& text) {
    return "line " + std::to_string(token.line) + ": " + text;
}

bool CheckMacros(const Lexer& lexer, std::string& reason) {
    MacroSizes sizes(lexer.macros);
    std::size_t total = 0;
    for (const Token& token : lexer.tokens) {
        total += sizes.Of(token.text);
        if (total <= maximumMacroTokens) continue;
        reason = AtLine(token, "the macros expand to too much text");
        return false;
    }
    return true;
}

// The compiler descends once for each open bracket, operator and else; these limits keep it far from the end of the
// stack.
bool CheckShape(const std::vector<Token>& tokens, std::string& reason) {
    unsigned nesting = 0;
    unsigned statement = 0;
    unsigned elses = 0;
    for (const Token& token : tokens) {
        const char sign = token.text.front();
        if (sign == '(' || sign == '[' || sign == '{') ++nesting;
        if ((sign == ')' || sign == ']' || sign == '}') && nesting > 0) --nesting;
        statement = sign == ';' || sign == '{' || sign == '}' ? 0 : statement + 1;
        if (token.text == "else") ++elses;
        if (sign == '}' && nesting == 0) elses = 0;
        if (nesting <= maximumNesting && statement <= maximumStatementTokens && elses <= maximumElseChain) continue;
        reason = AtLine(token, "the program is nested too deeply or has too long a statement");
        return false;
    }
    return true;
}

bool CheckWords(const std::vector<Token>& tokens, std::string& reason) {
    static const std::set<std::string> refused = {"texture",   "texture1D",   "texture2D",
                                                  "texture3D", "textureCUBE", "sampler_state",
                                                  "technique", "technique10", "pass"};
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        if (!refused.contains(tokens[at].text)) continue;
        // "pass" and "texture" may be names of variables; as a declaration a name follows.
        const bool declares = at + 1 < tokens.size() && IsWord(tokens[at + 1].text.front());
        if (!declares && tokens[at].text != "sampler_state") continue;
        reason =
            AtLine(tokens[at], "\"" + tokens[at].text + "\" belongs to effect files and is not supported; declare " +
                                   "\"sampler2D name;\" and bind the texture to its stage");
        return false;
    }
    return true;
}

// Reads the declarations at file level.
class Declarations {
  public:
    Declarations(const std::vector<Token>& list, HlslSource& result) : tokens(list), out(result) {}

    void Run() {
        unsigned depth = 0;
        std::size_t start = 0;
        for (std::size_t at = 0; at < tokens.size(); ++at) {
            const char sign = tokens[at].text.front();
            if (sign == '{' || sign == '(' || sign == '[') ++depth;
            if ((sign == '}' || sign == ')' || sign == ']') && depth > 0) --depth;
            // The end of a function's body or a declaration.
            if (depth > 0 || (sign != ';' && sign != '}')) continue;
            if (sign == ';') Declaration(start, at);
            const bool initialiser = sign == '}' && at + 1 < tokens.size() && tokens[at + 1].text == ";";
            if (!initialiser) start = at + 1;
        }
    }

  private:
    [[nodiscard]] const std::string& Text(std::size_t at) const { return tokens[at].text; }

    void Declaration(std::size_t start, std::size_t end) {
        static const std::set<std::string> prefixes = {"uniform",   "extern",       "shared",
                                                       "row_major", "column_major", "volatile"};
        while (start < end && prefixes.contains(Text(start)))
            ++start;
        if (end - start < 2 || !IsWord(Text(start).front()) || Text(start) == "static" || Text(start) == "const" ||
            Text(start) == "struct" || Text(start) == "typedef")
            return;
        std::size_t name = start + 1;
        if (name + 2 < end && Text(name) == "<") {  // vector<float, 4>
            while (name < end && Text(name) != ">")
                ++name;
            ++name;
        }
        if (name >= end || !IsWord(Text(name).front())) return;
        if (Text(start).starts_with("sampler")) return Register(Text(name), name + 1, end);
        for (std::size_t at = name + 1; at < end; ++at) {
            if (Text(at) == "(") return;  // A function's declaration, or a register before the initialiser.
            if (Text(at) == "=") return Initialiser(Text(name), at + 1, end);
            if (Text(at) == ":") at = std::min(at + (at + 2 < end && Text(at + 2) == "(" ? 4 : 1), end);
        }
    }

    // "sampler name : register(s3);"
    void Register(const std::string& name, std::size_t at, std::size_t end) {
        for (; at + 2 < end; ++at) {
            const std::string& value = Text(at + 2);
            if (Text(at) != "register" || value.size() < 2 || value.size() > 4) continue;
            if ((value[0] == 's' || value[0] == 'S') && std::isdigit(static_cast<unsigned char>(value[1])))
                out.samplerRegisters[name] = static_cast<unsigned>(std::atoi(value.c_str() + 1));
        }
    }

    void Initialiser(const std::string& name, std::size_t at, std::size_t end) {
        static const std::set<std::string> types = {"float", "half", "int", "bool", "double"};
        std::vector<double> values;
        double sign = 1.0;
        for (; at < end; ++at) {
            const std::string& text = Text(at);
            std::string type = text;
            while (!type.empty() && (std::isdigit(static_cast<unsigned char>(type.back())) || type.back() == 'x'))
                type.pop_back();
            const bool number =
                std::isdigit(static_cast<unsigned char>(text[0])) || (text[0] == '.' && text.size() > 1);
            if (number) {
                values.push_back(sign * std::strtod(text.c_str(), nullptr));
                sign = 1.0;
            } else if (text == "true" || text == "false") {
                values.push_back(text == "true" ? 1.0 : 0.0);
            } else if (text == "-") {
                const std::string& before = Text(at - 1);
                if (before != "=" && before != "," && before != "(" && before != "{") return Unread(name);
                sign = -sign;
            } else if (!types.contains(type) && text != "," && text != "(" && text != ")" && text != "{" &&
                       text != "}") {
                return Unread(name);
            }
        }
        out.initialValues[name] = std::move(values);
    }

    void Unread(const std::string& name) { out.unreadInitialisers.push_back(name); }

    const std::vector<Token>& tokens;
    HlslSource& out;
};

}  // namespace

bool ReadHlslSource(const std::string& source, HlslSource& out, std::string& reason) {
    if (source.size() > maximumBytes) {
        reason = "the source is larger than 256 KiB";
        return false;
    }
    if (source.find('\0') != std::string::npos) {
        reason = "the source is not text";
        return false;
    }
    Lexer lexer(source);
    lexer.Run();
    if (!CheckMacros(lexer, reason) || !CheckShape(lexer.tokens, reason) || !CheckWords(lexer.tokens, reason))
        return false;
    Declarations(lexer.tokens, out).Run();
    return true;
}

}  // namespace platform
