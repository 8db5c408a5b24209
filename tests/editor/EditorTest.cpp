// The data editor: entries and their keys, the queue of pending writes, the questions on the way.
#include "editor/EditorPage.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum EditKey;

const std::string kAskCopy =
    "Data Modified|Values in the Data Grid have been modified.\r\n\r\n"
    "Copy changes to the Tarnwell Memory Buffer?";
const std::string kAskMerge =
    "D A T A - Changed|Values in the Data Grid have been modified.\r\n\r\n"
    "Merge the changes with the Memory Buffer?";
const std::string kAskDiscard = "C A U T I O N|Really discard the Data Grid changes?";
const std::string kAskNow =
    "Write Changes?|There are now ten pending EEP changes. Click <Yes> to write the EEP changes "
    "now\r\nor click <No> to postpone the pending EEP write until later.\r\n\r\n"
    "If <No> is clicked, the entire EEP must be written later to save these changes.\r\n\r\n"
    "Do you want to write the EEP changes now?";
const std::string kAskTen = "V E R I F Y|Write 10 new values to the EEP?";
const std::string kVerifyFailed =
    "E R R O R - Verify Failed|Verification of the EEProm failed;\r\n"
    "The EEProm was not programmed correctly, try again.";
const std::string kFull = "Pending EEP Writes Are Full; Change Discarded";
const std::string kWritten = "EEP Verified OK; New Data Written to EEProm";

/// The editor page with the editor on, over a buffer of zeros.
class EditorTest : public testing::Test {
  protected:
    EditorTest() {
        program.grid.FillGrid();
        program.editorPage.SwitchPage(Page::Editor);
        program.editorPage.ToggleEditor();
    }
    /// Enters the text in the cell at `address` and presses the key.
    void Enter(int address, const std::string& text, EditKey key = Next) {
        program.cellEditor.MoveTo(At(address));
        program.cellEditor.Click();
        program.cellEditor.TextEdited(text);
        program.cellEditor.KeyPressed(key);
    }
    void EnterMany(int count) {
        for (int address = 0; address < count; ++address)
            Enter(address, std::to_string(address + 1));
    }
    static GridCell At(int address) { return {address / 16, address % 16 + 1}; }
    int Current() const { return program.grid.Current().Address(); }
    const std::string& Text(int address) const { return program.grid.Text(At(address)); }
    std::string RowText(int row) const {
        const EditRecord& entry = program.pending.Row(row);
        return entry.EditAddress + ":" + entry.EditOldValue + ">" + entry.EditNewValue;
    }

    TestProgram test;
    Program& program = test.program;
    EepromImage& memory = test.television.Memory(Chip::Primary);
};

TEST_F(EditorTest, KeyTable) {
    const struct {
        int from;
        EditKey key;
        int to;
    } rows[] = {
        {20, Next, 21},   {15, Next, 16},     {8191, Next, 0},   {20, Previous, 19},
        {16, Previous, 15}, {0, Previous, 8191}, {20, Left, 19},  {16, Left, 16},
        {20, Down, 36},   {8180, Down, 8180}, {20, Up, 4},       {7, Up, 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.from);
        const int queued = program.pending.Count();
        Enter(row.from, "", row.key);
        EXPECT_EQ(Current(), row.to) << "an empty text is the 0 that stands there";
        EXPECT_EQ(program.pending.Count(), queued);
        EXPECT_TRUE(program.grid.EntryIsOpen());
        EXPECT_EQ(program.grid.EditText(), "0");
        EXPECT_EQ(test.Status(), "Editing EEPROM Address: " + std::to_string(row.to));
        EXPECT_EQ(test.timer.running, std::nullopt);
        Enter(row.from, "5", row.key);
        EXPECT_EQ(Text(row.from), "5");
        EXPECT_EQ(Current(), row.to);
        EXPECT_EQ(RowText(0), std::to_string(row.from) + ":0>5");
        Enter(row.from, "", row.key);
        EXPECT_EQ(RowText(1), std::to_string(row.from) + ":5>0");
        program.pending.ClearPendingWrites();
    }
    EXPECT_THAT(test.user.TakeBoxes(), IsEmpty());
    Enter(9, "12\xC3\xA9", Backspace);
    EXPECT_EQ(program.grid.EditText(), "12");
    program.cellEditor.KeyPressed(Escape);
    EXPECT_EQ(program.grid.EditText(), "0");
    EXPECT_FALSE(program.grid.EntryIsOpen());
    program.cellEditor.MoveTo(At(10));
    program.cellEditor.TextEdited("4");
    program.cellEditor.Scrolled();
    EXPECT_EQ(Text(9) + Text(10), "00");
    program.cellEditor.Click();
    program.cellEditor.TextEdited("4");
    program.cellEditor.MoveTo(At(900));
    EXPECT_EQ(Text(10), "4");
    program.cellEditor.TextEdited("");
    program.cellEditor.MoveTo(At(901));
    EXPECT_EQ(program.pending.Count(), 1);
}

TEST_F(EditorTest, TypedTextsInBothModes) {
    for (const NumberMode mode : {NumberMode::Decimal, NumberMode::Hex}) {
        const bool hex = mode == NumberMode::Hex;
        program.numberModeMenu.Select(mode);
        const std::string warning = std::string("W A R N I N G|The new value was out of range and") +
                                    (hex ? "" : " ") + "\r\nhas been discarded. Try again.";
        for (const std::string text :
             {hex ? "100" : "256", "-", "4294967296", hex ? "G" : "FF", "7 "}) {
            program.grid.SetGridChanged(false);
            Enter(40, text);
            EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(warning)) << text;
            EXPECT_EQ(Text(40), "0");
            EXPECT_EQ(Current(), 41) << "the cursor moves all the same";
            EXPECT_TRUE(program.state.gridChanged);
        }
        EXPECT_EQ(program.pending.Count(), 0);
        for (const std::string character : {"a", "7", "-", "g"}) {
            program.cellEditor.CharacterTyped(character);
            EXPECT_EQ(program.grid.EditText(), hex && character == "a" ? "A" : character);
            EXPECT_TRUE(program.grid.EntryIsOpen());
        }
        program.cellEditor.CharacterTyped("\r");
        EXPECT_EQ(program.grid.EditText(), "0");
    }
    program.editorPage.ToggleEditor();
    program.cellEditor.CharacterTyped("7");
    program.cellEditor.Click();
    program.cellEditor.MoveTo(At(3));
    EXPECT_FALSE(program.grid.EntryIsOpen());
    EXPECT_EQ(Current(), 3);
}

TEST_F(EditorTest, NumberModeConvertsAllThatIsShown) {
    program.cells.ClearSettingCells();
    Enter(8191, "200");
    Enter(16, "010", Escape);
    Enter(16, "010");
    program.editorPage.ToggleEditor();
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(test.Status(), "Number Mode Changed to Hexadecimal");
    program.statusBar.PutStatus("");
    program.numberModeMenu.Select(NumberMode::Hex);
    EXPECT_EQ(test.Status(), "");
    EXPECT_EQ(Text(8191) + Text(16) + Text(0), "C8A0");
    EXPECT_EQ(program.grid.RowAddressText(511) + program.grid.HeadingText(15), "1FF0F");
    EXPECT_EQ(RowText(0) + " " + RowText(1) + " " + RowText(9), "1FFF:0>C8 10:0>A 0:0>0");
    EXPECT_EQ(program.pending.Count(), 2);
    EXPECT_EQ(program.cells.Caption(71), "0");
    program.cells.ShowValue(0, 255);
    test.WillAnswer({Answer::Yes});
    program.pending.WritePending();
    EXPECT_EQ(memory[8191], 200);
    EXPECT_EQ(memory[16], 10);

    program.numberModeMenu.Select(NumberMode::Decimal);
    EXPECT_EQ(test.Status(), "Number Mode Changed to Decimal");
    EXPECT_EQ(Text(8191) + Text(16) + program.cells.Caption(0), "20010255");
}

TEST_F(EditorTest, KeysChangeNothingInAGridThatWasNeverFilled) {
    TestProgram fresh;
    fresh.program.editorPage.ToggleEditor();
    for (const auto key : {Next, Down, Up, Previous}) {
        fresh.program.cellEditor.Click();
        fresh.program.cellEditor.KeyPressed(key);
    }
    EXPECT_EQ(fresh.program.pending.Count(), 0);
    fresh.program.cellEditor.TextEdited("0");
    fresh.program.cellEditor.KeyPressed(Next);
    EXPECT_EQ(fresh.program.pending.Count(), 1);
    fresh.program.grid.TransferGrid();
    EXPECT_EQ(fresh.Crc(), "15A36921");
}

TEST_F(EditorTest, WritePendingAndItsOutcomes) {
    program.pending.WritePending();
    EXPECT_EQ(test.Status(), "There Are No Pending EEP Writes");
    const auto expectKept = [&](const std::string& status, const std::string& box) {
        program.pending.WritePending();
        EXPECT_EQ(test.Status(), status);
        EXPECT_EQ(test.user.TakeBoxes().back(), box);
        EXPECT_EQ(program.pending.Count(), 1);
        EXPECT_TRUE(program.state.gridChanged && !program.state.bufferChanged);
        test.television.ClearFaults();
    };
    const std::string askOne = "V E R I F Y|Write 1 new value to the EEP?";
    const std::string noAnswer = "E R R O R|There is an I2C bus or\r\nInterface Hardware Problem";
    Enter(300, "11");
    test.WillAnswer({Answer::No, Answer::Yes, Answer::Yes});
    expectKept("EEProm Write Cancelled", askOne);
    test.television.Inject({.kind = FaultKind::DeviceSilent});
    expectKept("I2C Operation Aborted", noAnswer);
    test.television.Inject(
        {.kind = FaultKind::DeviceSilent, .begins = {WireEvent::WriteCycle, 1}});
    expectKept("I2C Operation Aborted", noAnswer);
    test.television.Inject({.kind = FaultKind::LostWrite});
    expectKept("", kVerifyFailed);
    EXPECT_EQ(test.user.beeps, 1);
    EXPECT_EQ(test.timer.running, std::chrono::seconds(30));

    Enter(300, "12");
    Enter(301, "13");
    EXPECT_TRUE(program.grid.IsChanged(At(301)));
    test.WillAnswer({Answer::Yes});
    program.pending.WritePending();
    EXPECT_EQ(test.user.TakeBoxes().back(), "V E R I F Y|Write 3 new values to the EEP?");
    EXPECT_EQ(test.Status(), kWritten);
    EXPECT_EQ(memory[300] * 100 + memory[301], 1213);
    EXPECT_EQ(program.buffer[300] * 100 + program.buffer[301], 1213);
    EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(program.buffer));
    EXPECT_EQ(program.pending.Count(), 0);
    EXPECT_TRUE(program.state.bufferChanged && !program.state.gridChanged);
    EXPECT_FALSE(program.grid.IsChanged(At(301)));
}

TEST_F(EditorTest, TheTenthEntryAndAFullQueue) {
    test.WillAnswer({Answer::No});
    EnterMany(10);
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kAskNow));
    EXPECT_EQ(program.pending.Count(), 0);
    EXPECT_EQ(RowText(0), ":>");
    EXPECT_EQ(Text(9), "10");
    EXPECT_TRUE(program.state.gridChanged);

    test.WillAnswer({Answer::Yes, Answer::No});
    for (int address = 0; address < 10; ++address)
        Enter(address, "50");
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kAskNow, kAskTen));
    EXPECT_EQ(program.pending.Count(), 10);

    const auto refused = [&](const auto& act, int current) {
        test.WillAnswer({Answer::Yes, Answer::No});
        act();
        EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(kAskNow, kAskTen));
        EXPECT_EQ(Text(77), "0");
        EXPECT_EQ(Current(), current);
        EXPECT_EQ(test.Status(), kFull);
        EXPECT_EQ(program.pending.Count(), 10);
    };
    program.grid.SetGridChanged(false);
    refused([&] { Enter(77, "51"); }, 77);
    EXPECT_FALSE(program.state.gridChanged);
    EXPECT_EQ(program.grid.EditText(), "0");
    program.cellEditor.TextEdited("52");
    refused([&] { EXPECT_FALSE(program.cellEditor.MoveTo(At(5))); }, 77);
    program.cellEditor.TextEdited("53");
    refused([&] { EXPECT_TRUE(program.editorPage.SettleGridEdits()); }, 77);
    EXPECT_FALSE(program.grid.EntryIsOpen());
    Enter(77, "999");
    EXPECT_EQ(test.user.TakeBoxes().size(), 1U) << "the range check comes first";

    test.WillAnswer({Answer::Yes, Answer::Yes});
    Enter(77, "54");
    EXPECT_EQ(program.buffer[0], 50);
    EXPECT_EQ(program.buffer[77], 0);
    EXPECT_EQ(RowText(0), "77:0>54");
    EXPECT_TRUE(program.state.gridChanged);
    test.WillAnswer({Answer::Yes, Answer::Yes});
    EnterMany(9);
    EXPECT_EQ(program.buffer[77] * 100 + program.buffer[8], 5409) << "the tenth is in the transfer";
    EXPECT_EQ(memory[8], 9);
    EXPECT_EQ(program.pending.Count(), 0);
    EXPECT_FALSE(program.state.gridChanged);
}

TEST_F(EditorTest, QuestionsBeforeEditsCouldBeLost) {
    const auto leave = [&] {
        program.editorPage.SwitchPage(Page::Iris);
        EXPECT_EQ(test.Status(), "Iris Settings");
        EXPECT_EQ(program.state.sizeMode, SizeMode::Small);
        program.editorPage.SwitchPage(Page::Editor);
        EXPECT_EQ(test.Status(), "EEProm Data Editor");
        EXPECT_EQ(program.state.sizeMode, SizeMode::Big);
    };
    const auto openMenu = [&] { program.editorPage.SettleGridEdits(); };
    const auto read = [&] { program.wholeDevice.ReadEntireEep(); };
    const auto merge = [&] { program.settings.MergeSettingsWithBuffer(); };
    const auto write = [&] {
        program.state.eepRead = true;
        program.settings.WriteSettingsToEep();
    };
    const struct {
        std::function<void()> act;
        std::vector<Answer> answers;
        std::vector<std::string> boxes;
        char kept;  ///< 'B' in the buffer, 'G' in the grid, '-' nowhere
    } rows[] = {
        {leave, {Answer::Yes}, {kAskCopy}, 'B'},
        {leave, {Answer::No, Answer::Yes}, {kAskCopy, kAskDiscard}, '-'},
        {leave, {Answer::No, Answer::No}, {kAskCopy, kAskDiscard}, 'G'},
        {openMenu, {Answer::Yes}, {kAskMerge}, 'B'},
        {openMenu, {Answer::No, Answer::Yes}, {kAskMerge, kAskDiscard}, '-'},
        {openMenu, {Answer::No, Answer::No}, {kAskMerge, kAskDiscard}, 'G'},
        {read, {Answer::No}, {kAskDiscard}, 'G'},
        {merge, {Answer::No}, {kAskDiscard}, 'G'},
        {write, {Answer::No}, {kAskDiscard}, 'G'},
        {merge, {Answer::Yes}, {kAskDiscard}, '-'},
        {read, {Answer::Yes}, {kAskDiscard}, '-'},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        program.buffer.fill(0);
        program.grid.FillGrid();
        program.grid.SetGridChanged(false);
        program.pending.ClearPendingWrites();
        memory[600] = 66;
        if (row.boxes[0] != kAskDiscard) {
            row.act();
            EXPECT_THAT(test.user.TakeBoxes(), IsEmpty()) << "nothing has been edited";
        }
        program.cellEditor.MoveTo(At(600));
        program.cellEditor.Click();
        program.cellEditor.TextEdited("77");
        test.user.answers.assign(row.answers.begin(), row.answers.end());
        row.act();
        EXPECT_EQ(test.user.TakeBoxes(), row.boxes);
        EXPECT_TRUE(test.user.answers.empty());
        EXPECT_FALSE(program.grid.EntryIsOpen());
        EXPECT_EQ(program.state.gridChanged, row.kept == 'G');
        EXPECT_EQ(program.pending.Count(), row.kept == '-' ? 0 : 1);
        EXPECT_EQ(Text(600) == "77", row.kept != '-');
        EXPECT_EQ(program.buffer[600] == 77, row.kept == 'B');
    }
    EXPECT_EQ(program.buffer[600], 66);
}

TEST_F(EditorTest, TargetAndSwitch) {
    Enter(1, "1");
    test.WillAnswer({Answer::Cancel, Answer::Ok});
    program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    program.wholeDevice.SelectEeprom(TargetDevice::Primary);
    EXPECT_EQ(program.pending.Count(), 1);
    program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    EXPECT_EQ(program.pending.Count(), 0);
    EXPECT_EQ(Text(1), "1");
    EXPECT_TRUE(program.state.gridChanged);

    program.cellEditor.TextEdited("8");
    program.editorPage.ToggleEditor();
    EXPECT_EQ(Text(2), "0");
    EXPECT_EQ(test.Status(), "Data Editor Disabled");
    EXPECT_EQ(program.state.sizeMode, SizeMode::Small);
    program.editorPage.ToggleEditor();
    EXPECT_EQ(test.Status(), "Data Editor Enabled");
    EXPECT_EQ(program.state.sizeMode, SizeMode::Big);
    EXPECT_FALSE(program.grid.EntryIsOpen());

    test.outside.steps.clear();
    for (const bool again : {true, false, true}) {
        test.outside.warnAgain = again;
        program.grid.SetGridChanged(false);
        program.editorPage.SwitchPage(Page::Chroma);
        program.editorPage.SwitchPage(Page::Editor);
    }
    EXPECT_EQ(test.outside.steps.size(), 2U);
    EXPECT_EQ(program.state.editorWarning, "NoWarn");
}

}  // namespace
}  // namespace tarnwell
