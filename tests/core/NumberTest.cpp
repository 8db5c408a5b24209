// The text forms of a number and the rules that read them.
#include "core/user/Number.h"

#include <gtest/gtest.h>

namespace tarnwell {
namespace {

using enum NumberMode;

TEST(NumberTest, ParseTable) {
    const std::tuple<std::string, int, int> rows[] = {
        {"f", 0, 15},
        {"1G", 1, 16},
        {" 1\t2 ", 12, 0x1020},
        {"12.9", 12, 0x1209},
        {"-5", -5, 5},
        {"80000000", 80000000, INT32_MIN},
        {"2147483648", INT32_MAX, 0x47483648},
        {"-2147483649", INT32_MIN, 0x47483649},
    };
    for (const auto& [text, decimal, hex] : rows) {
        EXPECT_EQ(ParseNumber(text, Decimal), decimal) << text;
        EXPECT_EQ(ParseNumber(text, Hex), hex) << text;
    }
    std::string empty;
    EXPECT_TRUE(ParseNumber(empty, Decimal) + mGlobal::HexToValue(empty) == 0 && empty == "0");
    EXPECT_EQ(LeadingNumber("-1 2.75x"), -12.75);
}

TEST(NumberTest, BytesFormsAndKeys) {
    for (int value = 0; value < 600; ++value) {
        const auto decimal = ByteFromText("0" + std::to_string(value), Decimal);
        const auto hex = ByteFromText(HexText(static_cast<std::uint32_t>(value)), Hex);
        EXPECT_TRUE(value < 256 ? decimal == value && hex == value : !decimal && !hex) << value;
    }
    for (const char* text : {"", "-5", "1G", " 1", "1.", "4294967297", "99999999999999999999"})
        EXPECT_FALSE(ByteFromText(text, Decimal) || ByteFromText(text, Hex)) << text;
    EXPECT_TRUE(ByteFromText("fE", Hex) == 254 && !ByteFromText("F", Decimal));
    const std::tuple<const char*, NumberMode, int> rows[] = {
        {"8191", Decimal, 8191}, {"8192", Decimal, -1}, {"0x1fFF", Decimal, 8191},
        {"0X10", Hex, 16},       {"10", Hex, 16},       {"0x", Hex, -1},
        {"", Decimal, -1},       {"F", Decimal, -1},    {"1 0", Hex, -1}};
    for (const auto& [text, mode, value] : rows)
        EXPECT_EQ(NumberFromText(text, mode, 8191).value_or(-1), value) << text;

    EXPECT_EQ(NumberText(0, Hex) + NumberText(0x1FAF, Hex) + NumberText(816, Decimal), "01FAF816");
    EXPECT_EQ(HexText(0xA0, 4) + HexText(0x12345, 2), "00A012345");
    std::string keys;
    for (const auto mode : {Decimal, Hex}) {
        for (int code = -128; code < 128; ++code)
            keys += FilterKey(static_cast<char>(code), mode).value_or(' ');
    }
    std::erase(keys, ' ');
    EXPECT_EQ(keys, "01234567890123456789ABCDEFABCDEF");
}

}  // namespace
}  // namespace tarnwell
