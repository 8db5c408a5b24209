// Undo and redo of each command, and what they mean after a write.
#include "history/UndoCommands.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;
using enum Answer;

class UndoTest : public testing::Test {
  protected:
    UndoTest() {
        for (int address = 0; address < kEepromBytes; ++address)
            memory[static_cast<std::size_t>(address)] = static_cast<std::uint8_t>(address % 7);
        program.wholeDevice.ReadEntireEep();
        program.editorPage.ToggleEditor();
    }
    void SetCell(int cell, int value) {
        test.outside.onFormEdit = [this, value] {
            program.valueEditor.Accept(program.valueEditor.Readout(value));
        };
        program.valueEditor.CellClicked(cell);
    }
    void SetByte(int address, int value) {
        program.cellEditor.MoveTo({address / 16, address % 16 + 1});
        program.cellEditor.Click();
        program.cellEditor.TextEdited(std::to_string(value));
        program.cellEditor.KeyPressed(EditKey::Next);
    }
    std::string Undo(int times = 1) {
        for (int time = 0; time < times; ++time)
            program.undo.Undo();
        return test.Status();
    }
    std::string Redo() {
        program.undo.Redo();
        return test.Status();
    }
    void WriteSettings() {
        test.WillAnswer({Yes});
        program.settings.WriteSettingsToEep();
    }
    void WritePending() {
        test.WillAnswer({Yes});
        program.pending.WritePending();
    }
    std::string Cell(int cell) {
        const CellContents& contents = program.cells.Contents(cell);
        return contents.caption + (contents.mark != Mark::Clean ? " waits" : "") +
               (contents.colour == CellColour::Changed ? " changed" : "");
    }
    /// "address old new" of each entry.
    std::vector<std::string> Queue() {
        std::vector<std::string> entries;
        for (const EditRecord& row : program.pending.Contents().Entries())
            entries.push_back(row.EditAddress + " " + row.EditOldValue + " " + row.EditNewValue);
        return entries;
    }
    std::string GridText(int address) {
        return program.grid.Text({address / 16, address % 16 + 1});
    }
    bool IsChanged(int address) { return program.grid.IsChanged({address / 16, address % 16 + 1}); }

    TestProgram test;
    Program& program = test.program;
    EepromImage& memory = test.television.Memory(Chip::Primary);
};

constexpr int kRyr480p = 8;  // at 2401, which holds 0

TEST_F(UndoTest, EachCommandIsOneStepWithItsName) {
    const std::string image = test.folder.Path("a & b.mot");
    const std::string values = test.folder.Path("values.mot");
    test.user.files = {values, image};
    program.settingsArchive.SaveSettings();
    program.imageArchive.SaveImage();
    const std::vector<std::pair<std::string, std::function<void()>>> commands{
        {"480p R-YR 0 to 8", [&] { SetCell(kRyr480p, 8); }},
        {"Revert of 480p R-YR", [&] { program.cellCommands.Revert(kRyr480p); }},
        {"480p R-YR 0 to 9", [&] { SetCell(kRyr480p, 9); }},
        {"R-YR in All Formats to 9", [&] { program.cellCommands.CopyToAllFormats(kRyr480p); }},
        {"Merge of Settings", [&] { program.settings.MergeSettingsWithBuffer(); }},
        {"Byte 20 6 to 77", [&] { SetByte(20, 77); }},
        {"Byte 20 77 to 78", [&] { SetByte(20, 78); }},
        {"Paste of 2 Bytes", [&] { program.cellEditor.Paste("8 9"); }},
        {"Discard of Grid Changes",
         [&] {
             test.WillAnswer({No, Yes});
             program.editorPage.SettleGridEdits();
         }},
        {"Byte 21 0 to 5", [&] { SetByte(21, 5); }},
        {"Transfer of Data Grid",
         [&] {
             test.WillAnswer({Yes});
             program.editorPage.SettleGridEdits();
         }},
        {"Read of Settings", [&] { program.settings.ReadSettingsFromEep(); }},
        {"Load of values.mot", [&] { program.settingsArchive.LoadSettingsFile(values); }},
        {"Load of a & b.mot", [&] { program.imageArchive.LoadImageFile(image); }},
        {"Selection of Secondary EEProm",
         [&] {
             test.WillAnswer({Ok, Yes});
             program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
         }},
        {"Read of Secondary EEProm", [&] { program.wholeDevice.ReadEntireEep(); }},
    };
    std::vector<Snapshot> points{program.history.Now()};
    for (const auto& [name, command] : commands) {
        command();
        points.push_back(program.history.Now());
        EXPECT_EQ(program.history.NextName(Direction::Undo), name);
    }
    const int first = program.history.Count(Direction::Undo) - static_cast<int>(commands.size());
    EXPECT_EQ(first, 1) << "the read; saves are no steps";
    for (std::size_t step = commands.size(); step > 0; --step) {
        EXPECT_EQ(Undo(), "Undone: " + commands[step - 1].first);
        EXPECT_TRUE(program.history.Now() == points[step - 1]) << commands[step - 1].first;
    }
    for (std::size_t step = 1; step <= commands.size(); ++step) {
        if (points[step].target != program.state.targetDevice) {
            test.WillAnswer({Cancel, Ok});
            EXPECT_EQ(Redo(), "Target EEProm Not Changed - Primary EEP Still Selected");
        }
        EXPECT_EQ(Redo(), "Redone: " + commands[step - 1].first);
        EXPECT_TRUE(program.history.Now() == points[step]) << commands[step - 1].first;
    }
    EXPECT_TRUE(test.user.answers.empty());
}

TEST_F(UndoTest, NothingComesOfWhatChangedNothingAndANewStepEndsRedo) {
    Undo(2);
    EXPECT_EQ(program.history.NextName(Direction::Undo), std::nullopt);
    EXPECT_EQ(program.history.NextName(Direction::Redo), "Read of Primary EEProm");
    test.outside.onFormEdit = {};
    program.valueEditor.CellClicked(0);
    SetByte(20, 300);
    EXPECT_EQ(program.history.Count(Direction::Undo), 0);
    SetCell(kRyr480p, 12);
    const std::size_t bytes = program.history.Bytes();
    Undo();
    SetCell(kRyr480p, 12);
    EXPECT_EQ(program.history.Bytes(), bytes);
    program.editorPage.ToggleEditor();
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(program.history.NextName(Direction::Undo), "480p R-YR 0 to C");
    EXPECT_EQ(program.history.NextName(Direction::Redo), std::nullopt);
    Undo();
    program.numberModeMenu.Select(NumberMode::Decimal);
    Redo();
    EXPECT_EQ(Cell(kRyr480p), "12 waits changed");
    auto outer = std::make_unique<Step>(program.history, StepName{"outer"});
    program.buffer[1] ^= 1;
    static_cast<void>(Step(program.history, {"inner"}));
    EXPECT_EQ(program.history.NextName(Direction::Undo), "480p R-YR 0 to 12") << "part of another";
    outer.reset();
    EXPECT_EQ(program.history.NextName(Direction::Undo), "outer");
}

TEST_F(UndoTest, SettingsThatUndoTakesBackAfterAWriteWaitAgain) {
    for (const int cell : {6, 7, kRyr480p})
        SetCell(cell, 9);
    Undo(2);
    WriteSettings();
    EXPECT_EQ(memory[2399], 9);
    EXPECT_EQ(memory[2400], 2400 % 7);
    const auto written = program.history.Now();
    EXPECT_EQ(Undo(), "Undone: 480p CR02 5 to 9");
    EXPECT_EQ(Cell(6), "5 waits changed");
    EXPECT_EQ(program.buffer[2399], 9) << "what the write did stays";
    EXPECT_EQ(memory[2399], 9);
    Redo();
    EXPECT_TRUE(program.history.Now() == written);
    Undo();
    WriteSettings();
    EXPECT_EQ(memory[2399], 5);
    Redo();
    EXPECT_EQ(Cell(6), "9 waits changed");
    for (const int value : {12, 9}) {
        SetCell(6, value);
        WriteSettings();
    }
    Undo(2);
    EXPECT_EQ(Cell(6), "9") << "as the device holds it";
    Undo(2);
    EXPECT_EQ(program.state.EepRead, false);
    EXPECT_EQ(Cell(6), "0") << "no value that could be written";
    EXPECT_THAT(program.buffer, testing::Each(0)) << "also the byte that the write merged";
    EXPECT_EQ(test.Crc(), "");
    EXPECT_FALSE(program.state.BufferChanged);
}

TEST_F(UndoTest, BytesThatUndoTakesBackAfterAWriteAreQueued) {
    SetByte(20, 50);
    SetByte(30, 60);
    Undo();
    EXPECT_THAT(Queue(), ElementsAre("20 6 50"));
    EXPECT_EQ(GridText(30), "2");
    WritePending();
    EXPECT_EQ(memory[20], 50);
    Undo(2);
    EXPECT_THAT(Queue(), testing::IsEmpty()) << "the grid shows nothing";
    Redo();
    EXPECT_THAT(Queue(), ElementsAre("20 50 6"));
    EXPECT_TRUE(program.state.GridChanged && IsChanged(20) && program.buffer[20] == 50);
    Redo();
    EXPECT_THAT(Queue(), testing::IsEmpty());
    EXPECT_FALSE(program.state.GridChanged || IsChanged(20));
    Undo();
    WritePending();
    EXPECT_EQ(memory[20], 6);
    EXPECT_EQ(memory[30], 2);
    Redo();
    EXPECT_THAT(Queue(), ElementsAre("20 6 50"));
    program.editorPage.ToggleEditor();
    Undo();
    EXPECT_THAT(Queue(), testing::IsEmpty());
}

TEST_F(UndoTest, AnEleventhRowRefusesUndo) {
    for (int address = 0; address < 9; ++address)
        SetByte(address, 100);
    test.WillAnswer({Yes, Yes});
    SetByte(9, 100);
    EXPECT_EQ(memory[9], 100);
    for (int count = 1; count <= 10; ++count)
        EXPECT_EQ(Undo(), "Undone: Byte " + std::to_string(10 - count) + " " +
                              std::to_string((10 - count) % 7) + " to 100");
    EXPECT_EQ(Queue().size(), 10U) << "without a question";
    EXPECT_EQ(Queue().back(), "0 100 0");
    const std::string other = test.folder.Path("other.mot");
    std::ranges::fill_n(program.buffer.begin(), 11, std::uint8_t{77});
    test.user.files = {other};
    program.imageArchive.SaveImage();
    test.WillAnswer({Yes, Yes});
    program.imageArchive.LoadImageFile(other);
    program.wholeDevice.WriteEntireEep();
    const auto before = program.history.Now();
    EXPECT_EQ(Undo(), "Undo Needs More Than Ten Pending EEP Writes; Nothing Changed");
    EXPECT_TRUE(program.history.Now() == before);
    program.editorPage.ToggleEditor();
    EXPECT_EQ(Undo(), "Undone: Load of other.mot");
}

TEST_F(UndoTest, TheQueueOfOneDeviceIsNotBroughtToTheOther) {
    SetByte(20, 50);
    test.WillAnswer({Ok});
    program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    EXPECT_THAT(Queue(), testing::IsEmpty());
    Undo();
    EXPECT_EQ(program.state.targetDevice, TargetDevice::Primary);
    EXPECT_THAT(Queue(), ElementsAre("20 6 50"));
}

TEST_F(UndoTest, AWriteBetweenLeavesTheStepsBeforeItWhole) {
    SetByte(20, 50);
    test.WillAnswer({Yes, Yes, Yes, Yes});
    SetCell(kRyr480p, 9);
    program.settings.WriteSettingsToEep();
    EXPECT_EQ(program.history.NextName(Direction::Undo), "Discard of Grid Changes");
    Undo();
    EXPECT_THAT(Queue(), ElementsAre("20 6 50"));
    EXPECT_TRUE(program.state.GridChanged && GridText(20) == "50" && program.buffer[2401] == 9);
    EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(program.buffer));
}

TEST_F(UndoTest, ABufferThatDiffersFromTheSavedOneIsChanged) {
    SetCell(kRyr480p, 9);
    program.settings.MergeSettingsWithBuffer();
    SetByte(20, 50);
    test.user.files = {test.folder.Path("saved.mot")};
    program.imageArchive.SaveImage();
    Undo();
    EXPECT_THAT(Queue(), testing::IsEmpty()) << "held when the image was saved";
    Undo();
    EXPECT_TRUE(program.state.BufferChanged);
    EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(program.buffer));
    Redo();
    EXPECT_FALSE(program.state.BufferChanged);
    Redo();
    EXPECT_THAT(Queue(), ElementsAre("20 6 50"));
}

TEST_F(UndoTest, AThousandStepsOfTheLargestKindFitAndTheOldestGo) {
    const std::string paths[] = {test.folder.Path("a.mot"), test.folder.Path("b.mot")};
    for (const std::string& path : paths) {
        for (std::uint8_t& byte : program.buffer)
            byte = static_cast<std::uint8_t>(byte * 31 + path.size() + 5 + test.user.files.size());
        program.buffer[100] = path == paths[0] ? 0x11 : 0x22;
        program.state.BufferChanged = true;
        test.user.files = {path};
        program.imageArchive.SaveImage();
    }
    for (int load = 0; load < 1'000; ++load)
        program.imageArchive.LoadImageFile(paths[load % 2]);
    EXPECT_GE(program.history.Count(Direction::Undo), 1'000);
    for (int load = 0; load < 600; ++load)
        program.imageArchive.LoadImageFile(paths[load % 2]);
    EXPECT_LT(program.history.Count(Direction::Undo), 1'600);
    EXPECT_LE(program.history.Bytes(), History::kMostBytes);
}

}  // namespace
}  // namespace tarnwell
