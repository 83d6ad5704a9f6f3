#include "diag/Vary.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "diag/CallStack.h"
#include "diag/PathFiles.h"

namespace {

// Sums wrap around instead of overflowing.
int WrappedSum(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

// Adding 0.5 and cutting towards zero, kept within the whole numbers.
int Rounded(float number) {
    const double shifted = static_cast<double>(number) + 0.5;
    if (std::isnan(shifted)) return 0;
    if (shifted >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    if (shifted <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(shifted);
}

float Narrowed(double number) {
    constexpr double largest = std::numeric_limits<float>::max();
    if (std::abs(number) <= largest || std::isnan(number)) return static_cast<float>(number);
    return std::copysign(std::numeric_limits<float>::infinity(), number < 0 ? -1.0F : 1.0F);
}

// What a number beyond the doubles comes to: its decimal exponent decides between nothing and infinity.
double OutOfRangeValue(std::string_view digits) {
    const std::size_t mark = std::min(digits.find_first_of("eE"), digits.size());
    const std::string_view mantissa = digits.substr(0, mark);
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<std::int64_t>(std::min(mantissa.find_first_of("123456789"), mantissa.size()));
    const std::int64_t exponent = mark < digits.size() ? DecimalOf(digits.substr(mark + 1)) : 0;
    return exponent + point - first > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

// Leading white space, optional sign, digits with an optional point and exponent; 0 without digits.
float FloatOf(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    // Words such as "inf" are no numbers here.
    if (text.empty() || (text[0] != '.' && (text[0] < '0' || text[0] > '9'))) return 0.0F;
    double number = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range)
        number = OutOfRangeValue(text.substr(0, static_cast<std::size_t>(result.ptr - text.data())));
    return Narrowed(negative ? -number : number);
}

std::string TextOf(float number) {
    std::array<char, 64> buffer;  // the longest float has 39 digits before the point
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), static_cast<double>(number),
                                   std::chars_format::fixed, 6);
    return {buffer.data(), end.ptr};
}

}  // namespace

Vary::Vary() : type(String), validForms(AllForms) {}
Vary::Vary(int number) : type(WholeNumber), whole(number), validForms(IntForm) {}
Vary::Vary(float number) : type(Float), real(number), validForms(FloatForm) {}
Vary::Vary(const std::string& content) : type(String), text(content), validForms(StringForm) {}
Vary::Vary(const char* content) : type(String), text(content ? content : ""), validForms(StringForm) {}
Vary::Vary(const char* first, const char* last) : type(String), text(first, last), validForms(StringForm) {}

Vary::Vary(const Vary& other) : type(String), validForms(StringForm) {
    *this = other;
}

Vary& Vary::operator=(const Vary& other) {
    if (this == &other) return *this;
    type = other.type;
    switch (type) {
        case WholeNumber:
            whole = other.whole;
            validForms = IntForm;
            break;
        case Float:
            real = other.real;
            validForms = FloatForm;
            break;
        case String:
            text = other.text;
            validForms = StringForm;
            break;
    }
    return *this;
}

int Vary::AsInt() const {
    if (!(validForms & IntForm)) whole = type == String ? DecimalOf(text) : Rounded(real);
    validForms |= IntForm;
    return whole;
}

float Vary::AsFloat() const {
    if (!(validForms & FloatForm)) real = type == String ? FloatOf(text) : static_cast<float>(whole);
    validForms |= FloatForm;
    return real;
}

const std::string& Vary::AsString() const {
    if (!(validForms & StringForm)) text = type == Float ? TextOf(real) : std::to_string(whole);
    validForms |= StringForm;
    return text;
}

Vary& Vary::operator+=(const Vary& other) {
    switch (type) {
        case WholeNumber:
            whole = WrappedSum(whole, other.AsInt());
            validForms = IntForm;
            break;
        case Float:
            real += other.AsFloat();
            validForms = FloatForm;
            break;
        case String:
            text += other.AsString();
            validForms = StringForm;
            break;
    }
    return *this;
}

Vary& Vary::operator+=(const std::string& other) {
    return *this += Vary(other);
}
Vary& Vary::operator+=(const char* other) {
    return *this += Vary(other);
}

Vary& Vary::operator++() {
    if (type != String) return *this += Vary(1);
    ReportWithStack("Warning: undefined operation on a Vary as type string: increment.\n");
    return *this;
}

Vary Vary::operator++(int) {
    Vary before(*this);
    ++*this;
    return before;
}

Vary& Vary::operator--() {
    if (type != String) return *this += Vary(-1);
    if (!text.empty()) text.pop_back();
    validForms = StringForm;
    return *this;
}

Vary Vary::operator--(int) {
    Vary before(*this);
    --*this;
    return before;
}
