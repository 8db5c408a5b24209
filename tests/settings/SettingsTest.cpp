// The settings' ways between cells, buffer and EEPROM, and the editing of one value.
#include "settings/SettingsEngine.h"

#include <random>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;

const std::string kVerify = "V E R I F Y|Write settings values to EEPROM?";
const std::string kNothing = "I N F O|No settings were changed;\r\nThe EEProm was not modified.";
const std::string kWritten = "EEP Verified OK; Settings Values Written to EEProm";

class SettingsTest : public testing::Test {
  protected:
    TestProgram test{{.writeCycle = BusTime(0)}};
    Program& program = test.program;
    SettingCells& cells = program.cells;
    EepromImage& memory = test.television.Memory(Chip::Primary);
    std::mt19937 random{20261117};

    void Edit(int cell, int value) {
        test.outside.onFormEdit = [this, value] {
            program.valueEditor.Accept(program.valueEditor.Readout(value));
        };
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
        for (const int cell : list) {
            text += "C?SE?"[static_cast<std::size_t>(cells.MarkOf(cell))];
            text += "n?c"[static_cast<std::size_t>(cells.Colour(cell))];
        }
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
        program.state.bufferChanged = false;
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
            const auto shown = static_cast<std::uint32_t>(memory[address] / unit);
            EXPECT_EQ(cells.Caption(cell), NumberText(shown, mode));

            const int maximum = Cell(cell).setting->maximum;
            cells.ShowValue(cell, 0);
            Edit(cell, maximum);
            EXPECT_EQ(test.Status(), StatusLineName(cell) + "Value Changed");
            EXPECT_EQ(cells.Caption(cell), NumberText(static_cast<std::uint32_t>(maximum), mode));
            EXPECT_EQ(Looks({cell}), "Sc");
            EXPECT_EQ(Write(), kWritten);
            EXPECT_EQ(Looks({cell}), "Cn");
            const auto withMaximum = [&](int byte) {
                return static_cast<std::uint8_t>(byte % unit + maximum * unit);
            };
            expected[address] = withMaximum(expected[address]);
            merged[address] = withMaximum(merged[address]);
            EXPECT_EQ(memory, expected);
        }
        program.settings.MergeSettingsWithBuffer();
        EXPECT_EQ(test.Status(), "Settings Values Merged Into Memory Buffer");
        EXPECT_EQ(program.buffer, merged);
        EXPECT_TRUE(program.state.bufferChanged);
        EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(merged));
        EXPECT_EQ(program.grid.Text({2363 / 16, 2363 % 16 + 1}), NumberText(255, mode));
    }
}

TEST_F(SettingsTest, BusTraffic) {
    const auto hex = [](int value) { return HexText(static_cast<std::uint32_t>(value), 2); };
    const auto at = [&](int address) {
        return " A0+ " + hex(address / 256) + "+ " + hex(address % 256) + "+ ";
    };
    const auto read = [&](int address) {
        const int byte = memory[static_cast<std::size_t>(address)];
        return at(address) + "Sr A1+ <" + hex(byte) + " P";
    };
    Randomize(memory);
    std::string expected = "S P S A0+ P";
    for (const SettingGroup& group : SettingGroups) {
        for (int index = 0; index < group.count; ++index)
            expected += " S" + read(group.baseAddress + index);
    }
    test.television.Record();
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(ToText(test.television.Events()), expected);

    memory[2085] = 0x03;
    memory[2228] = 0xA7;
    expected = "S P S A0+ P S" + read(2085) + " S" + at(2085) + "2B+ P S A0+ Sr" + at(2549) +
               "09+ P S A0+ Sr" + read(2228) + " S" + at(2228) + "F7+ P S A0+ Sr";
    for (const auto& [cell, value] : {std::pair(71, 15), {32, 10}, {70, 9}}) {
        cells.ShowValue(cell, 0);
        Edit(cell, value);
    }
    test.television.Record();
    Write();
    EXPECT_EQ(ToText(test.television.Events()),
              expected + read(2085) + " S" + read(2549) + " S" + read(2228));
}

TEST_F(SettingsTest, WritesNothingUnlessAskedTo) {
    Write();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kNothing));
    Edit(5, 9);
    EXPECT_EQ(Write(Answer::No), "EEProm Write Cancelled");
    EXPECT_EQ(Looks({5}), "Sc");
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(Looks({5}), "Cc");
    Write();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kVerify, kNothing));
    EXPECT_EQ(test.television.Count(WireEvent::WriteCycle), 0U);
}

TEST_F(SettingsTest, AMismatchEndsTheVerification) {
    program.state.eepRead = true;
    for (const int cell : {0, 1, 32})
        Edit(cell, 5);
    test.television.Inject({.kind = FaultKind::FlippedBit, .address = 2364});
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Looks({0, 1, 32}), "CnCnEn");
    EXPECT_THAT(test.user.TakeBoxes(),
                ElementsAre(kVerify,
                            "E R R O R - Verify Failed|Verification of the EEProm "
                            "settings values failed;\r\nThe EEProm was not programmed "
                            "correctly, try again."));
    EXPECT_EQ(test.user.beeps, 1);
    EXPECT_EQ(test.timer.running, std::chrono::seconds(30));
    EXPECT_TRUE(program.state.eepRead && !program.state.bufferChanged);

    test.television.ClearFaults();
    memory[2085] = 0;
    Edit(0, 77);
    EXPECT_EQ(Write(), "") << "what waits for its read-back is not written again";
    EXPECT_EQ(Looks({0, 32}), "CnCn");
    cells.SetMark(32, Mark::EepWritten);
    cells.ClearSettingCells();
    Edit(0, 78);
    EXPECT_EQ(Write(), kWritten);
    EXPECT_EQ(Looks({0, 32}), "CnEn") << "an empty cell has no value to compare";
}

TEST_F(SettingsTest, WhatWasCutShortWaitsForTheNextWrite) {
    const struct {
        Moment silentFrom;
        const char* looks;
    } rows[] = {
        {{WireEvent::WriteCycle, 1}, "ScScSc"}, {{WireEvent::WriteCycle, 2}, "ScScSc"},
        {{WireEvent::Stop, 5}, "ScScSc"},       {{WireEvent::Stop, 6}, "CnScSc"},
        {{WireEvent::Stop, 7}, "CnCnSc"},
    };
    int value = 0;
    for (const auto& row : rows) {
        ++value;
        for (const int cell : {0, 1, 6})
            Edit(cell, value);
        test.television.Inject({.kind = FaultKind::DeviceSilent, .begins = row.silentFrom});
        EXPECT_EQ(Write(), "I2C Operation Aborted");
        EXPECT_EQ(Looks({0, 1, 6}), row.looks) << value;
        test.television.ClearFaults();
        EXPECT_EQ(Write(), kWritten);
        EXPECT_EQ(memory[2363] * 100 + memory[2364] * 10 + memory[2399], value * 111);
    }
    memory[2363] = 200;
    test.television.Inject({.kind = FaultKind::DeviceSilent, .begins = {WireEvent::Stop, 70}});
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(cells.Caption(0), "5") << "a read shows all values or none";
}

TEST_F(SettingsTest, WriteMergesIntoABufferThatHoldsAnImage) {
    program.wholeDevice.ReadEntireEep();
    for (const int cell : {0, 32})
        Edit(cell, 10);
    program.grid.SetGridChanged(true);
    Write(Answer::No);
    EXPECT_EQ(test.user.TakeBoxes(), std::vector<std::string>{"C A U T I O N|Really discard the "
                                                              "Data Grid changes?"});
    test.WillAnswer({Answer::Yes});
    EXPECT_EQ(Write(), kWritten);
    EXPECT_TRUE(std::equal(memory.begin(), memory.end(), program.buffer.begin()));
    EXPECT_TRUE(program.state.bufferChanged);
    EXPECT_FALSE(program.state.eepRead || program.state.gridChanged);
}

TEST_F(SettingsTest, SecondaryTargetAndEmptyCells) {
    Edit(0, 9);
    program.state.targetDevice = TargetDevice::Secondary;
    const MemoryBuffer before = program.buffer;
    for (const auto command :
         {&SettingsEngine::MergeSettingsWithBuffer, &SettingsEngine::WriteSettingsToEep,
          &SettingsEngine::ShowSettingsFromBuffer}) {
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
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kNothing));
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(program.buffer, before);
    Edit(71, 0);
    EXPECT_EQ(Looks({0, 71}), "ScSc") << "the mark of the empty cell stays; its 0 is a change";
}

TEST_F(SettingsTest, LifeOfAValueEdit) {
    using enum Mark;
    constexpr CellColour kNormal = CellColour::Normal, kChanged = CellColour::Changed;
    const struct {
        Mark mark;
        CellColour colour;
        std::string accepted;  ///< the readouts at which OK is pressed; Abort if it stays open
        Mark during;
        std::string result;  ///< caption, mark and colour
    } rows[] = {
        {Clean, kChanged, "", Clean, "5Cn"},   {Clean, kNormal, "5", False, "5Cn"},
        {Clean, kNormal, "6", Changed, "6Sc"}, {Clean, kNormal, "56", Changed, "6Sc"},
        {Save, kChanged, "", Save, "5Sc"},     {Save, kNormal, "5", False, "5Sn"},
        {Save, kNormal, "6", Changed, "6Sc"},  {EepWritten, kNormal, "", EepWritten, "5Cn"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
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
        EXPECT_EQ(cells.Caption(25) + Looks({25}), row.result);
        EXPECT_EQ(test.Status(),
                  row.during == Changed ? "Iris 1T2 Value Changed" : "Value Change Aborted");
    }
    cells.ShowValue(38, 200);
    test.outside.onFormEdit = [&] { EXPECT_EQ(program.valueEditor.StartValue(), 1); };
    program.valueEditor.CellClicked(38);
}

}  // namespace
}  // namespace tarnwell
