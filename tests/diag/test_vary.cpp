#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "diag/Vary.h"

namespace {

TEST(Vary, ConvertsBetweenItsForms) {
    const struct {
        Vary value;
        int whole;
        float real;
        std::string text;
    } rows[] = {
        {Vary(), 0, 0.0F, ""},
        {Vary(INT_MIN), INT_MIN, -2147483648.0F, "-2147483648"},
        {Vary(-2.5F), -2, -2.5F, "-2.500000"},
        {Vary(1e20F), INT_MAX, 1e20F, "100000002004087734272.000000"},
        {Vary(" \t-3.75e1x"), -3, -37.5F, " \t-3.75e1x"},
        {Vary("99999999999999999999"), INT_MAX, 1e20F, "99999999999999999999"},
        {Vary("-1e999"), -1, -INFINITY, "-1e999"},
        {Vary(static_cast<const char*>(nullptr)), 0, 0.0F, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.value.AsInt(), row.whole) << row.text;
        EXPECT_EQ(row.value.AsFloat(), row.real) << row.text;
        EXPECT_EQ(row.value.AsString(), row.text);
    }
    EXPECT_EQ(Vary(NAN).AsInt(), 0);
}

TEST(Vary, AppendsAndAddsByItsOwnType) {
    Vary text("a");
    text += Vary(1.5F);
    text += 7;
    text += "b";
    text += text;
    EXPECT_EQ(text.AsString(), "a1.5000007ba1.5000007b");
    Vary number(5);
    EXPECT_EQ(number.AsString(), "5");
    number += "12.9x";
    EXPECT_EQ(number.AsString(), "17");  // the kept form was dropped
    number += Vary(0.5F);
    EXPECT_EQ(number.AsInt(), 18);
    number += Vary(INT_MAX);
    EXPECT_EQ(number.AsInt(), INT_MIN + 17);
    Vary real(1.5F);
    EXPECT_EQ(real.AsInt(), 2);
    real += std::string(".25");
    EXPECT_EQ(real.AsFloat(), 1.75F);
    EXPECT_EQ(real.AsString(), "1.750000");
}

}  // namespace
