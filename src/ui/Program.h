// The whole program behind the window: every part of it, joined.
#pragma once

#include "archive/ImageArchive.h"
#include "archive/ImageBackups.h"
#include "archive/SettingsArchive.h"
#include "core/HelpCommands.h"
#include "core/RunEnds.h"
#include "image/WholeDevice.h"
#include "settings/ValueEditor.h"

namespace tarnwell {

/// What the program meets outside itself.
struct Surroundings {
    Port& port;
    Clock& clock;
    Screen& screen;
    Timer& msgTimer;
    User& user;
    EditorView& editorView;
    SettingsView& settingsView;
    PlacedWindow& window;
    Platform& platform;
    Programs& programs;
    mRegistry& registry;
    const Calendar& calendar;
    std::string backupFolder;
    BusTrace& trace = NoBusTrace();
};

class Program final : private BufferDisplays, private UnsavedWork {
  public:
    explicit Program(const Surroundings& outside);

    /// The start-up sequence; `steps` are those of the window.
    void StartUp(StartUpSteps& steps);
    Closing ShutDown();

    /// The Parallel Port menu; nothing else happens until the next access.
    void ChoosePort(const PortChoice& choice);

  private:
    bool MayRefillGrid() override { return editorPage.MayRefillGrid(); }
    void FillGrid() override { grid.FillGrid(); }
    void ShowSettingsFromBuffer() override { settings.ShowSettingsFromBuffer(); }
    void ClearSettingCells() override { cells.ClearSettingCells(); }
    void ClearPendingWrites() override { pending.ClearPendingWrites(); }
    bool SettleGridEdits() override { return editorPage.SettleGridEdits(); }
    bool HasChangedSettings() const override { return cells.AnyHasMark(Mark::Save); }

    Surroundings outside_;

  public:
    ProgramState state;
    MemoryBuffer buffer{};
    StatusBar statusBar;
    mI2Ccode i2c;
    ImageBackups backups;
    WriteGuard writeGuard;
    DataGrid grid;
    PendingWrites pending;
    CellEditor cellEditor;
    EditorPage editorPage;
    SettingCells cells;
    SettingsEngine settings;
    ValueEditor valueEditor;
    WholeDevice wholeDevice;
    ImageArchive imageArchive;
    SettingsArchive settingsArchive;
    NumberModeMenu numberModeMenu;
    HelpCommands helpCommands;
};

}  // namespace tarnwell
