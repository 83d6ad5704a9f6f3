#include "ObjText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>
#include <string_view>

namespace {

// The ear clipping's time grows with the square.
constexpr std::size_t mostCorners = 1024;
constexpr std::size_t mostVertices = std::numeric_limits<int>::max() / 4;

struct Counts {
    std::size_t positions = 0;
    std::size_t places = 0;
    std::size_t normals = 0;
};

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view TakeWord(std::string_view& line) {
    while (!line.empty() && IsBlank(line.front()))
        line.remove_prefix(1);
    std::size_t end = 0;
    while (end < line.size() && !IsBlank(line[end]))
        ++end;
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(end);
    return word;
}

// A number from 1, or from -1 backwards, of a list of `count`.
bool IsNumberOf(std::string_view text, std::size_t count) {
    long long number = 0;
    const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result != std::errc() || end != text.data() + text.size()) return false;
    if (number == 0 || number < -static_cast<long long>(mostVertices)) return false;
    return static_cast<unsigned long long>(number < 0 ? -number : number) <= count;
}

// "position", "position/place", "position//normal" or "position/place/normal".
bool IsSoundCorner(std::string_view corner, const Counts& counts) {
    const std::size_t first = corner.find('/');
    if (!IsNumberOf(corner.substr(0, first), counts.positions)) return false;
    if (first == std::string_view::npos) return true;
    const std::string_view rest = corner.substr(first + 1);
    const std::size_t second = rest.find('/');
    const bool hasPlace = second != 0;
    if (hasPlace && !IsNumberOf(rest.substr(0, second), counts.places)) return false;
    return second == std::string_view::npos || IsNumberOf(rest.substr(second + 1), counts.normals);
}

void CheckFace(std::string_view line, const Counts& counts) {
    std::size_t corners = 0;
    for (std::string_view word = TakeWord(line); !word.empty(); word = TakeWord(line)) {
        if (++corners > mostCorners)
            throw std::runtime_error(" a face has more than " + std::to_string(mostCorners) + " corners");
        if (!IsSoundCorner(word, counts))
            throw std::runtime_error(" a face names \"" + std::string(word.substr(0, 40)) +
                                     "\", which has not come before it");
    }
}

bool Wanted(std::string_view line, Counts& counts) {
    const std::string_view keyword = TakeWord(line);
    if (keyword == "f") {
        CheckFace(line, counts);
        return true;
    }
    if (keyword == "v") ++counts.positions;
    if (keyword == "vt") ++counts.places;
    if (keyword == "vn") ++counts.normals;
    if (counts.positions > mostVertices) throw std::runtime_error(" too many vertices");
    return keyword == "v" || keyword == "vt" || keyword == "vn" || keyword == "usemtl" || keyword == "mtllib";
}

}  // namespace

std::string SoundObjText(const std::string& text) {
    if (text.find('\0') != std::string::npos) throw std::runtime_error(" this is no text");
    std::string sound;
    sound.reserve(text.size());
    Counts counts;
    std::size_t number = 1;
    for (std::size_t start = 0; start < text.size(); ++number) {
        const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
        const std::string_view line = std::string_view(text).substr(start, end - start);
        try {
            if (Wanted(line, counts)) sound.append(line) += '\n';
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(std::to_string(number) + ":" + error.what());
        }
        start = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
    }
    return sound;
}
