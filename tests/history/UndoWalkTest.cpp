// A long random use of everything that can be undone, then all the way back and forth again.
#include <random>

#include "support/FakeI2c.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

/// What a window would show, as far as it was told.
struct Mirror final : TestSurroundings {
    const Program* program = nullptr;
    Snapshot shown{};
    TargetDevice marked{};
    std::string names;

    void Changed(Shown what) override {
        if (what == Shown::Steps)
            names = program->history.NextName(Direction::Undo).value_or("-");
        if (what == Shown::CrcPanel)
            shown.crc = program->statusBar.Text(Panel::Crc);
        if (what == Shown::EepPanel)
            shown.target = program->state.targetDevice;
        if (what == Shown::Menus)
            marked = program->state.targetDevice;
        if (what == Shown::EditorCaption)
            shown.GridChanged = program->state.GridChanged;
    }
    void GridRefilled() override { shown.grid = program->grid.Contents(); }
    void GridCellChanged(GridCell) override { GridRefilled(); }
    void PendingWritesChanged() override { shown.pending = program->pending.Contents(); }
    void SettingCellChanged(int cell) override {
        CellContents& contents = shown.cells[static_cast<std::size_t>(cell)];
        contents = program->cells.Contents(cell);
    }
};

struct WalkUser final : User {
    std::mt19937 random{20261125};
    bool mayWrite = false;
    std::string file;

    std::size_t Draw(std::size_t choices) { return random() % choices; }
    Answer ShowBox(const Box& box) override {
        const bool yes = box.title == "Write Changes?" ? mayWrite && Draw(2) == 0 : Draw(4) != 0;
        if (box.style == BoxStyle::OkCancelExclamation)
            return yes ? Answer::Ok : Answer::Cancel;
        return yes ? Answer::Yes : Answer::No;
    }
    std::optional<std::string> AskText(const TextRequest&) override { return "7"; }
    std::optional<std::string> AskFile(const FileRequest&) override { return file; }
    void Beep() override {}
    void KeepPainting() override {}
};

struct Walk {
    explicit Walk(bool mayWrite, const char* i2cBus = "") {
        user.mayWrite = mayWrite;
        mirror.program = &program;
        mirror.onFormEdit = [this] {
            const auto most = static_cast<std::size_t>(program.valueEditor.Maximum());
            const auto start = static_cast<std::size_t>(program.valueEditor.StartValue());
            const std::size_t value = (start + 1 + Draw(most)) % (most + 1);
            if (!user.mayWrite || Draw(5) != 0)
                program.valueEditor.Accept(program.valueEditor.Readout(static_cast<int>(value)));
        };
        program.StartUp(mirror);
        program.grid.FillGrid();
        user.file = folder.Path("a.mot");
        for (auto& byte : program.buffer)
            byte = static_cast<std::uint8_t>(Draw(256));
        program.state.EepRead = true;
        program.imageArchive.SaveImage();
        program.settings.ShowSettingsFromBuffer();
        program.settingsArchive.SaveSettings();
        program.buffer = {};
        mirror.Changed(Shown::Steps);
        program.state.i2cBus = i2cBus;
        for (const auto& [device, chip] : {std::pair(0x50, Chip::Primary), {0x51, Chip::Secondary}})
            Kernel(device).assign(Wired(chip).begin(), Wired(chip).end());
    }
    EepromImage& Wired(Chip chip) { return television.Memory(chip); }
    std::vector<std::uint8_t>& Kernel(int device) { return fake.system.devices.at(device).memory; }
    std::size_t Draw(std::size_t choices) { return user.Draw(choices); }
    void EditByte() {
        if (program.state.editor == EditorSwitch::Off)
            program.editorPage.ToggleEditor();
        const int address = static_cast<int>(Draw(3) == 0 ? Draw(kEepromBytes) : 2360 + Draw(20));
        program.cellEditor.MoveTo({address / 16, address % 16 + 1});
        program.cellEditor.Click();
        const char* const odd[] = {"007", "300", "0", ""};
        program.cellEditor.TextEdited(user.mayWrite && Draw(9) == 0 ? odd[Draw(4)]
                                                                    : std::to_string(Draw(100)));
        program.cellEditor.KeyPressed(EditKey::Next);
    }
    /// What comes how often of a thousand times; from where writing is, only if the user may.
    struct Way {
        std::size_t share;
        std::function<void()> go;
        const char* file = "a.mot";
        bool writes = false;
    };
    const std::vector<Way> ways{
        {400, [this] { program.valueEditor.CellClicked(static_cast<int>(Draw(kCellCount))); }},
        {400, [this] { EditByte(); }},
        {50, [this] { program.editorPage.SettleGridEdits(); }},
        {30, [this] { program.settings.MergeSettingsWithBuffer(); }},
        {20, [this] { program.imageArchive.LoadImage(); }},
        {10, [this] { program.settings.ReadSettingsFromEep(); }},
        {2, [this] { program.wholeDevice.ReadEntireEep(); }},
        {4, [this] { program.wholeDevice.SelectEeprom(static_cast<TargetDevice>(Draw(2))); }},
        {22, [this] { program.undo.Undo(); }},
        {12, [this] { program.undo.Redo(); }},
        {10, [this] { program.settings.WriteSettingsToEep(); }, "", true},
        {10, [this] { program.pending.WritePending(); }, "", true},
        {5, [this] { program.imageArchive.SaveImage(); }, "b.mot", true},
        {5, [this] { program.settingsArchive.SaveSettings(); }, "b.mot", true},
        {10, [this] { program.editorPage.ToggleEditor(); }, "", true},
        {10, [this] { ChangeMode(); }, "", true}};
    void Step() {
        auto way = ways.begin();
        for (std::size_t choice = Draw(1000); choice >= way->share; ++way)
            choice -= way->share;
        user.file = folder.Path(way->file);
        if (user.mayWrite || !way->writes)
            way->go();
    }
    /// With the editor off, since an entry keeps its number mode.
    void ChangeMode() {
        if (program.state.editor == EditorSwitch::On)
            program.editorPage.ToggleEditor();
        else
            program.numberModeMenu.Select(Draw(2) == 0 ? NumberMode::Hex : NumberMode::Decimal);
    }
    /// The state, by its hash; the screen must agree with it.
    std::size_t Here() {
        const Snapshot now = program.history.Now();
        mirror.shown.buffer = now.buffer;
        mirror.shown.EepRead = now.EepRead;
        mirror.shown.BufferChanged = now.BufferChanged;
        for (std::size_t cell = 0; cell < now.cells.size(); ++cell) {  // not shown
            mirror.shown.cells[cell].mark = now.cells[cell].mark;
            mirror.shown.cells[cell].lastRead = now.cells[cell].lastRead;
        }
        EXPECT_TRUE(mirror.shown == now && mirror.marked == now.target) << mirror.names;
        EXPECT_TRUE(now.crc.empty() || now.crc == mCRC32::BufferCrcText(now.buffer));
        std::string all = now.crc + (now.EepRead ? "R" : "") + (now.BufferChanged ? "B" : "") +
                          (now.GridChanged ? "G" : "") + std::string(Word(now.target)) +
                          std::to_string(now.pending.count) + mirror.names;
        all.append(now.buffer.begin(), now.buffer.end()).append(TextOf(now.grid));
        for (const CellContents& cell : now.cells)
            all.append(cell.caption)
                .append(cell.empty ? "E" : "")
                .append({static_cast<char>(cell.mark), static_cast<char>(cell.colour),
                         static_cast<char>(cell.lastRead.value_or(77))});
        for (const EditRecord& row : now.pending.rows)
            all.append(row.EditAddress + "," + row.EditOldValue + "," + row.EditNewValue + ";");
        return std::hash<std::string>()(all);
    }
    /// Most steps leave the grid as it is.
    const std::string& TextOf(const GridContents& grid) {
        if (grid == lastGrid && !lastText.empty())
            return lastText;
        lastGrid = grid;
        lastText = grid.changed.to_string();
        for (const std::string& text : *grid.texts)
            lastText.append(text).append(",");
        return lastText;
    }
    std::size_t Count(Direction direction) {
        return static_cast<std::size_t>(program.history.Count(direction));
    }
    /// Where the queue has no room for what undo would bring into it, the user makes some: whether
    /// that was so.
    bool MakeRoom() {
        if (program.history.Beyond(Direction::Undo))
            return false;
        program.pending.ClearPendingWrites();
        if (!program.history.Beyond(Direction::Undo))
            program.editorPage.ToggleEditor();
        return true;
    }

    GridContents lastGrid;
    std::string lastText;
    WalkUser user;
    TemporaryFolder folder;
    SimulatedTelevision television{{.writeCycle = BusTime(0)}};
    Mirror mirror;
    ManualTimer timer;
    MemoryRegistry registry;
    FakeKernel fake;
    Program program{{{television, television, NoBusTrace(), NoStopRequest(), fake.kernel},
                     mirror,
                     timer,
                     user,
                     mirror,
                     mirror,
                     mirror,
                     mirror,
                     mirror,
                     registry,
                     mirror,
                     folder.Path("backups")}};
};

class UndoWalk : public testing::TestWithParam<bool>, protected Walk {
  protected:
    UndoWalk() : Walk(GetParam()) {}
};

TEST_P(UndoWalk, ComesByTheSamePointsBothTimes) {
    std::map<std::size_t, std::size_t> there{{0, Here()}};
    for (int step = 0; step < 10'000; ++step) {
        SCOPED_TRACE(step);
        const std::size_t before = Count(Direction::Undo);
        Step();
        const std::size_t after = Count(Direction::Undo);
        there.erase(there.lower_bound(std::min(before, after) + 1), there.end());
        there[after] = Here();
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(Count(Direction::Undo), 5'000U);
    while (Count(Direction::Redo) != 0)
        program.undo.Redo();
    std::map<std::size_t, std::size_t> back;
    while (Count(Direction::Undo) != 0) {
        if (MakeRoom())
            back.clear();  // redo comes to the later points with the room that was made
        back[Count(Direction::Undo)] = Here();
        program.undo.Undo();
    }
    back[0] = Here();
    for (const auto& [point, state] : there)
        EXPECT_TRUE(user.mayWrite || back[point] == state) << point;
    EXPECT_GT(back.size(), 5'000U);
    while (Count(Direction::Undo) < back.rbegin()->first) {
        program.undo.Redo();
        ASSERT_EQ(back[Count(Direction::Undo)], Here()) << Count(Direction::Undo);
    }
    EXPECT_LE(program.history.Bytes(), History::kMostBytes);
}

TEST(UndoWalkOverBothBuses, ShowsAndWritesTheSame) {
    Walk wired(true);
    Walk kernel(true, "Test adapter|");
    for (int step = 0; step < 10'000; ++step) {
        wired.Step();
        kernel.Step();
        ASSERT_EQ(wired.Here(), kernel.Here()) << step;
    }
    EXPECT_GT(kernel.fake.system.devices.at(0x50).cycles, 100U);
    EXPECT_TRUE(std::ranges::equal(wired.Wired(Chip::Primary), kernel.Kernel(0x50)));
    EXPECT_TRUE(std::ranges::equal(wired.Wired(Chip::Secondary), kernel.Kernel(0x51)));
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWithWrites, UndoWalk, testing::Bool());

}  // namespace
}  // namespace tarnwell
