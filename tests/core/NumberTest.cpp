// The text forms of a number and the rules that read them.
#include "core/Number.h"

#include <gtest/gtest.h>

#include <limits>

namespace tarnwell {
namespace {

using enum NumberMode;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr auto kNinesInHex = static_cast<std::int32_t>(0x99999999);

TEST(NumberTest, ParseTable) {
    const struct {
        const char* text;
        std::int32_t decimal, hex;
        int decimalByte = -1, hexByte = -1;  ///< -1: the text is no byte
    } rows[] = {
        {"", 0, 0},
        {"007", 7, 7, 7, 7},
        {"255", 255, 0x255, 255, -1},
        {"256", 256, 0x256},
        {"FF", 0, 255, -1, 255},
        {"1FF0", 1, 8176},
        {"f", 0, 15, -1, 15},
        {"1G", 1, 16},
        {" F", 0, 15},
        {" 1\t2 ", 12, 0x1020},
        {"12.9", 12, 0x1209},
        {"-5", -5, 5},
        {"80000000", 80000000, kLowest},
        {"100000001", 100000001, 1},
        {"2147483648", kHighest, 0x47483648},
        {"99999999999999999999", kHighest, kNinesInHex},
        {"-99999999999", kLowest, kNinesInHex},
    };
    const auto byteIn = [](const char* text, NumberMode mode) {
        const auto byte = ByteFromText(text, mode);
        return byte ? int{*byte} : -1;
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(ParseNumber(row.text, Decimal), row.decimal);
        std::string text = row.text;
        EXPECT_EQ(mGlobal::HexToValue(text), row.hex);
        EXPECT_EQ(text, *row.text == '\0' ? "0" : row.text);
        EXPECT_EQ(byteIn(row.text, Decimal), row.decimalByte);
        EXPECT_EQ(byteIn(row.text, Hex), row.hexByte);
    }
    EXPECT_EQ(LeadingNumber("-1 2.75x"), -12.75);
}

TEST(NumberTest, FormsAndKeys) {
    EXPECT_EQ(NumberText(0, Hex) + NumberText(8176, Hex) + NumberText(0xAF, Hex), "01FF0AF");
    EXPECT_EQ(NumberText(0, Decimal) + NumberText(8176, Decimal), "08176");
    EXPECT_EQ(HexText(0xA0, 4) + HexText(0x12345, 2), "00A012345");
    std::string decimalKeys;
    std::string hexKeys;
    for (int code = -128; code < 128; ++code) {
        decimalKeys += FilterKey(static_cast<char>(code), Decimal).value_or(' ');
        hexKeys += FilterKey(static_cast<char>(code), Hex).value_or(' ');
    }
    std::erase(decimalKeys, ' ');
    std::erase(hexKeys, ' ');
    EXPECT_EQ(decimalKeys, "0123456789");
    EXPECT_EQ(hexKeys, "0123456789ABCDEFABCDEF");
}

}  // namespace
}  // namespace tarnwell
