// A long random use of everything that can be undone, then all the way back and forth again.
#include <random>

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
        if (program == nullptr)
            return;
        if (what == Shown::Steps)
            names = program->history.NextName(Direction::Undo).value_or("-");
        if (what == Shown::CrcPanel)
            shown.crc = program->statusBar.Text(Panel::Crc), shown.origin = program->origin;
        if (what == Shown::EepPanel)
            shown.target = program->state.targetDevice;
        if (what == Shown::Menus)
            marked = program->state.targetDevice;
        if (what == Shown::Names)
            shown.names = program->names.Layers();
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

struct WalkUser final : YesUser {
    std::mt19937 random{20261125};
    bool mayWrite = false;

    std::size_t Draw(std::size_t choices) { return random() % choices; }
    Answer ShowBox(const Box& box) override {
        const bool yes = box.title == "Write Changes?" ? mayWrite && Draw(2) == 0 : Draw(4) != 0;
        if (box.style == BoxStyle::OkCancelExclamation)
            return yes ? Answer::Ok : Answer::Cancel;
        return yes ? Answer::Yes : Answer::No;
    }
};

struct Walk : OwnTelevision, StartedProgram<WalkUser, Mirror> {
    explicit Walk(bool mayWrite)
        : OwnTelevision{{}, SimulatedTelevision({.writeCycle = BusTime(0)})},
          StartedProgram(television, television, folder.Path("backups")) {
        user.mayWrite = mayWrite;
        outside.program = &program;
        outside.onFormEdit = [this] {
            const auto most = static_cast<std::size_t>(program.valueEditor.Maximum());
            const auto start = static_cast<std::size_t>(program.valueEditor.StartValue());
            const std::size_t value = (start + 1 + Draw(most)) % (most + 1);
            program.valueEditor.StepTo(static_cast<int>(value));
            if (!user.mayWrite || Draw(5) != 0)
                program.valueEditor.Accept();
        };
        program.grid.FillGrid();
        folder.Write("other.json", R"({"format": 1, "names": [
            {"name": "N3", "device": "primary", "address": 30},
            {"name": "Read", "device": "primary", "address": 2370}]})");
        user.file = folder.Path("a.mot");
        for (auto& byte : program.buffer)
            byte = static_cast<std::uint8_t>(Draw(256));
        program.state.EepRead = true;
        program.imageArchive.SaveImage();
        program.settings.ShowSettingsFromBuffer();
        program.settingsArchive.SaveSettings();
        program.buffer = {};
        outside.Changed(Shown::Steps);
        outside.Changed(Shown::Names);
    }
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
        if (Draw(4) != 0)
            program.cellEditor.KeyPressed(EditKey::Next);
    }
    void OnCell(int cell) {
        if (Draw(2) == 0 && program.cellCommands.CanCopy(cell))
            program.cellCommands.CopyToAllFormats(cell);
        else if (program.cellCommands.CanRevert(cell))
            program.cellCommands.Revert(cell);
    }
    void Take() {
        program.compare.Begin();
        if (program.compare.Choose(Side::Right, Source::ImageArchive))
            program.compare.Take(program.compare.Rows());
    }
    void Restore() {
        if (const auto kept = program.backups.All(); !kept.empty())
            program.writeDifferences.Restore(kept[Draw(kept.size())]);
    }
    void WriteCompared() {
        program.compare.Begin();
        const auto target = program.state.targetDevice;
        if (program.compare.Choose(Side::Left, target == TargetDevice::Primary
                                                   ? Source::Primary
                                                   : Source::Secondary) &&
            program.compare.Choose(Side::Right, Source::Buffer))
            program.compare.Write(program.compare.Rows());
    }
    void ChangeNames() {
        const NameList& own = program.names.Own();
        const Named former = own.empty() || Draw(2) == 0 ? nullptr : own[Draw(own.size())];
        if (former && Draw(3) == 0)
            return program.nameCommands.Remove({former});
        if (former && Draw(3) == 0 && program.ShownValue(*former))
            return program.nameCommands.EnterValue(*former, static_cast<int>(Draw(256)));
        if (Draw(5) == 0)
            return program.nameCommands.ReadInto(NameLayer::User, folder.Path("other.json"));
        const NamedValue named{.name = "N" + std::to_string(Draw(20)),
                               .address = static_cast<int>(Draw(100))};
        std::string key;
        if (program.nameCommands.Fault(named, former, NameLayer::User, key).empty()) {
            EXPECT_TRUE(program.nameCommands.Put(named, former, NameLayer::User));
        }
    }
    /// What comes how often of a thousand times; from where writing is, only if the user may.
    struct Way {
        std::size_t share;
        std::function<void()> go;
        const char* file = "a.mot";
        bool writes = false;
    };
    const std::vector<Way> ways{
        {360, [this] { program.valueEditor.CellClicked(static_cast<int>(Draw(kCellCount))); }},
        {367, [this] { EditByte(); }},
        {10, [this] { ChangeNames(); }},
        {20, [this] { program.editorPage.TakeBackPending(static_cast<int>(Draw(10))); }},
        {10, [this] { OnCell(static_cast<int>(Draw(kCellCount))); }},
        {10, [this] { program.cellEditor.Paste("8 9 0x1F"); }},
        {5, [this] { program.editorPage.ShowByte(static_cast<int>(Draw(kEepromBytes))); }},
        {5, [this] { program.editorPage.SwitchPage(static_cast<Page>(Draw(6))); }},
        {3, [this] { program.cellEditor.Scrolled(); }},
        {2, [this] { program.cellEditor.SelectTo(GridCell::At(152)); }},
        {5, [this] { Take(); }},
        {50, [this] { program.editorPage.SettleGridEdits(); }},
        {30, [this] { program.settings.MergeSettingsWithBuffer(); }},
        {20, [this] { program.imageArchive.LoadImage(); }},
        {10, [this] { program.settings.ReadSettingsFromEep(); }},
        {2, [this] { program.wholeDevice.ReadEntireEep(); }},
        {4, [this] { program.wholeDevice.SelectEeprom(static_cast<TargetDevice>(Draw(2))); }},
        {22, [this] { program.undo.Undo(); }},
        {12, [this] { program.undo.Redo(); }},
        {10, [this] { program.settings.WriteSettingsToEep(); }, "", true},
        {10, [this] { program.editorPage.WritePending(); }, "", true},
        {1, [this] { program.writeDifferences.WriteDifferencesToEep(); }, "", true},
        {1, [this] { Restore(); }, "", true},
        {2, [this] { WriteCompared(); }, "", true},
        {4, [this] { program.imageArchive.SaveImage(); }, "b.mot", true},
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
    /// The state and the name of the last step; the screen must agree with it.
    std::pair<Snapshot, std::string> Here() {
        const Snapshot now = program.history.Now();
        outside.shown.buffer = now.buffer;
        outside.shown.EepRead = now.EepRead;
        outside.shown.BufferChanged = now.BufferChanged;
        for (std::size_t cell = 0; cell < now.cells.size(); ++cell) {  // not shown
            outside.shown.cells[cell].mark = now.cells[cell].mark;
            outside.shown.cells[cell].lastRead = now.cells[cell].lastRead;
        }
        EXPECT_TRUE(outside.shown == now && outside.marked == now.target) << outside.names;
        EXPECT_TRUE(now.crc.empty() || now.crc == mCRC32::BufferCrcText(now.buffer));
        return {now, outside.names};
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
};

class UndoWalk : public testing::TestWithParam<bool>, protected Walk {
  protected:
    UndoWalk() : Walk(GetParam()) {}
    /// What is drawn beside a value must be so on the device.
    void CheckStandings() {
        const auto check = [this](const Standing& standing, auto shown, bool marked, int held) {
            ++seen[standing.kind];
            const bool isHeld = shown == held && !marked;
            EXPECT_TRUE(isHeld || standing.kind != Standing::Kind::Held);
            EXPECT_TRUE(!isHeld || standing.kind != Standing::Kind::Waiting);
            EXPECT_EQ(standing.held.value_or(held), held);
        };
        for (int cell = 0; cell < kCellCount; ++cell) {
            const std::uint8_t byte = television.Memory(Chip::Primary)[Index(Cell(cell).address)];
            check(program.StandingOfCell(cell), program.cells.Value(cell).value_or(0),
                  program.cells.IsMarked(cell), ValueIn(byte, cell));
        }
        const auto& target = television.Memory(static_cast<Chip>(program.state.targetDevice));
        for (int address = 2360; address < 2380; ++address) {
            const GridCell cell = GridCell::At(address);
            check(program.StandingOfByte(address), program.grid.Shown(cell).value,
                  program.grid.IsChanged(cell), target[Index(address)]);
        }
    }
    static std::size_t Index(int address) { return static_cast<std::size_t>(address); }
    std::map<Standing::Kind, int> seen;
};

TEST_P(UndoWalk, ComesByTheSamePointsBothTimes) {
    std::map<std::size_t, decltype(Here())> there{{0, Here()}};
    for (int step = 0; step < 10'000; ++step) {
        SCOPED_TRACE(step);
        const std::size_t before = Count(Direction::Undo);
        Step();
        const std::size_t after = Count(Direction::Undo);
        there.erase(there.lower_bound(std::min(before, after) + 1), there.end());
        there[after] = Here();
        CheckStandings();
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_GT(Count(Direction::Undo), 5'000U);
    while (Count(Direction::Redo) != 0)
        program.undo.Redo();
    decltype(there) back;
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
        ASSERT_TRUE(back[Count(Direction::Undo)] == Here()) << Count(Direction::Undo);
    }
    EXPECT_LE(program.history.Bytes(), History::kMostBytes);
    EXPECT_EQ(TextOf(ReadNames(folder.Path("names.json"))),
              TextOf(*program.names.File(NameLayer::User)));
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWithWrites, UndoWalk, testing::Bool());

}  // namespace
}  // namespace tarnwell
