// The data editor: entries and their keys, pending writes and their outcomes.
#include "editor/EditorPage.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum EditKey;

/// The editor page with the editor on, over a buffer of zeros.
class EditorTest : public testing::Test {
  protected:
    EditorTest() {
        program.grid.FillGrid();
        program.editorPage.SwitchPage(Page::Editor);
        program.editorPage.ToggleEditor();
    }
    void Enter(int address, const std::string& text, EditKey key = Next) {
        editor.MoveTo(At(address));
        editor.Click();
        editor.TextEdited(text);
        editor.KeyPressed(key);
    }
    std::string WritePending() {
        program.pending.WritePending();
        return test.Status();
    }
    static GridCell At(int address) { return {address / 16, address % 16 + 1}; }
    const std::string& Text(int address) const { return program.grid.Text(At(address)); }
    int Current() const { return program.grid.Current().Address(); }
    int Queued() const { return program.pending.Count(); }
    std::string Row(int row) const {
        const EditRecord& entry = program.pending.Row(row);
        return entry.EditAddress + ":" + entry.EditOldValue + ">" + entry.EditNewValue;
    }

    TestProgram test;
    Program& program = test.program;
    CellEditor& editor = program.cellEditor;
    EepromImage& memory = test.television.Memory(Chip::Primary);
};

TEST_F(EditorTest, KeyTable) {
    const struct {
        int from;
        EditKey key;
        int to;
    } rows[] = {
        {20, Next, 21},     {15, Next, 16},      {8191, Next, 0}, {20, Previous, 19},
        {16, Previous, 15}, {0, Previous, 8191}, {20, Left, 19},  {16, Left, 16},
        {20, Down, 36},     {8180, Down, 8180},  {20, Up, 4},     {7, Up, 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.from);
        const std::string from = std::to_string(row.from);
        for (const char* text : {"", "5", ""}) {
            Enter(row.from, text, row.key);
            EXPECT_EQ(Current(), row.to);
            EXPECT_TRUE(program.grid.EntryIsOpen());
            EXPECT_EQ(test.Status(), "Editing EEPROM Address: " + std::to_string(row.to));
            EXPECT_EQ(test.timer.running, std::nullopt);
        }
        EXPECT_EQ(Queued(), 2) << "an empty text is no change where 0 stands";
        EXPECT_EQ(Row(0) + " " + Row(1), from + ":0>5 " + from + ":5>0");
        program.pending.ClearPendingWrites();
    }
}

TEST_F(EditorTest, EntriesThatBeginWithACharacterAndEndWithoutACommit) {
    for (const bool hex : {true, false}) {
        program.numberModeMenu.Select(hex ? NumberMode::Hex : NumberMode::Decimal);
        for (const std::string character : {"a", "7", "-", "g", "\xC3\xA9"}) {
            editor.CharacterTyped(character);
            EXPECT_EQ(program.grid.EditText(), hex && character == "a" ? "A" : character);
        }
        editor.KeyPressed(Backspace);
        EXPECT_EQ(program.grid.EditText(), "");
        editor.CharacterTyped("\r");
        EXPECT_EQ(program.grid.EditText(), "0");
    }
    const std::function<void()> endings[] = {
        [&] { editor.KeyPressed(Escape); },
        [&] { editor.Scrolled(); },
        [&] { program.grid.FillGrid(); },
        [&] { program.editorPage.ToggleEditor(); },
    };
    for (const auto& end : endings) {
        editor.Click();
        editor.TextEdited("4");
        end();
        EXPECT_FALSE(program.grid.EntryIsOpen());
        program.editorPage.SettleGridEdits();
    }
    EXPECT_EQ(Text(0) + std::to_string(Queued()), "00");
    editor.CharacterTyped("7");
    editor.Click();
    EXPECT_FALSE(program.grid.EntryIsOpen()) << "the editor is off";
}

TEST_F(EditorTest, NumberModeConvertsAllThatIsShown) {
    Enter(8191, "200");
    program.editorPage.ToggleEditor();
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(test.Status(), "Number Mode Changed to Hexadecimal");
    EXPECT_EQ(program.grid.RowAddressText(511) + program.grid.HeadingText(15), "1FF0F");
    EXPECT_EQ(Row(0) + " " + Row(9) + " " + Text(8191), "1FFF:0>C8 0:0>0 C8");
    test.WillAnswer({Answer::Yes});
    WritePending();
    EXPECT_EQ(memory[8191], 200);
    program.numberModeMenu.Select(NumberMode::Decimal);
    EXPECT_EQ(test.Status() + Text(8191), "Number Mode Changed to Decimal200");
    program.statusBar.PutStatus("");
    program.numberModeMenu.Select(NumberMode::Decimal);
    EXPECT_EQ(test.Status(), "");
}

TEST_F(EditorTest, KeysChangeNothingInAGridThatWasNeverFilled) {
    TestProgram fresh;
    fresh.program.editorPage.ToggleEditor();
    fresh.program.cellEditor.Click();
    for (const auto key : {Next, Down, Up, Previous})
        fresh.program.cellEditor.KeyPressed(key);
    EXPECT_EQ(fresh.program.pending.Count(), 0);
    fresh.program.cellEditor.TextEdited("0");
    fresh.program.cellEditor.KeyPressed(Next);
    EXPECT_EQ(fresh.program.pending.Count(), 1);
    fresh.program.grid.TransferGrid();
    EXPECT_EQ(fresh.Crc(), "15A36921");
}

TEST_F(EditorTest, WritePendingAndItsOutcomes) {
    EXPECT_EQ(WritePending(), "There Are No Pending EEP Writes");
    const std::string askTwo = "V E R I F Y|Write 2 new values to the EEP?";
    const std::string noAnswer = "E R R O R|There is an I2C bus or\r\nInterface Hardware Problem";
    const std::string verifyFailed =
        "E R R O R - Verify Failed|Verification of the EEProm failed;\r\n"
        "The EEProm was not programmed correctly, try again.";
    const struct {
        Fault fault;
        Answer answer;
        std::string status, box;
    } rows[] = {
        {{}, Answer::No, "EEProm Write Cancelled", askTwo},
        {{FaultKind::DeviceSilent}, Answer::Yes, "I2C Operation Aborted", noAnswer},
        {{FaultKind::DeviceSilent, {WireEvent::WriteCycle, 1}},
         Answer::Yes,
         "I2C Operation Aborted",
         noAnswer},
        {{.kind = FaultKind::FlippedBit, .address = 300}, Answer::Yes, "", verifyFailed},
    };
    Enter(300, "11");
    Enter(301, "13");
    for (const auto& row : rows) {
        if (row.answer == Answer::Yes)
            test.television.Inject(row.fault);
        test.user.answers = {row.answer};
        EXPECT_EQ(WritePending(), row.status);
        EXPECT_EQ(test.user.TakeBoxes().back(), row.box);
        EXPECT_EQ(Queued(), 2);
        EXPECT_TRUE(program.state.gridChanged && !program.state.bufferChanged);
        test.television.ClearFaults();
    }
    EXPECT_EQ(test.user.beeps, 1);
    EXPECT_EQ(test.timer.running, std::chrono::seconds(30));

    EXPECT_EQ(memory[301], 13) << "a difference does not end the writing";
    Enter(300, "12");
    EXPECT_TRUE(program.grid.IsChanged(At(301)));
    test.user.answers = {Answer::Yes};
    EXPECT_EQ(WritePending(), "EEP Verified OK; New Data Written to EEProm");
    EXPECT_EQ(memory[300] * 100 + memory[301], 1213);
    EXPECT_EQ(program.buffer[300] * 100 + program.buffer[301], 1213);
    EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(program.buffer));
    EXPECT_FALSE(program.grid.IsChanged(At(301)) || program.state.gridChanged);
}

TEST_F(EditorTest, AFullQueueTakesNoChange) {
    test.WillAnswer({Answer::Yes, Answer::No});
    for (const char digit : std::string("1234567890"))
        Enter(5, {digit});
    const std::function<void()> ways[] = {
        [&] { editor.KeyPressed(Next); },
        [&] { EXPECT_FALSE(editor.MoveTo(At(5))); },
        [&] { program.editorPage.SettleGridEdits(); },
    };
    editor.MoveTo(At(77));
    program.grid.SetGridChanged(false);
    for (const auto& commit : ways) {
        editor.TextEdited("51");
        test.WillAnswer({Answer::Yes, Answer::No});
        commit();
        EXPECT_TRUE(test.user.answers.empty());
        EXPECT_EQ(test.Status(), "Pending EEP Writes Are Full; Change Discarded");
        EXPECT_EQ(Text(77) + std::to_string(Current()), "077");
        EXPECT_EQ(Queued(), 10);
        EXPECT_FALSE(program.state.gridChanged);
    }
}

TEST_F(EditorTest, PagesSizesAndTheWarning) {
    using enum SizeMode;
    const auto enters = [&](Page page) {
        program.editorPage.SwitchPage(page);
        return std::pair(test.Status(), program.state.sizeMode);
    };
    EXPECT_EQ(enters(Page::Iris), std::pair(std::string("Iris Settings"), Small));
    test.outside.warnAgain = false;
    EXPECT_EQ(enters(Page::Editor), std::pair(std::string("EEProm Data Editor"), Big));
    program.editorPage.ToggleEditor();
    EXPECT_EQ(test.Status(), "Data Editor Disabled");
    EXPECT_EQ(enters(Page::Global).second, Small);
    EXPECT_EQ(enters(Page::Editor).second, Small);
    program.editorPage.ToggleEditor();
    EXPECT_EQ(test.Status(), "Data Editor Enabled");
    EXPECT_EQ(program.state.sizeMode, Big);
    EXPECT_EQ(test.outside.steps.size(), 2U) << "the warning, until it was not wanted again";
    EXPECT_EQ(program.state.editorWarning, "NoWarn");
}

}  // namespace
}  // namespace tarnwell
