// The whole program, joined, for whatever shows and starts it.
#pragma once

#include "archive/ImageArchive.h"
#include "archive/ImageBackups.h"
#include "archive/SettingsArchive.h"
#include "core/HelpCommands.h"
#include "core/RunEnds.h"
#include "differences/Compare.h"
#include "differences/WriteDifferences.h"
#include "editor/Find.h"
#include "history/UndoCommands.h"
#include "i2c/FollowedBus.h"
#include "i2c/kernel/KernelBus.h"
#include "i2c/mI2Ccode.h"
#include "program/BufferFollowers.h"
#include "settings/CellCommands.h"
#include "settings/Destination.h"
#include "settings/ValueEditor.h"

namespace tarnwell {

/// What the program meets outside itself.
struct Surroundings {
    Wire wire;
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
};

/// Its parts are open to whoever shows them; each is built from those above it, but that the
/// history holds on to the parts that it brings back.
class Program final {
  public:
    explicit Program(const Surroundings& outside);

    /// The start-up sequence; `steps` are those of the window.
    void StartUp(StartUpSteps& steps);
    Closing ShutDown();

    /// The end of the program in whatever it does, without a question: frees the bus, saves the
    /// options, and says on standard error why and what was left. End the process then.
    void Abandon(std::string_view why);

    /// Loads the file `path`, a full path: a settings archive into the cells, anything else as
    /// the menu loads an image.
    void OpenArchive(const std::string& path);

    /// Turns to the byte or the cell.
    void GoTo(const Destination& place);

    /// How many values wait to be written that are shown on a page.
    int WaitingOn(Page page) const;

    /// The Parallel Port menu; nothing else happens until the next access.
    void ChoosePort(const PortChoice& choice);

    /// Works on a bus of the kernel from the next access on, until a parallel port is chosen.
    void ChooseI2cBus(const I2cBus& chosen);

    /// The kernel's bus that is worked on, where it is now or was last; nothing where that is a
    /// parallel port.
    std::optional<I2cBus> I2cBusInUse() const;

    /// Tells the user if the bus that was chosen is not there.
    void TellMissingI2cBus();

    /// Whether each reading of a whole device is made of two.
    void ToggleReadTwice();

    ProgramState state;
    MemoryBuffer buffer{};
    StatusBar statusBar;
    mI2Ccode i2c;
    KernelBus kernelBus;
    FollowedBus bus;
    ImageBackups backups;
    WriteGuard writeGuard;
    History history;
    const CommandContext context;
    DeviceReader deviceReader;
    DataGrid grid;
    PendingWrites pending;
    CellEditor cellEditor;
    EditorPage editorPage;
    Find find;
    SettingCells cells;
    SettingsEngine settings;
    ValueEditor valueEditor;
    CellCommands cellCommands;
    BufferFollowers followers;
    WholeDevice wholeDevice;
    ImageArchive imageArchive;
    SettingsArchive settingsArchive;
    Compare compare;
    WriteDifferences writeDifferences;
    NumberModeMenu numberModeMenu;
    HelpCommands helpCommands;
    UndoCommands undo;

  private:
    std::string BackgroundText() const;
    void UseI2cBus(std::string text);
    std::optional<I2cBus> FoundI2cBus() const;

    Surroundings outside_;
};

}  // namespace tarnwell
