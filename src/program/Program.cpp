#include "program/Program.h"

#include <cstdio>

#include "core/Words.h"
#include "settings/CellTexts.h"

namespace tarnwell {

namespace {

constexpr Message kMissing{"", "W A R N I N G", BoxStyle::Exclamation};
constexpr Message kNamesFaulty{"", "W A R N I N G", BoxStyle::Exclamation};

constexpr Message kSettingsNotSaved{
    "Setting values have been changed, but not archived\r\n"
    "to a disk or written to an EEProm.\r\n\r\n"
    "Really exit without saving the changes?",
    "W A R N I N G", BoxStyle::YesNoExclamation};
constexpr Message kBufferNotSaved{
    "The memory buffer been changed,\r\nbut not archived to a disk.\r\n\r\n"
    "Really exit without archiving?",
    "W A R N I N G", BoxStyle::YesNoExclamation};

std::string SetsFolderBeside(const std::string& backupFolder) {
    return backupFolder.substr(0, backupFolder.rfind('/')) + "/sets";
}

}  // namespace

Program::Program(const Surroundings& outside)
    : statusBar(state, outside.screen, outside.msgTimer),
      busUser(outside.user),
      i2c(outside.wire, state, statusBar, busUser),
      kernelBus(outside.wire, state, statusBar, busUser),
      bus(i2c, kernelBus, state),
      backups(outside.backupFolder, outside.calendar),
      sets(SetsFolderBeside(outside.backupFolder)),
      record(backups, sets, {state, origin, outside.calendar, names}),
      writeGuard(state, statusBar, outside.user, bus, record),
      history({state, statusBar, outside.screen, buffer, origin, grid, pending, cells, names},
              bus.Known()),
      context{state,
              statusBar,
              outside.screen,
              outside.user,
              bus,
              writeGuard,
              history,
              origin,
              [this](int address) { return names.TitlesOn(state.targetDevice)(address); }},
      deviceReader(context),
      grid(state, statusBar, outside.screen, buffer, outside.editorView),
      pending(context, grid, outside.editorView),
      cellEditor(context, grid, pending),
      editorPage(context, grid, pending, cellEditor, outside.editorView),
      find(context, grid, editorPage),
      selection(context, grid),
      cells(state, outside.settingsView),
      settings(context, buffer, editorPage, cells),
      valueEditor(context, buffer, editorPage, cells, outside.settingsView),
      cellCommands(context, cells),
      followers(pending, editorPage, cells, settings),
      wholeDevice(context, deviceReader, outside.calendar, buffer, followers),
      imageArchive(context, outside.calendar, buffer, followers),
      settingsArchive(context, cells, settings),
      writeDifferences(context, deviceReader, imageArchive, names, buffer),
      compare(context, {deviceReader, imageArchive, settingsArchive, writeDifferences}, names,
              cells, buffer, followers),
      watch(context, busUser, outside.wire.clock, outside.calendar, names),
      numberModeMenu(state, statusBar, outside.screen, {&cells, &grid, &pending}),
      helpCommands(outside.programs, outside.user),
      undo(context, history, cellEditor),
      setCommands(*this, outside.user, outside.programs),
      nameCommands(*this, outside.user),
      advice_(*this),
      outside_(outside) {
    writeGuard.Ask(advice_);
    statusBar.SetBackground([this] { return BackgroundText(); });
}

void Program::StartUp(WindowSetUp& setUp) {
    tarnwell::StartUp(
        {state, statusBar, outside_.user, outside_.platform, outside_.registry, outside_.window},
        setUp);
    if (const auto set = state.set.empty() ? std::nullopt : sets.Find(state.set))
        record.Choose(set);
    names.Open(NameLayer::User, outside_.namesPath);
    OpenNamesOfSet();
    outside_.screen.Changed(Shown::Set);
}

Closing Program::ShutDown() {
    const CommandScope scope(statusBar);
    SaveOptions(outside_.registry, state, outside_.window);
    if (!editorPage.SettleGridEdits())
        return Closing::KeepRunning;
    Answer answer = Answer::Yes;
    if (cells.AnyHasMark(Mark::Save))
        answer = outside_.user.ShowBox(kSettingsNotSaved);
    else if (state.BufferChanged)
        answer = outside_.user.ShowBox(kBufferNotSaved);
    return answer == Answer::Yes ? Closing::EndProgram : Closing::KeepRunning;
}

void Program::Abandon(std::string_view why) {
    std::string line = "tarnwell: " + std::string(why);
    if (const int written = context.i2c.BytesWritten(); written > 0)
        line += "; " + Counted(written, "byte", "was written", "were written") + " to the " +
                std::string(DeviceWord(state.targetDevice)) + " EEPROM and not verified";
    context.i2c.GiveUp();
    SaveOptions(outside_.registry, state, outside_.window);
    std::fprintf(stderr, "%s.\n", line.c_str());
}

void Program::OpenArchive(const std::string& path) {
    if (ArchiveFile(path).Kind() == ArchiveKind::Settings)
        settingsArchive.LoadSettingsFile(path);
    else
        imageArchive.LoadImageFile(path);
}

void Program::GoTo(const Destination& place) {
    if (place.cell)
        outside_.settingsView.ShowCell(*place.cell);
    else
        editorPage.ShowByte(place.address);
}

int Program::WaitingOn(Page page) const {
    return page == Page::Editor ? pending.Count() : cells.WaitingOn(page);
}

int Program::DrawnAsWaiting(Page page) const {
    if (page == Page::Editor)
        return pending.Count();
    int waiting = 0;
    for (int cell = 0; cell < kCellCount; ++cell) {
        const bool isThere = Cell(cell).setting->page == page;
        waiting += isThere && StandingOfCell(cell).kind == Standing::Kind::Waiting ? 1 : 0;
    }
    return waiting;
}

Standing Program::StandingOfCell(int cell) const {
    const CellContents& contents = cells.Contents(cell);
    auto held = bus.Known().Value(TargetDevice::Primary, Cell(cell).address);
    if (held)
        held = ValueIn(*held, cell);
    if (!contents.given || contents.empty)
        return {Standing::Kind::NoValue, held};
    return Standing::Of(contents.shown.value, cells.IsMarked(cell), held);
}

Standing Program::StandingOfByte(int address) const {
    const auto held = bus.Known().Value(state.targetDevice, address);
    const bool changed = grid.IsChanged(GridCell::At(address));
    const auto shown = grid.Shown(GridCell::At(address)).Byte();
    if (!shown || (!changed && !HoldsImage(state, buffer)))
        return {Standing::Kind::NoValue, held};
    return Standing::Of(*shown, changed, held);
}

std::optional<int> Program::ShownValue(const NamedValue& named) const {
    if (named.device != state.targetDevice || !HoldsImage(state, buffer))
        return std::nullopt;
    return ValueIn(grid.Bytes(), named);
}

std::optional<int> Program::HeldValue(const NamedValue& named) const {
    const auto first = bus.Known().Value(named.device, named.address);
    const auto second =
        named.low ? bus.Known().Value(named.device, *named.low) : std::optional(std::uint8_t{});
    if (!first || !second)
        return std::nullopt;
    NamedValue moved = named;
    moved.address = 0;
    moved.low = named.low ? std::optional(1) : std::nullopt;
    return ValueIn(std::array{*first, *second}, moved);
}

std::string Program::BackgroundText() const {
    if (valueEditor.IsOpen())
        return valueEditor.Description();
    if (grid.EntryIsOpen())
        return cellEditor.Description();
    if (state.page == Page::Editor && selection.IsOfSeveral())
        return selection.Summary();
    std::string text;
    if (state.page == Page::Editor)
        text = names.Text(state.targetDevice, grid.Current().Address(),
                          grid.Shown(grid.Current()).Byte(), state.numberMode);
    return text.empty() ? WaitingText(WaitingOn(state.page)) : text;
}

void Program::ChoosePort(const PortChoice& choice) {
    if (state.portAddress != choice.address)
        bus.Changed();
    state.portAddress = choice.address;
    UseBus({});
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus(choice.status, kResultSeconds);
}

void Program::ChooseI2cBus(const I2cBus& chosen) {
    UseBus({chosen});
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus("Programming Port Changed to " + std::string(chosen.ShortNode()),
                         kResultSeconds);
}

std::optional<I2cBus> Program::I2cBusInUse() const {
    const auto& chosen = state.BusInUse().kernel;
    const auto found = chosen ? FindI2cBus(outside_.wire.kernel.Buses(), *chosen) : std::nullopt;
    return found ? found : chosen;
}

void Program::TellMissingI2cBus() {
    const auto& chosen = state.BusInUse().kernel;
    const auto buses = outside_.wire.kernel.Buses();
    if (!chosen || FindI2cBus(buses, *chosen))
        return;
    const CommandScope scope(statusBar);
    Box box = kMissing;
    box.text = NoI2cBusLine(buses, *chosen);
    outside_.user.ShowBox(box);
}

void Program::ChooseSet(const std::optional<TvSet>& set) {
    for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        if (record.BelongsTo(device, set))
            continue;
        writeGuard.Leave(device);
        bus.Changed(device);
    }
    record.Choose(set);
    state.set = set ? set->name : std::string();
    OpenNamesOfSet();
    outside_.screen.Changed(Shown::Set);
    NamesChanged();
}

void Program::OpenNamesOfSet() {
    const auto& set = record.Chosen();
    names.Open(NameLayer::Set, set ? set->folder + "/" + std::string(kNamesFile) : "");
}

void Program::TellNameFaults() {
    Box box = kNamesFaulty;
    const std::vector<std::string> faults = names.Faults();
    for (const std::string& fault : faults)
        box.details += (box.details.empty() ? "" : "\n") + fault;
    if (faults.empty())
        return;
    const CommandScope scope(statusBar);
    box.text =
        Counted(faults.size(), "fault") + " in the files of names; what is right there counts.";
    outside_.user.ShowBox(box);
}

Hint Program::HintNow() const {
    if (state.simulated && !state.BusInUse().kernel)
        return Hint::Simulated;
    if (!state.BusInUse().kernel && !i2c.Failure().empty())
        return Hint::NoPort;
    const bool isRead =
        writeGuard.LastRead(TargetDevice::Primary) || writeGuard.LastRead(TargetDevice::Secondary);
    return isRead ? Hint::None : Hint::NothingRead;
}

std::string Program::LikenessNow() const {
    const auto& like = record.LooksLike(state.targetDevice);
    if (!like || (record.Chosen() && record.Chosen()->folder == like->set.folder))
        return {};
    const std::string& read = like->set.lastRead[static_cast<std::size_t>(state.targetDevice)];
    const std::string differing = like->differing == 0
                                      ? "no byte differs"
                                      : Counted(like->differing, "byte", "differs", "differ");
    return "This looks like " + like->set.name + ": " + differing + " from " +
           DayText(read, outside_.calendar.ZonedTime());
}

void Program::UseLikeness() {
    if (const auto like = record.LooksLike(state.targetDevice))
        setCommands.Use(like->set);
}

void Program::UseBus(ChosenBus chosen) {
    if (state.BusInUse() != chosen)
        bus.Changed();
    state.bus = std::move(chosen);
    state.busOfRun.reset();
}

void Program::ToggleReadTwice() {
    state.readPasses = state.readPasses > 1 ? 1 : 2;
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus(
        state.readPasses > 1 ? "Whole EEProms Are Read Twice" : "Whole EEProms Are Read Once",
        kResultSeconds);
}

}  // namespace tarnwell
