#include "platform/shaders/HlslSource.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <numeric>
#include <set>

#include "platform/Caps.h"
#include "platform/shaders/HlslTokens.h"

namespace platform {

namespace {

// How many tokens a text may grow to when its macros are replaced, at most. Macros that feed each other double with
// each level, and so do calls within calls of a macro that repeats its parameter.
class MacroSizes {
  public:
    explicit MacroSizes(const std::map<std::string, HlslMacro>& table) : macros(table) {}

    double Of(const std::vector<std::string>& words, unsigned depth = 0) {
        double size = 0;
        double factor = 1;  // how often the current words are repeated
        std::vector<double> brackets;
        for (std::size_t at = 0; at < words.size() && size <= caps::shaderMacroTokens; ++at) {
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
    double OfMacro(const std::string& name, const HlslMacro& macro, unsigned depth) {
        const auto known = sizes.find(name);
        if (known != sizes.end()) return known->second;
        if (depth > caps::shaderMacroDepth) return caps::shaderMacroTokens + 1;
        sizes[name] = 1;  // A macro is not replaced inside itself.
        return sizes[name] = std::max(Of(macro.body, depth + 1), 1.0);
    }

    static double RepeatsOf(const HlslMacro& macro) {
        const auto repeats = std::count_if(macro.body.begin(), macro.body.end(),
                                           [&](const std::string& word) { return macro.parameters.contains(word); });
        return std::max(static_cast<double>(repeats), 1.0);
    }

    const std::map<std::string, HlslMacro>& macros;
    std::map<std::string, double> sizes;
};

std::string AtLine(const HlslToken& token, const std::string& text) {
    return "line " + std::to_string(token.line) + ": " + text;
}

bool CheckMacros(const HlslTokens& lexer, std::string& reason) {
    std::vector<std::string> words = lexer.conditions;
    words.reserve(words.size() + lexer.tokens.size());
    for (const HlslToken& token : lexer.tokens)
        words.push_back(token.text);
    if (MacroSizes(lexer.macros).Of(words) <= caps::shaderMacroTokens) return true;
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
        return nesting <= caps::shaderNesting && statement <= caps::shaderStatementTokens &&
               elses <= caps::shaderElseChain;
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

bool CheckShape(const std::vector<HlslToken>& tokens, std::string& reason) {
    Shape shape;
    for (const HlslToken& token : tokens) {
        if (shape.Take(token.text)) continue;
        reason = AtLine(token, "the program is nested too deeply or has too long a statement");
        return false;
    }
    return true;
}

bool CheckWords(const std::vector<HlslToken>& tokens, std::string& reason) {
    static const std::set<std::string> refused = {"texture",   "texture1D",   "texture2D",
                                                  "texture3D", "textureCUBE", "sampler_state",
                                                  "technique", "technique10", "pass"};
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        if (!refused.contains(tokens[at].text)) continue;
        // "pass" and "texture" may be names of variables; as a declaration a name follows.
        const bool declares = at + 1 < tokens.size() && IsWordLetter(tokens[at + 1].text.front());
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
    Declarations(const std::vector<HlslToken>& list, HlslSource& result) : tokens(list), out(result) {}

    // False with the reason for what would end the compiler.
    bool Run(const std::string& entry, std::string& reason) {
        unsigned depth = 0;
        std::size_t start = 0;
        for (std::size_t at = 0; at < tokens.size(); ++at) {
            const char sign = tokens[at].text.front();
            if (depth == 0 && LooksDeclared(at)) Declare(tokens[at]);
            if (sign == '{' && depth == 0) Function(start, at, entry);
            if (sign == '{' || sign == '(' || sign == '[') ++depth;
            if ((sign == '}' || sign == ')' || sign == ']') && depth > 0) --depth;
            // The end of a function's body or a declaration.
            if (depth > 0 || (sign != ';' && sign != '}')) continue;
            if (sign == ';') Declaration(start, at);
            const bool goesOn = sign == '}' && at + 1 < tokens.size() && (Text(at + 1) == ";" || Text(at + 1) == ",");
            if (!goesOn) start = at + 1;
        }
        reason = refusal;
        return refusal.empty();
    }

  private:
    [[nodiscard]] const std::string& Text(std::size_t at) const { return tokens[at].text; }

    // "type name[2] : register(c0) = {1, 2}, name;" with words before the type.
    void Declaration(std::size_t at, std::size_t end) {
        static const std::set<std::string> prefixes = {"uniform",      "extern",   "shared", "row_major",
                                                       "column_major", "volatile", "static", "const"};
        bool constant = true;  // of the program's block: neither static nor const
        for (; at < end && prefixes.contains(Text(at)); ++at)
            constant = constant && Text(at) != "static" && Text(at) != "const";
        if (at == end || Text(at) == "struct" || Text(at) == "typedef") return;
        const bool sampler = Text(at).starts_with("sampler");
        ++at;
        if (at < end && Text(at) == "<")  // vector<float, 4>
            while (at < end && Text(at++) != ">") {
            }
        while (at < end) {
            const std::size_t next = EndOfDeclarator(at, end);
            if (!Declarator(at, next, constant, sampler)) return;
            at = next + 1;
        }
    }

    // A word behind a word, as a name stands behind its type. The compiler takes such pairs for declarations even where
    // something before them is broken.
    [[nodiscard]] bool LooksDeclared(std::size_t at) const {
        if (at == 0 || !IsWordLetter(Text(at).front()) || at + 1 >= tokens.size()) return false;
        const bool behindType = IsWordLetter(Text(at - 1).front()) || Text(at - 1) == ">";
        return behindType && std::string(";,=:[<").find(Text(at + 1)) != std::string::npos;
    }

    void Declare(const HlslToken& name) {
        if (!names.insert(name.text).second) Refuse(name, "redefinition of \"" + name.text + "\"");
    }

    // The comma that ends a declarator, outside of brackets.
    [[nodiscard]] std::size_t EndOfDeclarator(std::size_t at, std::size_t end) const {
        unsigned depth = 0;
        for (; at < end; ++at) {
            const char sign = Text(at).front();
            if (sign == '{' || sign == '(' || sign == '[') ++depth;
            if ((sign == '}' || sign == ')' || sign == ']') && depth > 0) --depth;
            if (sign == ',' && depth == 0) return at;
        }
        return end;
    }

    // False when it is none, but a function.
    bool Declarator(std::size_t at, std::size_t end, bool constant, bool sampler) {
        if (at >= end || !IsWordLetter(Text(at).front())) return false;
        const HlslToken& name = tokens[at];
        if (at + 1 < end && Text(at + 1) == "(") return false;
        if (Text(at - 1) == ",") Declare(name);
        if (at + 1 < end && std::string("[:=<").find(Text(at + 1)) == std::string::npos)
            Refuse(tokens[at + 1], "unexpected \"" + Text(at + 1) + "\" in a declaration");
        if (sampler) Register(name.text, at + 1, end);
        for (++at; at < end && constant; ++at)
            if (Text(at) == "=") {
                Initialiser(name.text, at + 1, end);
                break;
            }
        return true;
    }

    // "type main(type name : SEMANTIC, ...) : SEMANTIC {"
    void Function(std::size_t at, std::size_t end, const std::string& entry) {
        while (at + 1 < end && (Text(at) != entry || Text(at + 1) != "("))
            ++at;
        if (at + 1 >= end) return;
        for (at += 2; at < end && Text(at) != ")"; ++at) {
            static const std::set<std::string> modifiers = {"in", "out", "inout", "uniform", "const"};
            unsigned words = 0;  // of the type and the name
            for (; at < end && Text(at) != "," && Text(at) != ")" && Text(at) != ":"; ++at)
                words += IsWordLetter(Text(at).front()) && !modifiers.contains(Text(at)) ? 1 : 0;
            if (words == 1) Refuse(tokens[at - 1], "a parameter of the entry function has no name");
            while (at < end && Text(at) != "," && Text(at) != ")")
                ++at;
            if (at >= end || Text(at) == ")") return;
        }
    }

    void Refuse(const HlslToken& where, const std::string& why) {
        if (refusal.empty()) refusal = AtLine(where, why);
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

    const std::vector<HlslToken>& tokens;
    HlslSource& out;
    std::set<std::string> names;
    std::string refusal;
};

}  // namespace

bool CheckHlslText(const std::string& source, std::string& reason) {
    if (source.size() > caps::shaderBytes) {
        reason = "the source is larger than 256 KiB";
        return false;
    }
    if (source.find('\0') != std::string::npos) {
        reason = "the source is not text";
        return false;
    }
    const HlslTokens split = SplitHlsl(source);
    return CheckMacros(split, reason) && CheckShape(split.tokens, reason);
}

bool ReadHlslSource(const std::string& preprocessed, const std::string& entry, HlslSource& out, std::string& reason) {
    const HlslTokens split = SplitHlsl(preprocessed);
    return CheckShape(split.tokens, reason) && CheckWords(split.tokens, reason) &&
           Declarations(split.tokens, out).Run(entry, reason);
}

}  // namespace platform
