// The settings' ways between cells, buffer and EEPROM, and the editing of one value.
#include "settings/SettingsEngine.h"

#include <random>

#include "core/Pages.h"
#include "settings/CellTexts.h"
#include "settings/Destination.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;

const std::string kVerify = "V E R I F Y|Write settings values to EEPROM?";
const std::string kNothing = "I N F O|No settings were changed;\r\nThe EEProm was not modified.";
const std::string kFailed =
    "E R R O R - Verify Failed|Verification of the EEProm settings values failed;\r\n"
    "The EEProm was not programmed correctly, try again.";
const std::string kWritten = "EEP Verified OK; Settings Values Written to EEProm";

class SettingsTest : public testing::Test {
  protected:
    TestProgram test{{.writeCycle = BusTime(0)}};
    Program& program = test.program;
    SettingCells& cells = program.cells;
    EepromImage& memory = test.television.Memory(Chip::Primary);
    std::mt19937 random{20261117};

    void Edit(std::initializer_list<int> list, int value) {
        test.outside.onFormEdit = [this, value] {
            program.valueEditor.Accept(program.valueEditor.Readout(value));
        };
        for (const int cell : list)
            program.valueEditor.CellClicked(cell);
    }
    std::string Write(Answer answer = Answer::Yes) {
        test.WillAnswer({answer});
        program.settings.WriteSettingsToEep();
        return test.Status();
    }
    /// The first letters of the cells' marks (Clean, Save, EEP written) and colours (normal,
    /// changed).
    std::string Looks(std::initializer_list<int> list) const {
        std::string text;
        for (const int cell : list)
            text += {"C?SE?"[static_cast<int>(cells.MarkOf(cell))],
                     "n?c"[static_cast<int>(cells.Colour(cell))]};
        return text;
    }
    void Randomize(auto& bytes) {
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
    }
};

TEST_F(SettingsTest, EveryCellIsReadEditedWrittenAndMergedAlone) {
    for (const NumberMode mode : {NumberMode::Hex, NumberMode::Decimal}) {
        program.numberModeMenu.Select(mode);
        program.state.BufferChanged = false;
        Randomize(memory);
        Randomize(program.buffer);
        EepromImage expected = memory;
        MemoryBuffer merged = program.buffer;
        program.settings.ReadSettingsFromEep();
        EXPECT_EQ(test.Status(), "Settings Values Read from EEPROM");
        for (int cell = 0; cell < kCellCount; ++cell) {
            SCOPED_TRACE(cell);
            const int unit = cell == 32 ? 4 : cell == 71 ? 16 : 1;
            const auto address = static_cast<std::size_t>(Cell(cell).address);
            EXPECT_EQ(cells.Value(cell), memory[address] / unit);
            const int maximum = Cell(cell).setting->maximum;
            cells.ShowValue(cell, 0);
            Edit({cell}, maximum);
            EXPECT_EQ(test.Status(), StatusLineName(cell) + "Value Changed");
            EXPECT_EQ(Write(), kWritten);
            EXPECT_EQ(Looks({cell}), "Cn");
            for (std::uint8_t* const byte : {&expected[address], &merged[address]})
                *byte = static_cast<std::uint8_t>(*byte % unit + maximum * unit);
            EXPECT_EQ(memory, expected);
        }
        program.settings.MergeSettingsWithBuffer();
        EXPECT_EQ(test.Status(), "Settings Values Merged Into Memory Buffer");
        EXPECT_EQ(program.buffer, merged);
        EXPECT_TRUE(program.state.BufferChanged);
        EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(merged));
        EXPECT_EQ(program.grid.Text({2363 / 16, 2363 % 16 + 1}) + cells.Caption(6),
                  mode == NumberMode::Hex ? "FFFF" : "255255");
    }
}

TEST_F(SettingsTest, BusTraffic) {
    const auto at = [](int address) {
        const std::string hex = HexText(static_cast<std::uint32_t>(address), 4);
        return " A0+ " + hex.substr(0, 2) + "+ " + hex.substr(2) + "+ ";
    };
    const auto read = [&](int address) {
        const std::uint8_t byte = memory[static_cast<std::size_t>(address)];
        return at(address) + "Sr A1+ <" + HexText(byte, 2) + " P";
    };
    Randomize(memory);
    std::string expected = "S P S A0+ P";
    for (int cell = 0; cell < kCellCount; ++cell)
        expected += " S" + read(Cell(cell).address);
    test.television.Record();
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(ToText(test.television.Events()), expected);

    memory[2085] = 0x03;
    memory[2228] = 0xA7;
    expected = "S P S A0+ P S" + read(2085) + " S" + read(2085) + " S" + at(2085) +
               "27+ P S A0+ Sr" + at(2549) + "09+ P S A0+ Sr" + read(2228) + " S" + read(2228) +
               " S" + at(2228) + "97+ P S A0+ Sr";
    cells.ShowValue(70, 0);
    Edit({71, 32, 70}, 9);
    test.television.Record();
    Write();
    EXPECT_EQ(ToText(test.television.Events()),
              expected + read(2085) + " S" + read(2549) + " S" + read(2228));
}

TEST_F(SettingsTest, WhatDidNotArriveIsToldByNameAndWrittenByTheNextWrite) {
    using enum WireEvent;
    program.state.EepRead = true;
    Edit({0, 1, 32}, 5);
    memory[2085] = 0;
    test.television.Inject({.kind = FaultKind::FlippedBit, .address = 2364, .mask = 0x80});
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Looks({0, 1, 32}), "CnScCn");
    EXPECT_EQ(test.user.boxes.back().details,
              "1 byte differs.\nAddress 2364 (480i CB02): wrote 5, read 133");
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kFailed));
    EXPECT_EQ(test.user.beeps, 1);
    EXPECT_EQ(test.timer.running, std::chrono::seconds(30));
    EXPECT_TRUE(program.state.EepRead && !program.state.BufferChanged);

    test.television.ClearFaults();
    Edit({32}, 6);
    test.television.Inject({.kind = FaultKind::WrongWrite, .begins = {WriteCycle, 1}, .mask = 1});
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Looks({1, 32}), "ScSc") << "a wrong bit below the field, too";
    EXPECT_EQ(test.user.boxes.back().details,
              "2 bytes differ.\nAddress 2364 (480i CB02): wrote 5, read 4"
              "\nAddress 2085 (Global TINT): wrote 24, read 25");
    test.television.ClearFaults();
    program.state.EepRead = false;
    EXPECT_EQ(Write(), kWritten);
    EXPECT_EQ(Looks({1, 32}), "CnCn");
    int value = 0;
    const std::pair<Moment, std::string> rows[] = {
        {{WriteCycle, 1}, "ScScSc"}, {{WriteCycle, 2}, "ScScSc"}, {{Stop, 5}, "ScScSc"},
        {{Stop, 6}, "CnScSc"},       {{Stop, 7}, "CnCnSc"},
    };
    for (const auto& [silentFrom, looks] : rows) {
        Edit({0, 1, 6}, ++value);
        test.television.Inject({.kind = FaultKind::DeviceSilent, .begins = silentFrom});
        EXPECT_EQ(Write(), "I2C Operation Aborted");
        EXPECT_EQ(Looks({0, 1, 6}), looks) << value;
        test.television.ClearFaults();
        EXPECT_EQ(Write(), kWritten);
        EXPECT_EQ(memory[2363] * 100 + memory[2364] * 10 + memory[2399], value * 111);
    }
    memory[2363] = 200;
    test.television.Inject({.kind = FaultKind::DeviceSilent, .begins = {Stop, 70}});
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(cells.Caption(0), "5") << "a read shows all values or none";
}

TEST_F(SettingsTest, WriteAndMergeAskForTheGridAndFillABufferThatHoldsAnImage) {
    program.wholeDevice.ReadEntireEep();
    Edit({0, 32}, 10);
    program.grid.SetGridChanged(true);
    EXPECT_EQ(Write(Answer::Cancel), "EEProm Write Cancelled");
    test.WillAnswer({Answer::Yes});
    EXPECT_EQ(Write(Answer::No), "EEProm Write Cancelled");
    test.WillAnswer({Answer::No});
    program.settings.MergeSettingsWithBuffer();
    const std::string ask = "C A U T I O N|Really discard the Data Grid changes?";
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kVerify, ask, ask));
    EXPECT_EQ(test.television.Count(WireEvent::WriteCycle), 0U);
    test.WillAnswer({Answer::Yes});
    EXPECT_EQ(Write(), kWritten);
    EXPECT_TRUE(std::equal(memory.begin(), memory.end(), program.buffer.begin()));
    EXPECT_TRUE(program.state.BufferChanged);
    EXPECT_FALSE(program.state.EepRead || program.state.GridChanged);
}

TEST_F(SettingsTest, SecondaryTargetAndEmptyCells) {
    using Engine = SettingsEngine;
    Edit({0}, 9);
    program.state.targetDevice = TargetDevice::Secondary;
    const MemoryBuffer before = program.buffer;
    for (const auto command : {&Engine::MergeSettingsWithBuffer, &Engine::WriteSettingsToEep,
                               &Engine::ShowSettingsFromBuffer}) {
        program.statusBar.PutStatus("");
        (program.settings.*command)();
        EXPECT_EQ(test.Status(), "Use the Data Editor to View/Modify data");
    }
    program.valueEditor.CellClicked(0);
    EXPECT_THAT(test.user.TakeBoxes(),
                ElementsAre("I N F O|You must use the Data Editor to change values in\r\n"
                            "the secondary EEProm.   PLEASE BE CAREFUL!"));
    EXPECT_EQ(cells.Caption(0) + Looks({0}), "9Sc");
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(cells.Value(0), test.television.Memory(Chip::Secondary)[2363]);

    program.wholeDevice.SelectEeprom(TargetDevice::Primary);
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(cells.Caption(0) + cells.Caption(71), "00");
    Write();
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(program.buffer, before);
    Edit({71}, 0);
    EXPECT_EQ(Looks({0, 71}), "ScSc") << "the mark of the empty cell stays; its 0 is a change";
    EXPECT_EQ(Write(Answer::No), "EEProm Write Cancelled");
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(Looks({0, 71}), "ScCc") << "what is merged no longer waits";
    Write();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kNothing, kVerify, kVerify, kNothing));
    EXPECT_EQ(test.television.Count(WireEvent::WriteCycle), 0U);
}

TEST_F(SettingsTest, LifeOfAValueEdit) {
    using enum Mark;
    const CellColour normal = CellColour::Normal, changed = CellColour::Changed;
    const struct {
        Mark mark;
        CellColour colour;
        std::string accepted;  ///< the readouts at which OK is pressed
        Mark during;
        std::string result;  ///< caption, mark and colour
    } rows[] = {
        {Clean, changed, "", Clean, "5Cn"},   {Clean, normal, "5", False, "5Cn"},
        {Clean, normal, "6", Changed, "6Sc"}, {Clean, normal, "56", Changed, "6Sc"},
        {Save, changed, "", Save, "5Sc"},     {Save, normal, "5", False, "5Sn"},
        {Save, normal, "6", Changed, "6Sc"},  {EepWritten, normal, "", EepWritten, "5Cn"},
    };
    for (const auto& row : rows) {
        cells.ShowValue(25, 5);
        cells.SetMark(25, row.mark);
        cells.SetColour(25, row.colour);
        test.outside.onFormEdit = [&] {
            EXPECT_EQ(program.valueEditor.StartValue(), 5);
            for (const char readout : row.accepted)
                program.valueEditor.Accept({readout});
            EXPECT_EQ(cells.MarkOf(25), row.during);
            EXPECT_EQ(cells.Colour(25), CellColour::Editing);
        };
        program.valueEditor.CellClicked(25);
        EXPECT_EQ(cells.Caption(25) + Looks({25}), row.result) << &row - rows;
        EXPECT_EQ(test.Status(),
                  row.during == Changed ? "Iris 1T2 Value Changed" : "Value Change Aborted");
    }
    cells.ShowValue(38, 200);
    test.outside.onFormEdit = [&] { EXPECT_EQ(program.valueEditor.StartValue(), 1); };
    program.valueEditor.CellClicked(38);
}

// '<' is Backspace, '+' a step to 1.
TEST_F(SettingsTest, TypedDigitsReplaceTheValueAndStayWithinItsRange) {
    const struct {
        NumberMode mode;
        int cell;
        std::string typed;
        std::string readouts;
        std::string status;
    } rows[] = {
        {NumberMode::Decimal, 32, "6364", "6 63 63 63", "TINT goes from 0 to 63"},
        {NumberMode::Decimal, 32, "63<<52", "6 63 6 0 5 52", "TINT: 0 to 63, was 9"},
        {NumberMode::Decimal, 32, "2+3", "2 1 3", "TINT: 0 to 63, was 9"},
        {NumberMode::Decimal, 38, "10", "1 1", "DCOL 480i goes from 0 to 1"},
        {NumberMode::Hex, 32, "3fg", "3 3F 3F", "TINT: 0 to 3F, was 9"},
        {NumberMode::Hex, 71, "a0<", "A A 0", "SHPM goes from 0 to F"},
    };
    for (const auto& row : rows) {
        program.numberModeMenu.Select(row.mode);
        cells.ShowValue(row.cell, 9);
        program.statusBar.PutStatus("");
        std::string readouts;
        test.outside.onFormEdit = [&] {
            ValueEditor& editor = program.valueEditor;
            for (std::size_t count = 0; count < row.typed.size(); ++count) {
                const char typed = row.typed[count];
                if (typed == '<') {
                    editor.EraseDigit();
                } else if (typed == '+') {
                    editor.StepTo(1);
                } else {
                    EXPECT_EQ(count == 0 || editor.TypeDigit(typed), typed != 'g');
                }
                readouts += (count > 0 ? " " : "") + editor.Readout(editor.Value());
            }
            EXPECT_EQ(test.Status(), row.status);
        };
        program.valueEditor.CharacterTyped(row.cell, row.typed.front());
        EXPECT_EQ(readouts, row.readouts) << row.typed;
        program.statusBar.MsgTimerFired();
    }
}

TEST_F(SettingsTest, TheStatusLineSaysHowManyValuesOfThePageWait) {
    EXPECT_EQ(CellPlaceText(32, NumberMode::Hex), "Address 825, bits 2 to 7");
    Edit({0}, 5);
    for (const auto& [page, after] : {std::pair(Page::Chroma, "1 value waits to be written"),
                                      {Page::Iris, ""},
                                      {Page::Global, "2 values wait to be written"}}) {
        Edit({32, 71}, static_cast<int>(page) + 6);
        program.editorPage.SwitchPage(page);
        EXPECT_EQ(test.Status(), Info(page).status);
        program.statusBar.MsgTimerFired();
        EXPECT_EQ(test.Status(), after);
    }
    Write();
    program.statusBar.MsgTimerFired();
    EXPECT_EQ(test.Status(), "");
    test.outside.onFormEdit = [&] { EXPECT_EQ(test.Status(), "TINT: 0 to 63, was 8"); };
    program.valueEditor.CellClicked(32);
}

TEST_F(SettingsTest, RevertsToWhatWasReadAndCopiesToAllFormats) {
    CellCommands& commands = program.cellCommands;
    EXPECT_FALSE(commands.CanRevert(8)) << "never read";
    memory[2401] = 6;
    program.settings.ReadSettingsFromEep();
    cells.ShowValue(2, 0);
    Edit({8}, 9);
    EXPECT_TRUE(commands.CanRevert(8) && !commands.CanRevert(14));
    commands.Revert(8);
    EXPECT_EQ(test.Status(), "480p R-YR Value Reverted");
    EXPECT_EQ(cells.Caption(8) + Looks({8}), "6Cn");
    EXPECT_FALSE(commands.CanRevert(8));
    commands.CopyToAllFormats(8);
    EXPECT_EQ(cells.Caption(2) + cells.Caption(20) + Looks({2, 8}), "66ScCn");
    EXPECT_TRUE(commands.CanCopy(8) && commands.CanCopy(69) && !commands.CanCopy(32));
    cells.SetMark(8, Mark::Save);
    cells.ShowValue(9, 77);
    EXPECT_TRUE(commands.CanRevert(8) && commands.CanRevert(9));
    program.state.targetDevice = TargetDevice::Secondary;
    EXPECT_FALSE(commands.CanCopy(8) || commands.CanRevert(2));
}

TEST(DestinationTest, NamesAndAddresses) {
    constexpr auto kNone = std::nullopt;
    const struct {
        std::string text;
        NumberMode mode;
        std::optional<Destination> place;
    } rows[] = {{"2401", NumberMode::Decimal, {{2401, kNone}}},
                {" 0x961 ", NumberMode::Decimal, {{2401, kNone}}},
                {"961", NumberMode::Hex, {{2401, kNone}}},
                {"8191", NumberMode::Decimal, {{8191, kNone}}},
                {"8192", NumberMode::Decimal, kNone},
                {"", NumberMode::Hex, kNone},
                {"R-YR 480p", NumberMode::Hex, {{2401, 8}}},
                {"480P  r-yr", NumberMode::Hex, {{2401, 8}}},
                {"r-yr.vga", NumberMode::Hex, {{2473, 20}}},
                {"R-YR", NumberMode::Hex, {{2365, 2}}},
                {"clp", NumberMode::Hex, {{2507, 69}}},
                {"CLP 480p", NumberMode::Hex, kNone},
                {"global tint", NumberMode::Hex, {{2085, 32}}},
                {"R-YR 576p", NumberMode::Hex, kNone}};
    for (const auto& row : rows)
        EXPECT_EQ(DestinationFrom(row.text, row.mode), row.place) << row.text;
    const std::vector<std::string> names = DestinationNames();
    EXPECT_TRUE(names.size() == 72 && names[24] == "SHRP 480i");
}

}  // namespace
}  // namespace tarnwell
