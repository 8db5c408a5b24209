// Patterns of bytes, their matches in the grid, and the ways there.
#include "editor/Find.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum FindDirection;
using testing::ElementsAre;
using testing::Optional;

TEST(ByteTextsTest, ReadsSeveralBytes) {
    EXPECT_THAT(BytesFromText("1A, 2B\r\n0x3c;;\t0 ", NumberMode::Hex),
                Optional(ElementsAre(0x1A, 0x2B, 0x3C, 0)));
    for (const char* text : {"1 256", "1A", "1 ??", "-1", "1.5"})
        EXPECT_EQ(BytesFromText(text, NumberMode::Decimal), std::nullopt) << text;
    EXPECT_EQ(PatternFromText(" , ", NumberMode::Hex), std::nullopt);
    EXPECT_EQ(PatternFromText("1 ?", NumberMode::Hex), std::nullopt);

    std::array<std::uint8_t, 8192> bytes{};
    bytes[0] = bytes[1] = bytes[2] = bytes[8191] = 7;
    const auto matches = [&](const char* pattern) {
        return MatchesOf(*PatternFromText(pattern, NumberMode::Decimal), bytes);
    };
    EXPECT_THAT(matches("7 7"), ElementsAre(0, 1));
    EXPECT_THAT(matches("7 ?? 0"), ElementsAre(1, 2));
    EXPECT_THAT(matches("0 7"), ElementsAre(8190));
    EXPECT_THAT(matches("7 0 7"), ElementsAre());
    EXPECT_EQ(matches("??").size(), 8192U);
}

TEST(FindTest, GoesFromMatchToMatchAndRoundTheGridsEnds) {
    TestProgram test;
    Program& program = test.program;
    for (const std::size_t address : {10U, 20U, 8000U})
        program.buffer[address] = 'T';
    program.buffer[8001] = 'v';
    program.grid.FillGrid();
    program.grid.MoveCurrent(GridCell::At(10));
    const auto go = [&](FindDirection direction) {
        program.find.Go(direction);
        return std::to_string(program.grid.Current().Address()) + ": " + test.Status();
    };
    EXPECT_FALSE(program.find.LookFor("256", FindKind::Bytes) || program.find.KnowsWhat());
    ASSERT_TRUE(program.find.LookFor("0x54", FindKind::Bytes));
    EXPECT_EQ(go(Next), "20: 2 of 3");
    EXPECT_THAT(test.outside.steps, ElementsAre("editor page"));
    EXPECT_EQ(go(Next), "8000: 3 of 3");
    EXPECT_EQ(go(Next), "10: 1 of 3, wrapped");
    EXPECT_EQ(go(Previous), "8000: 3 of 3, wrapped");
    EXPECT_EQ(go(Previous), "20: 2 of 3");
    EXPECT_FALSE(program.find.LookFor("", FindKind::Text));
    ASSERT_TRUE(program.find.LookFor("Tv", FindKind::Text));
    EXPECT_EQ(go(Next), "8000: 1 of 1");
    EXPECT_EQ(go(Next), "8000: 1 of 1, wrapped");
    ASSERT_TRUE(program.find.LookFor("TV", FindKind::Text));
    EXPECT_EQ(go(Next), "8000: Not found");

    program.GoTo({2401, 8});
    program.GoTo({2401, std::nullopt});
    EXPECT_EQ(test.outside.steps.at(test.outside.steps.size() - 2), "cell 8");
    EXPECT_EQ(program.grid.Current().Address(), 2401);
}

}  // namespace
}  // namespace tarnwell
