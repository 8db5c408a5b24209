#include "support/Gallery.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <utility>

#include "core/OptionsFile.h"
#include "port/simulated/FactoryImage.h"
#include "port/simulated/SimulatedTelevision.h"
#include "support/FakeI2c.h"
#include "support/ModalWindows.h"
#include "ui/dialogs/FormCnP.h"
#include "ui/looks/Text.h"
#include "ui/window/FormMain.h"

namespace tarnwell {

namespace {

using Visit = std::function<void(const std::string&, QWidget&)>;
using Action = ModalWindows::Action;

constexpr const char* kDriver = "/lib/modules/6.1.0-28-amd64/kernel/drivers/char/ppdev.ko";
constexpr std::uint16_t kFlippedAddress = 2363;

void Settle(QWidget& window) {
    if (!QTest::qWaitForWindowExposed(&window, kPatience))
        qFatal("%s was not shown", qUtf8Printable(window.windowTitle()));
    window.activateWindow();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

void Cancel(QWidget& window) {
    static_cast<QDialog&>(window).reject();
}

Action Click(const char* button) {
    return [button](QWidget& dialog) { Child<QAbstractButton>(dialog, button).click(); };
}

void ShowDetails(QWidget& box) {
    for (QAbstractButton* button : static_cast<QMessageBox&>(box).buttons()) {
        if (static_cast<QMessageBox&>(box).buttonRole(button) == QMessageBox::ActionRole)
            button->click();
    }
}

/// The program with its window, on a television of its own.
class Exhibition {
  public:
    Exhibition(const Visit& visit, Television connected)
        : visit_(visit), television_({.television = connected}) {
        buses_.Name(0, "SMBus I801 adapter at efa0");
        buses_.Name(4, "AMDGPU DM i2c hw bus 1");
        buses_.Name(7, "CP2112 SMBus Bridge on hidraw2");
        buses_.devices.erase(0x51);
        for (const Chip chip : {Chip::Primary, Chip::Secondary})
            television_.Memory(chip) = FactoryImage(chip);
        window_.startUp();
        window_.program().state.archiveFolder = pathFromQt(folder_.path());
        window_.show();
        Settle(window_);
    }

    void ShowSettings();
    void ShowFiles();
    void ShowOptions();
    void ShowQuestions();
    void ShowMenus();
    void ShowEditor();
    void ShowPopups();
    void ShowNavigation();
    void ShowCompare();
    void ShowInterfaceTest();

  private:
    void Choose(const char* item) {
        Child<QAction>(window_, item).trigger();
        EndOf(item);
    }
    void EndOf(const char* command) const {
        if (!modal_.isDone())
            qFatal("%s did not open its window", command);
    }
    /// The next modal window is shown as `name`, then left by `end`.
    void Expect(const char* name, const Action& end, const Action& prepare = {}) {
        modal_.then([=, this](QWidget& window) {
            Settle(window);
            if (prepare) {
                prepare(window);
                Settle(window);
            }
            visit_(name, window);
            end(window);
        });
    }
    void ShowMain(const std::string& name) {
        Settle(window_);
        visit_(name, window_);
    }
    QTabWidget& Tabs() { return Child<QTabWidget>(window_, "SSTab1"); }
    void ChangeFirstValue(const QWidget& page, const char* name);
    void Type(const char* keys) {
        QTest::keyClicks(&Child<QLineEdit>(window_, "txtEditBox"), keys);
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
                      pathFromQt(folder_.filePath("backups"))}};
    ModalWindows modal_{
        [](const std::string& title) { qFatal("unexpected window: %s", title.c_str()); }};
};

void Exhibition::ChangeFirstValue(const QWidget& page, const char* name) {
    const auto stepUp = [](QWidget& editor) {
        auto& bar = Child<QScrollBar>(editor, "VScroll1");
        bar.setValue(bar.value() == bar.maximum() ? bar.value() - 1 : bar.value() + 1);
    };
    if (name != nullptr)
        Expect(name, Click("cmdAccept"), stepUp);
    else
        modal_.then([=](QWidget& editor) {
            Settle(editor);
            stepUp(editor);
            Click("cmdAccept")(editor);
        });
    page.findChild<SettingCell*>()->click();
    EndOf("a setting");
}

void Exhibition::ShowSettings() {
    Choose("mnuEEPRead");
    const char* editor = "value-editor";
    for (int page = 0; page < static_cast<int>(Page::Editor); ++page) {
        Tabs().setCurrentIndex(page);
        ChangeFirstValue(*Tabs().currentWidget(), std::exchange(editor, nullptr));
        ShowMain(Tabs().tabText(page).toLower().toStdString());
    }
    Tabs().setCurrentIndex(0);
}

void Exhibition::ShowFiles() {
    Expect("save-image", [](QWidget& dialog) { static_cast<QDialog&>(dialog).accept(); });
    Choose("mnuFileSaveImage");
    Expect("load-image", Cancel);
    Choose("mnuFileLoadImage");
}

void Exhibition::ShowOptions() {
    Expect("port-options", Cancel);
    Choose("mnuPortOpts");
    const auto select = [](QWidget& dialog, int row) {
        auto& buses = Child<QTreeWidget>(dialog, "tblBuses");
        buses.setCurrentItem(buses.topLevelItem(row));
    };
    for (const auto& [name, row] : {std::pair("i2c-bus", 2), {"i2c-bus-mainboard", 0}}) {
        Expect(name, Cancel, [=, row = row](QWidget& dialog) {
            select(dialog, row);
            Click("cmdLook")(dialog);
        });
        Choose("mnuPortI2C");
    }
    Expect("about", Cancel);
    Choose("mnuHelpAbout");
    Expect("driver-path", Cancel);
    FormCnP(kDriver, &window_).exec();
}

void Exhibition::ShowQuestions() {
    Expect("verify-question", ModalWindows::pressing(QMessageBox::No));
    Choose("mnuEEPWrite");
    Expect("secondary-question", ModalWindows::pressing(QMessageBox::Cancel));
    Choose("mnuEEPsel_1");

    auto& fill = Child<QAction>(window_, "mnuEEPFill");
    fill.setVisible(true);
    Expect("fill-value", Cancel);
    Choose("mnuEEPFill");
    fill.setVisible(false);

    television_.Inject({.kind = FaultKind::FlippedBit, .address = kFlippedAddress});
    modal_.then(ModalWindows::pressing(QMessageBox::Yes));
    Expect("verify-failed", ModalWindows::pressing(QMessageBox::Ok), ShowDetails);
    Choose("mnuEEPWrite");
    television_.ClearFaults();
}

void Exhibition::ShowMenus() {
    for (const auto& [name, item] : {std::pair("menu-file", "mnuFile"),
                                     {"menu-edit", "mnuEdit"},
                                     {"menu-eep", "mnuEEP"},
                                     {"menu-options", "mnuOptions"},
                                     {"menu-port", "mnuPort"},
                                     {"menu-help", "mnuHelp"}}) {
        QMenu& menu = Child<QMenu>(window_, item);
        if (window_.menuBar()->actions().contains(menu.menuAction()))
            window_.menuBar()->setActiveAction(menu.menuAction());
        else
            menu.popup(window_.pos());
        Settle(menu);
        visit_(name, menu);
        menu.close();
    }
}

void Exhibition::ShowEditor() {
    Expect("editor-warning", Click("cmdAccept"));
    Tabs().setCurrentIndex(static_cast<int>(Page::Editor));
    EndOf("the editor");
    ShowMain("editor-off");

    Child<QAbstractButton>(window_, "EditorEnabled").click();
    auto& grid = Child<QTableView>(window_, "DataGrid");
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                      grid.visualRect(grid.model()->index(2, 3)).center());
    for (const char* value : {"200\t", "17\t", "255\t", "9"})
        Type(value);
    ShowMain("editor");
}

void Exhibition::ShowPopups() {
    for (const auto& [name, place] : {std::pair("menu-cell", "lblSetting_8"),
                                      {"menu-grid", "DataGrid"},
                                      {"menu-pending", "lblOldData_1"}}) {
        QContextMenuEvent wanted(QContextMenuEvent::Keyboard, {}, window_.pos());
        QCoreApplication::sendEvent(&Child<QWidget>(window_, place), &wanted);
        QWidget& menu = *QApplication::activePopupWidget();
        Settle(menu);
        visit_(name, menu);
        menu.close();
    }
}

void Exhibition::ShowNavigation() {
    const auto refused = [](const char* text, const char* button) {
        return [=](QWidget& dialog) {
            Child<QLineEdit>(dialog, text).setText("300 g");
            Child<QAbstractButton>(dialog, button).click();
        };
    };
    Expect("go-to", Cancel, refused("txtGoTo", "cmdGoTo"));
    Choose("mnuEditGoTo");
    Choose("mnuEditFind");
    auto& find = Child<QDialog>(window_, "formFind");
    refused("txtFind", "cmdFindNext")(find);
    Settle(find);
    visit_("find", find);
    find.reject();
}

void Exhibition::ShowCompare() {
    Choose("mnuEEPRead");
    MemoryBuffer& buffer = window_.program().buffer;
    for (const int address : {2085, 2363, 2364, 4096, 4097, 4098, 6000})
        buffer[static_cast<std::size_t>(address)] ^= 0x15;
    Expect("compare", Cancel, [](QWidget& dialog) {
        auto& table = Child<QTreeView>(dialog, "tblDifferences");
        table.expandAll();
        table.setCurrentIndex(table.model()->index(0, 0));
    });
    Choose("mnuEEPCompare");
    Expect("differences-question", ModalWindows::pressing(QMessageBox::No), ShowDetails);
    Choose("mnuEEPWriteDifferences");
    Expect("backups", Cancel);
    Choose("mnuFileBackups");
    Choose("mnuEEPRead");
}

void Exhibition::ShowInterfaceTest() {
    Expect("interface-test", Cancel, Click("ClockOut_0"));
    Choose("mnuPortTest");
    Expect("interface-test-faults", Cancel, [this](QWidget& dialog) {
        television_.Inject({.kind = FaultKind::SclStuckLow});
        television_.Inject({.kind = FaultKind::SdaStuckHigh});
        for (const char* level : {"DataOut_0", "DataOut_1", "ClockOut_0", "DataOut_0"})
            Click(level)(dialog);
    });
    Choose("mnuPortTest");
}

}  // namespace

void WalkGallery(const Visit& visit) {
    // The file dialog keeps its last folder there.
    const QTemporaryDir configuration;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, configuration.path());
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    {
        Exhibition exhibition(visit, Television::Connected);
        exhibition.ShowSettings();
        exhibition.ShowFiles();
        exhibition.ShowOptions();
        exhibition.ShowQuestions();
        exhibition.ShowMenus();
        exhibition.ShowCompare();
        exhibition.ShowEditor();
        exhibition.ShowPopups();
        exhibition.ShowNavigation();
    }
    Exhibition(visit, Television::Absent).ShowInterfaceTest();
}

}  // namespace tarnwell
