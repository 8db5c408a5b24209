// The whole program, joined, for whatever shows and starts it.
#pragma once

#include "archive/ImageArchive.h"
#include "archive/ImageBackups.h"
#include "archive/SettingsArchive.h"
#include "command/Standing.h"
#include "core/run/HelpCommands.h"
#include "core/run/StartUp.h"
#include "core/user/SparedUser.h"
#include "differences/CompareCommand.h"
#include "differences/Watch.h"
#include "differences/WriteDifferencesCommand.h"
#include "editor/Find.h"
#include "editor/Selection.h"
#include "history/UndoCommands.h"
#include "i2c/FollowedBus.h"
#include "i2c/kernel/KernelBus.h"
#include "i2c/parallel/mI2Ccode.h"
#include "names/Destination.h"
#include "program/BufferFollowers.h"
#include "program/NameCommands.h"
#include "program/SetCommands.h"
#include "program/WriteAdvice.h"
#include "sets/SetRecord.h"
#include "settings/CellCommands.h"
#include "settings/ValueEditor.h"

namespace tarnwell {

/// What a newcomer has to know before anything else.
enum class Hint : std::uint8_t { None, Simulated, NoPort, NothingRead };

enum class Closing : std::uint8_t { EndProgram, KeepRunning };

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
    std::string backupFolder;  ///< of those of no set; the sets' folders are beside it
    std::string namesPath{};   ///< of the user's names; empty for none
};

/// Its parts are open to whoever shows them; each is built from those above it, but that the
/// history holds on to the parts that it brings back.
class Program final {
  public:
    explicit Program(const Surroundings& outside);

    /// The start-up sequence; `setUp` is the window's part of it.
    void StartUp(WindowSetUp& setUp);

    /// Saves the options, then asks at most one question about unsaved settings or buffer.
    Closing ShutDown();

    /// The end of the program in whatever it does, without a question: frees the bus, saves the
    /// options, and says on standard error why and what was left. End the process then.
    void Abandon(std::string_view why);

    /// Loads the file `path`, a full path: a settings archive into the cells, anything else as
    /// the menu loads an image.
    void OpenArchive(const std::string& path);

    /// Turns to the byte or the cell.
    void GoTo(const Destination& place);

    /// How many values wait to be written that are shown on a page: as they are marked, or also
    /// those that the device holds otherwise.
    int WaitingOn(Page page) const;
    int DrawnAsWaiting(Page page) const;

    /// How what is shown stands to the primary device, and what the grid shows to the target.
    Standing StandingOfCell(int cell) const;
    Standing StandingOfByte(int address) const;

    /// A named value as the grid shows it, or as its device is known to hold it.
    std::optional<int> ShownValue(const NamedValue& named) const;
    std::optional<int> HeldValue(const NamedValue& named) const;

    /// The Parallel Port menu; nothing else happens until the next access.
    void ChoosePort(const PortChoice& choice);

    /// Works on a bus of the kernel from the next access on, until a parallel port is chosen.
    void ChooseI2cBus(const I2cBus& chosen);

    /// The kernel's bus that is worked on, where it is now or was last; nothing where that is a
    /// parallel port.
    std::optional<I2cBus> I2cBusInUse() const;

    /// Shows the names that there are now.
    void NamesChanged() { outside_.screen.Changed(Shown::Names); }

    /// Tells the user what is wrong in the files of names that are open, if anything is.
    void TellNameFaults();

    /// Tells the user if the bus that was chosen is not there.
    void TellMissingI2cBus();

    /// Keeps the record of a set from now on, or of none, and forgets what was read of another one.
    void ChooseSet(const std::optional<TvSet>& set);

    /// Whether nothing reaches a set, since it is simulated or the last command found no port, or
    /// nothing was read of one in this run.
    Hint HintNow() const;

    /// The set that what was read last of the target device looks like, if another one is chosen or
    /// none: "This looks like Kitchen: 3 bytes differ from 12 March". Empty if there is none.
    std::string LikenessNow() const;

    /// Chooses that set.
    void UseLikeness();

    /// Whether each reading of a whole device is made of two.
    void ToggleReadTwice();

    ProgramState state;
    MemoryBuffer buffer{};
    BufferOrigin origin;
    NameBook names;
    StatusBar statusBar;
    SparedUser busUser;
    mI2Ccode i2c;
    KernelBus kernelBus;
    FollowedBus bus;
    ImageBackups backups;
    SetStore sets;
    SetRecord record;
    WriteGuard writeGuard;
    History history;
    const CommandContext context;
    DeviceReader deviceReader;
    DataGrid grid;
    PendingWrites pending;
    CellEditor cellEditor;
    EditorPage editorPage;
    Find find;
    Selection selection;
    SettingCells cells;
    SettingsEngine settings;
    ValueEditor valueEditor;
    CellCommands cellCommands;
    BufferFollowers followers;
    WholeDevice wholeDevice;
    ImageArchive imageArchive;
    SettingsArchive settingsArchive;
    WriteDifferencesCommand writeDifferences;
    CompareCommand compare;
    Watch watch;
    NumberModeMenu numberModeMenu;
    HelpCommands helpCommands;
    UndoCommands undo;
    SetCommands setCommands;
    NameCommands nameCommands;

  private:
    WriteAdvice advice_;
    std::string BackgroundText() const;
    void UseBus(ChosenBus chosen);
    void OpenNamesOfSet();

    Surroundings outside_;
};

}  // namespace tarnwell
