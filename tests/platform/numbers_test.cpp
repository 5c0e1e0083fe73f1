// tests/platform/numbers_test.cpp — numbers out of text and back.
#include "vellicor/platform/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vellicor {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Numbers, AnIntegerIsReadAsFarAsItGoes) {
    const std::pair<const char*, std::int64_t> cases[] = {
        {" 42 ", 42},   {"-7x", -7},      {"+5", 5},       {"- 5", -5},
        {"--5", 0},     {"+-5", 0},       {"0x1F", 0},     {"1e3", 1},
        {"3.9", 3},     {"", 0},          {"-", 0},        {"\xD9\xA3", 0},
        {"007", 7},     {"\n\t 8\n", 8},  {"\xC2\xA0" "9", 9},  {"a1", 0},
        {"99999999999999999999", INT64_MAX},  {"18446744073709551615", INT64_MAX},
        {"9223372036854775807", INT64_MAX},   {"-9223372036854775808", INT64_MIN},
        {"-99999999999999999999", INT64_MIN}, {"9223372036854775808", INT64_MAX},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(integerValue(text), expected) << text;
        EXPECT_EQ(intValue(text), std::clamp<std::int64_t>(expected, INT32_MIN, INT32_MAX)) << text;
    }
    EXPECT_EQ(intValue("99999999999"), INT32_MAX);
    EXPECT_EQ(intValue("-2147483649"), INT32_MIN);
}

TEST(Numbers, ARealIsReadAsFarAsItGoes) {
    const std::string manyZeros(400, '0');
    const std::pair<std::string, double> cases[] = {
        {".5", 0.5},       {"5.", 5},        {".", 0},          {"1e", 1},           {"1e+", 1},
        {"abc", 0},        {"inf", 0},       {"nan", 0},        {"0x10", 0},         {"-infinity", 0},
        {" +1.5e2x", 150}, {"-.25", -0.25},  {"1,5", 1},        {"- 5", 0},          {"", 0},
        {"1e999", kInfinity}, {"-1e999", -kInfinity}, {"1e-999", 0}, {"-", 0},       {"5e-324", 5e-324},
        {"1" + manyZeros, kInfinity},        {"0." + manyZeros + "1", 0},            {"1" + manyZeros + "e-400", 1},
        {"0." + manyZeros + "1e800", kInfinity}, {"0." + manyZeros + "1e50", 0},
        {"0e999", 0},   {"1e99999999999999999999", kInfinity},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(doubleValue(text), expected) << text;
    EXPECT_EQ(floatValue("0.1"), 0.1f);
    EXPECT_EQ(floatValue("1e39"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(floatValue("1e-60"), 0.0f);
}

TEST(Numbers, AFlagIsTrueForYTOrADigitButZero) {
    for (const char* text : {"yes", "Y", "T", "true", "01", "-1", "2x", " \n+0003"})
        EXPECT_TRUE(boolValue(text)) << text;
    for (const char* text : {"", "0", "no", "on", "false", "--1", "- 1", "000", "x1"})
        EXPECT_FALSE(boolValue(text)) << text;
}

TEST(Numbers, AreWrittenAsPrintfWritesThem) {
    EXPECT_EQ(fixedText(0.5, 6), "0.500000");
    EXPECT_EQ(fixedText(0.125, 2), "0.12");
    EXPECT_EQ(fixedText(-0.001, 2), "-0.00");
    EXPECT_EQ(fixedText(1e22, 0), "10000000000000000000000");
    const std::pair<double, const char*> general[] = {
        {1, "1"},           {0.117647, "0.117647"}, {1e6, "1e+06"},       {123456, "123456"},
        {0.0001, "0.0001"}, {0.00001, "1e-05"},     {-kInfinity, "-inf"}, {std::copysign(NAN, -1.0), "nan"},
    };
    for (const auto& [number, expected] : general) EXPECT_EQ(generalText(number), expected);
    EXPECT_EQ(numberText(1.0f), "1");
    EXPECT_EQ(numberText(0.1f), "0.1");
    EXPECT_EQ(numberText(1.0f / 3), "0.3333333");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(2.0 / 3), "0.6666666666666666");
    EXPECT_EQ(numberText(1e16), "1e+16");
}

}  // namespace
}  // namespace vellicor
