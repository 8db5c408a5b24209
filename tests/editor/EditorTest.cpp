// The data editor: its keys, what begins an entry, the outcomes of the pending writes, and finding.
#include "editor/EditorPage.h"
#include "editor/Find.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum EditKey;
using testing::ElementsAre;
using testing::Optional;

/// The editor page with the editor on, over a buffer of zeros.
class EditorTest : public testing::Test {
  protected:
    EditorTest() {
        program.grid.FillGrid();
        program.editorPage.SwitchPage(Page::Editor);
        program.editorPage.ToggleEditor();
    }
    void Enter(int address, const std::string& text, EditKey key = Next) {
        editor.MoveTo(GridCell::At(address));
        editor.Click();
        editor.TextEdited(text);
        editor.KeyPressed(key);
    }
    std::string WritePending() {
        program.pending.WritePending();
        return test.Status();
    }

    TestProgram test;
    Program& program = test.program;
    CellEditor& editor = program.cellEditor;
    EepromImage& memory = test.television.Memory(Chip::Primary);
};

TEST_F(EditorTest, KeysGoRoundAtTheEndsAndAnEmptyTextIsNoChangeWhereZeroStands) {
    for (const auto& [from, key, to] :
         {std::tuple(8191, Next, 0), {0, Previous, 8191}, {20, Down, 36}}) {
        for (const char* text : {"", "5", ""})
            Enter(from, text, key);
        EXPECT_EQ(program.grid.Current().Address(), to);
        EXPECT_EQ(test.Status(), "Editing EEPROM Address: " + std::to_string(to));
        EXPECT_EQ(test.timer.running, std::nullopt);
        EXPECT_EQ(program.pending.Count(), 2);
        program.pending.ClearPendingWrites();
    }
    TestProgram fresh;
    fresh.program.editorPage.ToggleEditor();
    fresh.program.cellEditor.Click();
    fresh.program.cellEditor.KeyPressed(Next);
    EXPECT_EQ(fresh.program.pending.Count(), 0) << "a grid that was never filled";
}

TEST_F(EditorTest, TypedCharactersAndNumberModes) {
    using enum NumberMode;
    for (const auto& [mode, status, shown, typedA] :
         {std::tuple(Hex, "Number Mode Changed to Hexadecimal", "1FF0 F", "A"),
          {Decimal, "Number Mode Changed to Decimal", "8176 15", "a"},
          {Decimal, "", "8176 15", "a"}}) {
        program.statusBar.PutStatus("");
        program.numberModeMenu.Select(mode);
        EXPECT_EQ(test.Status(), status);
        const DataGrid& grid = program.grid;
        EXPECT_EQ(grid.RowAddressText(511) + " " + grid.HeadingText(15), shown);
        EXPECT_EQ(program.pending.Row(9).EditAddress, "0") << "an empty row";
        for (const std::string character : {"a", "7", "-", "g", "\xC3\xA9"}) {
            editor.CharacterTyped(character);
            EXPECT_EQ(program.grid.EditText(), character == "a" ? typedA : character);
        }
        editor.TextEdited("7\xC3\xA9");
        for (const char* left : {"7", ""}) {
            editor.KeyPressed(Backspace);
            EXPECT_EQ(program.grid.EditText(), left);
        }
        editor.CharacterTyped(" ");
        EXPECT_EQ(program.grid.EditText(), "0");
    }
}

TEST_F(EditorTest, WritePendingAndItsOutcomes) {
    using enum FaultKind;
    EXPECT_EQ(WritePending(), "There Are No Pending EEP Writes");
    const char* const aborted = "I2C Operation Aborted";
    const char* const noAnswer = "E R R O R|There is an I2C bus or\r\nInterface Hardware Problem";
    const char* const failed =
        "E R R O R - Verify Failed|Verification of the EEProm failed;\r\n"
        "The EEProm was not programmed correctly, try again.";
    Enter(300, "11");
    Enter(301, "13");
    for (const auto& [answer, fault, status, box] :
         {std::tuple(Answer::Cancel, Fault{.kind = FlippedBit, .address = 5},
                     "EEProm Write Cancelled", "V E R I F Y|Write 2 new values to the EEP?"),
          {Answer::Yes, {DeviceSilent}, aborted, noAnswer},
          {Answer::Yes, {DeviceSilent, {WireEvent::WriteCycle, 1}}, aborted, noAnswer},
          {Answer::Yes, {.kind = FlippedBit, .address = 300}, "", failed}}) {
        test.television.Inject(fault);
        test.user.answers = {answer};
        EXPECT_EQ(WritePending(), status);
        EXPECT_THAT(test.user.TakeBoxes().back(), testing::StartsWith(box));
        EXPECT_EQ(program.pending.Count(), 2);
        EXPECT_TRUE(program.state.GridChanged && !program.state.BufferChanged);
        test.television.ClearFaults();
    }
    EXPECT_EQ(test.user.beeps, 1);
    EXPECT_EQ(test.timer.running, std::chrono::seconds(30));
    EXPECT_EQ(memory[301], 13) << "a difference does not end the writing";
    Enter(300, "12");
    EXPECT_TRUE(program.grid.IsChanged(GridCell::At(301)));
    test.user.answers = {Answer::Yes};
    EXPECT_EQ(WritePending(), "EEP Verified OK; New Data Written to EEProm");
    EXPECT_TRUE(memory[300] == 12 && program.buffer[300] == 12 && program.buffer[301] == 13);
    EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(program.buffer));
    EXPECT_TRUE(program.state.BufferChanged && !program.state.GridChanged);
    EXPECT_FALSE(program.grid.IsChanged(GridCell::At(301)));
}

TEST_F(EditorTest, PastesBytesAsIfTypedOrNoneOfThem) {
    const std::string refused =
        "W A R N I N G|The new value was out of range and \r\nhas been discarded. Try again.";
    for (const auto& [first, text] : {std::pair(50, "1 2 256"), {8190, "1 2 3"}, {50, "1 x"}}) {
        editor.MoveTo(GridCell::At(first));
        editor.Paste(text);
        EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(refused)) << text;
        EXPECT_EQ(program.pending.Count(), 0) << text;
    }
    for (const auto& [first, text, current] :
         {std::tuple(8189, "1,2\n3", 8191), {50, "0 9 0 8", 54}}) {
        editor.MoveTo(GridCell::At(first));
        editor.Paste(text);
        EXPECT_EQ(program.grid.Current().Address(), current);
    }
    EXPECT_EQ(program.grid.Text(GridCell::At(8191)) + program.grid.Text(GridCell::At(53)), "38");
    EXPECT_EQ(program.pending.Count(), 5) << "a 0 where 0 stands is no change";
    test.user.answers = {Answer::No};
    editor.Paste("1 2 3 4 5 6");
    EXPECT_EQ(program.pending.Count(), 1) << "the tenth asked";
    program.editorPage.ToggleEditor();
    editor.Paste("77 78");
    EXPECT_NE(program.grid.Text(program.grid.Current()), "77");
}

TEST_F(EditorTest, SelectsFromWhereItBegan) {
    DataGrid& grid = program.grid;
    Enter(20, "5", Down);
    editor.TextEdited("6");
    editor.SelectTo(GridCell::At(19));
    EXPECT_EQ(grid.Text(GridCell::At(36)), "6") << "an open entry is committed";
    EXPECT_FALSE(grid.EntryIsOpen());
    editor.SelectTo(GridCell::At(35));
    editor.SelectTo(GridCell::At(34));
    EXPECT_EQ(grid.SelectionText(), "0 0 6");
    editor.SelectTo(GridCell::At(37));
    EXPECT_EQ(grid.SelectionText(), "6 0");
    editor.MoveTo(GridCell::At(20));
    EXPECT_EQ(grid.SelectionText(), "5");
    editor.SelectTo(GridCell::At(21));
    editor.CharacterTyped("1");
    EXPECT_EQ(grid.Selection().first, 21);
}

TEST_F(EditorTest, TakesPendingWritesBack) {
    Enter(300, "11");
    Enter(301, "12");
    Enter(300, "13");
    program.pending.TakeBack(0);
    EXPECT_EQ(program.grid.Text(GridCell::At(300)), "13") << "a later entry changes it, too";
    EXPECT_EQ(program.pending.Row(1).EditOldValue, "0");
    Enter(300, "14");
    program.pending.TakeBack(2);
    EXPECT_EQ(program.grid.Text(GridCell::At(300)), "13");
    EXPECT_TRUE(program.grid.IsChanged(GridCell::At(300)));
    program.pending.TakeBack(1);
    EXPECT_EQ(program.grid.Text(GridCell::At(300)), "0");
    EXPECT_TRUE(!program.grid.IsChanged(GridCell::At(300)) && program.state.GridChanged);
    EXPECT_EQ(program.pending.Address(0), 301);
    program.pending.TakeBack(0);
    EXPECT_TRUE(program.pending.Count() == 0 && !program.state.GridChanged);
    EXPECT_EQ(program.pending.Row(0).EditAddress, "");
}

TEST_F(EditorTest, NamesTheCurrentByteOnceMessagesHaveGone) {
    program.editorPage.ToggleEditor();
    editor.MoveTo(GridCell::At(2401));
    EXPECT_EQ(test.Status(), "Data Editor Disabled");
    program.statusBar.MsgTimerFired();
    EXPECT_EQ(test.Status(), "2401: R-YR 480p, bits 0 to 3");
    editor.MoveTo(GridCell::At(2085));
    EXPECT_EQ(test.Status(), "2085: TINT, bits 2 to 7");
    editor.MoveTo(GridCell::At(2086));
    EXPECT_EQ(test.Status(), "");
    program.editorPage.ToggleEditor();
    const std::function<void()> ends[] = {[&] { editor.KeyPressed(EditKey::Escape); },
                                          [&] { editor.Scrolled(); },
                                          [&] { editor.SettleEntry(); }};
    for (const auto& end : ends) {
        editor.MoveTo(GridCell::At(2086));
        editor.MoveTo(GridCell::At(2085));
        EXPECT_EQ(test.Status(), "Editing EEPROM Address: 2085");
        end();
        EXPECT_EQ(test.Status(), "2085: TINT, bits 2 to 7");
    }
    program.state.targetDevice = TargetDevice::Secondary;
    program.statusBar.ShowBackground();
    EXPECT_EQ(test.Status(), "");
}

TEST_F(EditorTest, PagesSizesAndTheWarning) {
    const auto enters = [&](Page page) {
        program.editorPage.SwitchPage(page);
        return test.Status() + (program.state.sizeMode == SizeMode::Big ? ", big" : "");
    };
    EXPECT_EQ(enters(Page::Iris), "Iris Settings");
    test.outside.warnAgain = false;
    EXPECT_EQ(enters(Page::Editor), "EEProm Data Editor, big");
    program.editorPage.ToggleEditor();
    EXPECT_EQ(test.Status(), "Data Editor Disabled");
    EXPECT_EQ(enters(Page::Editor), "EEProm Data Editor");
    program.editorPage.ToggleEditor();
    EXPECT_EQ(test.Status(), "Data Editor Enabled");
    EXPECT_EQ(program.state.sizeMode, SizeMode::Big);
    EXPECT_EQ(test.outside.steps.size(), 2U) << "the warning, until it was not wanted again";
    EXPECT_EQ(program.state.editorWarning, "NoWarn");
}

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
    using enum FindDirection;
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
