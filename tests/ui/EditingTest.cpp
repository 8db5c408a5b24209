// Changing values, finding one's way and taking back, by keyboard and by mouse.
#include <QAccessible>
#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>

#include "support/MainWindow.h"
#include "ui/widgets/UpDownBar.h"

namespace tarnwell {
namespace {

class EditingTest : public FormMainTest {
  protected:
    EditingTest() {
        sights["pending"] = [this] { return tabs().tabToolTip(0); };
        sights["device"] = [this] {
            QString bytes;
            for (const std::size_t address : {2363U, 2364U, 2365U, 2401U, 2437U, 2473U})
                bytes += QString::number(eeprom[address]) + ' ';
            return bytes;
        };
        // Why items of a menu are disabled.
        sights["reasons"] = [this] {
            QString all;
            for (const QAction* item : front().actions())
                all += item->isEnabled() ? QString() : item->toolTip() + '|';
            return all;
        };
    }
    static void click(QWidget& widget, const QRect& place) {
        QTest::mouseClick(&widget, Qt::LeftButton, {}, place.center());
    }
    std::function<void()> wheel(QWidget& (Player::*over)() const, int angle) {
        return [=, this] {
            QWidget& widget = (this->*over)();
            const QPointF middle = widget.rect().center();
            QWheelEvent wheel(middle, middle, {}, {0, angle}, {}, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&widget, &wheel);
        };
    }
};

TEST_F(EditingTest, WhatStandsLiveIsWrittenAndAbortTakesItBack) {
    const auto untilWritten = [this] {
        auto& label = Child<QLabel>(front(), "lblWritten");
        EXPECT_TRUE(QTest::qWaitFor([&] { return label.text() == "Written"; }, 20000));
    };
    const auto untilClosed = [this] {
        EXPECT_TRUE(QTest::qWaitFor([this] { return front().objectName() != "formEdit"; }, 20000));
    };
    sights["byte"] = [this] { return QString::number(eeprom[2363]); };
    play({{"mnuEEPRead on:lblSetting_0 Return", "chkLive.checked lblWritten", "false / "},
          {"on:chkLive Space", "title", "V E R I F Y"},
          {"No", "chkLive.checked byte", "false / 104"},
          {"chkLive Yes Up", "chkLive.checked lblWritten byte", "true / Waits / 104"},
          {untilWritten, "byte Label1.accessibleName", "105 / 105 Written"},
          {"Abort", "byte lblSetting_0", "104 / 104"},
          {"on:lblSetting_0 Return", "chkLive.checked", "false"},
          {"chkLive 7", "lblWritten", "Waits"},
          {"OK", "title lblWritten", " Edit Value / Waits"},
          {untilClosed, "byte lblSetting_0 status", "7 / 7 / EEP Verified OK; Settings..."}});
}

TEST_F(EditingTest, ASettingIsSteppedAndWritten) {
    auto& cell = child<QAbstractButton>("lblSetting_0");
    sights["colour"] = [&] { return cell.grab().toImage().pixelColor(4, 4).name(); };
    const auto half = [this](int quarters) {
        return [=, this] {
            const QSize size = focus().size();
            click(focus(), QRect(0, size.height() * quarters / 4, size.width(), 1));
        };
    };
    const auto moveIt = [&] {
        QWidget& edit = front();
        EXPECT_EQ(edit.pos(), cell.mapToGlobal(QPoint(cell.width() - 1 + scaled(60), 0)));
        edit.close();  // does nothing
        edit.move(150, 90);
    };
    play({{"mnuEEPRead", "lblSetting_0", "104"},
          {"on:lblSetting_0 Return", "VScroll1.maximum", "255"},
          {moveIt, "title", " Edit Value"},
          {"on:VScroll1 Home", "Label1", "255"},
          {"PgDown", "Label1", "239"},
          {"End", "Label1", "0"},
          {"PgUp", "Label1", "16"},
          {wheel(&Player::focus, 60), "VScroll1", "16"},
          {wheel(&Player::focus, 60), "VScroll1", "17"},
          {wheel(&Player::focus, -240), "VScroll1", "15"},
          {"1 0 4 Up", "Label1", "105"},
          {half(1), "Label1", "106"},
          {half(3), "Label1", "105"},
          {"Return", "status lblSetting_0 colour", "480i CR02 Value Changed / 105 / #efdb89"}});
    EXPECT_EQ(program.state.editTop + " " + program.state.editLeft, "1350 2250");
    std::string way;
    for (const char pressed : std::string("LURURDDDLLLDRRRRU")) {
        const int keys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
        QTest::keyClick(&focus(), Qt::Key(keys[std::string("LRUD").find(pressed)]));
        way += fromQt(focus().objectName()).substr(11) + ' ';
    }
    EXPECT_EQ(way, "0 5 11 10 16 17 12 13 7 1 1 1 7 13 19 19 18 ");

    UpDownBar bar(nullptr);
    for (const auto& [top, page] : {std::pair(3, 1), {30, 1}, {31, 2}}) {
        bar.setEnds(0, top);
        EXPECT_EQ(bar.pageStep(), page) << top;
    }
    play({{"Alt+W", "title", "V E R I F Y"},
          {"Space", "status device colour",
           "EEP Verified OK; Settings Values Written to EEProm / 105 ... / #ffffc0"},
          {"Ctrl+Z", "lblSetting_0 mnuEditUndo mnuEditRedo.toolTip",
           "104 / Undo Read of Primary EEProm / Redo 480i CR02 104 to 105"},
          {"Ctrl+Y", "lblSetting_0 mnuEditUndo", "105 / Undo 480i CR02 104 to 105"},
          {"Ctrl+Z Ctrl+Shift+Z", "lblSetting_0 mnuEditRedo", "105 / ~Redo"}});
}

TEST_F(EditingTest, ValuesAreTypedFromAnywhereInTheEditorAndCopied) {
    sights["tab"] = [this] {
        const auto* bar = QAccessible::queryAccessibleInterface(tabs().tabBar());
        return bar->child(0)->text(QAccessible::Description);
    };
    play({{"menu:lblSetting_8", "reasons mnuCell.toolTipsVisible",
           "No value was read yet|... / true"},
          {"Esc mnuEEPRead on:lblSetting_8 Ctrl+1 1", "Label1", "1"},  // the first is no entry
          {"", "status", "R-YR 480p: 0 to 15, was 142"},
          {"on:cmdAccept 2", "Label1", "12"},
          {"Up", "Label1", "13"},
          {"on:VScroll1 9", "Label1", "9"},
          {"9", "Label1", "9"},
          {"on:cmdCancel Backspace", "Label1 VScroll1", "0 / 0"},
          {"Home", "Label1", "15"},
          {"Up", "VScroll1", "15"},
          {"3", "Label1", "3"},
          {"on:cmdAccept End", "Label1 status", "0 / R-YR 480p goes from 0 to 15"},
          {[this] { program.statusBar.MsgTimerFired(); }, "status", "R-YR 480p: 0 to 15, was 142"},
          {wheel(&Player::front, 120), "Label1", "1"},
          {"Return", "lblSetting_8 pending", "1 / 1 value waits to be written"},
          {"menu:lblSetting_8 mnuCellRevert", "lblSetting_8 pending", "142 / "},
          {"Ctrl+Z menu:lblSetting_8 mnuCellCopy", "status tab",
           "R-YR Value Copied to All Formats / 4 values wait to be written"},
          {"menu:lblSetting_8 mnuCellEdit", "title", " Edit Value"},
          {"Esc menu:lblSetting_8 mnuCellShow", "title", "W A R N I N G"},
          {"cmdAccept", "address SSTab1", "2401 / 5"},
          {"cmdSaveSettings", "title", "V E R I F Y"},
          {"Yes", "device pending", "104 105 1 1 1 1  / "},
          {"menu:lblSetting_8", "reasons", "The value is the one that was read last|"},
          {[this] { program.cells.ShowValue(8, 16); }},
          {"Esc menu:lblSetting_8", "reasons",
           "For a value in its range, of a setting with several formats|"},
          {[this] { program.state.targetDevice = TargetDevice::Secondary; }},
          {"Esc menu:lblSetting_8", "reasons",
           "The settings are those of the primary EEPROM|The settings ...|The settings ...|"},
          {"Esc"}});
}

TEST_F(EditingTest, GoesToPlacesAndFindsBytes) {
    openEditor();
    const auto findIsBeside = [this] {
        const QWidget& find = child("formFind");
        EXPECT_FALSE(find.frameGeometry().intersects(window.frameGeometry()));
        program.state.editorWarning = kShowWarning;
    };
    play(
        {{"at:0 Ctrl+G", "title", "Go to"},
         {"type:8192 Return", "lblGoToProblem",
          "Neither an address from 0 to 8191 nor a setting's name"},
         {"type:8191 Return", "status", "Editing EEPROM Address: 8191"},
         {"Ctrl+G type:1080i,~red~sat Return", "focus", "lblSetting_14"},
         {"F3", "focus...", "txtFind"},  // nothing was looked for yet
         {findIsBeside},
         {"type:4~??~256 Return", "lblFindProblem", "Type bytes from 0 to 255, or ?? for any byte"},
         {"type:4~??~0x6 Return", "title", "W A R N I N G"},
         {"cmdAccept", "status SSTab1", "1 of 33, wrapped / 5"},
         {"F3", "status", "2 of 33"},
         {"Esc", "status", "2 of 33"},
         {"F3", "status", "3 of 33"},
         {"mnuEditFind on:txtFind Ctrl+A type:abc cboKind Down Return cmdFindPrevious", "status",
          "..."}});
    EXPECT_EQ(current().Address(), 'a' + 251);
    const auto offersNames = [this] {
        QCompleter* names = child<QLineEdit>("txtFind").completer();
        ASSERT_TRUE(names != nullptr);
        names->setCompletionPrefix("tin");
        EXPECT_EQ(names->currentCompletion(), "Global TINT");
        child<QLineEdit>("txtFind").setText("tin");
    };
    play({{"mnuEditFind cboKind Down Return"},
          {offersNames},
          {"cmdFindNext", "address", "2085"},
          {"cboKind Up Return", "cboKind", "Text"}});
    EXPECT_EQ(child<QLineEdit>("txtFind").completer(), nullptr);
}

}  // namespace
}  // namespace tarnwell
