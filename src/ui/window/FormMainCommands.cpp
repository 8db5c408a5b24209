// The main window's commands: what starts them, and what they wait for.
#include <QTabBar>
#include <algorithm>

#include "archive/ImageRecords.h"
#include "command/WriteTexts.h"
#include "core/run/DriverLoader.h"
#include "i2c/parallel/InterfaceTest.h"
#include "i2c/parallel/PortOptions.h"
#include "ui/desktop/ArchiveDialog.h"
#include "ui/dialogs/FormAbout.h"
#include "ui/dialogs/FormBackups.h"
#include "ui/dialogs/FormCnP.h"
#include "ui/dialogs/FormCompare.h"
#include "ui/dialogs/FormHistory.h"
#include "ui/dialogs/FormI2CBus.h"
#include "ui/dialogs/FormPortOpts.h"
#include "ui/dialogs/FormSets.h"
#include "ui/dialogs/FormTestInt.h"
#include "ui/dialogs/names/FormNames.h"
#include "ui/looks/Text.h"
#include "ui/window/FormMain.h"
#include "ui/window/SheetFile.h"

namespace tarnwell {

namespace {

constexpr Message kSheetNotSaved{"The settings sheet could not be saved.", "E R R O R",
                                 BoxStyle::Exclamation};

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
        m_settings.showStandings();
        m_editor.page().grid().viewport()->update();
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

void FormMain::runMenu(MenuCommand command, int row) {
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
        case MenuCommand::Sheet:
            return makeSheet();
        case MenuCommand::RecentImage:
            return run([&] {
                m_program.imageArchive.LoadRecentImage(m_program.state.recentImages.At(row));
            });
        case MenuCommand::RecentSettings:
            return run([&] {
                m_program.settingsArchive.LoadRecentSettings(
                    m_program.state.recentSettings.At(row));
            });
        case MenuCommand::RestoreBackup:
            return restoreBackup(m_program.backups.Folder());
        case MenuCommand::Sets:
            return showSets();
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
        case MenuCommand::TextColumn:
            return run([this] { m_program.editorPage.ToggleTextColumn(); });
        case MenuCommand::NameByte:
            return nameByte();
        case MenuCommand::Names:
            return showNames();
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
    keepSize();
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
        [this](TargetDevice device, const std::set<int>& addresses, QWidget& window) {
            std::ranges::all_of(addresses,
                                [&](int address) { return nameByte(device, address, window); });
        },
        this);
    connect(&m_user.gate(), &InputGate::painting, &dialog, &FormCompare::showProgress);
    dialog.exec();
    if (const auto& place = dialog.destination())
        run([&] { m_program.GoTo(*place); });
}

void FormMain::nameByte() {
    runButton([] {});
    nameByte(m_program.state.targetDevice, m_program.grid.Current().Address(), *this);
}

/// Changes the one name that the byte has, or makes another one; false if the user gave up.
bool FormMain::nameByte(TargetDevice device, int address, QWidget& window) {
    NameList own = m_program.names.At(device, address);
    std::erase_if(own, [](const Named& named) { return named->cell.has_value(); });
    const Named former = own.size() == 1 ? own.front() : nullptr;
    FormName dialog(m_program, former ? *former : m_program.nameCommands.Proposed(device, address),
                    former, &window);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    runInside([&] { m_program.nameCommands.Put(dialog.named(), former, dialog.layer()); });
    return true;
}

void FormMain::showNames() {
    FormNames names(
        m_program, [this](const std::function<void()>& command) { runInside(command); }, this);
    names.exec();
    if (const auto& place = names.destination())
        run([&] { m_program.GoTo(*place); });
}

void FormMain::makeSheet() {
    if (m_program.state.targetDevice == TargetDevice::Secondary)
        return run([this] { m_user.ShowBox(kNoSettingsOnSecondary); });
    if (!HoldsImage(m_program.state, m_program.buffer))
        return run([this] { m_user.ShowBox(kMustReadFirst); });
    FileDialog dialog(this, QStringLiteral("Save Settings Sheet As..."),
                      pathToQt(m_program.state.archiveFolder),
                      QStringLiteral("Portable Document (*.pdf);;Web Page (*.html)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("pdf"));
    connect(&dialog, &QFileDialog::filterSelected, this, [&](const QString& filter) {
        dialog.setDefaultSuffix(filter.contains("html") ? QStringLiteral("html")
                                                        : QStringLiteral("pdf"));
    });
    if (dialog.exec() != QDialog::Accepted)
        return;
    SheetFacts facts{.set = m_program.origin.Name(),
                     .date = m_desktop.ZonedTime().substr(0, 10),
                     .image = m_program.buffer,
                     .first = {},
                     .names = m_program.names.On(TargetDevice::Primary)};
    if (const auto& set = m_program.record.Chosen()) {
        facts.set = set->name;
        facts.model = set->model;
        for (const KeptImage& kept : m_program.backups.All())
            if (kept.device == TargetDevice::Primary)
                facts.first = LoadOwnImage(kept.path);
    }
    const std::string path = pathFromQt(dialog.selectedFiles().constFirst());
    run([&] {
        if (saveSheet(path, facts))
            m_program.statusBar.ShowStatus("Settings Sheet Saved", kResultSeconds);
        else
            m_user.ShowBox(kSheetNotSaved);
    });
}

void FormMain::showSets() {
    FormSets sets(
        m_program, [this](const std::function<void()>& command) { runInside(command); }, this);
    switch (static_cast<FormSets::Choice>(sets.exec())) {
        case FormSets::Choice::Use:
            return run([&] { m_program.setCommands.Use(*sets.selected()); });
        case FormSets::Choice::UseNone:
            return run([this] { m_program.setCommands.Use(std::nullopt); });
        case FormSets::Choice::History:
            return showHistory(*sets.selected());
        case FormSets::Choice::Backups:
            return restoreBackup(sets.selected()->folder);
        case FormSets::Choice::ShowFolder:
            return run([&] { m_program.helpCommands.ShowFolder(sets.selected()->folder); });
    }
}

void FormMain::showHistory(const TvSet& set) {
    FormHistory history(
        m_program, m_user, set,
        [this](const std::function<void()>& command) { runInside(command); }, this);
    history.exec();
}

void FormMain::restoreBackup(const std::string& folder) {
    FormBackups backups(m_program, folder, FormBackups::Purpose::Restore, this);
    switch (static_cast<FormBackups::Choice>(backups.exec())) {
        case FormBackups::Choice::Load:
            return runButton([&] { m_program.imageArchive.LoadKeptImage(backups.selected()); });
        case FormBackups::Choice::Restore:
            return runButton([&] { m_program.writeDifferences.Restore(backups.selected()); });
        case FormBackups::Choice::Compare:
            runButton([&] {
                m_program.compare.Begin();
                m_program.compare.ChooseBackup(Side::Right, backups.selected());
            });
            return showCompare();
        case FormBackups::Choice::ShowFolder:
            return run([&] { m_program.helpCommands.ShowFolder(folder); });
    }
}

void FormMain::showPortOptions() {
    PortOptions options(m_program.state, m_program.statusBar, m_user, m_program.i2c);
    FormPortOpts(options, this).exec();
    showBus();  // they may have found no port
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

void FormMain::tellNameFaults() {
    run([this] { m_program.TellNameFaults(); });
}

void FormMain::showInterfaceTest() {
    InterfaceTest test(m_program.i2c, m_wire.port, m_program.statusBar, m_user);
    bool passed = false;
    run([&] { passed = test.PreCheck(); });
    if (passed)
        FormTestInt(test, this).exec();
}

void FormMain::startDriverLoader() {
    guard([&] {
        DriverLoader loader(m_platform, m_desktop, m_program.statusBar, m_user);
        FormCnP(loader.Run(), this).exec();
    });
}

}  // namespace tarnwell
