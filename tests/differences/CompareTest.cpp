// Two sides, the rows that tell them apart, and what is taken into the memory buffer.
#include "archive/SettingsRecords.h"
#include "differences/DifferenceTexts.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

MemoryBuffer With(const std::map<int, int>& bytes) {
    MemoryBuffer image{};
    for (const auto& [address, value] : bytes)
        image[static_cast<std::size_t>(address)] = static_cast<std::uint8_t>(value);
    return image;
}

TEST(DifferenceRows, ASettingIsARowAndNeighboursAreAPlace) {
    // TINT fills the upper six bits of byte 2085.
    const NameBook names;
    const auto rows = DifferenceRows(names, TargetDevice::Primary,
                                     With({{16, 1}, {17, 2}, {2084, 3}, {2085, 0x05}, {2363, 4}}),
                                     With({{19, 9}}));
    EXPECT_EQ(ListText(rows, NumberMode::Decimal, '\t'),
              "Address\tSetting\tFormat\tLeft\tRight\n16\t\t\t1\t0\n17\t\t\t2\t0\n19\t\t\t0\t9\n"
              "2084\t\t\t3\t0\n2085\t\t\t5\t0\n2085\tTINT\t\t1\t0\n2363\tCR02\t480i\t4\t0\n");
    EXPECT_EQ(ListText({rows[0]}, NumberMode::Hex, ','),
              "Address (hex),Setting,Format,Left (hex),Right (hex)\n10,,,1,0\n11,,,2,0\n");
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_THAT(TextsOf(rows[0], NumberMode::Hex), ElementsAre("10 - 11", "2 bytes", "", "", ""));
    EXPECT_FALSE(DifferenceRows(names, TargetDevice::Secondary, With({{2085, 5}}), {})[0].named);
}

/// Low byte before the high one; byte 9 holds two names and bits without one.
TEST(DifferenceRows, NamesOfOnesOwnAreRowsToo) {
    const TemporaryFolder folder;
    folder.Write("n", R"({"format": 1, "names": [
        {"name": "Level", "device": "secondary", "address": 7, "low": 5},
        {"name": "A", "device": "secondary", "address": 9, "bits": [0, 1], "values": {"1": "on"}},
        {"name": "B", "device": "secondary", "address": 9, "bits": [4, 7]}]})");
    NameBook names;
    names.Open(NameLayer::User, folder.Path("n"));
    const MemoryBuffer left = With({{5, 0xFF}, {6, 1}, {7, 1}, {9, 0x3D}});
    const MemoryBuffer right = With({{7, 2}, {9, 0x10}});
    auto rows = DifferenceRows(names, TargetDevice::Secondary, left, right);
    EXPECT_EQ(ListText(rows, NumberMode::Decimal, ' ').substr(34),
              "7 Level  511 512\n6   1 0\n9 A  1 0\n9 B  3 1\n9   61 16\n");
    EXPECT_EQ(ChangesText(rows, NumberMode::Decimal),
              "Address 7 (Level): 511 becomes 512\nAddress 6: 1 becomes 0\n"
              "Address 9 (A): 1 (on) becomes 0\nAddress 9 (B): 3 becomes 1\n"
              "Address 9: 61 becomes 16");
    EXPECT_EQ(DifferencesText(CountDifferences(rows)),
              "4 bytes differ: 3 settings, 2 other bytes in 2 places");
    EXPECT_EQ(DifferenceRows(names, TargetDevice::Primary, left, right).size(), 2U);
    rows.erase(rows.begin() + 2, rows.begin() + 4);
    MemoryBuffer image = right;
    TakeRows(names, rows, TargetDevice::Secondary, left, image);
    EXPECT_EQ(image, With({{5, 0xFF}, {6, 1}, {7, 1}, {9, 0x1C}}));
}

struct Compare : testing::Test, TestProgram {
    CompareCommand& compare = program.compare;

    Compare() {
        television.Memory(Chip::Primary).fill(0x40);
        program.wholeDevice.ReadEntireEep();
        EXPECT_TRUE(compare.Choose(Side::Left, Source::Buffer));
    }
};

TEST_F(Compare, AWatchTellsWhatChangesUntilItIsIgnored) {
    Watch& watch = program.watch;
    auto& memory = television.Memory(Chip::Primary);
    watch.Begin(TargetDevice::Primary, {{0, 8192}}, &program.buffer);
    std::chrono::milliseconds pause{0}, held{0};
    const auto read = [&] {
        const BusTime begin = television.Now();
        pause = {};
        for (const int readings = watch.Readings(); watch.Readings() == readings;) {
            const BusTime before = television.Now();
            const auto wait = watch.Step();
            EXPECT_GE(wait, television.Now() - before) << "for another master of the bus";
            EXPECT_LT(television.Now() - before, 120ms);
            pause += wait;
        }
        held = std::chrono::ceil<std::chrono::milliseconds>(television.Now() - begin);
        std::string text;
        for (const auto& [time, device, row] : watch.Changes())
            text += TimeOfDay(time) + " " + ChangesText({row}, NumberMode::Decimal);
        return text;
    };
    EXPECT_EQ(read(), "");
    memory[2363] = 0x41;
    memory[8191] ^= 1;
    EXPECT_EQ(
        read(),
        "21:21:01 Address 2363 (480i CR02): 64 becomes 6521:21:01 Address 8191: 64 becomes 65");
    EXPECT_TRUE(std::equal(memory.begin(), memory.end(), watch.Held().begin()));
    watch.Ignore(8191);
    memory[8191] ^= 2;
    EXPECT_EQ(read(), "21:21:01 Address 2363 (480i CR02): 64 becomes 65");
    watch.Clear();
    memory[8191] ^= 2;
    EXPECT_EQ(read(), "21:21:01 Address 8191: 67 becomes 65") << "nothing is ignored any more";

    watch.Begin(TargetDevice::Secondary, {{5, 1}});
    read();
    television.Memory(Chip::Secondary)[5] ^= 4;
    read();
    EXPECT_EQ(watch.Changes().size(), 2U);
    EXPECT_THAT(pause + held, AllOf(testing::Ge(1000ms), Le(1002ms)));
    EXPECT_EQ(program.state.targetDevice, TargetDevice::Primary);
    television.Inject({.kind = FaultKind::DeviceSilent, .chip = Chip::Secondary});
    std::vector<std::chrono::milliseconds> waits(4);
    std::ranges::generate(waits, [&] { return watch.Step(); });
    EXPECT_THAT(waits, ElementsAre(1000ms, 2000ms, 4000ms, 4000ms));
    EXPECT_THAT(watch.Failure(), StartsWith("There is an I2C bus or Interface Hardware Problem."));
    television.ClearFaults();
    EXPECT_GE(watch.Step(), 900ms);
    EXPECT_EQ(watch.Failure() + std::to_string(user.boxes.size()), "0");
}

TEST_F(Compare, ASettingsArchiveHasOnlyItsValues) {
    program.cells.ShowValue(*CellAtAddress(2363), 7);
    const std::string path = folder.Path("settings.mot");
    ASSERT_TRUE(WriteArchive(path, ArchiveText(SettingsRecords(program.cells))));
    program.state.EepRead = false;
    user.files = {path};
    ASSERT_TRUE(compare.Choose(Side::Right, Source::SettingsArchive));
    EXPECT_EQ(compare.Summary(), "1 byte differs: 1 setting");

    const std::string header(kSettingsHeader);
    for (const auto& [source, content, taken, told] :
         {std::tuple(Source::ImageArchive, std::string("nothing\r\n"), false, "not an S-Record"),
          {Source::ImageArchive, std::string(kImageHeader), false, "read as a whole;"},
          {Source::SettingsArchive, header, false, "The file cannot be read as a whole;"},
          {Source::SettingsArchive, header + "\r\nS9030000FC", true, "not have all settings;"}}) {
        folder.Write("other.mot", content);
        user.files = {folder.Path("other.mot")};
        EXPECT_EQ(compare.Choose(Side::Right, source), taken);
        EXPECT_THAT(user.TakeBoxes(), ElementsAre(HasSubstr(told)));
        EXPECT_EQ(compare.Summary(), taken ? "No differences" : "1 byte differs: 1 setting");
    }
}

TEST_F(Compare, FilesThatWereUsedAreListedUntilTheyAreGone) {
    const auto path = [&](auto name) { return folder.Path(std::string(1, name)); };
    const auto names = [&](const RecentFiles& files) {
        std::string all;
        for (const std::string& file : files.Paths())
            all += file.back();
        return all;
    };
    const RecentFiles& images = program.state.recentImages;
    const RecentFiles& settings = program.state.recentSettings;
    for (const char name : std::string("123456789\n")) {
        user.files = {path(name)};
        program.state.BufferChanged = true;
        program.imageArchive.SaveImage();
    }
    EXPECT_EQ(names(images), "98765432");
    EXPECT_EQ(RecentFiles::FromText("\n" + images.Text() + "\nx").Paths(), images.Paths());
    program.imageArchive.LoadRecentImage(path('3'));
    EXPECT_TRUE(compare.ChooseFile(Side::Left, Source::ImageArchive, path('5')));
    EXPECT_EQ(compare.FileOf(Side::Left), path('5'));
    user.files = {path('1')};
    EXPECT_TRUE(compare.Choose(Side::Right, Source::ImageArchive));
    EXPECT_EQ(compare.FileOf(Side::Right), path('1'));
    EXPECT_EQ(names(images), "15398764");
    std::ofstream(path('4')) << "nothing";
    program.imageArchive.LoadRecentImage(path('4'));
    program.imageArchive.LoadKeptImage({path('2'), TargetDevice::Primary, "", 1});
    EXPECT_EQ(names(images), "15398764") << "only what was taken, and no backup";

    ASSERT_TRUE(WriteArchive(path('s'), ArchiveText(SettingsRecords(program.cells))));
    program.settingsArchive.LoadSettingsFile(path('s'));
    EXPECT_TRUE(compare.ChooseFile(Side::Right, Source::SettingsArchive, path('s')));
    user.files = {path('t')};
    program.settingsArchive.SaveSettings();
    program.settingsArchive.LoadRecentSettings(path('s'));
    EXPECT_EQ(Status(), "Settings Loaded from Archive Disk File");
    EXPECT_EQ(names(settings), "st");
    user.TakeBoxes();
    for (const char name : {'9', 's', 't'})
        std::filesystem::remove(path(name));
    const MemoryBuffer buffer = program.buffer;
    program.imageArchive.LoadRecentImage(path('9'));
    program.settingsArchive.LoadRecentSettings(path('t'));
    EXPECT_FALSE(compare.ChooseFile(Side::Right, Source::SettingsArchive, path('s')));
    EXPECT_EQ(compare.FileOf(Side::Right), path('s')) << "as it was";
    EXPECT_EQ(
        user.TakeBoxes().back(),
        "I N F O|The file is not there any more, and was taken out of the list:\r\n" + path('s'));
    EXPECT_EQ(names(images) + names(settings), "1538764");
    EXPECT_EQ(program.buffer, buffer);
}

TEST_F(Compare, ABufferWithoutAnImageIsNoSide) {
    program.state.EepRead = false;
    program.buffer.fill(0);
    compare.Begin();
    EXPECT_FALSE(compare.Choose(Side::Left, Source::Buffer));
    EXPECT_THAT(user.TakeBoxes(), ElementsAre("E R R O R|Must First Read the EEPROM! "));
    EXPECT_TRUE(compare.Choose(Side::Right, Source::Primary));
    EXPECT_EQ(compare.Of(Side::Left), std::nullopt);
    EXPECT_EQ(compare.Summary(), "");
    program.wholeDevice.ReadEntireEep();
    compare.Begin();
    EXPECT_EQ(compare.Of(Side::Left), Source::Buffer);
    program.state.targetDevice = TargetDevice::Secondary;
    EXPECT_TRUE(compare.Choose(Side::Left, Source::Primary));
    television.Memory(Chip::Primary)[2085] ^= 0x80;
    EXPECT_TRUE(compare.Choose(Side::Right, Source::Primary));
    EXPECT_EQ(compare.Summary(), "1 byte differs: 1 setting") << "of the primary";
}

TEST_F(Compare, TakenBitsComeIntoTheBufferAndSettingsWaitToBeWritten) {
    for (const auto& [address, byte] : {std::pair(2085, 0x47), {2086, 0x41}, {2087, 0x88}, {9, 1}})
        television.Memory(Chip::Primary)[std::size_t(address)] = std::uint8_t(byte);
    ASSERT_TRUE(compare.Choose(Side::Right, Source::Primary));
    EXPECT_EQ(Status(), "Primary EEProm Data Read for Comparison");
    const std::string crc = Crc();
    const int tint = *CellAtAddress(2085);
    auto rows = compare.Rows();
    std::erase_if(rows,
                  [&](const DifferenceRow& row) { return !row.named || row.named->cell != tint; });
    compare.Take(rows);
    EXPECT_TRUE(program.buffer[2085] == 0x44 && program.buffer[9] == 0x40);
    EXPECT_TRUE(program.state.BufferChanged);
    EXPECT_EQ(Crc(), mCRC32::BufferCrcText(program.buffer));
    EXPECT_EQ(program.cells.Caption(tint), "17");
    EXPECT_EQ(program.cells.MarkOf(tint), Mark::Save);
    EXPECT_EQ(program.cells.Colour(tint), CellColour::Changed);
    EXPECT_EQ(program.grid.Text(GridCell::At(2085)), "68");

    compare.Take(compare.Rows());
    EXPECT_EQ(compare.Summary(), "No differences");
    EXPECT_EQ(Status(), "Values Taken Into Memory Buffer");
    for (int take = 0; take < 2; ++take) {
        program.undo.Undo();
        EXPECT_EQ(Status(), "Undone: Take from Primary EEProm");
    }
    EXPECT_EQ(Crc(), crc);
}

TEST_F(Compare, WhatIsTakenIsTheTargetDevices) {
    television.Memory(Chip::Secondary).fill(0x0B);
    ASSERT_TRUE(compare.Choose(Side::Right, Source::Secondary));
    EXPECT_EQ(Status(), "Secondary EEProm Data Read for Comparison");
    EXPECT_EQ(program.state.targetDevice, TargetDevice::Primary);
    compare.Take(compare.Rows());
    EXPECT_EQ(program.cells.Caption(0), "11") << "the buffer's, as every value shown";
    EXPECT_EQ(program.cells.MarkOf(71), Mark::Save);
    EXPECT_EQ(program.cells.Caption(71), "0");

    const std::string path = folder.Path("settings.mot");
    ASSERT_TRUE(WriteArchive(path, ArchiveText(SettingsRecords(program.cells))));
    WillAnswer({Answer::Ok, Answer::Yes});
    program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    program.buffer.fill(1);
    compare.Begin();
    user.files = {path};
    ASSERT_TRUE(compare.Choose(Side::Right, Source::SettingsArchive));
    compare.Take(compare.Rows());
    EXPECT_EQ(Status(), "Use the Data Editor to View/Modify data");
    ASSERT_TRUE(compare.Choose(Side::Left, Source::Primary));
    EXPECT_TRUE(compare.CanWrite());
    ASSERT_TRUE(compare.Choose(Side::Left, Source::Secondary));
    EXPECT_TRUE(compare.HasOneDevice() && !compare.CanWrite());
    EXPECT_THAT(program.buffer, Each(1));
}

TEST_F(Compare, RowsAreWrittenToTheSideThatIsADevice) {
    EepromImage& primary = television.Memory(Chip::Primary);
    EepromImage& secondary = television.Memory(Chip::Secondary);
    program.buffer[100] = program.buffer[101] = 0x12;
    program.buffer[2085] = 0x47;  // TINT 17, and its other bits
    ASSERT_TRUE(compare.Choose(Side::Right, Source::Primary));
    auto rows = compare.Rows();
    ASSERT_EQ(rows.size(), 3U);
    rows.erase(rows.end() - 1);
    primary[101] = 0x12;  // behind the window's back
    primary[5000] = 0x41;
    EepromImage wanted = primary;
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        WillAnswer({answer});
        compare.Write(rows);
        EXPECT_EQ(primary[100], answer == Answer::No ? 0x40 : 0x12);
        EXPECT_THAT(user.TakeBoxes(),
                    ElementsAre("V E R I F Y|Write 2 bytes to the Primary EEProm?\r\n2 bytes "
                                "differ: 1 setting, 1 other byte in 1 place."));
        EXPECT_EQ(compare.Image(Side::Right)[5000], 0x41);
    }
    wanted[100] = 0x12, wanted[2085] = 0x44;
    EXPECT_EQ(primary, wanted);
    EXPECT_EQ(Status(), "EEP Verified OK; 2 Bytes Written");
    EXPECT_EQ(compare.Summary(), "2 bytes differ: 2 bytes in 2 places");
    compare.Write(rows);
    EXPECT_THAT(user.TakeBoxes(),
                ElementsAre("I N F O|The EEProm already holds what is to be written."));

    secondary.fill(0x40);
    ASSERT_TRUE(compare.Choose(Side::Right, Source::Secondary));
    for (const auto& answers : {std::vector{Answer::Cancel}, {Answer::Ok, Answer::No}}) {
        user.answers.assign(answers.begin(), answers.end());
        compare.Write(compare.Rows());
        EXPECT_EQ(Status(), "EEProm Write Cancelled");
        EXPECT_EQ(user.boxes.back().text.find("B E   C") == 0, answers.size() == 1);
        EXPECT_TRUE(user.answers.empty() && secondary[100] == 0x40);
    }
    EXPECT_EQ(user.TakeBoxes().back(),
              "C A U T I O N|These values are those of the Primary EEProm.\r\nWrite them to the "
              "Secondary EEProm all the same?");
    WillAnswer({Answer::Ok, Answer::Yes, Answer::Yes});
    compare.Write(compare.Rows());
    EXPECT_TRUE(std::ranges::equal(secondary, std::span(program.buffer).first(kEepromBytes)));
    EXPECT_THAT(program.backups.LastKept(), EndsWith("-Sec.mot"));
    EXPECT_TRUE(program.state.targetDevice == TargetDevice::Primary && primary == wanted);

    ASSERT_TRUE(compare.Choose(Side::Right, Source::Primary));
    for (const std::uint64_t writes : {0U, 1U}) {
        EXPECT_EQ(compare.Of(Side::Right), Source::Primary);
        television.ClearFaults();
        television.Inject(
            {.kind = FaultKind::SdaStuckLow, .begins = {WireEvent::WriteCycle, writes}});
        user.answers = {Answer::Yes};
        compare.Write(compare.Rows());
    }
    EXPECT_EQ(compare.Of(Side::Right), std::nullopt) << "nobody knows what it holds";
    EXPECT_FALSE(compare.CanWrite() || compare.HasDevice());
}

TEST_F(Compare, ADeviceReadAgainSaysWhatChangedMeanwhile) {
    EepromImage& primary = television.Memory(Chip::Primary);
    ASSERT_TRUE(compare.Choose(Side::Right, Source::Primary));
    program.buffer[7] = 1;
    primary[100] = primary[2363] = 0x41;
    EXPECT_EQ(ListText(compare.ReadAgain(), NumberMode::Decimal, ' ').substr(34),
              "100   64 65\n2363 CR02 480i 64 65\n");
    EXPECT_EQ(Status(), "2 bytes changed since the last reading");
    EXPECT_EQ(compare.Rows().size(), 3U);
    EXPECT_TRUE(compare.ReadAgain().empty());
    EXPECT_EQ(Status(), "Nothing changed since the last reading");
    television.Inject({.kind = FaultKind::SclStuckLow});
    primary[100] = 0x42;
    EXPECT_TRUE(compare.ReadAgain().empty());
    EXPECT_EQ(compare.Of(Side::Right), Source::Primary);
    EXPECT_THAT(Status(), Not(HasSubstr("since")));
}

TEST_F(Compare, ABackupIsASideAndIsLoadedWithItsQuestions) {
    for (const auto& [device, summary] :
         {std::pair(TargetDevice::Primary,
                    "8192 bytes differ: 72 settings, 8120 other bytes in 14 places"),
          {TargetDevice::Secondary, "8192 bytes differ: 8192 bytes in 1 place"}}) {
        ASSERT_NE(program.backups.Keep(device, With({{2363, 0x41}})), "");
        EXPECT_TRUE(compare.ChooseBackup(Side::Right, program.backups.All().front()));
        EXPECT_EQ(compare.Device(), device);
        EXPECT_EQ(compare.Summary(), summary);
    }
    const std::string before = program.state.archiveFolder;
    WillAnswer({Answer::Yes, Answer::Yes});
    program.imageArchive.LoadKeptImage(program.backups.All().front());
    EXPECT_THAT(user.boxes.at(0).text, StartsWith("This is a backup of the Sec"));
    EXPECT_EQ(user.boxes[0].defaultButton, DefaultButton::No);
    EXPECT_EQ(Status(), "Loaded; Write Differences brings it to the EEProm");
    EXPECT_EQ(program.buffer[2362] + program.buffer[2363], 0x41);
    EXPECT_EQ(program.state.archiveFolder, before) << "the next dialog opens where it did";
    EXPECT_FALSE(compare.ChooseBackup(Side::Left, {"missing", TargetDevice::Primary, "", 1}));
}

}  // namespace
}  // namespace tarnwell
