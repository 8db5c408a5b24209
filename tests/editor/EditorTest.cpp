// The data editor: its keys, what begins an entry, the outcomes of the pending writes, and finding.
#include "editor/EditorPage.h"
#include "editor/Find.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum EditKey;

/// The editor page with the editor on, over a buffer of zeros.
class EditorTest : public testing::Test, protected TestProgram {
  protected:
    EditorTest() {
        program.grid.FillGrid();
        program.editorPage.SwitchPage(Page::Editor);
        program.editorPage.ToggleEditor();
    }
    /// Takes rows of the queue back; then the byte at 300, whether it is changed, and the queue.
    std::string After(const std::string& rowsTakenBack) {
        for (const char row : rowsTakenBack)
            program.pending.TakeBack(row - '0');
        std::string text = program.grid.Text(GridCell::At(300));
        text += program.grid.IsChanged(GridCell::At(300)) ? "!" : "";
        for (int row = 0; row < program.pending.Count(); ++row) {
            const auto [address, before, after] = program.pending.Row(row);
            text.append("; " + address + " " + before + " " + after);
        }
        return text + (program.state.GridChanged ? "; !" : "");
    }
    std::string WritePending() {
        program.pending.WritePending();
        return Status();
    }

    CellEditor& editor = program.cellEditor;
    EepromImage& memory = television.Memory(Chip::Primary);
};

TEST_F(EditorTest, KeysGoRoundAtTheEndsAndAnEmptyTextIsNoChangeWhereZeroStands) {
    for (const auto& [from, key, to] : {std::tuple(8191, Next, 0),
                                        {0, Previous, 8191},
                                        {20, Down, 36},
                                        {8180, Down, 8180},
                                        {36, Up, 20},
                                        {5, Up, 5},
                                        {33, Left, 32},
                                        {32, Left, 32}}) {
        for (const char* text : {"", "5", ""})
            EditByte(from, text, key);
        EXPECT_EQ(program.grid.Current().Address(), to);
        EXPECT_EQ(Status(), "Editing EEPROM Address: " + std::to_string(to));
        EXPECT_EQ(timer.running, std::nullopt);
        EXPECT_EQ(program.pending.Count(), 2);
        program.pending.ClearPendingWrites();
    }
}

TEST_F(EditorTest, TypedCharactersAndNumberModes) {
    for (const auto& [mode, shown, typedA] :
         {std::tuple(NumberMode::Hex, "1FF0 F", "A"), {NumberMode::Decimal, "8176 15", "a"}}) {
        program.numberModeMenu.Select(mode);
        EXPECT_THAT(Status(), StartsWith("Number Mode Changed to "));
        EXPECT_EQ(program.grid.RowAddressText(511) + " " + program.grid.HeadingText(15), shown);
        EXPECT_EQ(program.pending.Row(9).EditAddress, "0") << "an empty row";
        for (const std::string character : {"7", "-", "g", "\xC3\xA9", "a"}) {
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
        program.statusBar.PutStatus("");
        program.numberModeMenu.Select(mode);
        EXPECT_EQ(Status(), "") << "no change";
    }
}

TEST_F(EditorTest, WritePendingAndItsOutcomes) {
    EXPECT_EQ(WritePending(), "There Are No Pending EEP Writes");
    const char* const failed =
        "E R R O R - Verify Failed|Verification of the EEProm failed;\r\n"
        "The EEProm was not programmed correctly, try again.";
    EditByte(300, "11");
    EditByte(301, "13");
    for (const auto& [answer, fault, status, box] :
         {std::tuple(
              Answer::Cancel, Fault{.kind = FaultKind::FlippedBit, .address = 5},
              "EEProm Write Cancelled",
              "V E R I F Y|Write 2 new values to the EEP?\r\nPrimary EEProm on LPT1: 2 bytes"),
          {Answer::Yes, {.kind = FaultKind::FlippedBit, .address = 300}, "", failed}}) {
        television.Inject(fault);
        user.answers = {answer};
        EXPECT_EQ(WritePending(), status);
        EXPECT_THAT(user.TakeBoxes().back(), StartsWith(box));
        EXPECT_EQ(program.pending.Count(), 2);
        EXPECT_TRUE(program.state.GridChanged && !program.state.BufferChanged);
        television.ClearFaults();
    }
    EXPECT_EQ(memory[301], 13) << "a difference does not end the writing";
    EditByte(300, "12");
    EXPECT_TRUE(program.grid.IsChanged(GridCell::At(301)));
    user.answers = {Answer::Yes};
    EXPECT_EQ(WritePending(), "EEP Verified OK; New Data Written to EEProm");
    EXPECT_TRUE(memory[300] == 12 && program.buffer[300] == 12 && program.buffer[301] == 13);
    EXPECT_EQ(Crc(), mCRC32::BufferCrcText(program.buffer));
    EXPECT_TRUE(program.state.BufferChanged && !program.state.GridChanged);
    EXPECT_FALSE(program.grid.IsChanged(GridCell::At(301)));
}

TEST_F(EditorTest, PastesBytesAsIfTypedOrNoneOfThem) {
    const std::string refused =
        "W A R N I N G|The new value was out of range and \r\nhas been discarded. Try again.";
    for (const auto& [first, text] : {std::pair(50, "1 2 256"), {8190, "1 2 3"}, {50, "1 x"}}) {
        editor.MoveTo(GridCell::At(first));
        editor.Paste(text);
        EXPECT_THAT(user.TakeBoxes(), ElementsAre(refused)) << text;
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
    user.answers = {Answer::No};
    editor.Paste("1 2 3 4 5");
    EXPECT_EQ(program.pending.Count(), 0) << "the tenth asked";
    for (const auto& [text, pasted, shown] : {std::tuple(" 0x1F", true, "31"),
                                              {"0x1FF", true, "31"},
                                              {"2F", true, "47"},
                                              {"12", false, "47"}}) {
        EXPECT_EQ(editor.PasteIntoEntry(text), pasted);
        EXPECT_EQ(program.grid.EditText(), shown) << text;
    }
    EXPECT_THAT(user.TakeBoxes(), Contains(refused));
}

TEST_F(EditorTest, ReadsHexadecimalWhereItCannotBeDecimalAndAsksWhereItCouldBe) {
    using enum Answer;
    using Answers = std::deque<Answer>;
    const auto shown = [&](int count) {
        program.grid.MoveCurrent(GridCell::At(50));
        program.grid.SelectTo(GridCell::At(49 + count));
        return program.selection.Text(NumberMode::Decimal);
    };
    for (const auto& [text, answers, bytes, count] :
         {std::tuple("0A 0B 0C 0D", Answers{}, "10 11 12 13", 4),
          {"00 12 34", {}, "0 18 52", 3},
          {"1f 100", {}, "0 0", 2},  // neither
          {"10 0x1F 8", {Yes}, "16 31 8", 3},
          {"10 20", {No}, "10 20", 2},
          {"200 10", {}, "200 10", 2},
          {"7 8", {}, "7 8", 2},
          {"20", {}, "20", 1}}) {
        program.pending.ClearPendingWrites();
        program.grid.FillGrid();
        editor.MoveTo(GridCell::At(50));
        user.answers = answers;
        editor.Paste(text);
        EXPECT_EQ(shown(count), bytes) << text;
        EXPECT_TRUE(user.answers.empty()) << text;
    }
    EXPECT_THAT(user.TakeBoxes(),
                Contains("P A S T E|Are these bytes hexadecimal?\r\n\r\nYes: decimal 16 31 8\r\n"
                         "No: decimal 10 31 8"));
    editor.MoveTo(GridCell::At(50));
    user.answers = {No, No};
    editor.Paste("10 10 10 10 10 10 10 10 10 10 10 10 10 0x1");
    EXPECT_THAT(user.boxes.at(0).text, EndsWith("10 10 10 ...")) << "the first twelve";
    program.numberModeMenu.Select(NumberMode::Hex);
    editor.MoveTo(GridCell::At(50));
    editor.Paste("10 20");
    EXPECT_EQ(shown(2), "16 32");
}

TEST_F(EditorTest, MoreBytesThanTheQueueHasRoomForGoIntoTheBufferAfterOneQuestion) {
    EditByte(301, "99");
    EditByte(40, "98");
    const auto enter = [&](Answer answer) {
        editor.MoveTo(GridCell::At(300));
        user.answers = {answer};
        editor.Paste("1 2 3 4 5 6 7 8 9 1 1 1 1 1 1 1");
        return user.TakeBoxes();
    };
    EXPECT_THAT(enter(Answer::No),
                ElementsAre("P A S T E|Paste 16 bytes? They go into the memory buffer; Write "
                            "Differences brings them to the EEProm."));
    EXPECT_EQ(After(""), "0; 301 0 99; 40 0 98; !");
    enter(Answer::Yes);
    EXPECT_EQ(After(""), "1; 40 0 98; !");
    EXPECT_TRUE(program.buffer[300] == 1 && program.buffer[315] == 1 && program.buffer[40] == 0);
    EXPECT_TRUE(program.state.BufferChanged);
    EXPECT_EQ(Crc(), mCRC32::BufferCrcText(program.buffer));
    EXPECT_EQ(Status(), "16 Bytes Entered in the Memory Buffer");
    EXPECT_EQ(program.grid.Current().Address(), 316);
    program.undo.Undo();
    EXPECT_EQ(After(""), "0; 301 0 99; 40 0 98; !");
    EXPECT_EQ(program.buffer[300], 0);

    editor.SelectTo(GridCell::At(326));
    for (const auto& [text, answers, filled] :
         {std::tuple(std::optional<std::string>(), std::deque<Answer>{}, 0),
          {"256", {}, 0},
          {"0xAB", {Answer::Yes}, 0xAB}}) {
        user.texts = {text};
        user.answers = answers;
        editor.FillSelection();
        EXPECT_EQ(program.buffer[326], filled);
    }
    EXPECT_EQ(program.grid.Selection().first, 316);
    editor.MoveTo(GridCell::At(320));
    editor.SelectTo(GridCell::At(319));
    user.texts = {"7"};
    editor.FillSelection();
    EXPECT_EQ(program.selection.Text(NumberMode::Hex), "07 07");
    EXPECT_EQ(program.pending.Count(), 4);
    EXPECT_EQ(program.history.NextName(Direction::Undo), "Fill of 2 Bytes");
}

TEST_F(EditorTest, TheTextColumnTakesCharactersAsBytes) {
    editor.MoveTo(GridCell::At(300));
    editor.ChangeSide();
    EXPECT_EQ(program.grid.Side(), GridSide::Bytes) << "it is not shown";
    program.editorPage.ToggleTextColumn();
    editor.Click();
    editor.TextEdited("9");
    editor.KeyPressed(Side);
    for (const char* typed : {"T", "\x7F", "\xC3\xA9", "\r", "", " ", "~"})
        editor.CharacterTyped(typed);
    EXPECT_FALSE(program.grid.EntryIsOpen());
    EXPECT_EQ(After(""), "84!; 300 0 9; 300 9 84; 301 0 32; 302 0 126; !");
    EXPECT_EQ(program.grid.Current().Address(), 303);
    program.editorPage.ShowByte(8191);
    EXPECT_FALSE(program.grid.EntryIsOpen()) << "nor by what leads to a byte";
    editor.CharacterTyped("x");
    EXPECT_EQ(program.grid.Current().Address(), 8191);
    program.editorPage.ToggleTextColumn();
    EXPECT_EQ(program.grid.Side(), GridSide::Bytes);
    EXPECT_EQ(Status(), "Text Column Hidden");
}

TEST_F(EditorTest, ASelectionIsSummedUpAndSaved) {
    EditByte(300, "171");
    EditByte(301, "205");
    editor.MoveTo(GridCell::At(299));
    program.statusBar.MsgTimerFired();
    editor.SelectTo(GridCell::At(301));
    EXPECT_EQ(Status(), "299 to 301: 3 bytes, sum 178, CRC32 9D50B022");
    for (const auto& [path, outcome] : {std::pair(std::optional(folder.Path("none/b")), ""),
                                        {{}, ""},
                                        {folder.Path("b"), "Selection Saved"}}) {
        user.files = {path};
        program.statusBar.PutStatus("");
        program.selection.Save();
        EXPECT_EQ(Status(), outcome);
    }
    EXPECT_THAT(user.TakeBoxes(), ElementsAre("E R R O R|The selection could not be saved."));
    EXPECT_EQ(folder.Read("b"), std::string("\0\xAB\xCD", 3));
    EXPECT_EQ(user.fileRequests.back().fileName, "bytes-012B");
    program.grid.MoveCurrent({0, 1});
    program.grid.SelectTo(GridCell::At(8191));
    program.grid.TransferGrid();
    EXPECT_THAT(program.selection.Summary(), EndsWith(Crc())) << "the buffer's";
}

TEST_F(EditorTest, SelectsFromWhereItBegan) {
    const DataGrid& grid = program.grid;
    const auto selected = [this] { return program.selection.Text(NumberMode::Decimal); };
    EditByte(20, "5", Down);
    editor.TextEdited("6");
    editor.SelectTo(GridCell::At(34));
    EXPECT_EQ(selected(), "0 0 6") << "an open entry is committed";
    EXPECT_FALSE(grid.EntryIsOpen());
    editor.SelectTo(GridCell::At(37));
    EXPECT_EQ(selected(), "6 0");
    editor.MoveTo(GridCell::At(20));
    EXPECT_EQ(selected(), "5");
    editor.SelectTo(GridCell::At(21));
    editor.CharacterTyped("1");
    EXPECT_EQ(grid.Selection().first, 21);
}

TEST_F(EditorTest, TakesPendingWritesBack) {
    EditByte(300, "11");
    EditByte(301, "12");
    EditByte(300, "13");
    EXPECT_EQ(After("0"), "13!; 301 0 12; 300 0 13; !") << "a later entry changes it, too";
    EditByte(300, "14");
    EXPECT_EQ(After("2"), "13!; 301 0 12; 300 0 13; !");
    EXPECT_EQ(After("1"), "0; 301 0 12; !");
    EXPECT_EQ(After("0"), "0");
    EXPECT_EQ(program.pending.Row(0).EditAddress, "");
    EditByte(300, "11");
    program.buffer[300] = 83;
    program.editorPage.RefillGrid();
    program.pending.AddPendingWrite({300, {0}, {11}});
    EXPECT_EQ(After("0"), "83") << "of another image";
}

TEST_F(EditorTest, AnOpenEntryIsSettledBeforeTheQueueIsWrittenOrARowTakenBack) {
    using enum Answer;
    const char* const taken = "EEP Verified OK; New Data Written to EEProm";
    int value = 10;  // of the last byte entered
    for (const auto& [answers, takesBack, fault, status, left] :
         {std::tuple(std::deque{No}, true, std::uint16_t{0}, "", 0),
          {{Yes, Yes}, true, 0, taken, 0},
          {{Yes, Yes}, false, 0, taken, 0},
          {{No}, false, 0, "There Are No Pending EEP Writes", 0},
          {{Yes, Yes}, false, 3, "", 10}}) {
        program.pending.ClearPendingWrites();
        for (int address = 0; address < 9; ++address)
            EditByte(address, std::to_string(++value));
        editor.TextEdited(std::to_string(++value));
        user.answers = answers;
        if (fault != 0)
            television.Inject({.kind = FaultKind::FlippedBit, .address = fault});
        takesBack ? program.editorPage.TakeBackPending(8) : program.editorPage.WritePending();
        EXPECT_TRUE(user.answers.empty()) << "what failed is not tried again";
        EXPECT_EQ(program.pending.Count(), left);
        EXPECT_THAT(Status(), StartsWith(status));
    }
    user.answers = {Yes, Yes};
    EditByte(30, "5");
    EXPECT_EQ(Status(), "Pending EEP Writes Are Full; Change Discarded");
    EXPECT_EQ(program.grid.Current().Address(), 30);
    television.ClearFaults();
    editor.MoveTo(GridCell::At(20));
    editor.TextEdited("99");
    user.answers = {Yes, Yes, Yes};
    program.editorPage.WritePending();
    EXPECT_TRUE(program.pending.Count() == 0 && memory[20] == 99) << "and the eleventh";
    EditByte(300, "11");
    editor.MoveTo(GridCell::At(400));
    program.editorPage.TakeBackPending(1);
    EXPECT_EQ(program.pending.Count(), 1);
    editor.TextEdited("7");
    program.editorPage.TakeBackPending(0);
    EXPECT_EQ(program.pending.Address(0), 400);
}

TEST_F(EditorTest, NamesTheCurrentByteOnceMessagesHaveGone) {
    const std::string tint = "2085: TINT, bits 2 to 7";
    program.editorPage.ToggleEditor();
    EXPECT_EQ(Status(), "Data Editor Disabled");
    for (const auto& [address, named] :
         {std::pair(2401, std::string("2401: R-YR 480p, bits 0 to 3")), {2085, tint}, {2086, ""}}) {
        editor.MoveTo(GridCell::At(address));
        program.statusBar.MsgTimerFired();
        EXPECT_EQ(Status(), named);
    }
    program.editorPage.ToggleEditor();
    const std::function<void()> ends[] = {[&] { editor.KeyPressed(EditKey::Escape); },
                                          [&] { editor.Scrolled(); },
                                          [&] { editor.SettleEntry(); }};
    for (const auto& end : ends) {
        editor.MoveTo(GridCell::At(2086));
        editor.MoveTo(GridCell::At(2085));
        program.statusBar.ShowStatus("a message", 5);
        program.statusBar.MsgTimerFired();
        EXPECT_EQ(Status(), "Editing EEPROM Address: 2085");
        end();
        EXPECT_EQ(Status(), tint);
    }
    program.state.targetDevice = TargetDevice::Secondary;
    program.statusBar.ShowBackground();
    EXPECT_EQ(Status(), "");
}

TEST_F(EditorTest, LeavingThePageAndReadingAskAboutTheGrid) {
    EditByte(300, "11");
    user.answers = {Answer::No};
    program.wholeDevice.ReadEntireEep();
    for (const bool copies : {false, true}) {
        EXPECT_EQ(program.grid.Text(GridCell::At(300)), "11");
        user.answers = copies ? std::deque{Answer::Yes} : std::deque{Answer::No, Answer::No};
        program.editorPage.SwitchPage(Page::Iris);
        EXPECT_EQ(program.state.GridChanged, !copies);
        EXPECT_EQ(program.buffer[300], copies ? 11 : 0);
        program.editorPage.SwitchPage(Page::Editor);
    }
    const auto copy = StartsWith("Data Modified|"), discard = StartsWith("C A U T I O N|");
    EXPECT_THAT(user.TakeBoxes(), ElementsAre(discard, copy, discard, copy));
}

TEST_F(EditorTest, PagesSizesAndTheWarning) {
    const auto enters = [&](Page page) {
        program.editorPage.SwitchPage(page);
        return Status() + (program.state.sizeMode == SizeMode::Big ? ", big" : "");
    };
    EXPECT_EQ(enters(Page::Iris), "Iris Settings");
    outside.warnAgain = false;
    EXPECT_EQ(enters(Page::Editor), "EEProm Data Editor, big");
    program.editorPage.ToggleEditor();
    EXPECT_EQ(Status(), "Data Editor Disabled");
    EXPECT_EQ(enters(Page::Editor), "EEProm Data Editor");
    program.editorPage.ToggleEditor();
    EXPECT_EQ(Status(), "Data Editor Enabled");
    EXPECT_EQ(program.state.sizeMode, SizeMode::Big);
    EXPECT_EQ(outside.steps.size(), 2U) << "the warning, until it was not wanted again";
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
    using enum FindKind;
    TestProgram test;
    Program& program = test.program;
    for (const std::size_t address : {10U, 20U, 8000U})
        program.buffer[address] = 'T';
    program.buffer[8001] = 'v';
    program.grid.FillGrid();
    program.grid.MoveCurrent(GridCell::At(10));
    EXPECT_FALSE(program.find.LookFor("256", Bytes) || program.find.KnowsWhat());
    for (const auto& [text, kind, direction, found] :
         {std::tuple("0x54", Bytes, Next, "20: 2 of 3"),
          {"0x54", Bytes, Next, "8000: 3 of 3"},
          {"0x54", Bytes, Next, "10: 1 of 3, wrapped"},
          {"0x54", Bytes, Previous, "8000: 3 of 3, wrapped"},
          {"0x54", Bytes, Previous, "20: 2 of 3"},
          {"Tv", Text, Next, "8000: 1 of 1"},
          {"Tv", Text, Next, "8000: 1 of 1, wrapped"},
          {"TV", Text, Next, "8000: Not found"},
          {"tint", Name, Next, "2085: 1 of 1, wrapped"},
          {"GAIN", Name, Next, "2085: Not found"}}) {
        EXPECT_FALSE(program.find.LookFor("", kind));
        ASSERT_TRUE(program.find.LookFor(text, kind));
        program.find.Go(direction);
        EXPECT_EQ(std::to_string(program.grid.Current().Address()) + ": " + test.Status(), found);
    }
    program.GoTo({2401, 8});
    program.GoTo({2401, std::nullopt});
    EXPECT_EQ(test.outside.steps.at(test.outside.steps.size() - 2), "cell 8");
    EXPECT_EQ(program.grid.Current().Address(), 2401);
}

}  // namespace
}  // namespace tarnwell
