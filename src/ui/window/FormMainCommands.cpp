// The main window's commands: what starts them, and what they wait for.
#include <QTabBar>

#include "core/DriverLoader.h"
#include "i2c/InterfaceTest.h"
#include "i2c/PortOptions.h"
#include "ui/dialogs/FormAbout.h"
#include "ui/dialogs/FormBackups.h"
#include "ui/dialogs/FormCnP.h"
#include "ui/dialogs/FormCompare.h"
#include "ui/dialogs/FormI2CBus.h"
#include "ui/dialogs/FormPortOpts.h"
#include "ui/dialogs/FormTestInt.h"
#include "ui/window/FormMain.h"

namespace tarnwell {

namespace {

/// formCnP, above the main window.
class DriverPathDialog final : public DriverPathWindow {
  public:
    explicit DriverPathDialog(QWidget* parent) : m_parent(parent) {}
    void ShowFormCnP(const std::string& driverPath) override {
        FormCnP(driverPath, m_parent).exec();
    }

  private:
    QWidget* m_parent;
};

}  // namespace

void FormMain::guard(const std::function<void()>& action) {
    try {
        action();
    } catch (const ProgramEnd&) {
        onProgramEnd();
    }
}

// A screen reader presses what neither keyboard nor mouse could reach: while a command is busy,
// nothing else starts.
void FormMain::run(const std::function<void()>& command) {
    if (!m_user.isBusy())
        runInside(command);
}

// The dialog itself keeps other input away.
void FormMain::runInside(const std::function<void()>& command) {
    if (m_user.gate().isShut())
        return;
    guard([&] {
        const CommandScope scope(m_program.statusBar);
        command();
        m_user.endCommand();
        showBus();
    });
}

void FormMain::runButton(const std::function<void()>& command) {
    run([&] {
        m_program.cellEditor.SettleEntry();
        command();
    });
}

void FormMain::turnToPage(Page page) {
    if (m_user.isBusy()) {
        const QSignalBlocker quiet(m_tabs);
        m_tabs.setCurrentIndex(static_cast<int>(m_program.state.page));
        return;
    }
    run([&] { m_program.editorPage.SwitchPage(page); });
    if (page == Page::Editor && !m_tabs.tabBar()->hasFocus())
        m_editor.FocusGrid();
}

void FormMain::toggleEditor() {
    if (!m_user.isBusy())
        m_program.editorPage.ToggleEditor();
    m_editor.showSwitch();
}

void FormMain::runMenu(MenuCommand command) {
    if (m_user.isBusy())
        return;
    switch (command) {
        case MenuCommand::None:
            return;
        case MenuCommand::LoadImage:
            return run([this] { m_program.imageArchive.LoadImage(); });
        case MenuCommand::LoadSettings:
            return run([this] { m_program.settingsArchive.LoadSettings(); });
        case MenuCommand::SaveImage:
            return run([this] { m_program.imageArchive.SaveImage(); });
        case MenuCommand::SaveSettings:
            return run([this] { m_program.settingsArchive.SaveSettings(); });
        case MenuCommand::RestoreBackup:
            return restoreBackup();
        case MenuCommand::Exit:
            close();
            return;
        case MenuCommand::GoTo:
            return m_navigation.goTo();
        case MenuCommand::Find:
            return m_navigation.find();
        case MenuCommand::FindNext:
            return m_navigation.findAgain(FindDirection::Next);
        case MenuCommand::FindPrevious:
            return m_navigation.findAgain(FindDirection::Previous);
        case MenuCommand::Undo:
            return run([this] { m_program.undo.Undo(); });
        case MenuCommand::Redo:
            return run([this] { m_program.undo.Redo(); });
        case MenuCommand::ReadEntireEep:
            return run([this] { m_program.wholeDevice.ReadEntireEep(); });
        case MenuCommand::WriteEntireEep:
            return run([this] { m_program.wholeDevice.WriteEntireEep(); });
        case MenuCommand::FillEntireEep:
            return run([this] { m_program.wholeDevice.FillEntireEep(); });
        case MenuCommand::SelectPrimary:
            return run([this] { m_program.wholeDevice.SelectEeprom(TargetDevice::Primary); });
        case MenuCommand::SelectSecondary:
            return run([this] { m_program.wholeDevice.SelectEeprom(TargetDevice::Secondary); });
        case MenuCommand::Compare:
            return compare();
        case MenuCommand::WriteDifferences:
            return run([this] { m_program.writeDifferences.WriteDifferencesToEep(); });
        case MenuCommand::DecimalMode:
            return run([this] { m_program.numberModeMenu.Select(NumberMode::Decimal); });
        case MenuCommand::HexMode:
            return run([this] { m_program.numberModeMenu.Select(NumberMode::Hex); });
        case MenuCommand::PortLpt1:
            return run([this] { m_program.ChoosePort(kPortChoices[0]); });
        case MenuCommand::PortLpt2:
            return run([this] { m_program.ChoosePort(kPortChoices[1]); });
        case MenuCommand::PortLpt3:
            return run([this] { m_program.ChoosePort(kPortChoices[2]); });
        case MenuCommand::PortOptions:
            return showPortOptions();
        case MenuCommand::I2cBus:
            return chooseI2cBus();
        case MenuCommand::InterfaceTest:
            return showInterfaceTest();
        case MenuCommand::DriverLoader:
            return startDriverLoader();
        case MenuCommand::ReadTwice:
            return run([this] { m_program.ToggleReadTwice(); });
        case MenuCommand::HelpTopics:
            return run([this] { m_program.helpCommands.HelpTopics(); });
        case MenuCommand::ReleaseHistory:
            return run([this] { m_program.helpCommands.ReleaseHistory(); });
        case MenuCommand::About:
            return showAbout();
    }
}

void FormMain::showAbout() {
    FormAbout(this).exec();
}

void FormMain::closeEvent(QCloseEvent* event) {
    Closing closing = Closing::KeepRunning;
    run([&] { closing = m_program.ShutDown(); });
    if (closing == Closing::KeepRunning) {
        event->ignore();
        return;
    }
    event->accept();
}

void FormMain::compare() {
    runButton([this] {
        m_program.editorPage.SettleGridEdits();
        m_program.compare.Begin();
        m_program.compare.Choose(Side::Right, m_program.state.targetDevice == TargetDevice::Primary
                                                  ? Source::Primary
                                                  : Source::Secondary);
    });
    showCompare();
}

void FormMain::showCompare() {
    FormCompare dialog(
        m_program, m_user, [this](const std::function<void()>& command) { runInside(command); },
        this);
    connect(&m_user.gate(), &InputGate::painting, &dialog, &FormCompare::showProgress);
    dialog.exec();
    if (const auto& place = dialog.destination())
        run([&] { m_program.GoTo(*place); });
}

void FormMain::restoreBackup() {
    FormBackups backups(m_program, FormBackups::Purpose::Restore, this);
    switch (static_cast<FormBackups::Choice>(backups.exec())) {
        case FormBackups::Choice::Load:
            return runButton([&] { m_program.imageArchive.LoadKeptImage(backups.selected()); });
        case FormBackups::Choice::Compare:
            runButton([&] {
                m_program.compare.Begin();
                m_program.compare.ChooseBackup(Side::Right, backups.selected());
            });
            return showCompare();
        case FormBackups::Choice::ShowFolder:
            return run([this] { m_program.helpCommands.ShowFolder(m_program.backups.Folder()); });
    }
}

void FormMain::showPortOptions() {
    PortOptions options(m_program.state, m_program.statusBar, m_user, m_program.i2c);
    FormPortOpts(options, this).exec();
}

void FormMain::chooseI2cBus() {
    BusChooser chooser(m_wire.kernel, m_wire.stop);
    FormI2CBus dialog(chooser, m_program.I2cBusInUse(), this);
    if (dialog.exec() == QDialog::Accepted)
        run([&] { m_program.ChooseI2cBus(*dialog.selected()); });
}

void FormMain::tellMissingI2cBus() {
    run([this] { m_program.TellMissingI2cBus(); });
}

void FormMain::showInterfaceTest() {
    InterfaceTest test(m_program.i2c, m_wire.port, m_program.statusBar, m_user);
    bool passed = false;
    run([&] { passed = test.PreCheck(); });
    if (passed)
        FormTestInt(test, this).exec();
}

void FormMain::startDriverLoader() {
    DriverPathDialog pathWindow(this);
    guard([&] {
        DriverLoader(m_platform, m_desktop, m_program.statusBar, m_user, pathWindow).Run();
    });
}

}  // namespace tarnwell
