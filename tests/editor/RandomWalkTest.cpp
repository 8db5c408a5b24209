// A long random use of the data editor, against a small model of its grid, queue and buffer.
#include <random>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

constexpr int kSteps = 10'000;
constexpr std::size_t kBytes = 8192;
const std::string kModified = "Values in the Data Grid have been modified.\r\n\r\n";
const std::string kAskCopy =
    "Data Modified|" + kModified + "Copy changes to the Tarnwell Memory Buffer?";
const std::string kAskMerge =
    "D A T A - Changed|" + kModified + "Merge the changes with the Memory Buffer?";
const std::string kAskDiscard = "C A U T I O N|Really discard the Data Grid changes?";
const std::string kAskNow =
    "Write Changes?|There are now ten pending EEP changes. Click <Yes> to write the EEP changes "
    "now\r\nor click <No> to postpone the pending EEP write until later.\r\n\r\nIf <No> is "
    "clicked, the entire EEP must be written later to save these changes.\r\n\r\n"
    "Do you want to write the EEP changes now?";
const std::string kFull = "Pending EEP Writes Are Full; Change Discarded";

/// What the program should do, written without it.
struct Model {
    struct Entry {
        std::size_t address;
        std::string before, after;
    };
    using Bytes = std::vector<std::uint8_t>;

    NumberMode mode = NumberMode::Decimal;
    bool on = false, onPage = false, changed = false, open = false;
    std::size_t target = 0;
    std::size_t current = 0;
    std::string edit;
    std::vector<std::string> grid = std::vector<std::string>(kBytes);
    std::vector<Entry> queue;
    Bytes buffer = Bytes(kBytes);
    Bytes devices[2];

    std::map<std::string, bool> answers;  ///< to the questions of one step, by their titles
    std::vector<std::string> asked;
    std::map<std::size_t, int> edits;  ///< committed, and nowhere but in the grid
    bool discarded = false;

    std::string Form(std::size_t value) const {
        return NumberText(static_cast<std::uint32_t>(value), mode);
    }
    std::uint8_t Byte(const std::string& text) const {
        return ByteFromText(text, mode).value_or(0);
    }
    bool Ask(const std::string& box) {
        asked.push_back(box);
        return answers.at(box.substr(0, box.find('|')));
    }
    void Fill() {
        for (std::size_t address = 0; address < kBytes; ++address)
            grid[address] = Form(buffer[address]);
        open = false;
    }
    void Transfer() {
        for (std::size_t address = 0; address < kBytes; ++address)
            buffer[address] = Byte(grid[address]);
        changed = false;
    }
    bool Discard() {
        if (!Ask(kAskDiscard))
            return false;
        Fill();
        changed = false;
        queue.clear();
        return discarded = true;
    }
    void Write() {
        const std::string count = std::to_string(queue.size());
        const std::string values = queue.size() == 1 ? " new value" : " new values";
        if (queue.empty() || !Ask("V E R I F Y|Write " + count + values + " to the EEP?"))
            return;
        for (const Entry& entry : queue)
            devices[target][entry.address] = Byte(entry.after);
        queue.clear();
        Transfer();
    }
    void AskNow() {
        if (Ask(kAskNow))
            Write();
        else
            queue.clear();
    }
    /// False if the queue had no room.
    bool Commit() {
        if (edit == grid[current])
            return true;
        if (!ByteFromText(edit, mode)) {
            const std::string end = mode == NumberMode::Hex ? "and" : "and ";
            asked.push_back("W A R N I N G|The new value was out of range " + end +
                            "\r\nhas been discarded. Try again.");
            edit = grid[current];
            return changed = true;
        }
        if (queue.size() == 10)
            AskNow();
        if (queue.size() == 10) {
            edit = grid[current];
            return false;
        }
        queue.push_back({current, grid[current], edit});
        grid[current] = edit;
        edits[current] = Byte(edit);
        changed = true;
        if (queue.size() == 10)
            AskNow();
        return true;
    }
    void Begin(const std::string& text) {
        open = on;
        edit = text;
    }
    bool Leave() {
        if (open && !edit.empty() && !Commit())
            return false;
        open = false;
        return true;
    }
    void Move(std::size_t to) {
        if (to == current || !Leave())
            return;
        current = to;
        Begin(grid[current]);
    }
    void Key(EditKey key) {
        const std::map<EditKey, std::size_t> targets{
            {EditKey::Next, (current + 1) % kBytes},
            {EditKey::Previous, (current + kBytes - 1) % kBytes},
            {EditKey::Left, current % 16 == 0 ? current : current - 1},
            {EditKey::Down, current + 16 < kBytes ? current + 16 : current},
            {EditKey::Up, current < 16 ? current : current - 16},
        };
        if (edit.empty() && !grid[current].empty())
            edit = "0";
        if (Commit())
            Move(targets.at(key));
    }
    void Settle() {
        Leave();
        open = false;
    }
    bool MayRefill() {
        Settle();
        return !changed || Discard();
    }
    void Question(const std::string& box) {
        Settle();
        if (changed && Ask(box))
            Transfer();
        else if (changed)
            Discard();
    }
    void ReadDevice() {
        if (!MayRefill())
            return;
        buffer = devices[target];
        Fill();
    }
    void Merge(const SettingCells& cells) {
        if (target != 0 || !MayRefill())
            return;
        for (int cell = 0; cell < kCellCount; ++cell) {
            std::uint8_t& byte = buffer[static_cast<std::size_t>(Cell(cell).address)];
            const int unit = 1 << Cell(cell).setting->shift;
            if (const auto value = cells.Value(cell))
                byte = static_cast<std::uint8_t>(byte % unit + *value * unit);
        }
        Fill();
    }
    void Select(std::size_t device) {
        if (device == 1 && !Ask("W A R N I N G|B E   C A R E F U L !\r\nLittle is known about this "
                                "EEProm.\r\nBad data values here could KILL your HDTV!"))
            return;
        if (device != target)
            queue.clear();
        target = device;
    }
    void ChangeMode() {
        const Model old = *this;
        mode = mode == NumberMode::Hex ? NumberMode::Decimal : NumberMode::Hex;
        for (std::string& text : grid)
            text = Form(old.Byte(text));
        for (Entry& entry : queue)
            entry = {entry.address, Form(old.Byte(entry.before)), Form(old.Byte(entry.after))};
    }
};

class RandomWalk : public testing::Test {
  protected:
    RandomWalk() {
        model.devices[0].assign(primary.begin(), primary.end());
        model.devices[1].assign(secondary.begin(), secondary.end());
        test.user.onBox = [this](const Box& box) {
            const bool yes = model.answers[box.title];
            if (box.style == BoxStyle::OkCancelExclamation)
                test.user.answers = {yes ? Answer::Ok : Answer::Cancel};
            else
                test.user.answers = {yes ? Answer::Yes : Answer::No};
        };
    }
    std::size_t Draw(std::size_t choices) { return random() % choices; }
    std::string DrawText() {
        const char* const odd[] = {"", "0", "007", "256", "-", "FF", "A", "99999999999"};
        return Draw(4) != 0 ? model.Form(Draw(256)) : odd[Draw(8)];
    }
    void ActInGrid() {
        if (!model.open && Draw(4) == 0) {
            const std::string typed = Draw(2) == 0 ? "7" : "-";
            editor.CharacterTyped(typed);
            model.Begin(typed);
        } else if (!model.open || Draw(8) == 0) {
            const std::size_t to =
                Draw(10) == 0 ? Draw(kBytes) : (model.current + Draw(40)) % kBytes;
            if (editor.MoveTo(At(to)) && !model.open)
                editor.Click();
            const bool wasOpen = model.open;
            model.Move(to);
            if (!wasOpen)
                model.Begin(model.grid[model.current]);
        } else if (const std::size_t choice = Draw(20); choice < 10) {
            model.edit = DrawText();
            editor.TextEdited(model.edit);
        } else if (choice < 18) {
            const auto key = static_cast<EditKey>(Draw(5) + 1);
            editor.KeyPressed(key);
            model.Key(key);
        } else {
            if (choice == 18)
                editor.KeyPressed(EditKey::Escape);
            else
                editor.Scrolled();
            model.open = false;
        }
    }
    void ActOutside() {
        const std::size_t choice = Draw(100);
        if (choice < 30) {
            if (model.onPage)
                model.Question(kAskCopy);
            model.onPage = !model.onPage;
            program.editorPage.SwitchPage(model.onPage ? Page::Editor : Page::Global);
        } else if (choice < 45) {
            program.editorPage.SettleGridEdits();
            model.Question(kAskMerge);
        } else if (choice < 48) {
            program.wholeDevice.ReadEntireEep();
            model.ReadDevice();
        } else if (choice < 55) {
            program.settings.MergeSettingsWithBuffer();
            model.Merge(program.cells);
        } else if (choice < 65) {
            editor.SettleEntry();
            program.pending.WritePending();
            model.Settle();
            model.Write();
        } else if (choice < 75) {
            const std::size_t device = Draw(2);
            program.wholeDevice.SelectEeprom(static_cast<TargetDevice>(device));
            model.Select(device);
        } else if (choice < 85 && !model.on) {
            model.ChangeMode();
            program.numberModeMenu.Select(model.mode);
        } else if (model.onPage && (!model.on || Draw(3) == 0)) {
            program.editorPage.ToggleEditor();
            model.on = !model.on;
            model.open = false;
        }
    }
    static GridCell At(std::size_t address) {
        return {static_cast<int>(address / 16), static_cast<int>(address % 16) + 1};
    }
    const std::string& TextAt(std::size_t address) const { return program.grid.Text(At(address)); }
    void Compare() {
        ASSERT_EQ(test.user.TakeBoxes(), std::exchange(model.asked, {}));
        for (std::size_t address = 0; address < kBytes; ++address) {
            if (TextAt(address) != model.grid[address])
                FAIL() << address << ": " << TextAt(address) << ", not " << model.grid[address];
        }
        ASSERT_TRUE(std::equal(model.buffer.begin(), model.buffer.end(), program.buffer.begin()));
        ASSERT_TRUE(std::equal(primary.begin(), primary.end(), model.devices[0].begin()));
        ASSERT_TRUE(std::equal(secondary.begin(), secondary.end(), model.devices[1].begin()));
        std::string rows, expected;
        for (int row = 0; row < program.pending.Count(); ++row) {
            const EditRecord& record = program.pending.Row(row);
            rows +=
                record.EditAddress + ":" + record.EditOldValue + ">" + record.EditNewValue + " ";
        }
        for (const Model::Entry& entry : model.queue)
            expected += model.Form(entry.address) + ":" + entry.before + ">" + entry.after + " ";
        ASSERT_EQ(rows, expected);
        ASSERT_EQ(program.grid.Current(), At(model.current));
        ASSERT_EQ(program.grid.EntryIsOpen(), model.open);
        ASSERT_TRUE(!model.open || program.grid.EditText() == model.edit);
        ASSERT_EQ(program.state.gridChanged, model.changed);
    }
    /// Every edit is in the grid or has come into the buffer, unless the user gave it up.
    void CheckEdits() {
        const bool inGrid = program.state.gridChanged;
        for (const auto& [address, value] : model.edits) {
            const int kept = inGrid ? model.Byte(TextAt(address)) : program.buffer[address];
            ASSERT_TRUE(kept == value || (model.discarded && !inGrid)) << address;
        }
        if (!inGrid)
            model.edits.clear();
        model.discarded = false;
    }

    TestProgram test{{.writeCycle = BusTime(0)}};
    Program& program = test.program;
    CellEditor& editor = program.cellEditor;
    EepromImage& primary = test.television.Memory(Chip::Primary);
    EepromImage& secondary = test.television.Memory(Chip::Secondary);
    Model model;
    std::mt19937 random{20261117};
};

TEST_F(RandomWalk, AgreesWithTheModel) {
    std::map<std::string, int> seen;
    for (int step = 0; step < kSteps; ++step) {
        SCOPED_TRACE(step);
        for (const char* title : {"C A U T I O N", "Data Modified", "D A T A - Changed",
                                  "W A R N I N G", "Write Changes?"})
            model.answers[title] = Draw(5) > 1;
        model.answers["V E R I F Y"] = Draw(3) == 0;
        if (model.onPage && Draw(model.on ? 15 : 2) != 0)
            ActInGrid();
        else
            ActOutside();
        for (const std::string& box : model.asked)
            ++seen[box.substr(0, box.find('|'))];
        seen[kFull] += test.Status() == kFull ? 1 : 0;
        ASSERT_NO_FATAL_FAILURE(Compare());
        ASSERT_NO_FATAL_FAILURE(CheckEdits());
    }
    EXPECT_EQ(seen.size(), 7U);
    for (const auto& [event, count] : seen)
        EXPECT_GT(count, 5) << event << " was hardly met";
}

}  // namespace
}  // namespace tarnwell
