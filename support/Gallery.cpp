#include "support/Gallery.h"

#include <QCheckBox>
#include <QDir>
#include <QSettings>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeView>
#include <QTreeWidget>

#include "core/options/OptionsFile.h"
#include "port/simulated/FactoryImage.h"
#include "port/simulated/SimulatedTelevision.h"
#include "sets/HistoryFile.h"
#include "support/FakeI2c.h"
#include "support/Player.h"
#include "ui/dialogs/FormCnP.h"
#include "ui/looks/Text.h"
#include "ui/window/FormMain.h"

namespace tarnwell {

namespace {

using Visit = std::function<void(const std::string&, QWidget&)>;

/// The program with its window, on a television of its own. What is looked at is an exhibit.
class Exhibition final : private Player {
  public:
    Exhibition(const Visit& visit, Television connected)
        : Player(window_), visit_(visit), television_({.television = connected}) {
        buses_.Name(0, "SMBus I801 adapter at efa0");
        buses_.Name(4, "AMDGPU DM i2c hw bus 1");
        buses_.Name(7, "CP2112 SMBus Bridge on hidraw2");
        buses_.devices.erase(0x51);
        for (const Chip chip : {Chip::Primary, Chip::Secondary})
            television_.Memory(chip) = FactoryImage(chip);
        window_.startUp();
        window_.program().state.archiveFolder = pathFromQt(folder_.path());
        window_.show();
        verbs["page"] = [this](const QString& page) {
            Part<QTabWidget>("SSTab1").setCurrentIndex(page.toInt());
        };
    }

    void ShowMost();
    void ShowInterfaceTest();

  private:
    void look(const Act& act) override {
        QWidget& window = act.at == "find" ? Part<QWidget>("formFind") : front();
        if (!QTest::qWaitForWindowExposed(&window, kPatience))
            qFatal("%s was not shown", qUtf8Printable(window.windowTitle()));
        window.activateWindow();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        visit_(act.at.toStdString(), window);
    }
    template <typename T>
    T& Part(const QString& name) {
        return Child<T>(window_, name);
    }

    const Visit& visit_;
    QTemporaryDir folder_;
    SimulatedTelevision television_;
    FakeI2c buses_;
    LinuxI2c kernel_{buses_};
    OptionsFile store_{folder_.filePath("Tarnwell.ini").toStdString()};
    LinuxPlatform platform_;
    FormMain window_{{{.port = television_, .clock = television_, .kernel = kernel_},
                      store_,
                      platform_,
                      true,
                      pathFromQt(folder_.filePath("backups")),
                      pathFromQt(folder_.filePath("names.json"))}};
};

void Exhibition::ShowMost() {
    const auto showDriverPath = [this] {
        FormCnP("/lib/modules/6.1.0-28-amd64/kernel/drivers/char/ppdev.ko", &window_).exec();
    };
    const auto fillIsVisible = [this](bool visible) {
        return [=, this] { Part<QAction>("mnuEEPFill").setVisible(visible); };
    };
    const auto flipBit = [this] {
        television_.Inject({.kind = FaultKind::FlippedBit, .address = 2363});
    };
    const auto useFiles = [this] {
        ProgramState& state = window_.program().state;
        state.recentImages =
            RecentFiles::FromText("/home/u/kitchen.mot\n/home/u/Tarnwell-11242026-95230 PM.mot");
        state.recentSettings = RecentFiles::FromText("/home/u/set-kitchen.mot");
    };
    const auto change = [this] {
        television_.ClearFaults();
        for (const int address : {2085, 2363, 2364, 4096, 4097, 4098, 6000})
            window_.program().buffer[static_cast<std::size_t>(address)] ^= 0x15;
    };
    const auto expand = [this] {
        auto& table = Part<QTreeView>("tblDifferences");
        table.expandAll();
        table.setCurrentIndex(table.model()->index(0, 0));
    };
    const auto turnKnob = [this] {
        auto& memory = television_.Memory(Chip::Primary);
        memory[2085] ^= 4, memory[6000] ^= 4;
        const auto& table = Part<QTreeWidget>("tblChanges");
        while (table.topLevelItemCount() < 2)
            QTest::qWait(5);
        Part<QCheckBox>("chkWatch").setChecked(false);
        for (int row = 0; row < 2; ++row)
            table.topLevelItem(row)->setText(0, QStringLiteral("19:52:30"));
        memory[2085] ^= 4, memory[6000] ^= 4;
    };
    const auto makeSets = [this] {
        SetStore& sets = window_.program().sets;
        static_cast<void>(sets.Create("Workshop"));
        TvSet set = *sets.Create("Kitchen");
        set.model = "KP-57";
        set.notes = "Blue gun changed in spring.";
        set.lastRead[0] = "2025-03-12T10:20:30+01:00";
        MemoryBuffer held = window_.program().buffer;
        held[2085] ^= 4;
        if (!SetStore::SaveTexts(set) || !SetStore::SaveKnown(set) ||
            !PutReadyImage(set, TargetDevice::Primary, held))
            qFatal("no set could be made");
        HistoryEvent event{.time = "2025-01-12T18:04:05+01:00",
                           .kind = EventKind::Write,
                           .command = "Write Settings to EEP",
                           .written = 1};
        for (const std::uint8_t value : {std::uint8_t{80}, std::uint8_t{72}, std::uint8_t{60}}) {
            ++event.time[6];
            event.bytes = {
                {2085, event.bytes.empty() ? std::uint8_t{84} : event.bytes[0].to, value, value}};
            if (!AppendLine(HistoryPath(set), JsonOf(event)))
                qFatal("no history could be made");
        }
    };
    const auto removeSets = [this] { QDir(folder_.filePath("sets")).removeRecursively(); };
    const auto clickByte = [this] {
        window_.program().cellEditor.MoveTo({2, 3});
        window_.program().cellEditor.Click();
    };
    const auto enlarge = [this] {
        window_.resize((window_.size() + QSize(200, 150)).boundedTo(roomFor(window_)));
    };
    const auto shrink = [this] { window_.resize(window_.minimumSize()); };
    const auto forgetDevice = [this] {
        window_.program().bus.Changed();
        window_.program().cells.SetMark(2, Mark::Save);
    };
    const auto runFor = [this](int seconds) {
        return [=, this] {
            StatusBar& bar = window_.program().statusBar;
            bar.PutStatus("Please Wait, Reading the EEPROM...");
            seconds > 0 ? bar.ShowProgress({45, seconds}) : bar.EndProgress();
        };
    };
    play({{"", "not-read"},
          {"mnuEEPRead"},
          {forgetDevice},
          {"page:1 page:0", "not-compared"},
          {runFor(1), "stop"},
          {runFor(0)},
          {"mnuEEPRead lblSetting_2 Up", "value-editor"},
          {"cmdAccept", "chroma"},
          {"page:1 lblSetting_33 Up cmdAccept", "edges"},
          {"page:2 lblSetting_32 Up cmdAccept", "global"},
          {"page:3 lblSetting_24 Up cmdAccept", "iris"},
          {"page:4 lblSetting_38 Down cmdAccept", "picture"},
          {"page:0 mnuFileSaveImage", "save-image"},
          {"Return mnuFileLoadImage", "load-image"},
          {"Esc mnuPortOpts", "port-options"},
          {"Esc mnuPortI2C End cmdLook", "i2c-bus"},
          {"Esc mnuPortI2C Space cmdLook", "i2c-bus-mainboard"},
          {"Esc mnuHelpAbout", "about"},
          {"Esc"},
          {showDriverPath, "driver-path"},
          {"Esc mnuEEPWrite Show~Details...", "write-doubts"},
          {"Yes", "verify-question"},
          {"No mnuEEPsel_1", "secondary-question"},
          {"Cancel"},
          {fillIsVisible(true)},
          {"mnuEEPFill", "fill-value"},
          {"Esc"},
          {fillIsVisible(false)},
          {flipBit},
          {useFiles},
          {"mnuEEPWrite Yes Yes Show~Details...", "verify-failed"},
          {"OK mnuFile", "menu-file"},
          {"Esc mnuFileImages", "menu-recent"},
          {"Esc mnuEdit", "menu-edit"},
          {"Esc mnuEEP", "menu-eep"},
          {"Esc mnuOptions", "menu-options"},
          {"Esc mnuPort", "menu-port"},
          {"Esc mnuHelp", "menu-help"},
          {"Esc mnuEEPRead"},
          {change},
          {"mnuEEPCompare"},
          {expand, "compare"},
          {"chkWatch"},
          {turnKnob, "compare-watched"},
          {"cmdClearChanges"},
          {"Esc mnuEEPWriteDifferences Yes Show~Details...", "differences-question"},
          {"No mnuFileBackups", "backups"},
          {"Esc"},
          {makeSets},
          {"mnuEEPRead", "set-recognised"},
          {"mnuSet", "sets"},
          {"cmdHistory on:txtFilter type:TINT on:tblHistory Right", "history"},
          {"Esc"},
          {removeSets},
          {"mnuEEPRead page:5", "editor-warning"},
          {"cmdAccept", "editor-off"},
          {"EditorEnabled"},
          {clickByte},
          {"on:txtEditBox type:200 Tab type:17 Tab type:255 Tab 9", "editor"},
          {"menu:lblSetting_8", "menu-cell"},
          {"Esc menu:DataGrid", "menu-grid"},
          {"Esc menu:lblOldData_1", "menu-pending"},
          {"Esc mnuEditText"},
          {enlarge},
          {"on:DataGrid F6", "editor-text"},
          {"mnuEditText"},
          {shrink},
          {"mnuEditName type:Blue.Back on:txtText type:Picture~without~a~signal on:txtValues "
           "type:200~off cmdAccept"},
          {"mnuEditName on:txtHighest Backspace Backspace Backspace type:100 cmdAccept", "name"},
          {"Esc mnuEditNames", "names"},
          {"cmdChangeValue", "name-value"},
          {"Esc cmdRemoveName Esc"},
          {"mnuEditGoTo type:300~g Return", "go-to"},
          {"Esc mnuEditFind on:txtFind type:300~g Return", "find"}});
}

void Exhibition::ShowInterfaceTest() {
    const auto breakLines = [this] {
        television_.Inject({.kind = FaultKind::SclStuckLow});
        television_.Inject({.kind = FaultKind::SdaStuckHigh});
    };
    play({{"mnuPortTest ClockOut_0", "interface-test"},
          {"Esc mnuPortTest"},
          {breakLines},
          {"DataOut_0 DataOut_1 ClockOut_0 DataOut_0", "interface-test-faults"},
          {"Esc"}});
}

}  // namespace

void WalkGallery(const Visit& visit) {
    // The file dialog keeps its last folder there.
    const QTemporaryDir configuration;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, configuration.path());
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Exhibition(visit, Television::Connected).ShowMost();
    Exhibition(visit, Television::Absent).ShowInterfaceTest();
}

}  // namespace tarnwell
