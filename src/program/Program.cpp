#include "program/Program.h"

namespace tarnwell {

namespace {

RunContext RunOf(Program& program, const Surroundings& outside) {
    return {program.state,    program.statusBar, outside.user,
            outside.platform, outside.registry,  outside.window};
}

}  // namespace

Program::Program(const Surroundings& outside)
    : statusBar(state, outside.screen, outside.msgTimer),
      i2c(outside.wire, state, statusBar, outside.user),
      backups(outside.backupFolder, outside.calendar),
      writeGuard(state, statusBar, outside.user, backups),
      context{state, statusBar, outside.screen, outside.user, i2c, writeGuard},
      grid(state, statusBar, outside.screen, buffer, outside.editorView),
      pending(context, grid, outside.editorView),
      cellEditor(context, grid, pending),
      editorPage(context, grid, pending, cellEditor, outside.editorView),
      cells(state, outside.settingsView),
      settings(context, buffer, editorPage, cells),
      valueEditor(context, cells, outside.settingsView),
      followers(pending, editorPage, cells, settings),
      wholeDevice(context, buffer, followers),
      imageArchive(context, outside.calendar, buffer, followers),
      settingsArchive(context, cells, settings),
      numberModeMenu(state, statusBar, outside.screen, {&cells, &grid, &pending}),
      helpCommands(outside.programs, outside.user),
      outside_(outside) {}

void Program::StartUp(StartUpSteps& steps) {
    tarnwell::StartUp(RunOf(*this, outside_), steps);
}

Closing Program::ShutDown() {
    return tarnwell::ShutDown(RunOf(*this, outside_), followers);
}

void Program::ChoosePort(const PortChoice& choice) {
    state.portAddress = choice.addressText;
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus(choice.status, kResultSeconds);
}

}  // namespace tarnwell
