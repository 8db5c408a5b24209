// The main window: it shows the program and starts its commands.
#pragma once

#include <QCloseEvent>
#include <QMainWindow>
#include <functional>

#include "ui/desktop/Desktop.h"
#include "ui/desktop/FileDrop.h"
#include "ui/desktop/QtUser.h"
#include "ui/desktop/ScreenArea.h"
#include "ui/looks/Measures.h"
#include "ui/window/EditorDisplay.h"
#include "ui/window/HelpKey.h"
#include "ui/window/HintStrip.h"
#include "ui/window/MainBody.h"
#include "ui/window/MainMenu.h"
#include "ui/window/Navigation.h"
#include "ui/window/SettingsDisplay.h"
#include "ui/window/StatusArea.h"

namespace tarnwell {

/// The wire and the stores that the window's program works on.
struct Connections {
    Wire wire;
    mRegistry& registry;
    Platform& platform;
    bool simulated;
    std::string backupFolder;
    std::string namesPath{};                      ///< of the user's names
    std::optional<ChosenBus> bus = std::nullopt;  ///< of the command line
};

class FormMain final : public QMainWindow, private Screen, private WindowSetUp {
  public:
    explicit FormMain(const Connections& connections);

    /// Brings the window into a usable state; show it afterwards.
    void startUp();

    /// Loads the archive at `path`, a full path, as the command of the menu for its kind does with
    /// the file that is picked. Call it once the window is shown.
    void openArchive(const std::string& path);

    /// Tells the user if the I2C bus that was chosen is not there. Call it once the window is
    /// shown.
    void tellMissingI2cBus();

    /// The same of what is wrong in the files of names.
    void tellNameFaults();

    Program& program() { return m_program; }

    /// What happens after the program ended itself; at first the process ends at once.
    std::function<void()> onProgramEnd;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void buildPages();
    void orderTabs();
    void connectSignals();
    void connectButtons();
    void connectPageKeys();

    /// Runs what may end the program.
    void guard(const std::function<void()>& action);
    void run(const std::function<void()>& command);

    /// A button's command: an entry that is open in the grid is committed first.
    void runButton(const std::function<void()>& command);
    void runMenu(MenuCommand command, int row);
    void turnToPage(Page page);
    void toggleEditor();
    void compare();
    void showCompare();
    void restoreBackup(const std::string& folder);
    void nameByte();
    bool nameByte(TargetDevice device, int address, QWidget& window);
    void showNames();
    void makeSheet();
    void showSets();
    void showHistory(const TvSet& set);

    /// A command that a dialog of this window starts.
    void runInside(const std::function<void()>& command);
    void showPortOptions();
    void chooseI2cBus();
    void showInterfaceTest();
    void startDriverLoader();
    void showAbout();

    void SetUpFileDialog() override { m_user.setUpFileDialog(); }
    void SyncMenuChecks() override { Changed(Shown::Menus); }
    void SetLayout() override { showLayout(); }
    void ColourControls() override;
    void ApplyPortOptions() override { m_program.i2c.ApplyPortOptions(); }
    void ReleaseBus() override;
    void SetupGrid() override;
    void EnableSettingsButtons() override { m_settings.enableButtons(); }

    void Changed(Shown what) override;
    void showPanel(Panel panel);
    void showProgress();
    void showBus();
    void showLayout();
    void fitWindow();
    void layOut();
    void keepSize();

    const Wire m_wire;
    Platform& m_platform;
    QString m_caption;
    Desktop m_desktop;
    QtTimer m_msgTimer;
    QtUser m_user;
    KeptPlace m_place;
    EditorDisplay m_editor;
    SettingsDisplay m_settings;
    Program m_program;
    HelpKey m_helpKey;
    FileDrop m_fileDrop;
    Navigation m_navigation;

    MainMenu& m_menu;
    MainBody& m_body;
    QTabWidget& m_tabs;
    StatusArea& m_statusArea;
    HintStrip& m_strip;
    ScreenArea& m_area;
};

}  // namespace tarnwell
