// The main window: it shows the program and starts its commands.
#pragma once

#include <QCloseEvent>
#include <QMainWindow>
#include <QPushButton>
#include <QTabWidget>
#include <functional>

#include "core/DriverLoader.h"
#include "program/Program.h"
#include "ui/desktop/Desktop.h"
#include "ui/desktop/QtUser.h"
#include "ui/looks/Measures.h"
#include "ui/window/EditorWidgets.h"
#include "ui/window/HelpKey.h"
#include "ui/window/MainMenu.h"
#include "ui/window/SettingsPages.h"
#include "ui/window/StatusArea.h"

namespace tarnwell {

/// The wire and the stores that the window's program works on.
struct Connections {
    Wire wire;
    mRegistry& registry;
    Platform& platform;
    bool simulated;
    std::string backupFolder;
};

class FormMain final : public QMainWindow,
                       private Screen,
                       private EditorView,
                       private SettingsView,
                       private PlacedWindow,
                       private StartUpSteps,
                       private DriverPathWindow {
    Q_OBJECT
  public:
    explicit FormMain(const Connections& connections);

    /// Brings the window into a usable state; show it afterwards.
    void startUp();

    /// Loads the image archive at `path`, a full path, as the command of the menu does with the
    /// file that is picked. Call it once the window is shown.
    void openImage(const std::string& path);

    Program& program() { return m_program; }

    /// What happens after the program ended itself; at first the process ends at once.
    std::function<void()> onProgramEnd;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void buildPages();
    void buildButtons();
    void connectSignals();
    void connectPageKeys();
    QPushButton& addButton(const char* name, const char* caption, const char* toolTip,
                           const QRect& place);

    /// Runs what may end the program.
    void guard(const std::function<void()>& action);
    void run(const std::function<void()>& command);

    /// A button's command: an entry that is open in the grid is committed first.
    void runButton(const std::function<void()>& command);
    void runMenu(MenuCommand command);
    void turnToPage(Page page);
    void showPortOptions();
    void showInterfaceTest();
    void startDriverLoader();
    void showAbout();

    void Changed(Shown what) override;
    void showPanel(Panel panel);
    void showProgress();

    void GridRefilled() override;
    void GridCellChanged(GridCell cell) override;
    void CurrentCellMoved() override;
    void EditBoxOpened(EditSelection selection) override;
    void EditBoxTextChanged() override;
    void EditBoxClosed() override;
    void PendingWritesChanged() override;
    void FocusGrid() override;
    bool ShowWarningAgain() override;

    void SettingCellChanged(int cell) override;
    void ShowFormEdit() override;

    void Place(WindowPlace place) override { m_place.place(*this, place); }
    WindowPlace Place() const override { return m_place.of(*this); }

    void SetUpFileDialog() override {}
    void SyncMenuChecks() override { m_menu.sync(); }
    void SetLayout() override;
    void ColourControls() override;
    void ApplyPortOptions() override { m_program.i2c.ApplyPortOptions(); }
    void ReleaseBus() override;
    void SetupGrid() override;
    void EnableSettingsButtons() override;

    void ShowFormCnP(const std::string& driverPath) override;

    Port& m_port;
    Platform& m_platform;
    const QString m_caption;
    Desktop m_desktop;
    QtTimer m_msgTimer;
    QtUser m_user;
    ScreenPlace m_place;
    Program m_program;
    HelpKey m_helpKey;

    MainMenu& m_menu;
    QWidget& m_body;
    QTabWidget& m_tabs;
    SettingsPages& m_settingsPages;
    EditorPageWidget& m_editorPage;
    PendingFrame& m_pendingFrame;
    StatusArea& m_statusArea;
    QPushButton& m_readSettings;
    QPushButton& m_mergeSettings;
    QPushButton& m_writeSettings;
    QPushButton& m_writePending;
};

}  // namespace tarnwell
