// Undo and redo of each command, and what they mean after a write.
#include "history/UndoCommands.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum Answer;

/// The address or cell N holds N modulo 7 at first.
class UndoTest : public testing::Test, protected TestProgram {
  protected:
    UndoTest() {
        for (int address = 0; address < kEepromBytes; ++address)
            memory[static_cast<std::size_t>(address)] = static_cast<std::uint8_t>(address % 7);
        program.wholeDevice.ReadEntireEep();
        program.editorPage.ToggleEditor();
    }
    void Do(const std::string& actions) {
        std::istringstream words(actions);
        for (std::string word; words >> word;) {
            int where = 0, value = 0;
            if (word == "byte" && words >> where >> value) {
                EditByte(where, std::to_string(value));
            } else if (word == "cell" && words >> where >> value) {
                EditCell(where, value);
            } else if (word == "undo") {
                program.undo.Undo();
            } else if (word == "redo") {
                program.undo.Redo();
            } else if (word == "editor") {
                program.editorPage.ToggleEditor();
            } else {
                WillAnswer({Yes});
                word == "write" ? program.pending.WritePending()
                                : program.settings.WriteSettingsToEep();
            }
        }
    }
    std::string Undo(int times = 1) {
        for (int time = 0; time < times; ++time)
            program.undo.Undo();
        return Status();
    }
    std::string Redo() {
        program.undo.Redo();
        return Status();
    }
    /// What the cell shows, whether that waits and is in the changed colour, and what the device
    /// and the buffer hold.
    std::string CellAfter(int cell, const std::string& actions) {
        Do(actions);
        const CellContents& contents = program.cells.Contents(cell);
        return program.cells.Caption(cell) + (contents.mark != Mark::Clean ? " waits" : "") +
               (contents.colour == CellColour::Changed ? " changed" : "") +
               Held(tarnwell::Cell(cell).address);
    }
    std::string Held(int address) {
        const auto index = static_cast<std::size_t>(address);
        return "/" + std::to_string(memory[index]) + "/" + std::to_string(program.buffer[index]);
    }
    /// "address old new" of each entry, then what the grid has at 20 and 30, whether that is
    /// changed, and what the device and the buffer hold.
    std::string After(const std::string& actions) {
        Do(actions);
        std::string text;
        for (int row = 0; row < program.pending.Count(); ++row) {
            const auto [address, before, after] = program.pending.Row(row);
            text += address + " " + before + " " + after + "; ";
        }
        for (const int address : {20, 30}) {
            const GridCell cell = GridCell::At(address);
            text += program.grid.Text(cell) + (program.grid.IsChanged(cell) ? "!" : "") +
                    Held(address) + " ";
        }
        return text + (program.state.GridChanged ? "!" : "");
    }

    EepromImage& memory = television.Memory(Chip::Primary);
};

constexpr int kRyr480p = 8;  // at 2401, which holds 0

TEST_F(UndoTest, EachCommandIsOneStepWithItsName) {
    const std::string image = folder.Path("a & b.mot");
    const std::string values = folder.Path("values.mot");
    user.files = {values, image};
    program.settingsArchive.SaveSettings();
    program.imageArchive.SaveImage();
    const auto settle = [&](bool transfers) {
        user.answers = transfers ? std::deque{Yes} : std::deque{No, Yes};
        program.editorPage.SettleGridEdits();
    };
    const std::vector<std::pair<std::string, std::function<void()>>> commands{
        {"480p R-YR 0 to 8", [&] { EditCell(kRyr480p, 8); }},
        {"Revert of 480p R-YR", [&] { program.cellCommands.Revert(kRyr480p); }},
        {"480p R-YR 0 to 9", [&] { EditCell(kRyr480p, 9); }},
        {"R-YR in All Formats to 9", [&] { program.cellCommands.CopyToAllFormats(kRyr480p); }},
        {"Merge of Settings", [&] { program.settings.MergeSettingsWithBuffer(); }},
        {"Byte 20 6 to 77", [&] { EditByte(20, "77"); }},
        {"Byte 20 77 to 78", [&] { EditByte(20, "78"); }},
        {"Paste of 2 Bytes", [&] { program.cellEditor.Paste("8 9"); }},
        {"Discard of Grid Changes", [&] { settle(false); }},
        {"Byte 21 0 to 5", [&] { EditByte(21, "5"); }},
        {"Transfer of Data Grid", [&] { settle(true); }},
        {"Read of Settings", [&] { program.settings.ReadSettingsFromEep(); }},
        {"Load of values.mot", [&] { program.settingsArchive.LoadSettingsFile(values); }},
        {"Load of a & b.mot", [&] { program.imageArchive.LoadImageFile(image); }},
        {"Selection of Secondary EEProm",
         [&] {
             WillAnswer({Ok, Yes});
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
    EXPECT_EQ(program.history.Count(Direction::Undo), 17) << "with the read; saves are no steps";
    for (std::size_t step = commands.size(); step > 0; --step) {
        EXPECT_EQ(Undo(), "Undone: " + commands[step - 1].first);
        EXPECT_TRUE(program.history.Now() == points[step - 1]) << commands[step - 1].first;
    }
    for (std::size_t step = 1; step <= commands.size(); ++step) {
        if (points[step].target != program.state.targetDevice) {
            WillAnswer({Cancel, Ok});
            EXPECT_EQ(Redo(), "Target EEProm Not Changed - Primary EEP Still Selected");
        }
        EXPECT_EQ(Redo(), "Redone: " + commands[step - 1].first);
        EXPECT_TRUE(program.history.Now() == points[step]) << commands[step - 1].first;
    }
    EXPECT_TRUE(user.answers.empty());
}

TEST_F(UndoTest, NothingComesOfWhatChangedNothingAndANewStepEndsRedo) {
    Undo(2);
    EXPECT_EQ(program.history.NextName(Direction::Undo), std::nullopt);
    EXPECT_EQ(program.history.NextName(Direction::Redo), "Read of Primary EEProm");
    outside.onFormEdit = {};
    program.valueEditor.CellClicked(0);
    EditByte(20, "300");
    EXPECT_EQ(program.history.Count(Direction::Undo), 0);
    EditCell(kRyr480p, 12);
    const std::size_t bytes = program.history.Bytes();
    Undo();
    EditCell(kRyr480p, 12);
    EXPECT_EQ(program.history.Bytes(), bytes);
    program.editorPage.ToggleEditor();
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(program.history.NextName(Direction::Undo), "480p R-YR 0 to C");
    EXPECT_EQ(program.history.NextName(Direction::Redo), std::nullopt);
    Undo();
    program.numberModeMenu.Select(NumberMode::Decimal);
    Redo();
    EXPECT_EQ(CellAfter(kRyr480p, ""), "12 waits changed/0/0");
    auto outer = std::make_unique<Step>(program.history, StepName{"outer"});
    program.buffer[1] ^= 1;
    static_cast<void>(Step(program.history, {"inner"}));
    EXPECT_EQ(program.history.NextName(Direction::Undo), "480p R-YR 0 to 12") << "part of another";
    outer.reset();
    EXPECT_EQ(program.history.NextName(Direction::Undo), "outer");
}

TEST_F(UndoTest, SettingsThatUndoTakesBackAfterAWriteWaitAgain) {
    EXPECT_EQ(CellAfter(7, "cell 6 9 cell 7 9 cell 8 9 undo undo settings"), "6/6/6");
    const auto written = program.history.Now();
    EXPECT_EQ(CellAfter(6, "undo"), "5 waits changed/9/9") << "what the write did stays";
    EXPECT_EQ(Status(), "Undone: 480p CR02 5 to 9");
    EXPECT_EQ(CellAfter(6, "redo"), "9/9/9");
    EXPECT_TRUE(program.history.Now() == written);
    EXPECT_EQ(CellAfter(6, "undo settings"), "5/5/5");
    EXPECT_EQ(CellAfter(6, "redo"), "9 waits changed/5/5");
    EXPECT_EQ(CellAfter(6, "cell 6 12 settings cell 6 9 settings undo undo"), "9/9/9")
        << "as the device holds it";
    EXPECT_EQ(CellAfter(6, "undo undo"), "0/9/0") << "no value that could be written";
    EXPECT_THAT(program.buffer, Each(0)) << "also the byte that the write merged";
    EXPECT_EQ(Crc(), "");
    EXPECT_FALSE(program.state.BufferChanged || program.state.EepRead);
}

TEST_F(UndoTest, BytesThatUndoTakesBackAfterAWriteAreQueued) {
    const std::pair<std::string, std::string> rows[] = {
        {"byte 20 50 byte 30 60 undo", "20 6 50; 50!/6/6 2/2/2 !"},
        {"write", "50/50/50 2/2/2 "},
        {"undo undo", "/50/0 /2/0 "},
        {"redo", "20 50 6; 6!/50/50 2/2/2 !"},
        {"redo", "50/50/50 2/2/2 "},
        {"undo write", "6/6/6 2/2/2 "},
        {"redo", "20 6 50; 50!/6/6 2/2/2 !"},
        {"editor undo", "6/6/6 2/2/2 "},
    };
    for (const auto& [actions, state] : rows)
        EXPECT_EQ(After(actions), state) << actions;
}

TEST_F(UndoTest, AnEleventhRowRefusesUndo) {
    for (int address = 0; address < 9; ++address)
        EditByte(address, "100");
    WillAnswer({Yes, Yes});
    EditByte(9, "100");
    EXPECT_EQ(memory[9], 100);
    for (int count = 1; count <= 10; ++count)
        EXPECT_EQ(Undo(), "Undone: Byte " + std::to_string(10 - count) + " " +
                              std::to_string((10 - count) % 7) + " to 100");
    EXPECT_EQ(program.pending.Count(), 10) << "without a question";
    EXPECT_THAT(After(""), HasSubstr("; 0 100 0; "));
    const std::string other = folder.Path("other.mot");
    std::ranges::fill_n(program.buffer.begin(), 11, std::uint8_t{77});
    user.files = {other};
    program.imageArchive.SaveImage();
    WillAnswer({Yes, Yes});
    program.imageArchive.LoadImageFile(other);
    program.wholeDevice.WriteEntireEep();
    const auto before = program.history.Now();
    EXPECT_EQ(Undo(), "Undo Needs More Than Ten Pending EEP Writes; Nothing Changed");
    EXPECT_TRUE(program.history.Now() == before);
    program.editorPage.ToggleEditor();
    EXPECT_EQ(Undo(), "Undone: Load of other.mot");
}

TEST_F(UndoTest, TheQueueOfOneDeviceOrPortIsNotBroughtToTheOther) {
    Do("cell 6 9 settings byte 20 50");
    WillAnswer({Ok});
    program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    EXPECT_EQ(program.pending.Count(), 0);
    EXPECT_EQ(After("undo"), "20 6 50; 50!/6/6 2/2/2 !");
    EXPECT_EQ(program.state.targetDevice, TargetDevice::Primary);
    EXPECT_EQ(After("write"), "50/50/50 2/2/2 ");
    const auto written = program.history.Now();
    program.ChoosePort(kPortChoices[1]);
    EXPECT_EQ(program.bus.Known().Value(TargetDevice::Primary, 20), std::nullopt);
    EXPECT_EQ(CellAfter(6, "undo undo"), "5/9/9") << "no write that nobody asked for";
    EXPECT_EQ(After(""), "6!/50/50 2/2/2 !");
    Do("redo redo");
    EXPECT_TRUE(program.history.Now() == written);
}

TEST_F(UndoTest, AWriteBetweenLeavesTheStepsBeforeItWhole) {
    WillAnswer({Yes, Yes});
    Do("byte 20 50 cell 8 9 settings");
    EXPECT_EQ(program.history.NextName(Direction::Undo), "Discard of Grid Changes");
    EXPECT_EQ(After("undo"), "20 6 50; 50!/6/6 2/2/2 !");
    EXPECT_EQ(program.buffer[2401], 9);
    EXPECT_EQ(Crc(), mCRC32::BufferCrcText(program.buffer));
}

TEST_F(UndoTest, ABufferThatDiffersFromTheSavedOneIsChanged) {
    EditCell(kRyr480p, 9);
    program.settings.MergeSettingsWithBuffer();
    EditByte(20, "50");
    user.files = {folder.Path("saved.mot")};
    program.imageArchive.SaveImage();
    EXPECT_EQ(After("undo"), "6/6/6 2/2/2 ") << "held when the image was saved";
    for (const bool changed : {true, false}) {
        Do(changed ? "undo" : "redo");
        EXPECT_EQ(program.state.BufferChanged, changed);
        EXPECT_EQ(Crc(), mCRC32::BufferCrcText(program.buffer));
    }
    EXPECT_EQ(After("redo"), "20 6 50; 50!/6/6 2/2/2 !");
}

TEST_F(UndoTest, AThousandStepsOfTheLargestKindFitAndTheOldestGo) {
    const auto take = [&](int times, std::size_t apart, Extent extent) {
        for (int time = 0; time < times; ++time) {
            const Step step(program.history, {"another image"}, extent);
            for (std::size_t address = 0; address < kEepromBytes; address += apart)
                ++program.buffer[address];
            program.grid.FillGrid();
        }
        return program.history.Count(Direction::Undo);
    };
    EXPECT_GE(take(1'600, 1, Extent::Everything), 1'000);
    EXPECT_LT(program.history.Count(Direction::Undo), 1'600);
    EXPECT_LE(program.history.Bytes(), History::kMostBytes);
    EXPECT_EQ(take(1'100, 2, Extent::WhatDiffers), 1'000) << "however large";
}

}  // namespace
}  // namespace tarnwell
