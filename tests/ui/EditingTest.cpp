// Changing values and finding one's way in the main window, by keyboard and by mouse.
#include <QAccessible>
#include <QClipboard>
#include <QMenu>
#include <QScrollBar>
#include <QTabBar>

#include "ui/MainWindow.h"

namespace tarnwell {
namespace {

class EditingTest : public FormMainTest {
  protected:
    /// Chooses an item of the menu that a widget shows.
    void chooseOf(const char* widget, const char* item) {
        QContextMenuEvent wanted(QContextMenuEvent::Keyboard, {}, window.pos());
        QCoreApplication::sendEvent(&child(widget), &wanted);
        auto& menu = *QApplication::activePopupWidget();
        auto& action = Child<QAction>(menu, item);
        EXPECT_TRUE(action.isEnabled()) << item;
        action.trigger();
        menu.close();
    }
    std::string pending() {
        std::string rows;
        for (int row = 0; row < program.pending.Count(); ++row)
            rows += program.pending.Row(row).EditAddress + ":" +
                    program.pending.Row(row).EditNewValue + " ";
        return rows;
    }
    void copy(const char* text) { QGuiApplication::clipboard()->setText(QLatin1String(text)); }
    QTabWidget& tabs() { return child<QTabWidget>("SSTab1"); }
};

TEST_F(EditingTest, ValuesAreTypedAndSteppedFromAnywhereInTheEditor) {
    choose("mnuEEPRead");
    auto& cell = child<QAbstractButton>("lblSetting_8");
    cell.setFocus();
    EXPECT_EQ(cell.toolTip(), "Address 2401, bits 0 to 3");
    EXPECT_EQ(child("lblSetting_32").toolTip(),
              " Value left-shifted & handled specially in EEP register "
              "\nAddress 2085, bits 2 to 7");
    script.then([&](QWidget& edit) {
        auto& ok = Child<QPushButton>(edit, "cmdAccept");
        auto& abort = Child<QPushButton>(edit, "cmdCancel");
        auto& bar = Child<QScrollBar>(edit, "VScroll1");
        const auto& readout = Child<QLabel>(edit, "Label1");
        EXPECT_EQ(readout.text() + ", " + status(), "1, R-YR 480p: 0 to 15, was 142");
        for (const auto& [pressed, on, shown] :
             {std::tuple<int, QWidget*, const char*>(Qt::Key_2, &ok, "12"),
              {Qt::Key_Up, &ok, "13"},
              {Qt::Key_9, &bar, "9"},
              {Qt::Key_9, &bar, "9"},
              {Qt::Key_Backspace, &abort, "0"},
              {Qt::Key_Home, &abort, "15"},
              {Qt::Key_Up, &abort, "15"},
              {Qt::Key_3, &abort, "3"},
              {Qt::Key_End, &ok, "0"}}) {
            QTest::keyClick(on, static_cast<Qt::Key>(pressed));
            EXPECT_EQ(readout.text(), shown);
            EXPECT_EQ(bar.value(), readout.text().toInt());
        }
        EXPECT_EQ(status(), "R-YR 480p goes from 0 to 15");
        program.statusBar.MsgTimerFired();
        EXPECT_EQ(status(), "R-YR 480p: 0 to 15, was 142");
        const QPointF middle = readout.rect().center();
        QWheelEvent wheel(middle, middle, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&edit, &wheel);
        QTest::keyClick(&ok, Qt::Key_Return);
    });
    key(Qt::Key_1);
    EXPECT_EQ(cell.text(), "1");
    EXPECT_EQ(tabs().tabToolTip(0), "1 value waits to be written");
    chooseOf("lblSetting_8", "mnuCellRevert");
    EXPECT_EQ(cell.text() + tabs().tabToolTip(0), "142");
    key(Qt::Key_Z, Qt::ControlModifier);
    chooseOf("lblSetting_8", "mnuCellCopy");
    EXPECT_EQ(status(), "R-YR Value Copied to All Formats");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(tabs().tabBar())
                  ->child(0)
                  ->text(QAccessible::Description),
              "4 values wait to be written");
    script.then([](QWidget& edit) { QTest::keyClick(&edit, Qt::Key_Escape); });
    chooseOf("lblSetting_8", "mnuCellEdit");
    script.then([](QWidget& warning) { static_cast<QDialog&>(warning).accept(); });
    chooseOf("lblSetting_8", "mnuCellShow");
    EXPECT_TRUE(tabs().currentIndex() == 5 && current().Address() == 2401);
    script.press(QMessageBox::Yes);
    child<QPushButton>("cmdSaveSettings").click();
    for (const std::size_t address : {2365U, 2401U, 2437U, 2473U})
        EXPECT_EQ(television.Memory(Chip::Primary)[address], 1);
    EXPECT_EQ(tabs().tabToolTip(0), "");
}

TEST_F(EditingTest, GoesToPlacesAndFindsBytes) {
    openEditor();
    clickByte(0, 1);
    script.then([&](QWidget& dialog) {
        auto& place = Child<QLineEdit>(dialog, "txtGoTo");
        QTest::keyClicks(&place, "8192");
        QTest::keyClick(&place, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(Child<QLabel>(dialog, "lblGoToProblem").text(),
                  "Neither an address from 0 to 8191 nor a setting's name");
        QTest::keyClicks(&place, "8191");
        QTest::keyClick(&place, Qt::Key_Return);
    });
    key(Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(status(), "Editing EEPROM Address: 8191");
    script.then([](QWidget& dialog) {
        QTest::keyClicks(&Child<QLineEdit>(dialog, "txtGoTo"), "r-yr 1080i");
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    });
    key(Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(focus()->objectName(), "lblSetting_14");

    key(Qt::Key_F3);  // nothing was looked for yet
    auto& find = Child<QDialog>(window, "formFind");
    auto& wanted = Child<QLineEdit>(find, "txtFind");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&find, kPatience));
    EXPECT_FALSE(find.frameGeometry().intersects(window.frameGeometry()));
    QTest::keyClicks(&wanted, "4 ?? 256");
    QTest::keyClick(&wanted, Qt::Key_Return);
    EXPECT_EQ(Child<QLabel>(find, "lblFindProblem").text(),
              "Type bytes from 0 to 255, or ?? for any byte");
    wanted.setText("4 ?? 0x6");
    program.state.editorWarning = kShowWarning;
    script.then([](QWidget& warning) { static_cast<QDialog&>(warning).accept(); });
    QTest::mouseClick(&Child<QPushButton>(find, "cmdFindNext"), Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&find, kPatience)) << "also after the editor's warning";
    EXPECT_EQ(status(), "1 of 33, wrapped");
    EXPECT_TRUE(tabs().currentIndex() == 5 && current().Address() == 4);
    QTest::keyClick(&wanted, Qt::Key_F3);
    EXPECT_EQ(status(), "2 of 33");
    find.close();
    key(Qt::Key_F3);
    EXPECT_EQ(status(), "3 of 33");
    choose("mnuEditFind");
    wanted.setText("abc");
    Child<QComboBox>(find, "cboKind").setCurrentIndex(1);
    QTest::mouseClick(&Child<QPushButton>(find, "cmdFindPrevious"), Qt::LeftButton);
    EXPECT_EQ(current().Address(), 'a' + 251);
}

TEST_F(EditingTest, SeveralBytesAreSelectedCopiedPastedAndTakenBack) {
    openEditor();
    clickByte(1, 3);
    copy("200, 201\n");
    key(Qt::Key_V, Qt::ControlModifier);
    type("202\t");
    EXPECT_EQ(pending(), "18:200 19:201 20:202 ");
    EXPECT_EQ(current().Address(), 21);
    key(Qt::Key_Escape);
    for (int count = 0; count < 2; ++count)
        key(Qt::Key_Left, Qt::ShiftModifier);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "201 202 21");
    auto& grid = child<QTableView>("DataGrid");
    EXPECT_EQ(grid.selectionModel()->selectedIndexes().size(), 3);
    copy("7 8");
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(pending(), "18:200 19:201 20:202 19:7 20:8 ");

    QTest::mouseClick(&child("lblOldData_4"), Qt::LeftButton);
    for (const int pressed : {Qt::Key_Delete, Qt::Key_Down, Qt::Key_Up})
        key(pressed);
    EXPECT_EQ(pending(), "18:200 19:201 20:202 19:7 ");
    EXPECT_EQ(focus()->objectName(), "lblAddy_2");
    key(Qt::Key_Return);
    EXPECT_EQ(current().Address(), 20);
    QTest::mouseDClick(&child("lblNewData_0"), Qt::LeftButton);
    EXPECT_EQ(current().Address(), 18);
    chooseOf("lblOldData_0", "mnuPendingTakeBack");
    EXPECT_EQ(pending(), "19:201 20:202 19:7 ");
    EXPECT_EQ(status(), "Pending EEP Write Taken Back");
    EXPECT_EQ(child("lblAddy_3").focusPolicy(), Qt::NoFocus);

    QWidget& seen = *grid.viewport();
    const auto centre = [&](int column) {
        return grid.visualRect(grid.model()->index(2, column)).center();
    };
    const int below = grid.rowAt(seen.height() - 1) + 1;
    for (const auto& [to, end] : {std::pair(centre(3), GridCell{2, 3}),
                                  {{centre(2).x(), seen.height()}, {below, 2}},
                                  {{9999, 9999}, {511, 16}},
                                  {{1, -999}, {0, 1}}}) {
        program.cellEditor.MoveTo({2, 2});
        QTest::mousePress(&seen, Qt::LeftButton, {}, centre(2));
        QTest::mouseMove(&seen, to);
        EXPECT_TRUE(QTest::qWaitFor([&, end = end] { return current() == end; }, kPatience));
        QTest::mouseRelease(&seen, Qt::LeftButton);
        QTest::mouseMove(&seen, centre(9));
        QTest::qWait(120);
        EXPECT_EQ(current(), end);
        chooseOf("DataGrid", "mnuGridCopy");
        EXPECT_EQ(QGuiApplication::clipboard()->text().count(' '), abs(end.Address() - 33));
    }
    program.cellEditor.MoveTo({2, 2});
    clickByte(3, 2);
    EXPECT_EQ(grid.selectionModel()->selectedIndexes().size(), 0);
}

}  // namespace
}  // namespace tarnwell
