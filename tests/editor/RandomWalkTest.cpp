// A long random use of the data editor, against a small model of its grid, queue and buffer.
#include "support/EditorModel.h"
#include "support/FakeI2c.h"

namespace tarnwell {
namespace {

class RandomWalk : public testing::TestWithParam<bool> {
  protected:
    using Bytes = std::span<const std::uint8_t>;
    RandomWalk() {
        for (const int device : {0, 1}) {
            const auto& memory =
                test.television.Memory(device == 0 ? Chip::Primary : Chip::Secondary);
            auto& ofKernel = fake.system.devices.at(0x50 + device).memory;
            ofKernel.assign(memory.begin(), memory.end());
            model.devices[std::size_t(device)] = memory;
            held[std::size_t(device)] = GetParam() ? Bytes(ofKernel) : Bytes(memory);
        }
        program.state.i2cBus = GetParam() ? "Test adapter|" : "";
    }
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
        ASSERT_TRUE(std::ranges::equal(model.devices[0], held[0]));
        ASSERT_TRUE(std::ranges::equal(model.devices[1], held[1]));
        ASSERT_EQ(program.pending.Count(), static_cast<int>(model.queue.size()));
        for (int row = 0; const auto& [address, before, after] : model.queue)
            ASSERT_THAT(program.pending.Row(row++),
                        testing::FieldsAre(model.Form(address), before, after));
        ASSERT_EQ(program.grid.Current(), At(model.current));
        ASSERT_EQ(program.grid.EntryIsOpen(), model.open);
        ASSERT_TRUE(!model.open || program.grid.EditText() == model.edit);
        ASSERT_EQ(program.state.GridChanged, model.changed);
        // Every edit is in the grid or has come into the buffer, unless the user gave it up.
        for (const auto& [address, value] : model.edits)
            ASSERT_EQ(model.changed ? model.Byte(model.grid[address]) : model.buffer[address],
                      value);
        if (!model.changed)
            model.edits.clear();
    }

    FakeKernel fake;
    TestProgram test{{.writeCycle = BusTime(0)}, fake.kernel};
    Program& program = test.program;
    CellEditor& editor = program.cellEditor;
    std::array<Bytes, 2> held;
    EditorModel model{test.user.answers};
};

TEST_P(RandomWalk, AgreesWithTheModel) {
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
    EXPECT_EQ(fake.system.transfers > 1'000, GetParam());
}

INSTANTIATE_TEST_SUITE_P(OnBothBuses, RandomWalk, testing::Bool());

}  // namespace
}  // namespace tarnwell
