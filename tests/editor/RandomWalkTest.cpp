// A long random use of the data editor, against a small model of its grid, queue and buffer.
#include <cstdio>
#include <random>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

constexpr int kSteps = 10'000;
constexpr std::size_t kBytes = 8192;
using Titles = std::vector<std::string>;

/// How the user answers each question of one step, by its title.
using Answers = std::map<std::string, bool>;

/// What the program should do, written without it. Addresses stand for cells.
struct Model {
    struct Entry {
        std::size_t address;
        std::string before, after;
        bool operator==(const Entry&) const = default;
    };
    using Bytes = std::vector<unsigned char>;

    bool hex = false, on = false, onPage = false, changed = false, open = false;
    bool writesAreLost = false;
    std::size_t current = 0, target = 0;
    std::string edit;
    std::vector<std::string> grid = std::vector<std::string>(kBytes);
    std::vector<Entry> queue;
    Bytes buffer = Bytes(kBytes);
    Bytes devices[2];
    std::vector<int> cells = std::vector<int>(kCellCount, 0);  ///< -1: empty
    bool emptyCellsShowZero = false;

    Answers answers;
    Titles asked;
    std::map<std::size_t, int> edits;  ///< committed, and not yet anywhere but in the grid
    bool discarded = false;

    std::string Form(int value) const {
        char text[16];
        std::snprintf(text, sizeof text, hex ? "%X" : "%d", value);
        return text;
    }
    /// The text's value, 0 for an empty one, -1 for what is no byte.
    int Read(const std::string& text) const {
        const char* const digits = hex ? "0123456789ABCDEF" : "0123456789";
        if (text.size() > 9 || text.find_first_not_of(digits) != std::string::npos)
            return -1;
        const int value = text.empty() ? 0 : std::stoi(text, nullptr, hex ? 16 : 10);
        return value > 255 ? -1 : value;
    }
    bool Ask(const std::string& title) {
        asked.push_back(title);
        return answers.at(title);
    }

    void Fill() {
        for (std::size_t address = 0; address < kBytes; ++address)
            grid[address] = Form(buffer[address]);
        open = false;
    }
    void Transfer() {
        for (std::size_t address = 0; address < kBytes; ++address)
            buffer[address] = static_cast<unsigned char>(Read(grid[address]));
        changed = false;
    }
    bool Discard() {
        if (!Ask("C A U T I O N"))
            return false;
        Fill();
        changed = false;
        queue.clear();
        discarded = true;
        return true;
    }
    void Write() {
        if (queue.empty() || !Ask("V E R I F Y"))
            return;
        bool equal = true;
        for (const Entry& entry : queue) {
            unsigned char& byte = devices[target][entry.address];
            const int value = Read(entry.after);
            if (!writesAreLost)
                byte = static_cast<unsigned char>(value);
            equal = equal && byte == value;
        }
        if (!equal) {
            asked.emplace_back("E R R O R - Verify Failed");
            return;
        }
        queue.clear();
        Transfer();
    }
    void AskNow() {
        if (Ask("Write Changes?"))
            Write();
        else
            queue.clear();
    }
    /// False if the queue had no room.
    bool Commit() {
        if (!open || edit == grid[current])
            return true;
        const int value = edit.empty() ? -1 : Read(edit);
        if (value < 0) {
            asked.emplace_back("W A R N I N G");
            edit = grid[current];
            changed = true;
            return true;
        }
        if (queue.size() == 10)
            AskNow();
        if (queue.size() == 10) {
            edit = grid[current];
            return false;
        }
        queue.push_back({current, grid[current], edit});
        grid[current] = edit;
        edits[current] = value;
        changed = true;
        if (queue.size() == 10)
            AskNow();
        return true;
    }
    void Begin(const std::string& text) {
        if (!on)
            return;
        open = true;
        edit = text;
    }
    bool Leave() {
        const bool left = !open || edit.empty() || Commit();
        open = open && !left;
        return left;
    }
    void Move(std::size_t to) {
        if (to == current || !Leave())
            return;
        current = to;
        Begin(grid[current]);
    }
    void Key(EditKey key) {
        const std::size_t column = current % 16;
        const std::map<EditKey, std::size_t> targets{
            {EditKey::Next, (current + 1) % kBytes},
            {EditKey::Previous, (current + kBytes - 1) % kBytes},
            {EditKey::Left, column == 0 ? current : current - 1},
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
    void Question(const std::string& title) {
        Settle();
        if (!changed)
            return;
        if (Ask(title))
            Transfer();
        else
            Discard();
    }
    void ReadDevice() {
        if (!MayRefill())
            return;
        buffer = devices[target];
        Fill();
        if (target != 0)
            return;
        for (int cell = 0; cell < kCellCount; ++cell)
            cells[static_cast<std::size_t>(cell)] = Byte(cell) >> Cell(cell).setting->shift;
    }
    unsigned char& Byte(int cell) { return buffer[static_cast<std::size_t>(Cell(cell).address)]; }
    void Merge() {
        if (target != 0 || !MayRefill())
            return;
        for (int cell = 0; cell < kCellCount; ++cell) {
            const int value = cells[static_cast<std::size_t>(cell)];
            const int unit = 1 << Cell(cell).setting->shift;
            if (value >= 0)
                Byte(cell) = static_cast<unsigned char>(Byte(cell) % unit + value * unit);
        }
        Fill();
    }
    void Select(std::size_t device) {
        if (device == 1 && !Ask("W A R N I N G"))
            return;
        if (device != target)
            queue.clear();
        if (device == 1 || target == 1) {
            cells.assign(kCellCount, -1);
            emptyCellsShowZero = false;
        }
        target = device;
    }
    void ChangeMode() {
        Model old = *this;
        hex = !hex;
        for (std::string& text : grid)
            text = Form(old.Read(text));
        for (Entry& entry : queue)
            entry = {entry.address, Form(old.Read(entry.before)), Form(old.Read(entry.after))};
        emptyCellsShowZero = true;
    }
};

class RandomWalk : public testing::Test {
  protected:
    RandomWalk() {
        model.devices[0].assign(primary.begin(), primary.end());
        model.devices[1].assign(secondary.begin(), secondary.end());
        test.user.onBox = [this](const Box& box) {
            const bool ok = box.style == BoxStyle::OkCancelExclamation;
            const bool yes = model.answers[box.title];
            test.user.answers = {yes ? ok ? Answer::Ok : Answer::Yes
                                     : ok ? Answer::Cancel : Answer::No};
        };
    }
    std::size_t Draw(std::size_t choices) { return random() % choices; }
    std::string DrawText() {
        const char* const odd[] = {"", "0", "007", "256", "-", "FF", "A", "99999999999"};
        const bool plain = Draw(4) != 0;
        return plain ? model.Form(static_cast<int>(Draw(256))) : odd[Draw(std::size(odd))];
    }
    void ActInGrid() {
        const EditKey keys[] = {EditKey::Next, EditKey::Previous, EditKey::Left, EditKey::Down,
                                EditKey::Up};
        if (!model.open || Draw(8) == 0) {
            const std::size_t near = (model.current + Draw(40)) % kBytes;
            const std::size_t to = Draw(10) == 0 ? Draw(kBytes) : near;
            if (Draw(4) == 0 && !model.open) {
                const std::string typed = Draw(2) == 0 ? "7" : "-";
                program.cellEditor.CharacterTyped(typed);
                return model.Begin(typed);
            }
            program.cellEditor.MoveTo({static_cast<int>(to / 16), static_cast<int>(to % 16) + 1});
            model.Move(to);
            if (!model.open) {
                program.cellEditor.Click();
                model.Begin(model.grid[model.current]);
            }
        } else if (const auto choice = Draw(20); choice < 10) {
            const std::string text = DrawText();
            program.cellEditor.TextEdited(text);
            model.edit = text;
        } else if (choice < 18) {
            const EditKey key = keys[Draw(std::size(keys))];
            program.cellEditor.KeyPressed(key);
            model.Key(key);
        } else if (choice == 18) {
            program.cellEditor.KeyPressed(EditKey::Escape);
            model.open = false;
        } else {
            program.cellEditor.Scrolled();
            model.open = false;
        }
    }
    void ActOutside() {
        const std::size_t choice = Draw(100);
        if (choice < 30) {
            const bool toEditor = !model.onPage || Draw(10) == 0;
            if (model.onPage && toEditor)
                return;
            if (model.onPage)
                model.Question("Data Modified");
            model.onPage = toEditor;
            program.editorPage.SwitchPage(toEditor ? Page::Editor : Page::Global);
        } else if (choice < 45) {
            program.editorPage.SettleGridEdits();
            model.Question("D A T A - Changed");
        } else if (choice < 48) {
            program.wholeDevice.ReadEntireEep();
            model.ReadDevice();
        } else if (choice < 55) {
            program.settings.MergeSettingsWithBuffer();
            model.Merge();
        } else if (choice < 65) {
            program.cellEditor.SettleEntry();
            program.pending.WritePending();
            model.Settle();
            model.Write();
        } else if (choice < 75) {
            const std::size_t device = Draw(2);
            program.wholeDevice.SelectEeprom(device == 0 ? TargetDevice::Primary
                                                         : TargetDevice::Secondary);
            model.Select(device);
        } else if (choice < 80) {
            SwitchFault();
        } else if (choice < 90 && !model.on) {
            program.numberModeMenu.Select(model.hex ? NumberMode::Decimal : NumberMode::Hex);
            model.ChangeMode();
        } else if (model.onPage && (!model.on || Draw(3) == 0)) {
            program.editorPage.ToggleEditor();
            model.on = !model.on;
            model.open = false;
        }
    }
    void SwitchFault() {
        model.writesAreLost = !model.writesAreLost;
        test.television.ClearFaults();
        for (const Chip chip : {Chip::Primary, Chip::Secondary}) {
            if (model.writesAreLost)
                test.television.Inject({.kind = FaultKind::LostWrite, .chip = chip});
        }
    }
    void Compare() {
        Titles titles;
        for (const Box& box : test.user.boxes)
            titles.push_back(box.title);
        test.user.boxes.clear();
        ASSERT_EQ(titles, std::exchange(model.asked, {}));

        const DataGrid& grid = program.grid;
        for (std::size_t address = 0; address < kBytes; ++address) {
            const GridCell cell{static_cast<int>(address / 16), static_cast<int>(address % 16) + 1};
            if (grid.Text(cell) != model.grid[address])
                FAIL() << address << ": " << grid.Text(cell) << " not " << model.grid[address];
        }
        ASSERT_TRUE(std::equal(model.buffer.begin(), model.buffer.end(), program.buffer.begin()));
        ASSERT_TRUE(std::equal(primary.begin(), primary.end(), model.devices[0].begin()));
        ASSERT_TRUE(std::equal(secondary.begin(), secondary.end(), model.devices[1].begin()));
        ASSERT_EQ(program.pending.Count(), static_cast<int>(model.queue.size()));
        for (int row = 0; row < program.pending.Count(); ++row) {
            const Model::Entry& entry = model.queue[static_cast<std::size_t>(row)];
            const EditRecord& record = program.pending.Row(row);
            ASSERT_EQ(record.EditAddress, model.Form(static_cast<int>(entry.address)));
            ASSERT_EQ(record.EditOldValue + ">" + record.EditNewValue,
                      entry.before + ">" + entry.after);
        }
        for (std::size_t cell = 0; cell < model.cells.size(); ++cell) {
            const int value = model.cells[cell];
            ASSERT_EQ(program.cells.Caption(static_cast<int>(cell)),
                      value < 0 ? model.emptyCellsShowZero ? "0" : "" : model.Form(value));
        }
        ASSERT_EQ(grid.Current().Address(), static_cast<int>(model.current));
        ASSERT_EQ(grid.EntryIsOpen(), model.open);
        ASSERT_EQ(grid.EntryIsOpen() ? grid.EditText() : "", model.open ? model.edit : "");
        ASSERT_EQ(program.state.gridChanged, model.changed);
    }
    /// Every edit is in the grid or has come into the buffer, unless the user gave it up.
    void CheckEdits() {
        for (const auto& [address, value] : model.edits) {
            const GridCell cell{static_cast<int>(address / 16), static_cast<int>(address % 16) + 1};
            const int inGrid = ParseNumber(program.grid.Text(cell), program.state.numberMode);
            const int kept = program.state.gridChanged ? inGrid : program.buffer[address];
            ASSERT_TRUE(kept == value || (model.discarded && !program.state.gridChanged)) << address;
        }
        if (!program.state.gridChanged)
            model.edits.clear();
        model.discarded = false;
    }

    TestProgram test{{.writeCycle = BusTime(0)}};
    Program& program = test.program;
    EepromImage& primary = test.television.Memory(Chip::Primary);
    EepromImage& secondary = test.television.Memory(Chip::Secondary);
    Model model;
    std::mt19937 random{20261117};
    std::map<std::string, int> seen;
};

TEST_F(RandomWalk, AgreesWithTheModel) {
    for (int step = 0; step < kSteps && !HasFatalFailure(); ++step) {
        SCOPED_TRACE(step);
        for (const char* title : {"C A U T I O N", "Data Modified", "D A T A - Changed",
                                  "V E R I F Y", "W A R N I N G", "Write Changes?"})
            model.answers[title] = Draw(3) != 0;
        if (model.onPage && Draw(10) != 0)
            ActInGrid();
        else
            ActOutside();
        for (const std::string& title : model.asked)
            ++seen[title];
        const bool full = test.Status() == "Pending EEP Writes Are Full; Change Discarded";
        seen["full"] += full ? 1 : 0;
        ASSERT_NO_FATAL_FAILURE(Compare());
        ASSERT_NO_FATAL_FAILURE(CheckEdits());
    }
    for (const auto& [event, count] : seen)
        EXPECT_GT(count, 5) << event << " was hardly walked through";
    EXPECT_EQ(seen.size(), 8U);
}

}  // namespace
}  // namespace tarnwell
