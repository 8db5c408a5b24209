// The window Compare, by keyboard and by mouse.
#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QHelpEvent>
#include <QLabel>
#include <QTimer>
#include <QToolTip>
#include <QTreeView>

#include "support/MainWindow.h"
#include "ui/widgets/DifferenceMap.h"

namespace tarnwell {
namespace {

class CompareTest : public FormMainTest {
  protected:
    void SetUp() override {
        FormMainTest::SetUp();
        program.state.editorWarning = kNoWarning;
        choose("mnuEEPRead");
        for (const int address : {2363, 4096, 4097})
            program.buffer[static_cast<std::size_t>(address)] ^= 0x11;
    }
    void compare(const ModalWindows::Action& action) {
        script.then([=](QWidget& dialog) {
            dialog.activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog, kPatience));
            action(dialog);
            if (dialog.isVisible())
                QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        key(Qt::Key_D, Qt::ControlModifier);
        EXPECT_TRUE(script.isDone());
    }
};

TEST_F(CompareTest, GoesThroughTheDifferencesAndTakesThem) {
    compare([&](QWidget& dialog) {
        auto& table = Child<QTreeView>(dialog, "tblDifferences");
        const QAbstractItemModelTester tester(
            table.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        auto& summary = Child<QLabel>(dialog, "lblDifferences");
        auto& take = Child<QPushButton>(dialog, "cmdTake");
        auto& onlySettings = Child<QAbstractButton>(dialog, "chkSettingsOnly");
        EXPECT_EQ(Child<QComboBox>(dialog, "cboLeft").currentText(), "Memory Buffer");
        EXPECT_EQ(Child<QComboBox>(dialog, "cboRight").currentText(), "Primary EEProm");
        EXPECT_EQ(summary.text(), "3 bytes differ: 1 setting, 2 other bytes in 1 place");
        EXPECT_FALSE(take.isEnabled() || Child<QPushButton>(dialog, "cmdShowInEditor").isEnabled());
        const auto at = [&] { return table.currentIndex().data().toString(); };
        for (const auto& [modifier, address] : {std::pair(Qt::NoModifier, "2363"),
                                                {Qt::NoModifier, "4096 - 4097"},
                                                {Qt::NoModifier, "2363"},
                                                {Qt::ShiftModifier, "4096 - 4097"}}) {
            QTest::keyClick(&table, Qt::Key_F6, modifier);
            EXPECT_EQ(at(), address);
        }
        QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text().count('\n'), 3);
        QTest::keyClick(&table, Qt::Key_Right);
        QTest::keyClick(&table, Qt::Key_Down);
        EXPECT_EQ(at(), "4096");
        EXPECT_FALSE(Child<QPushButton>(dialog, "cmdShowSetting").isEnabled());
        QTest::mouseClick(&take, Qt::LeftButton);
        EXPECT_EQ(summary.text(), "2 bytes differ: 1 setting, 1 other byte in 1 place");
        EXPECT_EQ(program.buffer[4096], television.Memory(Chip::Primary)[4096]);
        onlySettings.click();
        EXPECT_EQ(table.model()->rowCount(), 1);
        table.selectAll();
        take.click();
        EXPECT_EQ(table.model()->rowCount(), 0);
        EXPECT_EQ(summary.text(), "1 byte differs: 1 byte in 1 place");
    });
    EXPECT_TRUE(program.cells.AnyHasMark(Mark::Save));
}

TEST_F(CompareTest, AnEntryInTheGridIsSettledBefore) {
    child<QTabWidget>("SSTab1").setCurrentIndex(5);
    child<QCheckBox>("EditorEnabled").click();
    clickByte(0, 1);
    type("200");
    script.press(QMessageBox::Yes);
    compare([](QWidget& dialog) {
        EXPECT_EQ(Child<QLabel>(dialog, "lblDifferences").text(),
                  "1 byte differs: 1 byte in 1 place")
            << "the buffer is what the grid was";
    });
}

TEST_F(CompareTest, ThePictureMarksEachKindOfByte) {
    MemoryBuffer left{}, right{};
    left[0] = left[2363] = 1;
    left[900] = right[900] = 0xFF;
    DifferenceMap map;
    map.setFixedSize(1300, 700);
    std::string marks;  // from the corner, the side and the middle of their cells
    for (const auto device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        map.show(left, right, device, NumberMode::Decimal);
        const QImage shown = map.grab().toImage();
        for (const int address : {0, 2363, 2364, 900, 2}) {
            const QRectF cell = map.cellOf(address);
            for (const QPointF& at : {QPointF(0.2, 0.2), {0.2, 0.5}, {0.5, 0.5}}) {
                const QColor colour =
                    shown.pixelColor((cell.topLeft() + at * cell.width()).toPoint());
                marks += colour == QColor(192, 0, 0)                     ? 'd'
                         : colour == map.palette().color(QPalette::Base) ? '-'
                         : colour == map.palette().color(QPalette::Text) ? 't'
                                                                         : 'h';
            }
            marks += ' ';
        }
    }
    EXPECT_EQ(marks, "ddd dd- -hh --t --- ddd ddd --- --t --- ");
}

TEST_F(CompareTest, ThePictureLeadsToTheRowAndTheRowToThePage) {
    compare([&](QWidget& dialog) {
        auto& map = Child<DifferenceMap>(dialog, "mapDifferences");
        dialog.setGeometry(40, 30, 700, 500);
        auto& table = Child<QTreeView>(dialog, "tblDifferences");
        const int ways[][3] = {
            {Qt::Key_Up, 127, 127},     {Qt::Key_Up, 128, 0},     {Qt::Key_Down, 8063, 8191},
            {Qt::Key_Down, 8064, 8064}, {Qt::Key_Left, 0, 0},     {Qt::Key_Left, 4098, 4097},
            {Qt::Key_Home, 200, 0},     {Qt::Key_End, 200, 8191}, {Qt::Key_Right, 4096, 4097}};
        for (const auto& [pressed, from, to] : ways) {
            map.setCurrent(from);
            QTest::keyClick(&map, Qt::Key(pressed));
            EXPECT_EQ(map.accessibleDescription().section(':', 0, 0).mid(8).toInt(), to) << from;
        }
        QTest::keyClick(&map, Qt::Key_Return);
        EXPECT_EQ(table.currentIndex().data().toString(), "4097");
        EXPECT_TRUE(map.accessibleDescription().startsWith("Address 4097: "));
        const QRectF first = map.cellOf(0);
        const QPoint byte = (first.topLeft() + QPointF(59.5, 18.5) * first.width()).toPoint();
        for (const QPoint& clicked : {byte, first.topLeft().toPoint() - QPoint(3, 3)})
            QTest::mouseClick(&map, Qt::LeftButton, {}, clicked);
        EXPECT_EQ(table.currentIndex().data().toString(), "2363");
        EXPECT_TRUE(map.accessibleDescription().startsWith("Address 2363 "));
        QHelpEvent pointing(QEvent::ToolTip, byte, map.mapToGlobal(byte));
        QCoreApplication::sendEvent(&map, &pointing);
        EXPECT_TRUE(QToolTip::text().startsWith("Address 2363 (480i CR02): 121 left, 104 right"));
        Child<QPushButton>(dialog, "cmdShowSetting").click();
    });
    EXPECT_EQ(program.state.page, Page::Chroma);
    compare([&](QWidget& dialog) {
        EXPECT_EQ(dialog.geometry(), QRect(40, 30, 700, 500));
        QTest::keyClick(&Child<QTreeView>(dialog, "tblDifferences"), Qt::Key_F6, Qt::ShiftModifier);
        Child<QPushButton>(dialog, "cmdShowInEditor").click();
    });
    EXPECT_EQ(program.state.page, Page::Editor);
    EXPECT_EQ(program.grid.Current().Address(), 4096);
}

TEST_F(CompareTest, ASideThatCannotBeReadIsEmptyAndTheListIsSaved) {
    compare([&](QWidget& dialog) {
        const QString path = QString::fromStdString(folder.Path("list.csv"));
        const auto soon = [](const ModalWindows::Action& action) {
            QTimer::singleShot(200, [=] { action(*QApplication::activeModalWidget()); });
        };
        soon([=](QWidget& files) {
            Child<QLineEdit>(files, "fileNameEdit").setText(path);
            static_cast<QDialog&>(files).accept();
        });
        Child<QPushButton>(dialog, "cmdSaveList").click();
        QFile list(path);
        EXPECT_TRUE(list.open(QFile::ReadOnly));
        EXPECT_TRUE(
            list.readAll().startsWith("Address,Setting,Format,Left,Right\n2363,CR02,480i,"));
        television.Inject({.kind = FaultKind::SclStuckLow});
        soon(ModalWindows::pressing(QMessageBox::Ok));
        auto& left = Child<QComboBox>(dialog, "cboLeft");
        left.setFocus();
        QTest::keyClick(&left, Qt::Key_Down);
        EXPECT_EQ(left.currentIndex(), 0) << "a step alone reads nothing";
        QTest::keyClick(left.view(), Qt::Key_Down);
        QTest::keyClick(left.view(), Qt::Key_Return);
        EXPECT_EQ(left.currentIndex(), -1);
        EXPECT_EQ(Child<QLabel>(dialog, "lblDifferences").text(), "Choose both sides");
        EXPECT_FALSE(Child<QPushButton>(dialog, "cmdSaveList").isEnabled());
        EXPECT_EQ(Child<QWidget>(dialog, "mapDifferences").accessibleDescription(), "");
    });
}

TEST_F(CompareTest, TheListOfBackupsLeadsBackToOne) {
    MemoryBuffer image = program.buffer;
    image[5] ^= 1;
    ASSERT_TRUE(program.backups.Keep(TargetDevice::Primary, image));
    script.then([](QWidget& dialog) {
        const auto* table = Child<QTreeView>(dialog, "tblBackups").model();
        EXPECT_EQ(table->rowCount(), 1);
        EXPECT_EQ(table->index(0, 0).data().toString(), "Primary");
        EXPECT_EQ(table->index(0, 3).data().toString(), "1 byte differs: 1 byte in 1 place");
        QTest::mouseClick(&Child<QPushButton>(dialog, "cmdCompare"), Qt::LeftButton);
    });
    script.then([](QWidget& dialog) {
        EXPECT_EQ(Child<QComboBox>(dialog, "cboRight").currentText(), "Backup...");
        auto& left = Child<QComboBox>(dialog, "cboLeft");
        for (const auto& [button, shown] :
             {std::pair("cmdClose", "Memory Buffer"), {"cmdCompare", "Backup..."}}) {
            QTimer::singleShot(200, [button = button] {
                Child<QPushButton>(*QApplication::activeModalWidget(), button).click();
            });
            left.setCurrentIndex(left.findText("Backup..."));
            Q_EMIT left.activated(left.currentIndex());
            EXPECT_EQ(left.currentText(), shown);
        }
        EXPECT_EQ(Child<QLabel>(dialog, "lblDifferences").text(), "No differences");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    choose("mnuFileBackups");
    script.then([](QWidget& dialog) { Child<QPushButton>(dialog, "cmdLoad").click(); });
    script.press(QMessageBox::Yes);
    choose("mnuFileBackups");
    EXPECT_TRUE(program.buffer[5] == image[5] && program.buffer[4096] == image[4096]);
}

}  // namespace
}  // namespace tarnwell
