// The main window, driven with real key and mouse events.
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "support/ModalWindows.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"
#include "ui/dialogs/FormEdit.h"
#include "ui/dialogs/FormWarning.h"
#include "ui/looks/Text.h"
#include "ui/window/FormMain.h"

namespace tarnwell {
namespace {

using ::testing::ElementsAre;

class FormMainTest : public ::testing::Test {
  protected:
    SimulatedTelevision television{Simulation{.writeCycle = BusTime(20'000)}};
    MemoryRegistry registry;
    LinuxPlatform platform;
    TemporaryFolder folder;
    FormMain window{{{television, television}, registry, platform, true, folder.Path("backups")}};
    ModalWindows script{
        [](const std::string& title) { ADD_FAILURE() << "unexpected window: " << title; }};
    Program& program = window.program();

    void SetUp() override {
        for (std::size_t address = 0; address < kEepromSize; ++address)
            television.Memory(Chip::Primary)[address] = static_cast<std::uint8_t>(address % 251);
        window.startUp();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void TearDown() override { EXPECT_TRUE(script.isDone()) << "a window did not come up"; }

    template <typename T = QWidget>
    T& child(const char* name) {
        return Child<T>(window, QLatin1String(name));
    }
    void choose(const char* action) { child<QAction>(action).trigger(); }
    QString text(const char* label) { return child<QLabel>(label).text(); }
    QString status() { return text("statusPanel_2"); }

    void openEditor() {
        choose("mnuEEPRead");
        script.then([](QWidget& warning) {
            warning.findChild<QCheckBox*>(QStringLiteral("checkShowWarning"))->click();
            warning.findChild<QPushButton*>(QStringLiteral("cmdAccept"))->click();
        });
        child<QTabWidget>("SSTab1").setCurrentIndex(5);
        child<QCheckBox>("EditorEnabled").click();
        EXPECT_THAT(script.takeTitles(), ElementsAre("W A R N I N G"));
    }
    QLineEdit& box() { return child<QLineEdit>("txtEditBox"); }
    void clickByte(int row, int column) {
        auto& grid = child<QTableView>("DataGrid");
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                          grid.visualRect(grid.model()->index(row, column)).center());
    }
    QWidget* focus() {
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return QApplication::focusWidget();
    }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(focus(), static_cast<Qt::Key>(key), modifiers);
    }
    void type(const char* keys) { QTest::keyClicks(focus(), QLatin1String(keys)); }
    GridCell current() { return program.grid.Current(); }
};

TEST_F(FormMainTest, HasTheGivenMenusPagesAndMeasures) {
    EXPECT_EQ(window.windowTitle(), " Tarnwell 2 - Simulated Television");
    const auto& tabs = child<QTabWidget>("SSTab1");
    QStringList captions;
    for (int page = 0; page < tabs.count(); ++page)
        captions.append(tabs.tabText(page));
    EXPECT_EQ(captions.join(' '), "Chroma Edges Global Iris Picture Editor");
    EXPECT_FALSE(child<QAction>("mnuEEPFill").isVisible());
    EXPECT_TRUE(child<QAction>("mnuOptionsPortSer").isVisible());
    EXPECT_TRUE(child<QAction>("mnuPortSel_0").isChecked());
    EXPECT_TRUE(child<QAction>("mnuEEPsel_0").isChecked());
    for (const QAction* action : window.findChildren<QAction*>())
        EXPECT_TRUE(action->shortcut().isEmpty());
    EXPECT_EQ(child("cmdSaveSettings").geometry(), scaledRect(4920, 3120, 2240, 300));
    EXPECT_EQ(window.centralWidget()->width(), scaled(7305));
    EXPECT_EQ(text("lblSBinfo_3"), "EEP");
    EXPECT_EQ(child("lblSBinfo_0").toolTip(), " Easter Egg! ");
    EXPECT_EQ(status(), "Welcome to Tarnwell");
}

TEST_F(FormMainTest, TurnsPagesAndStartsTheExtraProgramByKeyboard) {
    script.then([](QWidget& warning) { static_cast<QDialog&>(warning).accept(); });
    key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(child<QTabWidget>("SSTab1").currentIndex(), 5);
    key(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(status(), "Chroma Settings");
    child("lblSBinfo_0").setFocus();
    script.press(QMessageBox::Ok);
    key(Qt::Key_Space);
    EXPECT_THAT(script.takeTitles(), testing::SizeIs(2));
    script.press(QMessageBox::Ok);
    key(Qt::Key_Return);
}

TEST_F(FormMainTest, EditsASettingByKeyboardAndWritesIt) {
    choose("mnuEEPRead");
    EXPECT_EQ(text("statusPanel_3"), toQt(mCRC32::BufferCrcText(program.buffer)));
    auto& cell = child<QAbstractButton>("lblSetting_0");
    cell.setFocus();
    const int value = cell.text().toInt();
    EXPECT_EQ(cell.accessibleName(), QStringLiteral("480i CR02 %1").arg(value));
    script.then([&](QWidget& edit) {
        edit.close();
        EXPECT_TRUE(edit.isVisible()) << "the close box does nothing";
        auto& bar = *edit.findChild<QScrollBar*>(QStringLiteral("VScroll1"));
        EXPECT_EQ(bar.maximum(), 255);
        QTest::keyClick(&bar, Qt::Key_Up);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {bar.width() / 2, bar.height() / 4});
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {bar.width() / 2, bar.height() * 3 / 4});
        edit.findChild<QPushButton*>(QStringLiteral("cmdAccept"))->click();
    });
    key(Qt::Key_Return);
    EXPECT_EQ(cell.text().toInt(), value + 1);
    EXPECT_EQ(status(), "480i CR02 Value Changed");
    EXPECT_EQ(cell.grab().toImage().pixelColor(4, 4), QColor(239, 219, 137));
    key(Qt::Key_Right);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "lblSetting_6");
    key(Qt::Key_Up);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "lblSetting_11");

    script.press(QMessageBox::Yes);
    child<QPushButton>("cmdSaveSettings").click();
    EXPECT_EQ(status(), "EEP Verified OK; Settings Values Written to EEProm");
    EXPECT_EQ(television.Memory(Chip::Primary)[2363], value + 1);
    EXPECT_THAT(script.takeTitles(), ElementsAre(" Edit Value", "V E R I F Y"));
}

TEST_F(FormMainTest, MovesThroughTheGridByTheKeysOfTheEditBox) {
    struct Step {
        int key;
        Qt::KeyboardModifiers modifiers;
        GridCell from, to;
    };
    for (const char* mode : {"mnuSelMode_1", "mnuSelMode_0"}) {
        if (child<QTabWidget>("SSTab1").currentIndex() != 5)
            openEditor();
        child<QCheckBox>("EditorEnabled").click();
        choose(mode);
        child<QCheckBox>("EditorEnabled").click();
        for (const Step& step :
             {Step{Qt::Key_Tab, {}, {0, 16}, {1, 1}}, Step{Qt::Key_Right, {}, {511, 16}, {0, 1}},
              Step{Qt::Key_Backtab, Qt::ShiftModifier, {0, 1}, {511, 16}},
              Step{Qt::Key_Left, {}, {3, 1}, {3, 1}}, Step{Qt::Key_Left, {}, {3, 2}, {3, 1}},
              Step{Qt::Key_Return, {}, {510, 5}, {511, 5}},
              Step{Qt::Key_Down, {}, {511, 5}, {511, 5}}, Step{Qt::Key_Up, {}, {0, 5}, {0, 5}},
              Step{Qt::Key_Up, Qt::ShiftModifier, {4, 5}, {4, 5}},
              Step{Qt::Key_Right, Qt::ControlModifier, {4, 5}, {4, 5}}}) {
            program.cellEditor.MoveTo(step.from);
            program.cellEditor.Click();
            key(step.key, step.modifiers);
            EXPECT_EQ(current(), step.to) << step.key;
            EXPECT_TRUE(box().isVisible() && box().hasFocus()) << step.key;
            EXPECT_EQ(status(), "Editing EEPROM Address: " +
                                    toQt(NumberText(static_cast<std::uint32_t>(current().Address()),
                                                    program.state.numberMode)));
        }
    }
}

TEST_F(FormMainTest, FiltersCommitsAndAbandonsEntries) {
    openEditor();
    clickByte(1, 3);
    EXPECT_EQ(box().selectedText(), "18");
    type("x1a9");
    EXPECT_EQ(box().text(), "19");
    key(Qt::Key_Home);
    key(Qt::Key_Backspace);
    EXPECT_EQ(box().text(), "1");
    QGuiApplication::clipboard()->setText("z2-3");
    box().selectAll();
    box().paste();
    EXPECT_EQ(box().text(), "23");
    clickByte(2, 3);
    EXPECT_EQ(program.grid.Text({1, 3}), "23");
    EXPECT_EQ(child<QTabWidget>("SSTab1").tabText(5), "Editor !");
    EXPECT_EQ(text("lblAddy_0") + text("lblOldData_0") + text("lblNewData_0"), "181823");

    type("77");
    child<QTableView>("DataGrid").verticalScrollBar()->setValue(5);
    EXPECT_FALSE(box().isVisible());
    EXPECT_EQ(program.grid.Text({2, 3}), "34");
    program.cellEditor.Click();
    type("5");
    key(Qt::Key_Escape);
    EXPECT_FALSE(box().isVisible());
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "DataGrid");
    type("-");
    EXPECT_EQ(box().text(), "-");
    type("1");
    EXPECT_EQ(box().text(), "-1");
    script.press(QMessageBox::Ok);
    key(Qt::Key_Down);
    EXPECT_EQ(program.grid.Text({2, 3}), "34");
    key(Qt::Key_Escape);
    type("1");
    type("2");
    key(Qt::Key_Return);
    EXPECT_EQ(program.grid.Text({3, 3}), "12");

    script.press(QMessageBox::Yes);
    child<QPushButton>("cmdWriteData").click();
    EXPECT_EQ(status(), "EEP Verified OK; New Data Written to EEProm");
    EXPECT_EQ(television.Memory(Chip::Primary)[18], 23);
    EXPECT_THAT(script.takeTitles(), ElementsAre("W A R N I N G", "V E R I F Y"));
}

TEST_F(FormMainTest, BrowsesTheGridWithTheEditorOff) {
    openEditor();
    child<QCheckBox>("EditorEnabled").click();
    struct Step {
        int key;
        Qt::KeyboardModifiers modifiers;
        GridCell to;
    };
    for (const Step& step :
         {Step{Qt::Key_End, Qt::ControlModifier, {511, 16}}, Step{Qt::Key_Up, {}, {510, 16}},
          Step{Qt::Key_Home, Qt::ControlModifier, {0, 1}}, Step{Qt::Key_Right, {}, {0, 2}}}) {
        key(step.key, step.modifiers);
        EXPECT_EQ(current(), step.to);
    }
    key(Qt::Key_PageDown);
    EXPECT_GE(current().row, 5);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), toQt(program.grid.Text(current())));
    EXPECT_FALSE(box().isVisible());
    const auto* model = child<QTableView>("DataGrid").model();
    EXPECT_EQ(model->data(model->index(147, 12), Qt::ToolTipRole), " 480i CR02 White Balance ");
}

TEST_F(FormMainTest, AsksBeforeEditsInTheGridAreLost) {
    openEditor();
    clickByte(0, 1);
    type("99");
    script.press(QMessageBox::No);
    script.press(QMessageBox::No);
    child<QTabWidget>("SSTab1").setCurrentIndex(0);
    EXPECT_TRUE(program.state.gridChanged);
    EXPECT_EQ(status(), "Chroma Settings");
    script.takeTitles();

    script.press(QMessageBox::Yes);
    auto& menu = *child<QAction>("mnuFile").menu();
    menu.popup({});
    menu.close();
    EXPECT_THAT(script.takeTitles(), ElementsAre("D A T A - Changed"));
    EXPECT_EQ(program.buffer[0], 99);
    EXPECT_FALSE(program.state.gridChanged);

    script.press(QMessageBox::No);
    window.close();
    EXPECT_TRUE(window.isVisible());
    script.press(QMessageBox::Yes);
    window.close();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(FormMainTest, ShowsProgressAndDropsInputDuringAWholeDeviceOperation) {
    script.press(QMessageBox::Yes);
    std::vector<std::string> seen;
    QObject::connect(&window, &QWidget::windowTitleChanged,
                     [&](const QString& title) { seen.push_back(title.toStdString()); });
    bool painted = false;
    QTimer watch;
    television.SetWriteCycle(BusTime(3'500'000));
    watch.callOnTimeout([&] {
        if (!status().startsWith("Please Wait,"))
            return;
        const QString panel = text("statusPanel_4");
        if (panel.endsWith('%')) {
            const QImage image = child("statusPanel_4").grab().toImage();
            const int filled = image.width() * panel.chopped(1).toInt() / 100;
            const auto colour = [&](int x) { return image.pixelColor(x, image.height() - 4); };
            EXPECT_NE(colour(filled - 4), colour(filled + 4)) << panel.toStdString();
            painted = true;
        }
        for (const char* pressed : {"cmdReadSettings", "lblSetting_0", "EditorEnabled"})
            child<QAbstractButton>(pressed).click();  // as a screen reader does
        choose("mnuHelpAbout");
        child<QTabWidget>("SSTab1").setCurrentIndex(5);
        EXPECT_EQ(child<QTabWidget>("SSTab1").currentIndex(), 0);
        QCoreApplication::postEvent(&child("cmdReadSettings"),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, {}, " "));
        QCoreApplication::postEvent(&child("cmdReadSettings"),
                                    new QKeyEvent(QEvent::KeyRelease, Qt::Key_Space, {}, " "));
    });
    watch.start(0);
    choose("mnuEEPWrite");
    watch.stop();
    QCoreApplication::processEvents();
    EXPECT_EQ(status(), "EEP Verified OK; EEProm Write Successful");
    const std::string caption = " Tarnwell 2 - Simulated Television";
    EXPECT_THAT(seen, testing::Contains(caption + " - 50%, 17 s left"));
    EXPECT_EQ(window.windowTitle().toStdString(), caption);
    EXPECT_TRUE(painted);
    EXPECT_EQ(text("statusPanel_4"), "Pri");
}

TEST_F(FormMainTest, OpensAGivenImageWithTheChecksOfTheMenu) {
    const std::string name = "im\xE4ge.mot";
    folder.Write(name, "S0030000FC\r\nS1040012AB3E\r\nS9030000FC\r\n");
    choose("mnuEEPRead");
    script.press(QMessageBox::No);
    window.openImage(folder.Path(name));
    EXPECT_EQ(status(), "EEProm Image Load Canceled");
    script.press(QMessageBox::Yes);
    script.then([this](QWidget& box) {
        EXPECT_EQ(box.parentWidget(), &window);
        dynamic_cast<QMessageBox&>(box).button(QMessageBox::Yes)->click();
    });
    window.openImage(folder.Path(name));
    EXPECT_EQ(status(), "Record Checksums OK; EEP Image Loaded into Buffer");
    EXPECT_EQ(program.buffer[0x12], 0xAB);
    EXPECT_EQ(program.state.archiveFolder + "/", folder.Path());
}

}  // namespace
}  // namespace tarnwell
