// The menu bar: its tree as a table, built once and kept in step with the program state.
#pragma once

#include <QAction>
#include <QHash>
#include <QMenu>
#include <QMenuBar>

#include "history/History.h"

namespace tarnwell {

/// What a menu item starts.
enum class MenuCommand {
    None,
    LoadImage,
    LoadSettings,
    SaveImage,
    SaveSettings,
    Sheet,
    RecentImage,
    RecentSettings,
    RestoreBackup,
    Sets,
    Exit,
    Undo,
    Redo,
    GoTo,
    Find,
    FindNext,
    FindPrevious,
    TextColumn,
    NameByte,
    Names,
    ReadEntireEep,
    WriteEntireEep,
    FillEntireEep,
    SelectPrimary,
    SelectSecondary,
    Compare,
    WriteDifferences,
    DecimalMode,
    HexMode,
    PortLpt1,
    PortLpt2,
    PortLpt3,
    PortOptions,
    I2cBus,
    InterfaceTest,
    DriverLoader,
    ReadTwice,
    HelpTopics,
    ReleaseHistory,
    About,
};

class MainMenu final : public QObject {
    Q_OBJECT
  public:
    MainMenu(QMenuBar& bar, const ProgramState& state, const History& history);

    /// Sets check marks, visible and enabled items from the program state, and names the steps.
    void sync();

    /// The Parallel Port menu.
    QMenu& portMenu() const { return *action("mnuPort").menu(); }

  Q_SIGNALS:
    /// A menu whose commands work on the buffer is about to show its items.
    void bufferMenuOpening();

    /// Any other menu is.
    void otherMenuOpening();
    /// `row` is that of a recent file, for their commands.
    void chosen(MenuCommand command, int row = 0);

  private:
    QAction& action(const char* name) const { return *m_actions[QLatin1String(name)]; }
    void check(const char* array, int index, bool checked);
    void syncPort();
    void addRecent(const char* name, MenuCommand command);
    void syncRecent(const char* name, const RecentFiles& files);

    const ProgramState& m_state;
    const History& m_history;
    QHash<QString, QAction*> m_actions;
};

}  // namespace tarnwell
