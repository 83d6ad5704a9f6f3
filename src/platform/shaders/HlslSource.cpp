#include "platform/shaders/HlslSource.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <numeric>
#include <set>
#include <string_view>

namespace platform {

namespace {

constexpr std::size_t maximumBytes = 256U << 10;
constexpr unsigned maximumNesting = 128;
constexpr unsigned maximumStatementTokens = 2048;
constexpr unsigned maximumElseChain = 128;
constexpr double maximumMacroTokens = 50000;

struct Token {
    std::string text;
    unsigned line = 1;
};

bool IsWord(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) || letter == '_';
}

struct Macro {
    std::vector<std::string> body;
    std::set<std::string> parameters;
};

// Words, numbers and single signs, without comments and directives. What the directives define goes to `macros`.
class Lexer {
  public:
    explicit Lexer(std::string_view source) : rest(source) {}

    std::vector<Token> tokens;
    std::map<std::string, Macro> macros;

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
    }

    void Define(const std::vector<std::string>& words, bool takesParameters) {
        // Of several definitions under different conditions all are counted.
        Macro& macro = macros[words[1]];
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

// How many tokens a text may grow to when its macros are replaced, at most. Macros that feed each other double with
// each level, and so do calls within calls of a macro that repeats its parameter.
class MacroSizes {
  public:
    explicit MacroSizes(const std::map<std::string, Macro>& table) : macros(table) {}

    double Of(const std::vector<std::string>& words, unsigned depth = 0) {
        double size = 0;
        double factor = 1;  // how often the current words are repeated
        std::vector<double> brackets;
        for (std::size_t at = 0; at < words.size() && size <= maximumMacroTokens; ++at) {
            const std::string& word = words[at];
            if (word == ")" && !brackets.empty()) {
                factor = brackets.back();
                brackets.pop_back();
            }
            const auto macro = macros.find(word);
            size += factor * (macro == macros.end() ? 1 : OfMacro(word, macro->second, depth));
            const bool calls = at > 0 && word == "(" && macros.contains(words[at - 1]);
            if (word == "(") brackets.push_back(factor);
            if (calls) factor *= RepeatsOf(macros.at(words[at - 1]));
        }
        return size;
    }

  private:
    double OfMacro(const std::string& name, const Macro& macro, unsigned depth) {
        const auto known = sizes.find(name);
        if (known != sizes.end()) return known->second;
        constexpr unsigned deepest = 64;
        if (depth > deepest) return maximumMacroTokens + 1;
        sizes[name] = 1;  // A macro is not replaced inside itself.
        return sizes[name] = std::max(Of(macro.body, depth + 1), 1.0);
    }

    static double RepeatsOf(const Macro& macro) {
        const auto repeats = std::count_if(macro.body.begin(), macro.body.end(),
                                           [&](const std::string& word) { return macro.parameters.contains(word); });
        return std::max(static_cast<double>(repeats), 1.0);
    }

    const std::map<std::string, Macro>& macros;
    std::map<std::string, double> sizes;
};

std::string AtLine(const Token& token, const std::string& text) {
    return "line " + std::to_string(token.line) + ": " + text;
}

bool CheckMacros(const Lexer& lexer, std::string& reason) {
    std::vector<std::string> words;
    words.reserve(lexer.tokens.size());
    for (const Token& token : lexer.tokens)
        words.push_back(token.text);
    if (MacroSizes(lexer.macros).Of(words) <= maximumMacroTokens) return true;
    reason = "the program is too long, or its macros expand to too much";
    return false;
}

bool IsControl(const std::string& word) {
    return word == "for" || word == "while" || word == "do" || word == "if" || word == "else" || word == "switch";
}

// The compilers descend once for each open bracket, each statement that a control word opens without braces, each
// operator and each else, with frames of some KiB; the limits keep them far from the end of the stack.
class Shape {
  public:
    bool Take(const std::string& token) {
        const char sign = token.front();
        ++statement;
        if (sign == '(' || sign == '[') ++round;
        if ((sign == ')' || sign == ']') && round > 0) --round;
        if (IsControl(token)) ++pending.back();
        if (token == "else") ++elses;
        if (sign == ';') EndStatement();
        if (sign == '{') Open();
        if (sign == '}') Close();
        const std::size_t nesting = round + pending.size() + std::accumulate(pending.begin(), pending.end(), 0U);
        return nesting <= maximumNesting && statement <= maximumStatementTokens && elses <= maximumElseChain;
    }

  private:
    void EndStatement() {
        statement = 0;
        // Inside brackets it parts the three places of a "for".
        if (round == 0) pending.back() = 0;
    }
    void Open() {
        statement = 0;
        pending.push_back(0);
    }
    void Close() {
        statement = 0;
        if (pending.size() > 1) pending.pop_back();
        pending.back() = 0;
        if (pending.size() == 1) elses = 0;
    }

    unsigned round = 0;
    unsigned statement = 0;
    unsigned elses = 0;
    std::vector<unsigned> pending{0};  // control words that wait for the end of their statement, by open brace
};

bool CheckShape(const std::vector<Token>& tokens, std::string& reason) {
    Shape shape;
    for (const Token& token : tokens) {
        if (shape.Take(token.text)) continue;
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
