// The text forms of a number and the rules that read them.
#include "core/Number.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

namespace tarnwell {
namespace {

using enum NumberMode;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

TEST(NumberTest, ParseTable) {
    const struct {
        const char* text;
        std::int32_t decimal, hex;
    } rows[] = {
        {"", 0, 0},
        {"255", 255, 0x255},
        {"FF", 0, 255},
        {"1FF0", 1, 8176},
        {"f", 0, 15},
        {"1G", 1, 16},
        {" F", 0, 15},
        {" 1\t2 ", 12, 0x1020},
        {"12.9", 12, 0x1209},
        {"-5", -5, 5},
        {"+7x", 7, 0x70},
        {"abc", 0, 0xABC},
        {"80000000", 80000000, kLowest},
        {"100000001", 100000001, 1},
        {"2147483648", kHighest, 0x47483648},
        {"99999999999999999999", kHighest, static_cast<std::int32_t>(0x99999999)},
        {"-99999999999", kLowest, static_cast<std::int32_t>(0x99999999)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseNumber(row.text, Decimal), row.decimal) << row.text;
        std::string text = row.text;
        EXPECT_EQ(mGlobal::HexToValue(text), row.hex) << row.text;
        EXPECT_EQ(text, *row.text == '\0' ? "0" : row.text);
    }
    EXPECT_EQ(LeadingNumber("-1 2.75x"), -12.75);
    EXPECT_GT(LeadingNumber(std::string(400, '9')), 1e9);
}

TEST(NumberTest, FormsAreReadBack) {
    for (std::uint32_t value = 0; value <= 8192; ++value) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "%X", value);
        EXPECT_EQ(NumberText(value, Hex), hex);
        EXPECT_EQ(NumberText(value, Decimal), std::to_string(value));
        EXPECT_EQ(ParseNumber(hex, Hex), static_cast<std::int32_t>(value));
    }
    EXPECT_EQ(HexText(0xA0, 4), "00A0");
    EXPECT_EQ(HexText(0x12345, 2), "12345");
}

TEST(NumberTest, BytesAndKeysThatAreTyped) {
    const struct {
        const char* text;
        int decimal, hex;  ///< -1: none
    } bytes[] = {
        {"", -1, -1},   {"0", 0, 0},     {"007", 7, 7},      {"255", 255, -1},
        {"256", -1, -1}, {"FF", -1, 255}, {"100", 100, -1},   {"4294967297", -1, -1},
        {"-1", -1, -1}, {"1 ", -1, -1},  {"\xC3\xA9", -1, -1}, {"9G", -1, -1},
    };
    const auto byteIn = [](const char* text, NumberMode mode) {
        const auto byte = ByteFromText(text, mode);
        return byte ? int{*byte} : -1;
    };
    for (const auto& row : bytes) {
        EXPECT_EQ(byteIn(row.text, Decimal), row.decimal) << row.text;
        EXPECT_EQ(byteIn(row.text, Hex), row.hex) << row.text;
    }
    std::string decimalKeys, hexKeys;
    for (int code = -128; code < 128; ++code) {
        if (const auto key = FilterKey(static_cast<char>(code), Decimal))
            decimalKeys += *key;
        if (const auto key = FilterKey(static_cast<char>(code), Hex))
            hexKeys += *key;
    }
    EXPECT_EQ(decimalKeys, "0123456789");
    EXPECT_EQ(hexKeys, "0123456789ABCDEFABCDEF");
}

}  // namespace
}  // namespace tarnwell
