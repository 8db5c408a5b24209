// Two sides, the rows that tell them apart, and what is taken into the memory buffer.
#include <fstream>

#include "archive/SettingsRecords.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using ::testing::ElementsAre;

MemoryBuffer With(const std::map<int, int>& bytes) {
    MemoryBuffer image{};
    for (const auto& [address, value] : bytes)
        image[static_cast<std::size_t>(address)] = static_cast<std::uint8_t>(value);
    return image;
}

TEST(DifferenceRows, ASettingIsARowAndNeighboursAreAPlace) {
    // TINT fills the upper six bits of byte 2085.
    const auto rows = DifferenceRows(TargetDevice::Primary,
                                     With({{16, 1}, {17, 2}, {2084, 3}, {2085, 0x05}, {2363, 4}}),
                                     With({{19, 9}}));
    EXPECT_EQ(ListText(rows, NumberMode::Decimal, '\t'),
              "Address\tSetting\tFormat\tLeft\tRight\n16\t\t\t1\t0\n17\t\t\t2\t0\n19\t\t\t0\t9\n"
              "2084\t\t\t3\t0\n2085\t\t\t5\t0\n2085\tTINT\t\t1\t0\n2363\tCR02\t480i\t4\t0\n");
    EXPECT_EQ(ListText({rows[0]}, NumberMode::Hex, ','),
              "Address (hex),Setting,Format,Left (hex),Right (hex)\n10,,,1,0\n11,,,2,0\n");
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_THAT(TextsOf(rows[0], NumberMode::Hex), ElementsAre("10 - 11", "2 bytes", "", "", ""));
    EXPECT_EQ(DifferenceRows(TargetDevice::Secondary, With({{2085, 5}}), {})[0].cell, std::nullopt);
}

struct Session : TestProgram {
    Compare& compare = program.compare;

    Session() {
        television.Memory(Chip::Primary).fill(0x40);
        program.wholeDevice.ReadEntireEep();
        EXPECT_TRUE(compare.Choose(Side::Left, Source::Buffer));
    }
};

TEST(Compare, ADeviceThatDoesNotAnswerLeavesItsSideEmpty) {
    Session session;
    session.television.Memory(Chip::Secondary).fill(0x40);
    session.television.Memory(Chip::Secondary)[2363] = 1;
    ASSERT_TRUE(session.compare.Choose(Side::Right, Source::Secondary));
    EXPECT_EQ(session.compare.Summary(), "1 byte differs: 1 byte in 1 place");
    EXPECT_EQ(session.Status(), "Secondary EEProm Data Read for Comparison");
    EXPECT_EQ(session.program.state.targetDevice, TargetDevice::Primary);
    session.television.Inject({.kind = FaultKind::SclStuckLow});
    EXPECT_FALSE(session.compare.Choose(Side::Right, Source::Primary));
    EXPECT_EQ(session.user.boxes.size(), 1U);
    EXPECT_EQ(session.compare.Of(Side::Right), std::nullopt);
    EXPECT_FALSE(session.compare.CanTake());
    EXPECT_EQ(session.compare.Summary(), "");
    EXPECT_TRUE(session.compare.Rows().empty());
}

TEST(Compare, ASettingsArchiveHasOnlyItsValues) {
    Session session;
    session.program.cells.ShowValue(*CellAtAddress(2363), 7);
    const std::string path = session.folder.Path("settings.mot");
    ASSERT_TRUE(WriteArchive(path, SettingsRecords(session.program.cells)));
    session.program.state.EepRead = false;
    session.user.files = {path};
    ASSERT_TRUE(session.compare.Choose(Side::Right, Source::SettingsArchive));
    EXPECT_EQ(session.compare.Summary(), "1 byte differs: 1 setting");

    const std::string header(kSettingsHeader);
    for (const auto& [source, content, taken, told] :
         {std::tuple(Source::ImageArchive, std::string("nothing\r\n"), false, "not an S-Record"),
          {Source::ImageArchive, std::string(), false, "The file cannot be read as a whole;"},
          {Source::ImageArchive, std::string(kImageHeader), false, "read as a whole;"},
          {Source::SettingsArchive, header, false, "The file cannot be read as a whole;"},
          {Source::SettingsArchive, header + "\r\nS9030000FC", true, "not have all settings;"}}) {
        const std::string other = session.folder.Path("other.mot");
        std::ofstream(other) << content;
        session.user.files = {other};
        EXPECT_EQ(session.compare.Choose(Side::Right, source), taken);
        EXPECT_THAT(session.user.TakeBoxes(), ElementsAre(::testing::HasSubstr(told)));
        EXPECT_EQ(session.compare.Summary(),
                  taken ? "No differences" : "1 byte differs: 1 setting");
    }
}

TEST(Compare, ABufferWithoutAnImageIsNoSide) {
    TestProgram test;
    test.program.compare.Begin();
    EXPECT_FALSE(test.program.compare.Choose(Side::Left, Source::Buffer));
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre("E R R O R|Must First Read the EEPROM! "));
    EXPECT_EQ(test.program.compare.Of(Side::Left), std::nullopt);
    EXPECT_TRUE(test.program.compare.Choose(Side::Right, Source::Primary));
    EXPECT_EQ(test.program.compare.Summary(), "");
    test.program.wholeDevice.ReadEntireEep();
    test.program.compare.Begin();
    EXPECT_EQ(test.program.compare.Of(Side::Left), Source::Buffer);
    test.program.state.targetDevice = TargetDevice::Secondary;
    EXPECT_TRUE(test.program.compare.Choose(Side::Left, Source::Primary));
    test.television.Memory(Chip::Primary)[2085] ^= 0x80;
    EXPECT_TRUE(test.program.compare.Choose(Side::Right, Source::Primary));
    EXPECT_EQ(test.program.compare.Summary(), "1 byte differs: 1 setting") << "of the primary";
}

TEST(Compare, TakenBitsComeIntoTheBufferAndSettingsWaitToBeWritten) {
    Session session;
    session.television.Memory(Chip::Primary)[2085] = 0x47;
    session.television.Memory(Chip::Primary)[2086] = 0x41;
    session.television.Memory(Chip::Primary)[2087] = 0x88;
    session.television.Memory(Chip::Primary)[100] = 0x12;
    ASSERT_TRUE(session.compare.Choose(Side::Right, Source::Primary));
    EXPECT_EQ(session.Status(), "Primary EEProm Data Read for Comparison");
    const std::string crc = session.Crc();
    const int tint = *CellAtAddress(2085);
    auto rows = session.compare.Rows();
    std::erase_if(rows, [](const DifferenceRow& row) { return row.Address() == 100; });
    std::erase_if(rows, [&](const DifferenceRow& row) { return row.cell != tint; });
    session.compare.Take(rows);
    EXPECT_EQ(session.program.buffer[2085], 0x44);
    EXPECT_EQ(session.program.buffer[100], 0x40);
    EXPECT_TRUE(session.program.state.BufferChanged);
    EXPECT_NE(session.Crc(), crc);
    EXPECT_EQ(session.program.cells.Caption(tint), "17");
    EXPECT_EQ(session.program.cells.MarkOf(tint), Mark::Save);
    EXPECT_EQ(session.program.cells.Colour(tint), CellColour::Changed);
    EXPECT_EQ(session.program.grid.Text({130, 6}), "68");

    session.compare.Take(session.compare.Rows());
    EXPECT_EQ(session.compare.Summary(), "No differences");
    EXPECT_EQ(session.Status(), "Values Taken Into Memory Buffer");
    for (int take = 0; take < 2; ++take) {
        session.program.undo.Undo();
        EXPECT_EQ(session.Status(), "Undone: Take from Primary EEProm");
    }
    EXPECT_EQ(session.Crc(), crc);
    EXPECT_EQ(session.program.cells.MarkOf(tint), Mark::Clean);
}

TEST(Compare, ABackupIsASideAndIsLoadedWithItsQuestions) {
    Session session;
    Program& program = session.program;
    ASSERT_TRUE(program.backups.Keep(TargetDevice::Primary, With({{2363, 0x41}})));
    EXPECT_TRUE(session.compare.ChooseBackup(Side::Right, program.backups.All().front()));
    EXPECT_EQ(session.compare.Summary(),
              "8192 bytes differ: 72 settings, 8120 other bytes in 14 places");
    ASSERT_TRUE(program.backups.Keep(TargetDevice::Secondary, With({{2363, 0x40}})));
    const KeptImage kept = program.backups.All().front();
    const std::string folder = program.state.archiveFolder;
    EXPECT_TRUE(session.compare.ChooseBackup(Side::Right, kept));
    EXPECT_EQ(session.compare.Device(), TargetDevice::Secondary);
    EXPECT_EQ(session.compare.Summary(), "8191 bytes differ: 8191 bytes in 2 places");

    program.grid.SetGridChanged(true);
    session.WillAnswer({Answer::Yes, Answer::No});
    program.imageArchive.LoadKeptImage(kept);
    EXPECT_EQ(session.Status(), "EEProm Image Load Cancelled");
    ASSERT_EQ(session.user.boxes.size(), 2U);
    EXPECT_THAT(session.user.boxes[1].text, ::testing::StartsWith("This is a backup of the Sec"));
    EXPECT_EQ(session.user.boxes[1].defaultButton, DefaultButton::No);
    session.WillAnswer({Answer::Yes, Answer::Yes, Answer::Yes});
    program.imageArchive.LoadKeptImage(kept);
    EXPECT_EQ(program.buffer[2362] + program.buffer[2363], 0x40);
    EXPECT_EQ(program.state.archiveFolder, folder) << "the next dialog opens where it did";
    EXPECT_FALSE(session.compare.ChooseBackup(Side::Left, {"missing", kept.device, "", 1}));
}

}  // namespace
}  // namespace tarnwell
