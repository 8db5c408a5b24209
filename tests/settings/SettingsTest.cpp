// The catalog, the settings' ways between cells, buffer and EEPROM, and the editing of one value.
#include "settings/SettingsEngine.h"

#include <random>

#include "core/Pages.h"
#include "settings/CellTexts.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

const std::string kVerify = "V E R I F Y|Write settings values to EEPROM?";
const std::string kVerifyThem = kVerify + "\r\nPrimary EEProm on LPT1: ";
const std::string kNothing = "I N F O|No settings were changed;\r\nThe EEProm was not modified.";
const std::string kFailed =
    "E R R O R - Verify Failed|Verification of the EEProm settings values failed;\r\n"
    "The EEProm was not programmed correctly, try again.";
const std::string kWritten = "EEP Verified OK; Settings Values Written to EEProm";

class SettingsTest : public testing::Test, protected TestProgram {
  protected:
    SettingCells& cells = program.cells;
    EepromImage& memory = television.Memory(Chip::Primary);
    std::mt19937 random{20261117};

    SettingsTest() : TestProgram({.writeCycle = BusTime(0)}) {}
    void Edit(std::initializer_list<int> list, int value) {
        for (const int cell : list)
            EditCell(cell, value);
    }
    std::string Write(Answer answer = Answer::Yes) {
        WillAnswer({answer});
        program.settings.WriteSettingsToEep();
        return Status();
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
};

TEST_F(SettingsTest, EveryCellIsReadEditedWrittenAndMergedAlone) {
    for (const NumberMode mode : {NumberMode::Hex, NumberMode::Decimal}) {
        program.numberModeMenu.Select(mode);
        program.state.BufferChanged = false;
        std::ranges::generate(memory, [&] { return std::uint8_t(random()); });
        std::ranges::generate(program.buffer, [&] { return std::uint8_t(random()); });
        EepromImage expected = memory;
        MemoryBuffer merged = program.buffer;
        program.settings.ReadSettingsFromEep();
        EXPECT_EQ(Status(), "Settings Values Read from EEPROM");
        for (int cell = 0; cell < kCellCount; ++cell) {
            SCOPED_TRACE(cell);
            const int unit = cell == 32 ? 4 : cell == 71 ? 16 : 1;
            const auto address = static_cast<std::size_t>(Cell(cell).address);
            EXPECT_EQ(cells.Value(cell), memory[address] / unit);
            const int maximum = Cell(cell).setting->maximum;
            cells.ShowValue(cell, 0);
            Edit({cell}, maximum);
            EXPECT_EQ(Status(), StatusLineName(cell) + "Value Changed");
            EXPECT_EQ(Write(), kWritten);
            EXPECT_EQ(Looks({cell}), "Cn");
            for (std::uint8_t* const byte : {&expected[address], &merged[address]})
                *byte = static_cast<std::uint8_t>(*byte % unit + maximum * unit);
            EXPECT_EQ(memory, expected);
        }
        program.settings.MergeSettingsWithBuffer();
        EXPECT_EQ(Status(), "Settings Values Merged Into Memory Buffer");
        EXPECT_EQ(program.buffer, merged);
        EXPECT_TRUE(program.state.BufferChanged);
        EXPECT_EQ(Crc(), mCRC32::BufferCrcText(merged));
        EXPECT_EQ(program.grid.Text({2363 / 16, 2363 % 16 + 1}) + cells.Caption(6),
                  mode == NumberMode::Hex ? "FFFF" : "255255");
    }
}

TEST_F(SettingsTest, BusTraffic) {
    memory[2085] = 0x03;
    memory[2228] = 0xA7;
    cells.ShowValue(70, 0);
    Edit({71, 32, 70}, 9);
    television.Record();
    Write();
    EXPECT_EQ(ToText(television.Events()),
              "S P S A0+ P S A0+ 08+ 25+ Sr A1+ <03 P S A0+ 08+ 25+ Sr A1+ <03 P "
              "S A0+ 08+ 25+ 27+ P S A0+ Sr A0+ 09+ F5+ 09+ P S A0+ "
              "Sr A0+ 08+ B4+ Sr A1+ <A7 P S A0+ 08+ B4+ Sr A1+ <A7 P S A0+ 08+ B4+ 97+ P S A0+ "
              "Sr A0+ 08+ 25+ Sr A1+ <27 P S A0+ 09+ F5+ Sr A1+ <09 P S A0+ 08+ B4+ Sr A1+ <97 P");
}

TEST_F(SettingsTest, WhatDidNotArriveIsToldByNameAndWrittenByTheNextWrite) {
    using enum WireEvent;
    program.state.EepRead = true;
    memory[2085] = 0;
    const Fault flips{.kind = FaultKind::FlippedBit, .address = 2364, .mask = 0x80};
    const Fault wrong{.kind = FaultKind::WrongWrite, .begins = {WriteCycle, 1}, .mask = 1};
    for (const auto& [fault, tint, looks, details] :
         {std::tuple(flips, 5, "CnScCn",
                     "1 byte differs.\nAddress 2364 (480i CB02): wrote 5, read 133"),
          {wrong, 6, "CnScSc",  // a wrong bit below the field, too
           "2 bytes differ.\nAddress 2364 (480i CB02): wrote 5, read 4"
           "\nAddress 2085 (Global TINT): wrote 24, read 25"}}) {
        Edit({0, 1}, 5);
        Edit({32}, tint);
        television.Inject(fault);
        EXPECT_EQ(Write(), "");
        EXPECT_EQ(Looks({0, 1, 32}), looks);
        EXPECT_EQ(user.boxes.back().details, details);
        EXPECT_THAT(user.TakeBoxes(),
                    ElementsAre(kVerifyThem + (tint == 5 ? "3" : "2") + " settings", kFailed));
        EXPECT_TRUE(program.state.EepRead && !program.state.BufferChanged);
        television.ClearFaults();
    }
    program.state.EepRead = false;
    EXPECT_EQ(Write(), kWritten);
    EXPECT_EQ(Looks({1, 32}), "CnCn");
    int value = 0;
    for (const auto& [silentFrom, looks] : {std::pair(Moment{WriteCycle, 1}, "ScScSc"),
                                            {{WriteCycle, 2}, "ScScSc"},
                                            {{Stop, 5}, "ScScSc"},
                                            {{Stop, 6}, "CnScSc"},
                                            {{Stop, 7}, "CnCnSc"}}) {
        Edit({0, 1, 6}, ++value);
        television.Inject({.kind = FaultKind::DeviceSilent, .begins = silentFrom});
        EXPECT_EQ(Write(), "I2C Operation Aborted");
        EXPECT_EQ(Looks({0, 1, 6}), looks) << value;
        television.ClearFaults();
        EXPECT_EQ(Write(), kWritten);
        EXPECT_EQ(memory[2363] * 100 + memory[2364] * 10 + memory[2399], value * 111);
    }
    memory[2363] = 200;
    television.Inject({.kind = FaultKind::DeviceSilent, .begins = {Stop, 70}});
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(cells.Caption(0), "5") << "a read shows all values or none";
}

TEST_F(SettingsTest, WriteAndMergeAskForTheGridAndFillABufferThatHoldsAnImage) {
    program.wholeDevice.ReadEntireEep();
    Edit({0, 32}, 10);
    program.grid.SetGridChanged(true);
    EXPECT_EQ(Write(Answer::Cancel), "EEProm Write Cancelled");
    WillAnswer({Answer::Yes});
    EXPECT_EQ(Write(Answer::No), "EEProm Write Cancelled");
    WillAnswer({Answer::No});
    program.settings.MergeSettingsWithBuffer();
    const std::string ask = "C A U T I O N|Really discard the Data Grid changes?";
    EXPECT_THAT(user.TakeBoxes(),
                ElementsAre(kVerifyThem + "2 settings", kVerifyThem + "2 settings", ask, ask));
    EXPECT_EQ(television.Count(WireEvent::WriteCycle), 0U);
    WillAnswer({Answer::Yes});
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
        EXPECT_EQ(Status(), "Use the Data Editor to View/Modify data");
    }
    program.valueEditor.CellClicked(0);
    EXPECT_THAT(user.TakeBoxes(),
                ElementsAre("I N F O|You must use the Data Editor to change values in\r\n"
                            "the secondary EEProm.   PLEASE BE CAREFUL!"));
    EXPECT_EQ(cells.Caption(0) + Looks({0}), "9Sc");
    program.settings.ReadSettingsFromEep();
    EXPECT_EQ(cells.Value(0), television.Memory(Chip::Secondary)[2363]);

    program.wholeDevice.SelectEeprom(TargetDevice::Primary);
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(cells.Caption(0) + cells.Caption(71), "00");
    Write();
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(program.buffer, before);
    Edit({71}, 0);
    EXPECT_EQ(Looks({0, 71}), "CcSc")
        << "a merge ends the waiting; the 0 of an empty cell is a change";
    EXPECT_EQ(Write(Answer::No), "EEProm Write Cancelled");
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(Looks({0, 71}), "CcCc") << "nothing waits, also where no value is";
    Write();
    EXPECT_THAT(user.TakeBoxes(),
                ElementsAre(kVerify, kNothing, kVerifyThem + "1 setting", kVerify, kNothing));
    EXPECT_EQ(television.Count(WireEvent::WriteCycle), 0U);
}

TEST_F(SettingsTest, LifeOfAValueEdit) {
    using enum Mark;
    constexpr auto kNormal = CellColour::Normal, kChanged = CellColour::Changed;
    // The readouts at which OK is pressed, the mark then, and caption, mark and colour in the end.
    for (const auto& [mark, colour, accepted, during, result] :
         {std::tuple(Clean, kChanged, "", Clean, "5Cn"),
          {Clean, kNormal, "5", False, "5Cn"},
          {Clean, kNormal, "6", Changed, "6Sc"},
          {Clean, kNormal, "56", Changed, "6Sc"},
          {Save, kChanged, "", Save, "5Sc"},
          {Save, kNormal, "5", False, "5Sn"},
          {Save, kNormal, "6", Changed, "6Sc"},
          {EepWritten, kNormal, "", EepWritten, "5Cn"}}) {
        cells.ShowValue(25, 5);
        cells.SetMark(25, mark);
        cells.SetColour(25, colour);
        outside.onFormEdit = [&, accepted = accepted, during = during] {
            EXPECT_EQ(program.valueEditor.StartValue(), 5);
            for (const char* readout = accepted; *readout != '\0'; ++readout) {
                program.valueEditor.StepTo(*readout - '0');
                program.valueEditor.Accept();
            }
            EXPECT_EQ(cells.MarkOf(25), during);
            EXPECT_EQ(cells.Colour(25), CellColour::Editing);
        };
        program.valueEditor.CellClicked(25);
        EXPECT_EQ(cells.Caption(25) + Looks({25}), result);
        EXPECT_EQ(Status(), during == Changed ? "Iris 1T2 Value Changed" : "Value Change Aborted");
    }
    for (const int value : {1, 200}) {
        cells.ShowValue(38, static_cast<std::uint8_t>(value));
        EXPECT_EQ(cells.IsOutOfRange(38), value == 200);
    }
    EXPECT_EQ(OutOfRangeText(32, NumberMode::Hex), "Out of its range from 0 to 3F");
    outside.onFormEdit = [&] { EXPECT_EQ(program.valueEditor.StartValue(), 1); };
    program.valueEditor.CellClicked(38);
}

struct KeptWrites final : WriteWitness {
    std::string text;
    void Wrote(const DeviceWrite& write) override {
        text += std::to_string(write.count) + " " + "vnif"[static_cast<int>(write.end)];
        for (const auto& [address, before, written, now] : write.bytes)
            text += " " + std::to_string(*before) + ">" + (now ? std::to_string(*now) : "?");
    }
};

// L and P switch it on and off, a digit is a step to it, D the end of the timer's time, O is OK;
// the next write is lost after W, and the last one after S.
TEST_F(SettingsTest, LiveWritesWhatStandsAsOneWriteWithOneWayBack) {
    KeptWrites kept;
    program.bus.Tell(kept);
    ManualTimer standing;
    const std::string kAsk = "V E R I F Y|Write each step to the EEProm at once?";
    const std::string kNoBus = "E R R O R|There is an I2C bus or\r\nInterface Hardware Problem";
    for (const auto& [answer, does, byte, looks, told, cycles, box] :
         {std::tuple(Answer::No, "L7D8DO", 0x15, "8Sc", "", 0U, kAsk),
          {Answer::Yes, "L7D8D9O", 0x25, "9Cn", "1 v 21>37", 3U, kAsk},
          {Answer::Yes, "L7D8D", 0x15, "5Cn", "1 v", 3U, ""},
          {Answer::Yes, "L7D5DO", 0x15, "5Cn", "1 v", 2U, ""},
          {Answer::Yes, "L7DP8DO", 0x1D, "8Sc", "1 v 21>29", 1U, ""},
          {Answer::Yes, "L7DP8LDO", 0x21, "8Cn", "1 v 21>33", 2U, ""},
          {Answer::Yes, "L7DW8D9DO", 0x1D, "9Sc", "1 n 21>29", 2U, kFailed},
          {Answer::Yes, "LW7O", 0x15, "5Cn", "1 n 21>21", 1U, kFailed},
          {Answer::Yes, "L7DS8D9DO", 0x1D, "9Sc", "1 f 21>?", 2U, kNoBus}}) {
        SCOPED_TRACE(does);
        memory[2085] = 0x15;
        program.wholeDevice.ReadEntireEep();
        program.settings.ReadSettingsFromEep();
        cells.SetMark(32, Mark::Clean);
        cells.SetColour(32, CellColour::Normal);
        kept.text.clear();
        const std::uint64_t before = television.Count(WireEvent::WriteCycle);
        user.answers = {answer};
        outside.onFormEdit = [&, does = does, answer = answer] {
            ValueEditor& editor = program.valueEditor;
            for (const char act : std::string_view(does)) {
                if (act == 'L')
                    EXPECT_EQ(editor.Live()->Begin(editor.Value(), standing),
                              answer == Answer::Yes);
                else if (act == 'P')
                    editor.Live()->Pause();
                else if (act == 'D')
                    editor.Live()->Due();
                else if (act == 'O')
                    editor.Accept();
                else if (act == 'W' || act == 'S')
                    television.Inject({act == 'W' ? FaultKind::LostWrite : FaultKind::DeviceSilent,
                                       {WireEvent::WriteCycle, 1}});
                else
                    editor.StepTo(act - '0');
                EXPECT_TRUE(act == 'W' || act == 'S' ||
                            (standing.running == std::chrono::milliseconds(250)) ==
                                (editor.Live()->IsOn() && act != 'D' && act != 'O'));
                EXPECT_TRUE(act != 'D' || (editor.Note() == "Written") == editor.Live()->IsOn());
            }
        };
        program.valueEditor.CellClicked(32);
        television.ClearFaults();
        EXPECT_EQ(memory[2085], byte);
        EXPECT_EQ(cells.Caption(32) + Looks({32}), looks);
        EXPECT_EQ(kept.text, told);
        EXPECT_EQ(television.Count(WireEvent::WriteCycle) - before, cycles);
        EXPECT_EQ(user.TakeBoxes(), std::vector(box.empty() ? 0 : 1, box));
        EXPECT_EQ(program.buffer[2085], std::string_view(looks).ends_with("Cn") ? byte : 0x15);
        if (byte != 0x25)
            continue;
        EXPECT_EQ(program.history.NextName(Direction::Undo), "Global TINT 5 to 9");
        program.undo.Undo();
        EXPECT_EQ(cells.Caption(32) + Looks({32}) + std::to_string(program.buffer[2085]), "5Sc21");
    }
}

// '<' is Backspace, '+' a step to 1.
TEST_F(SettingsTest, TypedDigitsReplaceTheValueAndStayWithinItsRange) {
    using enum NumberMode;
    for (const auto& [mode, cell, typed, readouts, status] :
         {std::tuple(Decimal, 32, "6364", "6 63 63 63 ", "TINT goes from 0 to 63"),
          {Decimal, 32, "63<<52", "6 63 6 0 5 52 ", "TINT: 0 to 63, was 9"},
          {Decimal, 32, "2+3", "2 1 3 ", "TINT: 0 to 63, was 9"},
          {Decimal, 38, "10", "1 1 ", "DCOL 480i goes from 0 to 1"},
          {Hex, 32, "3fg", "3 3F 3F ", "TINT: 0 to 3F, was 9"},
          {Hex, 71, "a0<", "A A 0 ", "SHPM goes from 0 to F"}}) {
        program.numberModeMenu.Select(mode);
        cells.ShowValue(cell, 9);
        program.statusBar.PutStatus("");
        std::string shown;
        outside.onFormEdit = [&, typed = typed, status = status] {
            ValueEditor& editor = program.valueEditor;
            for (const char* digit = typed; *digit != '\0'; ++digit) {
                if (*digit == '<')
                    editor.EraseDigit();
                else if (*digit == '+')
                    editor.StepTo(1);
                else
                    EXPECT_EQ(digit == typed || editor.TypeDigit(*digit), *digit != 'g');
                shown += editor.Readout(editor.Value()) + " ";
            }
            EXPECT_EQ(Status(), status);
        };
        program.valueEditor.CharacterTyped(cell, *typed);
        EXPECT_EQ(shown, readouts) << typed;
        program.statusBar.MsgTimerFired();
    }
}

TEST_F(SettingsTest, TheStatusLineSaysHowManyValuesOfThePageWait) {
    EXPECT_EQ(CellPlaceText(32, NumberMode::Hex), "Address 825, bits 2 to 7");
    Edit({0, 32, 71}, 5);
    for (const auto& [page, after] : {std::pair(Page::Chroma, "1 value waits to be written"),
                                      {Page::Iris, ""},
                                      {Page::Global, "2 values wait to be written"}}) {
        program.editorPage.SwitchPage(page);
        EXPECT_EQ(Status(), Info(page).status);
        program.statusBar.MsgTimerFired();
        EXPECT_EQ(Status(), after);
    }
    Write();
    program.statusBar.MsgTimerFired();
    EXPECT_EQ(Status(), "");
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

/// The transcript of the window holds the titles, ranges, addresses and bits of all cells.
TEST(CatalogTest, TheStatusLineCallsCellsByTheirTitlesButForSome) {
    std::string others;
    for (int cell = 0; cell < kCellCount; ++cell) {
        EXPECT_EQ(CellAtAddress(Cell(cell).address), cell);
        if (StatusLineName(cell) != CellTitle(cell) + " ")
            others += StatusLineName(cell);
    }
    EXPECT_EQ(others, "Iris 1T2 Defl Jung 480i CLP Defl Jung 1080i CLP Global Sharpness (SHPM) ");
    EXPECT_TRUE(!GroupAtBase(2364) && !CellAtAddress(2508));
}

}  // namespace
}  // namespace tarnwell
