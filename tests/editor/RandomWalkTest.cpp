// A long random use of the data editor, against a small model of its grid, queue and buffer.
#include <random>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

constexpr std::size_t kBytes = 8192;
const std::string kModified = "Values in the Data Grid have been modified.\r\n\r\n";
const std::string kAskCopy =
    "Data Modified|" + kModified + "Copy changes to the Tarnwell Memory Buffer?";
const std::string kAskMerge =
    "D A T A - Changed|" + kModified + "Merge the changes with the Memory Buffer?";
const std::string kAskSecondary =
    "W A R N I N G|B E   C A R E F U L !\r\nLittle is known about this EEProm.\r\n"
    "Bad data values here could KILL your HDTV!";
const std::string kAskNow =
    "Write Changes?|There are now ten pending EEP changes. Click <Yes> to write the EEP changes "
    "now\r\nor click <No> to postpone the pending EEP write until later.\r\n\r\nIf <No> is "
    "clicked, the entire EEP must be written later to save these changes.\r\n\r\n"
    "Do you want to write the EEP changes now?";
const std::string kOutOfRange = "W A R N I N G|The new value was out of range and";
const std::string kTryAgain = "\r\nhas been discarded. Try again.";
const std::string kFull = "Pending EEP Writes Are Full; Change Discarded";

/// What the program should do, written without it. It acts first and draws the answers.
struct Model {
    struct Entry {
        std::size_t address;
        std::string before, after;
    };
    std::deque<Answer>& answers;
    NumberMode mode = NumberMode::Decimal;
    bool on = false, onPage = false, changed = false, open = false;
    std::size_t target = 0, current = 0;
    std::string edit{};
    std::array<std::string, kBytes> grid{};
    EepromImage buffer{};
    std::array<EepromImage, 2> devices{};
    std::vector<Entry> queue{};
    std::map<std::size_t, int> edits{};  ///< committed, not given up, and nowhere but in the grid

    std::mt19937 random{20261117};
    std::vector<std::string> asked{};
    std::map<std::string, int> seen{};

    std::string Form(std::size_t value) const {
        return NumberText(static_cast<std::uint32_t>(value), mode);
    }
    std::uint8_t Byte(const std::string& text) const {
        return ByteFromText(text, mode).value_or(0);
    }
    bool Ask(const std::string& box, Answer yes = Answer::Yes, Answer no = Answer::No) {
        asked.push_back(box);
        ++seen[box.substr(0, box.find('|'))];
        answers.push_back((random() % 3 == 0) == box.starts_with("V E R I F Y") ? yes : no);
        return answers.back() == yes;
    }
    void Fill() {
        std::ranges::transform(buffer, grid.begin(), [this](auto byte) { return Form(byte); });
        open = false;
    }
    void Transfer() {
        std::ranges::transform(grid, buffer.begin(), [this](auto& text) { return Byte(text); });
        changed = false;
    }
    bool Discard() {
        if (!Ask("C A U T I O N|Really discard the Data Grid changes?"))
            return false;
        Fill();
        changed = false;
        queue.clear();
        edits.clear();
        return true;
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
    void AskWhenFull() {
        if (queue.size() == 10 && Ask(kAskNow))
            Write();
        else if (queue.size() == 10)
            queue.clear();
    }
    /// False if the queue had no room.
    bool Commit() {
        const std::string before = grid[current];
        if (edit == before)
            return true;
        const std::string entered = std::exchange(edit, before);
        if (!ByteFromText(entered, mode)) {
            asked.push_back(kOutOfRange + (mode == NumberMode::Hex ? "" : " ") + kTryAgain);
            return changed = true;
        }
        AskWhenFull();
        if (queue.size() == 10)
            return ++seen[kFull] == 0;
        queue.push_back({current, before, entered});
        edit = grid[current] = entered;
        edits[current] = Byte(entered);
        changed = true;
        AskWhenFull();
        return true;
    }
    void Begin(const std::string& text) {
        open = on;
        edit = text;
    }
    bool Leave() {
        open = open && !edit.empty() && !Commit();
        return !open;
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
    /// False if changes stay in the grid alone.
    bool Settle(const std::string& question = {}) {
        Leave();
        open = false;
        if (changed && !question.empty() && Ask(question))
            Transfer();
        return !changed || Discard();
    }
    void Select(std::size_t device) {
        if (device == 1 && !Ask(kAskSecondary, Answer::Ok, Answer::Cancel))
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
    RandomWalk() { model.devices = {primary, secondary}; }
    std::size_t Draw(std::size_t choices) { return model.random() % choices; }
    void ActInGrid() {
        const int refusals = model.seen[kFull];
        const std::size_t choice = Draw(20);
        if (!model.open && choice < 5) {
            const std::string typed = choice < 3 ? "7" : "-";
            model.Begin(typed);
            editor.CharacterTyped(typed);
        } else if (!model.open || choice < 3) {
            const std::size_t to = (model.current + Draw(Draw(10) == 0 ? kBytes : 40)) % kBytes;
            model.Move(to);
            editor.MoveTo(At(to));
            if (!model.open) {
                model.Begin(model.grid[to]);
                editor.Click();
            }
        } else if (choice < 11) {
            const char* const odd[] = {"", "0", "007", "256", "-", "FF", "A", "99999999999"};
            model.edit = Draw(4) != 0 ? model.Form(Draw(256)) : odd[Draw(8)];
            editor.TextEdited(model.edit);
        } else if (choice < 18) {
            const auto key = static_cast<EditKey>(Draw(5) + 1);
            model.Key(key);
            editor.KeyPressed(key);
        } else {
            model.open = false;
            choice == 18 ? editor.KeyPressed(EditKey::Escape) : editor.Scrolled();
        }
        EXPECT_TRUE(model.seen[kFull] == refusals || test.Status() == kFull);
    }
    void ActOutside() {
        const std::size_t choice = Draw(100);
        if (choice < 30) {
            if (std::exchange(model.onPage, !model.onPage))
                model.Settle(kAskCopy);
            program.editorPage.SwitchPage(model.onPage ? Page::Editor : Page::Iris);
        } else if (choice < 45) {
            const bool settled = model.Settle(kAskMerge);
            EXPECT_EQ(program.editorPage.SettleGridEdits(), settled);
        } else if (choice < 50) {
            if (model.Settle()) {
                model.buffer = model.devices[model.target];
                model.Fill();
            }
            program.wholeDevice.ReadEntireEep();
        } else if (choice < 60 && !model.open) {
            model.Write();
            program.pending.WritePending();
        } else if (choice < 75) {
            const std::size_t device = Draw(2);
            model.Select(device);
            program.wholeDevice.SelectEeprom(static_cast<TargetDevice>(device));
        } else if (choice < 85 && !model.on) {
            model.ChangeMode();
            program.numberModeMenu.Select(model.mode);
        } else if (model.onPage && (!model.on || Draw(3) == 0)) {
            model.on = !model.on;
            model.open = false;
            program.editorPage.ToggleEditor();
        }
    }
    static GridCell At(std::size_t address) {
        return {static_cast<int>(address / 16), static_cast<int>(address % 16) + 1};
    }
    void Compare() {
        ASSERT_EQ(test.user.TakeBoxes(), std::exchange(model.asked, {}));
        for (std::size_t address = 0; address < kBytes; ++address)
            ASSERT_TRUE(program.grid.Text(At(address)) == model.grid[address]) << address;
        ASSERT_TRUE(std::equal(model.buffer.begin(), model.buffer.end(), program.buffer.begin()));
        ASSERT_TRUE(model.devices[0] == primary && model.devices[1] == secondary);
        ASSERT_EQ(program.pending.Count(), static_cast<int>(model.queue.size()));
        for (int row = 0; const auto& [address, before, after] : model.queue)
            ASSERT_THAT(program.pending.Row(row++),
                        testing::FieldsAre(model.Form(address), before, after));
        ASSERT_EQ(program.grid.Current(), At(model.current));
        ASSERT_EQ(program.grid.EntryIsOpen(), model.open);
        ASSERT_TRUE(!model.open || program.grid.EditText() == model.edit);
        ASSERT_EQ(program.state.gridChanged, model.changed);
        // Every edit is in the grid or has come into the buffer, unless the user gave it up.
        for (const auto& [address, value] : model.edits)
            ASSERT_EQ(model.changed ? model.Byte(model.grid[address]) : model.buffer[address],
                      value);
        if (!model.changed)
            model.edits.clear();
    }

    TestProgram test{{.writeCycle = BusTime(0)}};
    Program& program = test.program;
    CellEditor& editor = program.cellEditor;
    EepromImage& primary = test.television.Memory(Chip::Primary);
    EepromImage& secondary = test.television.Memory(Chip::Secondary);
    Model model{test.user.answers};
};

TEST_F(RandomWalk, AgreesWithTheModel) {
    for (int step = 0; step < 10'000; ++step) {
        SCOPED_TRACE(step);
        if (model.onPage && Draw(model.on ? 15 : 2) != 0)
            ActInGrid();
        else
            ActOutside();
        ASSERT_NO_FATAL_FAILURE(Compare());
    }
    EXPECT_EQ(model.seen.size(), 7U);
    for (const auto& [event, count] : model.seen)
        EXPECT_GT(count, 5) << event << " was hardly met";
}

}  // namespace
}  // namespace tarnwell
