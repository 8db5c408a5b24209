#include "program/Program.h"

#include <cstdio>

#include "settings/CellTexts.h"

namespace tarnwell {

namespace {

constexpr Message kMissing{"", "W A R N I N G", BoxStyle::Exclamation};

RunContext RunOf(Program& program, const Surroundings& outside) {
    return {program.state,    program.statusBar, outside.user,
            outside.platform, outside.registry,  outside.window};
}

}  // namespace

Program::Program(const Surroundings& outside)
    : statusBar(state, outside.screen, outside.msgTimer),
      i2c(outside.wire, state, statusBar, outside.user),
      kernelBus(outside.wire, state, statusBar, outside.user),
      bus(i2c, kernelBus, state),
      backups(outside.backupFolder, outside.calendar),
      writeGuard(state, statusBar, outside.user, backups),
      history({state, statusBar, outside.screen, buffer, grid, pending, cells}, bus.Known()),
      context{state, statusBar, outside.screen, outside.user, bus, writeGuard, history},
      deviceReader(context,
                   [this](int address) { return SettingNameOn(state.targetDevice, address); }),
      grid(state, statusBar, outside.screen, buffer, outside.editorView),
      pending(context, grid, outside.editorView),
      cellEditor(context, grid, pending),
      editorPage(context, grid, pending, cellEditor, outside.editorView),
      find(context, grid, editorPage),
      cells(state, outside.settingsView),
      settings(context, buffer, editorPage, cells),
      valueEditor(context, cells, outside.settingsView),
      cellCommands(context, cells),
      followers(pending, editorPage, cells, settings),
      wholeDevice(context, deviceReader, buffer, followers),
      imageArchive(context, outside.calendar, buffer, followers),
      settingsArchive(context, cells, settings),
      compare(context, deviceReader, imageArchive, settingsArchive, cells, buffer, followers),
      writeDifferences(context, deviceReader, buffer),
      numberModeMenu(state, statusBar, outside.screen, {&cells, &grid, &pending}),
      helpCommands(outside.programs, outside.user),
      undo(context, history, cellEditor),
      outside_(outside) {
    statusBar.SetBackground([this] { return BackgroundText(); });
}

void Program::StartUp(StartUpSteps& steps) {
    tarnwell::StartUp(RunOf(*this, outside_), steps);
}

Closing Program::ShutDown() {
    return tarnwell::ShutDown(RunOf(*this, outside_), followers);
}

void Program::Abandon(std::string_view why) {
    std::string line = "tarnwell: " + std::string(why);
    if (const int written = context.i2c.BytesWritten(); written > 0)
        line += "; " + std::to_string(written) +
                (written == 1 ? " byte was written" : " bytes were written") + " to the " +
                (state.targetDevice == TargetDevice::Primary ? "primary" : "secondary") +
                " EEPROM and not verified";
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

std::string Program::BackgroundText() const {
    if (valueEditor.IsOpen())
        return valueEditor.Description();
    const bool named = state.page == Page::Editor && state.targetDevice == TargetDevice::Primary;
    std::string text = named ? ByteText(grid.Current().Address(), state.numberMode) : "";
    return text.empty() ? WaitingText(WaitingOn(state.page)) : text;
}

void Program::ChoosePort(const PortChoice& choice) {
    state.portAddress = choice.addressText;
    UseI2cBus({});
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus(choice.status, kResultSeconds);
}

void Program::ChooseI2cBus(const I2cBus& chosen) {
    UseI2cBus(I2cBusText(chosen));
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus("Programming Port Changed to " + std::string(chosen.ShortNode()),
                         kResultSeconds);
}

std::optional<I2cBus> Program::FoundI2cBus() const {
    return FindI2cBus(outside_.wire.kernel.Buses(), I2cBusFromText(state.I2cBusInUse()));
}

std::optional<I2cBus> Program::I2cBusInUse() const {
    if (state.I2cBusInUse().empty())
        return std::nullopt;
    return FoundI2cBus().value_or(I2cBusFromText(state.I2cBusInUse()));
}

void Program::TellMissingI2cBus() {
    if (state.I2cBusInUse().empty() || FoundI2cBus())
        return;
    const CommandScope scope(statusBar);
    Box box = kMissing;
    box.text = NoI2cBusLine(outside_.wire.kernel.Buses(), I2cBusFromText(state.I2cBusInUse()));
    outside_.user.ShowBox(box);
}

void Program::UseI2cBus(std::string text) {
    if (state.I2cBusInUse() != text)
        bus.Changed();
    state.i2cBus = std::move(text);
    state.i2cBusOfRun.reset();
}

void Program::ToggleReadTwice() {
    state.readPasses = state.readPasses > 1 ? 1 : 2;
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus(
        state.readPasses > 1 ? "Whole EEProms Are Read Twice" : "Whole EEProms Are Read Once",
        kResultSeconds);
}

}  // namespace tarnwell
