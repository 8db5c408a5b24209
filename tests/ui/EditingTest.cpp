// Changing values, finding one's way and taking back, by keyboard and by mouse.
#include <QAccessible>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTabBar>

#include "support/MainWindow.h"

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
    key(Qt::Key_1, Qt::ControlModifier);  // is no entry
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

class UndoingTest : public FormMainTest {
  protected:
    void SetUp() override {
        FormMainTest::SetUp();
        std::fill_n(television.Memory(Chip::Primary).begin() + 2363, 3, std::uint8_t{7});
    }
    /// What one way to use the program does.
    struct Hands {
        std::function<void(const char* cell)> raise;
        std::function<void()> undo;
        std::function<void()> redo;
        std::function<void()> write;
    };
    void changeUndoAndWrite(const Hands& hands) {
        choose("mnuEEPRead");
        for (const char* cell : {"lblSetting_0", "lblSetting_1", "lblSetting_2"})
            hands.raise(cell);
        hands.undo();
        hands.undo();
        hands.write();
        EXPECT_EQ(bytes(), "8 7 7 ");
        const auto& undo = child<QAction>("mnuEditUndo");
        EXPECT_EQ(undo.text(), "&Undo 480i CR02 7 to 8");
        EXPECT_EQ(child<QAction>("mnuEditRedo").toolTip(), "Redo 480i CB02 7 to 8");
        hands.undo();
        EXPECT_EQ(bytes(), "8 7 7 ");
        hands.write();
        EXPECT_EQ(bytes(), "7 7 7 ");
        for (int step = 0; step < 3; ++step)
            hands.redo();
        hands.write();
        EXPECT_EQ(bytes(), "8 8 8 ");
        for (int step = 0; step < 4; ++step)
            hands.undo();
        EXPECT_FALSE(undo.isEnabled());
        EXPECT_EQ(undo.text() + ": " + undo.toolTip(), "&Undo: Nothing to undo");
        EXPECT_TRUE(child<QMenu>("mnuEdit").toolTipsVisible());
    }
    std::string bytes() {
        std::string all;
        for (std::size_t address = 2363; address < 2366; ++address)
            all += std::to_string(television.Memory(Chip::Primary)[address]) + " ";
        return all;
    }
    void tabTo(const char* name) {
        for (int time = 0; time < 60 && focus()->objectName() != QLatin1String(name); ++time)
            key(Qt::Key_Tab);
        EXPECT_EQ(focus()->objectName(), QLatin1String(name));
    }
    static void click(QWidget& widget, const QRect& place) {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, place.center());
    }
    void chooseByMouse(const char* item) {
        auto& menu = child<QMenu>("mnuEdit");
        click(*window.menuBar(), window.menuBar()->actionGeometry(menu.menuAction()));
        click(menu, menu.actionGeometry(&child<QAction>(item)));
    }
};

TEST_F(UndoingTest, ByTheKeyboardAlone) {
    const auto raise = [this](const char* cell) {
        tabTo(cell);
        script.then([](QWidget& editor) {
            QTest::keyClick(editor.focusWidget(), Qt::Key_Up);
            QTest::keyClick(editor.focusWidget(), Qt::Key_Return);
        });
        key(Qt::Key_Return);
    };
    const auto write = [this] {
        tabTo("cmdSaveSettings");
        script.then([](QWidget& box) {
            QTest::keyClick(static_cast<QMessageBox&>(box).button(QMessageBox::Yes), Qt::Key_Space);
        });
        key(Qt::Key_Space);
    };
    bool other = false;
    const auto redo = [&] {
        other = !other;
        other ? key(Qt::Key_Y, Qt::ControlModifier)
              : key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    };
    changeUndoAndWrite({raise, [this] { key(Qt::Key_Z, Qt::ControlModifier); }, redo, write});
}

TEST_F(UndoingTest, ByTheMouseAlone) {
    const auto raise = [this](const char* cell) {
        script.then([](QWidget& editor) {
            auto& arrows = Child<QScrollBar>(editor, "VScroll1");
            click(arrows, QRect(0, 0, arrows.width(), arrows.width()));
            auto& ok = Child<QPushButton>(editor, "cmdAccept");
            click(ok, ok.rect());
        });
        click(child(cell), child(cell).rect());
    };
    const auto write = [this] {
        script.press(QMessageBox::Yes);
        click(child("cmdSaveSettings"), child("cmdSaveSettings").rect());
    };
    changeUndoAndWrite({raise, [this] { chooseByMouse("mnuEditUndo"); },
                        [this] { chooseByMouse("mnuEditRedo"); }, write});
}

TEST_F(UndoingTest, InTheEditBoxItIsOfTheTextThenOfTheEntryThenOfTheProgram) {
    openEditor();
    clickByte(0, 3);
    type("12");
    key(Qt::Key_Tab);
    EXPECT_EQ(box().text(), "3");
    type("34");
    key(Qt::Key_Backspace);
    EXPECT_EQ(box().text(), "3");
    const auto undo = [this] { key(Qt::Key_Z, Qt::ControlModifier); };
    undo();
    EXPECT_EQ(box().text(), "34");
    undo();
    EXPECT_EQ(box().text(), "3");
    EXPECT_TRUE(box().isVisible() && program.grid.EditText() == "3");
    undo();
    EXPECT_FALSE(box().isVisible());
    EXPECT_EQ(program.grid.Text({0, 3}), "12");
    undo();
    EXPECT_EQ(program.grid.Text({0, 3}), "2");
    EXPECT_EQ(program.pending.Count(), 0);
}

}  // namespace
}  // namespace tarnwell
