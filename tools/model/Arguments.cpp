#include "Arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

Arguments::Arguments(const std::vector<std::string>& words, const std::vector<std::string>& known) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (optionsEnded || word.size() < 2 || word[0] != '-') {
            files.push_back(word);
            continue;
        }
        if (word == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string option = word.substr(0, equals);
        if (std::find(known.begin(), known.end(), option) == known.end()) throw UsageError{"unknown option " + option};
        if (equals == std::string::npos && i + 1 == words.size()) throw UsageError{option + " needs a value"};
        values[option] = equals == std::string::npos ? words[++i] : word.substr(equals + 1);
    }
}

std::string Arguments::Text(const std::string& option, const std::string& otherwise) const {
    const auto found = values.find(option);
    return found == values.end() ? otherwise : found->second;
}

float Arguments::Number(const std::string& option, float otherwise) const {
    if (!Has(option)) return otherwise;
    const std::string& text = values.at(option);
    float number = 0.0F;
    const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result != std::errc() || end != text.data() + text.size() || !std::isfinite(number))
        throw UsageError{option + " needs a number, not " + text};
    return number;
}

void Arguments::NeedFiles(const std::vector<std::string>& names) const {
    if (files.size() < names.size()) throw UsageError{names[files.size()] + " is missing"};
    if (files.size() > names.size()) throw UsageError{"too many files: " + files[names.size()]};
}

bool IsZUp(const Arguments& arguments) {
    const std::string axis = arguments.Text("--up", "y");
    if (axis != "y" && axis != "z") throw UsageError{"--up is y or z, not " + axis};
    return axis == "z";
}
