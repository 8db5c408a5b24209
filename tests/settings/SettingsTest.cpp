// The settings' ways between cells, buffer and EEPROM, and the editing of one value.
#include "settings/SettingsEngine.h"

#include <random>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kVerify = "V E R I F Y|Write settings values to EEPROM?";
const std::string kNothing =
    "I N F O|No settings were changed;\r\nThe EEProm was not modified.";
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
    void Write() {
        test.WillAnswer({Answer::Yes});
        program.settings.WriteSettingsToEep();
    }
    /// The first letters of the cells' marks: C(lean), S(ave), E(EP written), and of their
    /// colours, small: n(ormal), c(hanged).
    std::string Looks(std::initializer_list<int> list) const {
        std::string text;
        for (const int cell : list) {
            text += std::string("C?SE?")[static_cast<std::size_t>(cells.MarkOf(cell))];
            text += std::string("n?c")[static_cast<std::size_t>(cells.Colour(cell))];
        }
        return text;
    }
    void Randomize(auto& bytes) {
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
    }
    std::string Wire() const { return ToText(test.television.Events()); }
};

std::string Hex2(int value) {
    return HexText(static_cast<std::uint32_t>(value), 2);
}

std::string Addressed(int address) {
    return "S A0+ " + Hex2(address / 256) + "+ " + Hex2(address % 256) + "+ ";
}

std::string ReadOf(int address, int byte) {
    return Addressed(address) + "Sr A1+ <" + Hex2(byte) + " P";
}

const std::string kCheck = "S P S A0+ P";

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
            const int divisor = cell == 32 ? 4 : cell == 71 ? 16 : 1;
            const auto address = static_cast<std::size_t>(Cell(cell).address);
            const auto shown = static_cast<std::uint8_t>(memory[address] / divisor);
            EXPECT_EQ(cells.Caption(cell), NumberText(shown, mode));

            const int maximum = Cell(cell).setting->maximum;
            if (shown == maximum)
                cells.ShowValue(cell, 0);
            Edit(cell, maximum);
            EXPECT_EQ(test.Status(), StatusLineName(cell) + "Value Changed");
            EXPECT_EQ(cells.Caption(cell), NumberText(static_cast<std::uint32_t>(maximum), mode));
            EXPECT_EQ(Looks({cell}), "Sc");
            Write();
            EXPECT_EQ(test.Status(), kWritten);
            EXPECT_EQ(Looks({cell}), "Cn");
            expected[address] = static_cast<std::uint8_t>(expected[address] % divisor +
                                                          maximum * divisor);
            EXPECT_EQ(memory, expected);
            merged[address] =
                static_cast<std::uint8_t>(merged[address] % divisor + maximum * divisor);
        }
        EXPECT_NE(program.buffer, merged);
        program.settings.MergeSettingsWithBuffer();
        EXPECT_EQ(test.Status(), "Settings Values Merged Into Memory Buffer");
        EXPECT_EQ(program.buffer, merged);
        EXPECT_TRUE(program.state.bufferChanged);
        EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(merged));
        EXPECT_EQ(program.grid.Text({2363 / 16, 2363 % 16 + 1}), NumberText(255, mode));
    }
}

TEST_F(SettingsTest, BusTraffic) {
    Randomize(memory);
    std::string expected = kCheck;
    for (const SettingGroup& group : SettingGroups) {
        for (int index = 0; index < group.count; ++index) {
            const int address = group.baseAddress + index;
            expected += " " + ReadOf(address, memory[static_cast<std::size_t>(address)]);
        }
    }
    test.television.Record();
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(Wire(), expected);

    memory[2085] = 0x03;
    memory[2228] = 0xA7;
    cells.ShowValue(32, 0);
    Edit(71, 15);
    Edit(32, 10);
    Edit(70, cells.Caption(70) == "9" ? 8 : 9);
    const std::string clp = Hex2(*cells.Value(70));
    test.television.Record();
    Write();
    const auto poll = [](const std::string& rest) { return " S A0+ Sr" + rest.substr(1); };
    EXPECT_EQ(Wire(), kCheck + " " + ReadOf(2085, 3) + " " + Addressed(2085) + "2B+ P" +
                        poll(Addressed(2549)) + clp + "+ P" + poll(ReadOf(2228, 0xA7)) + " " +
                        Addressed(2228) + "F7+ P" + poll(ReadOf(2085, 0x2B)) + " " +
                        Addressed(2549) + "Sr A1+ <" + clp + " P " + ReadOf(2228, 0xF7));
}

TEST_F(SettingsTest, WritesNothingUnlessAskedTo) {
    Write();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kNothing));
    Edit(5, 9);
    test.WillAnswer({Answer::No});
    program.settings.WriteSettingsToEep();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify));
    EXPECT_EQ(test.Status(), "EEProm Write Cancelled");
    EXPECT_EQ(Looks({5}), "Sc");

    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(Looks({5}), "Cc");
    Write();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kNothing));
    test.television.Inject({.kind = FaultKind::DeviceSilent});
    program.settings.WriteSettingsToEep();
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(test.user.TakeBoxes().size(), 2U);
    EXPECT_EQ(cells.Caption(5), "9");
    EXPECT_EQ(test.television.Count(WireEvent::WriteCycle), 0U);
}

TEST_F(SettingsTest, AMismatchEndsTheVerification) {
    program.state.eepRead = true;
    for (const int cell : {0, 1, 32})
        Edit(cell, *cells.Value(cell) + 1);
    test.television.Inject({.kind = FaultKind::FlippedBit, .address = 2364});
    Write();
    EXPECT_EQ(Looks({0, 1, 32}), "CnCnEn");
    EXPECT_THAT(test.user.TakeBoxes(),
                ElementsAre(kVerify, "E R R O R - Verify Failed|Verification of the EEProm "
                                     "settings values failed;\r\nThe EEProm was not programmed "
                                     "correctly, try again."));
    EXPECT_EQ(test.user.beeps, 1);
    EXPECT_EQ(test.Status(), "");
    EXPECT_EQ(test.timer.running, std::chrono::seconds(30));
    EXPECT_TRUE(program.state.eepRead);
    EXPECT_FALSE(program.state.bufferChanged);

    test.television.ClearFaults();
    memory[2085] = 0xFC;
    Edit(0, 77);
    Write();
    EXPECT_EQ(Looks({0, 32}), "CnCn");
    EXPECT_EQ(test.user.beeps, 2);
    cells.ClearSettingCells();
    cells.SetMark(32, Mark::EepWritten);
    Edit(0, 78);
    Write();
    EXPECT_EQ(test.Status(), kWritten);
    EXPECT_EQ(Looks({0, 32}), "CnEn");
}

TEST_F(SettingsTest, WhatWasCutShortWaitsForTheNextWrite) {
    const struct {
        Moment silentFrom;
        const char* looks;
    } rows[] = {
        {{WireEvent::WriteCycle, 1}, "ScScSc"},
        {{WireEvent::WriteCycle, 2}, "ScScSc"},
        {{WireEvent::Stop, 5}, "ScScSc"},
        {{WireEvent::Stop, 6}, "CnScSc"},
        {{WireEvent::Stop, 7}, "CnCnSc"},
    };
    int value = 1;
    for (const auto& row : rows) {
        for (const int cell : {0, 1, 6})
            Edit(cell, value);
        test.television.Inject({.kind = FaultKind::DeviceSilent, .begins = row.silentFrom});
        Write();
        EXPECT_EQ(Looks({0, 1, 6}), row.looks) << value;
        EXPECT_EQ(test.Status(), "I2C Operation Aborted");
        test.television.ClearFaults();
        Write();
        EXPECT_EQ(test.Status(), kWritten);
        for (const std::size_t address : {2363U, 2364U, 2399U})
            EXPECT_EQ(memory[address], value);
        ++value;
    }
    memory[2363] = 200;
    test.television.Inject({.kind = FaultKind::DeviceSilent, .begins = {WireEvent::Stop, 70}});
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(cells.Caption(0), "5") << "a read shows all values or none";
}

TEST_F(SettingsTest, WriteMergesIntoABufferThatHoldsAnImage) {
    program.wholeDevice.ReadEntireEep();
    Edit(32, 10);
    Edit(0, 3);
    program.grid.SetGridChanged(true);
    test.WillAnswer({Answer::No});
    program.settings.WriteSettingsToEep();
    program.state.eepRead = false;
    Write();
    EXPECT_TRUE(program.state.gridChanged);

    program.state.eepRead = true;
    Edit(0, 4);
    test.WillAnswer({Answer::Yes});
    Write();
    EXPECT_EQ(test.Status(), kWritten);
    EXPECT_TRUE(std::equal(memory.begin(), memory.end(), program.buffer.begin()));
    EXPECT_EQ(program.grid.Text({2363 / 16, 2363 % 16 + 1}), "4");
    EXPECT_TRUE(program.state.bufferChanged);
    EXPECT_FALSE(program.state.eepRead || program.state.gridChanged);
}

TEST_F(SettingsTest, SecondaryTargetAndEmptyCells) {
    Edit(0, 9);
    program.state.targetDevice = TargetDevice::Secondary;
    const MemoryBuffer before = program.buffer;
    for (const auto command : {&SettingsEngine::MergeSettingsWithBuffer,
                               &SettingsEngine::WriteSettingsToEep,
                               &SettingsEngine::ShowSettingsFromBuffer}) {
        program.statusBar.PutStatus("");
        (program.settings.*command)();
        EXPECT_EQ(test.Status(), "Use the Data Editor to View/Modify data");
    }
    program.valueEditor.CellClicked(0);
    EXPECT_THAT(test.user.TakeBoxes(),
                ElementsAre("I N F O|You must use the Data Editor to change values in\r\n"
                            "the secondary EEProm.   PLEASE BE CAREFUL!"));
    EXPECT_EQ(Looks({0}), "Sc");
    EXPECT_EQ(cells.Caption(0), "9");
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(cells.Value(0), test.television.Memory(Chip::Secondary)[2363]);

    program.wholeDevice.SelectEeprom(TargetDevice::Primary);
    EXPECT_EQ(cells.Caption(71), "");
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(cells.Caption(0) + cells.Caption(71), "00");
    Write();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kVerify, kNothing));
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(program.buffer, before);
    EXPECT_EQ(Looks({0}), "Sc") << "the mark of an empty cell stays";

    Edit(71, 0);
    EXPECT_EQ(Looks({71}), "Sc") << "a value that reads as the empty cell does is a change";
    Write();
    EXPECT_EQ(memory[2228] / 16, 0);
    program.settings.ShowSettingsFromBuffer();
    EXPECT_FALSE(cells.AnyIsEmpty());
}

TEST_F(SettingsTest, LifeOfAValueEdit) {
    using enum Mark;
    constexpr CellColour kNormal = CellColour::Normal, kChanged = CellColour::Changed;
    const struct {
        Mark mark;
        CellColour colour;
        const char* accepted;  ///< the readouts at which OK is pressed, then Abort if still open
        Mark during;
        const char* looks;
        bool changed;
    } rows[] = {
        {Clean, kNormal, "", Clean, "Cn", false},
        {Clean, kNormal, "5", False, "Cn", false},
        {Clean, kChanged, "", Clean, "Cn", false},
        {Clean, kNormal, "6", Changed, "Sc", true},
        {Clean, kNormal, "56", Changed, "Sc", true},
        {Save, kChanged, "", Save, "Sc", false},
        {Save, kChanged, "5", False, "Sc", false},
        {Save, kNormal, "5", False, "Sn", false},
        {Save, kNormal, "0", Changed, "Sc", true},
        {EepWritten, kNormal, "", EepWritten, "Cn", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        cells.ShowValue(25, 5);
        cells.SetMark(25, row.mark);
        cells.SetColour(25, row.colour);
        test.outside.onFormEdit = [&] {
            EXPECT_EQ(program.valueEditor.StartValue(), 5);
            EXPECT_EQ(cells.Colour(25), CellColour::Editing);
            for (const char readout : std::string(row.accepted))
                program.valueEditor.Accept({readout});
            EXPECT_EQ(cells.MarkOf(25), row.during);
        };
        program.valueEditor.CellClicked(25);
        EXPECT_EQ(Looks({25}), row.looks);
        EXPECT_EQ(test.Status(), row.changed ? "Iris 1T2 Value Changed" : "Value Change Aborted");
        EXPECT_EQ(cells.Caption(25), row.changed ? std::string(row.accepted).substr(
                                                       std::string(row.accepted).size() - 1)
                                                 : "5");
    }
    cells.ShowValue(38, 200);
    test.outside.onFormEdit = [&] { EXPECT_EQ(program.valueEditor.StartValue(), 1); };
    program.valueEditor.CellClicked(38);
    cells.ClearSettingCells();
    test.outside.onFormEdit = [&] { EXPECT_EQ(program.valueEditor.StartValue(), 0); };
    program.valueEditor.CellClicked(38);
    EXPECT_THAT(test.user.TakeBoxes(), IsEmpty());
}

}  // namespace
}  // namespace tarnwell
