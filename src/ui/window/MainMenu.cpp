#include "ui/window/MainMenu.h"

#include <QFileInfo>
#include <QMenu>
#include <array>
#include <optional>
#include <string>

#include "i2c/parallel/PinMapping.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// How much of a file's name is shown.
constexpr int kNameLetters = 50;

struct Entry {
    int depth;
    const char* name;
    std::string_view caption;  ///< "-" for a separator, "" in front of a submenu's items
    MenuCommand command = MenuCommand::None;
    const char* keys = "";  ///< one or more, separated by "; "
};

constexpr std::array kEntries{
    Entry{0, "mnuFile", "Archive &File"},
    Entry{1, "mnuFileLoad", "&Load"},
    Entry{2, "mnuFileLoadImage", "EEP &Image", MenuCommand::LoadImage},
    Entry{2, "mnuFileLoadValues", "&Settings", MenuCommand::LoadSettings},
    Entry{1, "mnuFileSave", "&Save"},
    Entry{2, "mnuFileSaveImage", "EEP &Image", MenuCommand::SaveImage},
    Entry{2, "mnuFileSaveValues", "&Settings", MenuCommand::SaveSettings},
    Entry{1, "mnuFileSheet", "Settings S&heet...", MenuCommand::Sheet},
    Entry{1, "sep11", "-"},
    Entry{1, "mnuFileImages", "Recent &Images", MenuCommand::RecentImage},
    Entry{1, "mnuFileSettings", "Recent S&ettings", MenuCommand::RecentSettings},
    Entry{1, "sep10", "-"},
    Entry{1, "mnuFileBackups", "Restore &Backup...", MenuCommand::RestoreBackup},
    Entry{1, "sep12", "-"},
    Entry{1, "mnuSet", "&Television Set...", MenuCommand::Sets},
    Entry{1, "sep1", "-"},
    Entry{1, "mnuFileExit", "E&xit", MenuCommand::Exit},
    Entry{0, "mnuEdit", "&Edit"},
    Entry{1, "mnuEditUndo", "&Undo", MenuCommand::Undo, "Ctrl+Z"},
    Entry{1, "mnuEditRedo", "&Redo", MenuCommand::Redo, "Ctrl+Shift+Z; Ctrl+Y"},
    Entry{1, "sep7", "-"},
    Entry{1, "mnuEditGoTo", "&Go to...", MenuCommand::GoTo, "Ctrl+G"},
    Entry{1, "mnuEditFind", "&Find...", MenuCommand::Find, "Ctrl+F"},
    Entry{1, "mnuEditFindNext", "Find Ne&xt", MenuCommand::FindNext, "F3"},
    Entry{1, "mnuEditFindPrevious", "Find &Previous", MenuCommand::FindPrevious, "Shift+F3"},
    Entry{1, "sep13", "-"},
    Entry{1, "mnuEditText", "&Text Column", MenuCommand::TextColumn},
    Entry{1, "sep14", "-"},
    Entry{1, "mnuEditName", "&Name This Byte...", MenuCommand::NameByte, "Ctrl+N"},
    Entry{1, "mnuEditNames", "Na&mes...", MenuCommand::Names},
    Entry{0, "mnuEEP", "I2C &Operations"},
    Entry{1, "mnuEEPRead", "&Read Entire EEP", MenuCommand::ReadEntireEep},
    Entry{1, "mnuEEPWrite", "&Write Entire EEP", MenuCommand::WriteEntireEep},
    Entry{1, "mnuEEPFill", "&Fill Entire EEP", MenuCommand::FillEntireEep},
    Entry{1, "sep4", "-"},
    Entry{1, "mnuEEPselect", "&Select EEPROM"},
    Entry{2, "mnuEEPsel_0", "&Primary (Color Values)", MenuCommand::SelectPrimary},
    Entry{2, "mnuEEPsel_1", "&Secondary (Unknown)", MenuCommand::SelectSecondary},
    Entry{1, "sep9", "-"},
    Entry{1, "mnuEEPCompare", "&Compare...", MenuCommand::Compare, "Ctrl+D"},
    Entry{1, "mnuEEPWriteDifferences", "Write &Differences to EEP", MenuCommand::WriteDifferences},
    Entry{0, "mnuOptions", "Options"},
    Entry{1, "mnuNum", "Number &Mode"},
    Entry{2, "mnuSelMode_0", "&Decimal", MenuCommand::DecimalMode},
    Entry{2, "mnuSelMode_1", "&Hex", MenuCommand::HexMode},
    Entry{1, "mnuPort", "&Parallel Port"},
    Entry{2, "mnuPortSel_0", kPortChoices[0].caption, MenuCommand::PortLpt1},
    Entry{2, "mnuPortSel_1", kPortChoices[1].caption, MenuCommand::PortLpt2},
    Entry{2, "mnuPortSel_2", kPortChoices[2].caption, MenuCommand::PortLpt3},
    Entry{2, "sep2", "-"},
    Entry{2, "mnuPortOpts", "&Advanced Setup", MenuCommand::PortOptions},
    Entry{2, "mnuPortI2C", "&I2C Bus...", MenuCommand::I2cBus},
    Entry{1, "sep3", "-"},
    Entry{1, "mnuPortTest", "I2C Interface &Test", MenuCommand::InterfaceTest},
    Entry{1, "sep5", "-"},
    Entry{1, "mnuOptionsPortSer", "DLPortIO Service", MenuCommand::DriverLoader},
    Entry{1, "sep8", "-"},
    Entry{1, "mnuReadTwice", "Read Twic&e", MenuCommand::ReadTwice},
    Entry{0, "mnuHelp", "&Help"},
    Entry{1, "mnuHelpHelp", "Help &Topics", MenuCommand::HelpTopics},
    Entry{1, "sep6", "-"},
    Entry{1, "mnuHelpHistory", "Release &History", MenuCommand::ReleaseHistory},
    Entry{1, "mnuHelpAbout", "About &Tarnwell 2", MenuCommand::About},
};

consteval bool EveryCommandIsOfferedOnce() {
    for (int command = 1; command <= static_cast<int>(MenuCommand::About); ++command) {
        int items = 0;
        for (const Entry& entry : kEntries)
            items += entry.command == static_cast<MenuCommand>(command) ? 1 : 0;
        if (items != 1)
            return false;
    }
    return true;
}
static_assert(EveryCommandIsOfferedOnce());

consteval bool DepthsMakeATree() {
    for (std::size_t index = 1; index < kEntries.size(); ++index) {
        const Entry& before = kEntries[index - 1];
        const bool menu = before.caption != "-" && before.command == MenuCommand::None;
        const int deepest = menu ? before.depth + 1 : before.depth;
        if (kEntries[index].depth > deepest || (menu && kEntries[index].depth < deepest))
            return false;
    }
    return kEntries.back().command != MenuCommand::None;
}
static_assert(DepthsMakeATree());

/// Its key opens About Tarnwell 2 as well, as users know it.
constexpr std::string_view kOlder = "mnuHelpHelp";

constexpr char MnemonicOf(std::string_view caption) {
    const std::size_t mark = caption.find('&');
    if (mark == std::string_view::npos)
        return '\0';
    const char letter = caption[mark + 1];
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

consteval bool MnemonicsDifferWithinAMenu() {
    for (std::size_t index = 0; index < kEntries.size(); ++index) {
        const char mnemonic = MnemonicOf(kEntries[index].caption);
        for (std::size_t next = index + 1; next < kEntries.size(); ++next) {
            if (kEntries[next].depth < kEntries[index].depth)
                break;
            const bool isBeside = kEntries[next].depth == kEntries[index].depth &&
                                  std::string_view(kEntries[index].name) != kOlder;
            if (isBeside && mnemonic != '\0' && MnemonicOf(kEntries[next].caption) == mnemonic)
                return false;
        }
    }
    return true;
}
static_assert(MnemonicsDifferWithinAMenu());

/// An item that takes back `step`, if there is one; the verb of an empty one says that.
void showStep(QAction& item, const QString& verb, const std::optional<std::string>& step) {
    item.setEnabled(step.has_value());
    item.setText(QLatin1Char('&') + verb);
    item.setToolTip(QStringLiteral("Nothing to %1").arg(verb.toLower()));
    if (!step)
        return;
    const QString name = toQt(*step);
    item.setText(item.text() + QLatin1Char(' ') + QString(name).replace("&", "&&"));
    item.setToolTip(verb + QLatin1Char(' ') + name);
}

}  // namespace

MainMenu::MainMenu(QMenuBar& bar, const ProgramState& state, const History& history)
    : QObject(&bar), m_state(state), m_history(history) {
    std::array<QMenu*, 3> menus{};
    for (const Entry& entry : kEntries) {
        const auto depth = static_cast<std::size_t>(entry.depth);
        QAction* item = nullptr;
        if (entry.caption == "-") {
            item = menus[depth - 1]->addSeparator();
        } else if (entry.command == MenuCommand::None) {
            menus[depth] = depth == 0 ? bar.addMenu(toQt(entry.caption))
                                      : menus[depth - 1]->addMenu(toQt(entry.caption));
            menus[depth]->setObjectName(QLatin1String(entry.name));
            menus[depth]->setToolTipsVisible(true);
            item = menus[depth]->menuAction();
        } else {
            item = menus[depth - 1]->addAction(toQt(entry.caption));
            item->setShortcuts(QKeySequence::listFromString(QLatin1String(entry.keys)));
            connect(item, &QAction::triggered, this, [this, command = entry.command] {
                sync();  // a choice changes an item's mark, whatever becomes of it
                Q_EMIT chosen(command);
            });
        }
        item->setObjectName(QLatin1String(entry.name));
        item->setMenuRole(QAction::NoRole);
        m_actions.insert(item->objectName(), item);
    }
    addRecent("mnuFileImages", MenuCommand::RecentImage);
    addRecent("mnuFileSettings", MenuCommand::RecentSettings);
    for (const char* name : {"mnuFile", "mnuEEP"})
        connect(action(name).menu(), &QMenu::aboutToShow, this, &MainMenu::bufferMenuOpening);
    for (const char* name : {"mnuEdit", "mnuOptions", "mnuHelp"})
        connect(action(name).menu(), &QMenu::aboutToShow, this, &MainMenu::otherMenuOpening);
    for (const char* name :
         {"mnuEEPsel_0", "mnuEEPsel_1", "mnuSelMode_0", "mnuSelMode_1", "mnuPortSel_0",
          "mnuPortSel_1", "mnuPortSel_2", "mnuPortI2C", "mnuReadTwice", "mnuEditText"})
        action(name).setCheckable(true);
    sync();
}

/// An item's menu of what the list of files has room for.
void MainMenu::addRecent(const char* name, MenuCommand command) {
    auto* menu = new QMenu(&static_cast<QMenuBar&>(*parent()));
    menu->setObjectName(QLatin1String(name));
    menu->setToolTipsVisible(true);
    action(name).setMenu(menu);
    for (int row = 0; row < static_cast<int>(RecentFiles::kMost); ++row) {
        QAction* item = menu->addAction(QString());
        item->setObjectName(elementName(name, row));
        connect(item, &QAction::triggered, this,
                [this, command, row] { Q_EMIT chosen(command, row); });
    }
}

void MainMenu::syncRecent(const char* name, const RecentFiles& files) {
    QMenu& menu = *action(name).menu();
    const QList<QAction*> items = menu.actions();
    for (qsizetype row = 0; row < items.size(); ++row) {
        const auto index = static_cast<std::size_t>(row);
        items[row]->setVisible(index < files.Paths().size());
        if (!items[row]->isVisible())
            continue;
        const QFileInfo file(pathToQt(files.Paths()[index]));
        const QString shown = menu.fontMetrics().elidedText(
            file.fileName(), Qt::ElideMiddle, kNameLetters * menu.fontMetrics().averageCharWidth());
        items[row]->setText(
            QStringLiteral("&%1 %2").arg(row + 1).arg(QString(shown).replace("&", "&&")));
        items[row]->setToolTip(file.path());
    }
    allow(action(name), !files.Paths().empty(), "Nothing was loaded or saved yet");
}

void MainMenu::check(const char* array, int index, bool checked) {
    m_actions[elementName(array, index)]->setChecked(checked);
}

void MainMenu::syncPort() {
    const bool parallel = !m_state.BusInUse().kernel;
    for (int index = 0; index < static_cast<int>(kPortChoices.size()); ++index)
        check("mnuPortSel", index,
              parallel &&
                  kPortChoices[static_cast<std::size_t>(index)].address == m_state.portAddress);
    action("mnuPortI2C").setChecked(!parallel);
    for (const char* name : {"mnuPortOpts", "mnuPortTest"})
        allow(action(name), parallel,
              "For a parallel port only: choose one under Parallel Port first");
}

void MainMenu::sync() {
    check("mnuSelMode", 0, m_state.numberMode == NumberMode::Decimal);
    check("mnuSelMode", 1, m_state.numberMode == NumberMode::Hex);
    check("mnuEEPsel", 0, m_state.targetDevice == TargetDevice::Primary);
    check("mnuEEPsel", 1, m_state.targetDevice == TargetDevice::Secondary);
    syncPort();
    showStep(action("mnuEditUndo"), QStringLiteral("Undo"), m_history.NextName(Direction::Undo));
    showStep(action("mnuEditRedo"), QStringLiteral("Redo"), m_history.NextName(Direction::Redo));
    syncRecent("mnuFileImages", m_state.recentImages);
    syncRecent("mnuFileSettings", m_state.recentSettings);
    action("mnuReadTwice").setChecked(m_state.readPasses > 1);
    action("mnuEditText").setChecked(m_state.textColumn);
    allow(action("mnuNum"), m_state.editor == EditorSwitch::Off,
          "Switch the Data Editor off first");
    action("mnuEEPFill").setVisible(m_state.fillItemVisible);
    action("sep5").setVisible(m_state.driverLoaderItemVisible);
    action("mnuOptionsPortSer").setVisible(m_state.driverLoaderItemVisible);
}

}  // namespace tarnwell

#include "moc_MainMenu.cpp"
