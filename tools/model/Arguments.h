#pragma once
// The words of a command line.

#include <map>
#include <optional>
#include <string>
#include <vector>

// What is wrong with a command line, for the user.
struct UsageError {
    std::string text;
};

class Arguments {
  public:
    // Options, each with a value behind it or behind "=", are those of `known`; "--" ends them. Throws UsageError.
    Arguments(const std::vector<std::string>& words, const std::vector<std::string>& known);

    std::vector<std::string> files;
    [[nodiscard]] bool Has(const std::string& option) const { return values.contains(option); }
    [[nodiscard]] std::string Text(const std::string& option, const std::string& otherwise) const;
    // A finite number; throws UsageError for anything else.
    [[nodiscard]] float Number(const std::string& option, float otherwise) const;
    // Throws unless there are as many files as `names` names.
    void NeedFiles(const std::vector<std::string>& names) const;

  private:
    std::map<std::string, std::string> values;
};

// True for "--up z", false for "--up y" and without the option.
bool IsZUp(const Arguments& arguments);
