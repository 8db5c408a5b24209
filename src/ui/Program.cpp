#include "ui/Program.h"

namespace tarnwell {

Program::Program(const Surroundings& outside)
    : outside_(outside),
      statusBar(state, outside.screen, outside.msgTimer),
      i2c(outside.port, outside.clock, state, statusBar, outside.user, outside.trace),
      backups(outside.backupFolder, outside.calendar),
      writeGuard(state, statusBar, outside.user, backups),
      grid(state, statusBar, outside.screen, buffer, outside.editorView),
      pending(state, statusBar, outside.user, i2c, writeGuard, grid, outside.editorView),
      cellEditor(state, statusBar, outside.user, grid, pending),
      editorPage(state, statusBar, outside.screen, outside.user, grid, pending, cellEditor,
                 outside.editorView),
      cells(state, outside.settingsView),
      settings(state, statusBar, outside.user, i2c, writeGuard, buffer, grid, editorPage, cells),
      valueEditor(state, statusBar, outside.user, cells, outside.settingsView),
      wholeDevice(state, statusBar, outside.screen, outside.user, i2c, writeGuard, buffer, *this),
      imageArchive(state, statusBar, outside.user, outside.calendar, buffer, grid, editorPage,
                   settings),
      settingsArchive(state, statusBar, outside.screen, outside.user, cells, settings),
      numberModeMenu(state, statusBar, outside.screen, {&cells, &grid, &pending}),
      helpCommands(outside.programs, outside.user) {}

void Program::StartUp(StartUpSteps& steps) {
    tarnwell::StartUp(
        {state, statusBar, outside_.user, outside_.platform, outside_.registry, outside_.window},
        steps);
}

Closing Program::ShutDown() {
    return tarnwell::ShutDown(
        {state, statusBar, outside_.user, outside_.platform, outside_.registry, outside_.window},
        *this);
}

void Program::ChoosePort(const PortChoice& choice) {
    state.portAddress = choice.addressText;
    outside_.screen.Changed(Shown::Menus);
    statusBar.ShowStatus(choice.status, kResultSeconds);
}

}  // namespace tarnwell
