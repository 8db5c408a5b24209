// The data editor, driven with real key and mouse events.
#include <QClipboard>
#include <QMenu>
#include <QScrollBar>

#include "support/MainWindow.h"
#include "ui/looks/Colours.h"

namespace tarnwell {
namespace {

class GridTest : public FormMainTest {
  protected:
    GridTest() {
        verbs["copy"] = [](const QString& text) { QGuiApplication::clipboard()->setText(text); };
        // The current address, in brackets the open entry, then the pending writes.
        sights["grid"] = [this] {
            QString all = QString::number(current().Address());
            const bool same = toQt(program.grid.EditText()) == box().text();
            if (box().isVisible())
                all += QLatin1String(same ? " [" : " ![") + box().text() + "]";
            for (int row = 0; row < kPendingRows; ++row) {
                const std::string number = std::to_string(row);
                const QString address = child<QLabel>("lblAddy_" + number).text();
                if (!address.isEmpty())
                    all += " " + address + ":" + child<QLabel>("lblNewData_" + number).text();
            }
            return all;
        };
    }
    void SetUp() override {
        FormMainTest::SetUp();
        openEditor();
    }
    QString byte(int row, int column, int role = Qt::AccessibleTextRole) {
        return grid().model()->index(row, column).data(role).toString();
    }
};

TEST_F(GridTest, TheKeysOfTheEditBoxMoveThroughIt) {
    const std::pair<const char*, const char*> keys[] = {
        {"Tab", "69"},      {"Right", "69"},      {"Shift+Backtab", "67"},
        {"Left", "67"},     {"Return", "84"},     {"Num+Down", "84"},
        {"Up", "52"},       {"Shift+Up", "68"},   {"Ctrl+Right", "68"},
        {"Ctrl+Tab", "68"}, {"Ctrl+PgDown", "68"}};
    for (const auto& [pressed, to] : keys)
        play({{QString("at:68 ") + pressed, "grid focus status",
               QString("%1 [%1] / txtEditBox / Editing EEPROM Address: %1").arg(to)}});
}

TEST_F(GridTest, ClicksBesideTheBytesAndMenusCommitAnOpenEntry) {
    const auto click = [this](Qt::MouseButton button, int column, int right = 0) {
        return [=, this] {
            QTest::mouseClick(grid().viewport(), button, {}, centre(3, column) + QPoint(right, 0));
        };
    };
    play({{"at:35 type:201"},
          {click(Qt::LeftButton, 0), "grid", "35 35:201"},
          {"at:35 type:202"},
          {click(Qt::RightButton, 7), "grid", "35 35:201 35:202"},
          {"at:35 type:203"},
          {click(Qt::LeftButton, 16, scaled(300)), "grid", "35 35:201 35:202 35:203"},
          {"at:35 type:204 mnuOptions Esc", "grid", "35 35:201 35:202 35:203 35:204"},
          {"at:35 type:205 mnuEdit Esc", "grid", "35 ...:204 35:205"},
          {"at:35 type:206 mnuHelp Esc", "grid focus", "35 ...:205 35:206 / DataGrid"},
          {"at:35 page:0", "title", "Data Modified"},
          {"Yes", "SSTab1", "0"}});
    EXPECT_NE(focus().objectName(), "cmdReadSettings");
    play({{"page:5", "focus", "DataGrid"},
          {"EditorEnabled mnuSelMode_1", "lblNewData_5 lblNewData_6", "CE / ~0"}});
}

TEST_F(GridTest, HeadingsStandAboveTheirColumnsWithAnyScrollBar) {
    for (const char* style : {"", "QScrollBar { width: 40px; }"}) {
        grid().setStyleSheet(QLatin1String(style));
        for (int offset = 0; offset < 16; ++offset) {
            const QRect column = grid().visualRect(grid().model()->index(0, offset + 1));
            const auto& heading = child("lblRow_" + std::to_string(offset));
            EXPECT_EQ(heading.x(),
                      grid().viewport()->mapTo(heading.parentWidget(), column.topLeft()).x());
            EXPECT_NEAR(heading.width(), column.width(), 1);
        }
        EXPECT_EQ(grid().horizontalScrollBar()->maximum(), 0);
    }
}

TEST_F(GridTest, OnlyWhatHoldsDigitsReplacesTheMarkedEntry) {
    sights["entry"] = [this] { return box().text() + '|' + box().selectedText(); };
    const auto pasteItem = [this] {
        const auto items = front().actions();
        const auto isPaste = [](const QAction* item) { return item->text().startsWith("&Paste"); };
        return *std::ranges::find_if(items, isPaste);
    };
    sights["paste"] = [&] { return said(*pasteItem()) + '|' + pasteItem()->toolTip(); };
    verbs["compose"] = [this](const QString& text) {
        QInputMethodEvent composed(QStringLiteral("\u00B4"), {});
        composed.setCommitString(text);
        QCoreApplication::sendEvent(&box(), &composed);
    };
    verbs["drop"] = [this](const QString& text) {
        QMimeData dropped;
        dropped.setText(text);
        drop(box(), dropped);
    };
    play({{"at:18 X 1 A 9", "grid", "18 [19]"},
          {"Home Backspace", "grid", "18 [1]"},
          {"Ctrl+A copy:abc Ctrl+V", "entry", "1|1"},
          {"Shift+Ins", "entry", "1|1"},
          {"compose:abc", "entry", "1|1"},
          {"drop:abc", "entry", "1|1"},
          {"menu:txtEditBox", "paste qt_edit_menu.toolTipsVisible",
           "~Paste...|What was copied holds no digits / true"},
          {"Esc copy: Ctrl+V", "entry", "1|1"},
          {"compose:", "entry", "1|1"},
          {"drop:", "entry", "1|1"},
          {"copy:z2-3 Ctrl+V", "entry", "23|"},
          {"Ctrl+A Shift+Ins", "entry", "23|"},
          {"Ctrl+A compose:z2-3", "entry", "23|"},
          {"Backspace Backspace drop:z2-3", "entry", "23|"},
          {"Ctrl+A menu:txtEditBox", "paste", "Paste...|Paste..."},
          {[&] { pasteItem()->trigger(); }, "entry", "23|"},
          {"Esc"}});
}

TEST_F(GridTest, EntriesAreCommittedAbandonedAndWritten) {
    const auto scroll = [this] { grid().verticalScrollBar()->setValue(5); };
    const auto reopen = [this] { program.cellEditor.Click(); };
    sights["tab"] = [this] { return tabs().tabText(5) + '|' + tabs().tabToolTip(5); };
    sights["18"] = [this] { return byte(1, 3); };
    sights["34"] = [this] { return byte(2, 3); };
    play(
        {{"at:18", "txtEditBox.selectedText txtEditBox.alignment", "18 / AlignCenter"},
         {"type:23"},
         {"at:34", "grid lblOldData_0 18 tab",
          "34 [34] 18:23 / 18 / Address 18: 23, changed / Editor ! 1|1 value waits to be written"},
         {"type:77"},
         {scroll, "grid", "34 18:23"},
         {reopen},
         {"5 Esc", "grid", "34 18:23"},
         {"Del", "grid", "34 18:23"},
         {"-", "grid", "34 [-] 18:23"},
         {"1", "grid", "34 [-1] 18:23"},
         {"Down", "title", "W A R N I N G"},
         {"OK", "grid 34", "50 [50] 18:23 / Address 34: 34"},
         {"Esc 1 2 Return", "grid", "66 [66] 18:23 50:12"},
         {"cmdWriteData", "title", "V E R I F Y"},
         {"Yes", "status grid tab", "EEP Verified OK; New Data Written to EEProm / 66 / Editor|"}});
    EXPECT_TRUE(eeprom[18] == 23 && eeprom[50] == 12);
}

TEST_F(GridTest, SeveralBytesAreSelectedCopiedPastedAndTakenBack) {
    sights["selected"] = [this] {
        return QString::number(grid().selectionModel()->selectedIndexes().size());
    };
    play({{"at:18"},
          {"copy:200,~201 Ctrl+V", "grid", "20 [20] 18:200 19:201"},
          {"2 0 2 Tab", "grid", "21 [21] 18:200 19:201 20:202"},
          {"Esc Shift+Left Shift+Left Ctrl+C", "grid clipboard selected",
           "19 18:200 19:201 20:202 / 201 202 21 / 3"},
          {"copy:7~8 Ctrl+V", "grid", "21 [21] 18:200 19:201 20:202 19:7 20:8"},
          {"lblOldData_4 Del Down Up", "grid focus", "21 18:200 19:201 20:202 19:7 / lblAddy_2"},
          {"Return", "grid", "20 [202] 18:200 19:201 20:202 19:7"},
          {"twice:lblNewData_0", "grid", "18 [200] 18:200 19:201 20:202 19:7"},
          {"menu:lblOldData_0 mnuPendingTakeBack", "grid status lblAddy_3.focusPolicy",
           "18 19:201 20:202 19:7 / Pending EEP Write Taken Back / NoFocus"}});

    QWidget& seen = *grid().viewport();
    const int below = grid().rowAt(seen.height() - 1) + 1;
    for (const auto& [to, end] : {std::pair(centre(2, 3), GridCell{2, 3}),
                                  {{centre(2, 2).x(), seen.height()}, {below, 2}},
                                  {{9999, 9999}, {511, 16}},
                                  {{1, -999}, {0, 1}}}) {
        program.cellEditor.MoveTo({2, 2});
        QTest::mousePress(&seen, Qt::LeftButton, {}, centre(2, 2));
        QTest::mouseMove(&seen, to);
        EXPECT_TRUE(QTest::qWaitFor([&, end = end] { return current() == end; }, kPatience));
        QTest::mouseRelease(&seen, Qt::LeftButton);
        QTest::mouseMove(&seen, centre(2, 9));
        QTest::qWait(120);
        EXPECT_EQ(current(), end);
        play({{"menu:DataGrid mnuGridCopyHex"}});
        EXPECT_EQ(QGuiApplication::clipboard()->text().count(' '), abs(end.Address() - 33));
    }
    program.cellEditor.MoveTo({2, 2});
    play({{"at:49", "selected", "0"}});
}

TEST_F(GridTest, TheTextColumnIsTypedInAndFoundWith) {
    const auto click = [this](int row, int offset) {
        const QRect texts = grid().visualRect(grid().model()->index(row, 17));
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, {},
                          GridView::characterPlace(texts, offset).center());
    };
    sights["text"] = [this] { return grid().model()->index(4, 17).data().toString(); };
    sights["hidden"] = [this] { return QString::number(grid().isColumnHidden(17)); };
    play({{"at:18", "hidden", "1"},
          {"mnuEditText", "hidden mnuEditText", "0 / *Text Column"},
          {"at:68 type:201 F6", "grid focus text", "68 68:201 / DataGrid / @ABC.EFGHIJKLMNO"},
          {[&] { click(4, 5); }, "grid", "69 68:201"},
          {"type:A~", "grid text", "71 68:201 69:65 70:32 / @ABC.A GHIJKLMNO"},
          {"mnuEditFind", "cboKind", "Text"},
          {"on:txtFind type:JK Return Esc", "grid", "74 68:201 69:65 70:32"},
          {"on:DataGrid F6 7 F6", "grid", "74 68:201 69:65 70:32 74:7"},
          {"at:20", "grid", "20 [20] 68:201 69:65 70:32 74:7"},
          {[&] { click(0, 15); }, "grid", "15 ..."}});
    EXPECT_EQ(byte(4, 6), "Address 69: 65, character A, changed");
    QTest::mousePress(grid().viewport(), Qt::LeftButton, {}, QPoint(centre(1, 17).x(), 8));
    QTest::mouseMove(grid().viewport(), {9999, centre(1, 17).y()});
    EXPECT_EQ(current(), (GridCell{1, 16}));
    QTest::mouseRelease(grid().viewport(), Qt::LeftButton);
    for (int column = 0; column < 16; ++column)
        EXPECT_GT(grid().columnWidth(column), scaled(260));
    EXPECT_EQ(grid().horizontalScrollBar()->maximum(), 0);
}

TEST_F(GridTest, ALargerWindowShowsMoreRowsAndKeepsItsSizeForTheEditor) {
    const QSize least = window.size();
    EXPECT_EQ(least, window.minimumSize());
    const int rows = grid().rowAt(grid().viewport()->height() - 1);
    const auto place = [this](const char* name) { return child(name).geometry(); };
    const QRect pending = place("Frame1"), write = place("cmdWriteData"),
                read = place("cmdReadSettings");
    window.resize(least + QSize(100, 240));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return place("cmdReadSettings").top() > read.top(); }, kPatience));
    EXPECT_EQ(grid().rowAt(grid().viewport()->height() - 1), rows + 240 / scaled(240));
    EXPECT_EQ(place("Frame1"), pending.translated(100, 0));
    EXPECT_EQ(place("cmdWriteData"), write.translated(100, 240));
    EXPECT_EQ(place("cmdReadSettings"), read.translated(0, 240));
    play({{"page:0"}});
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.height() == least.height(); }, kPatience));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    play({{"page:5"}});
    const QSize kept = least + QSize(100, 240);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.size() == kept; }, kPatience));
    const QSize body = tabs().parentWidget()->size();
    window.resize(least);
    QTest::qWait(50);
    EXPECT_EQ(program.state.editorSize, textOf(body));
    play({{"page:0"}});
    EXPECT_EQ(program.state.editorSize, "");
    EXPECT_EQ(sizeFrom("9"), std::nullopt);
}

TEST_F(GridTest, UndoIsOfTheTextThenOfTheEntryThenOfTheProgram) {
    sights["2"] = [this] { return byte(0, 3); };
    play({{"at:2 1 2 Tab", "grid", "3 [3] 2:12"},
          {"3 4", "grid", "3 [34] 2:12"},
          {"Backspace", "grid", "3 [3] 2:12"},
          {"Ctrl+Z", "grid", "3 [34] 2:12"},
          {"Ctrl+Z", "grid", "3 [3] 2:12"},
          {"Ctrl+Z", "grid 2", "3 2:12 / Address 2: 12, changed"},
          {"Ctrl+Z", "grid 2", "3 / Address 2: 2"}});
}

TEST_F(GridTest, IsBrowsedWithTheEditorOff) {
    auto& lamp = child("EditorLamp");
    sights["lamp"] = [&] { return lamp.grab().toImage().pixelColor(lamp.rect().center()).name(); };
    sights["frame"] = [this] {  // of the current byte: whole, or dots
        const QModelIndex index = grid().model()->index(0, 2);
        const QImage cell = grid().viewport()->grab(grid().visualRect(index)).toImage();
        int dark = 0;
        for (int x = 0; x < cell.width(); ++x)
            dark += cell.pixelColor(x, 0).lightness() < 128 ? 1 : 0;
        return QString(dark * 4 / cell.width() >= 3 ? "whole" : dark > 0 ? "dots" : "none");
    };
    play({{"", "lamp", colours::kLampOn.name()},
          {"", "mnuNum.toolTip", "Switch the Data Editor off first"},
          {"EditorEnabled", "lamp", colours::kLampOff.name()},
          {"", "mnuNum", "Number Mode"},
          {"on:DataGrid Ctrl+End", "grid", "8191"},
          {"Up", "grid", "8175"},
          {"Ctrl+Home", "grid", "0"},
          {"Right", "grid", "1"},
          {"7 Ctrl+V", "status", "Data Editor Is Off; Click OFF Above the Grid to Change Bytes"},
          {[this] { program.statusBar.PutStatus(""); }},
          {"7 Ctrl+V", "status grid", " / 1"},
          {"menu:DataGrid", "mnuGridPaste mnuGridPaste.toolTip",
           "~Paste / Switch the Data Editor on first"},
          {"Esc", "frame", "whole"},
          {"on:EditorEnabled", "frame", "dots"},
          {"on:DataGrid PgDown Ctrl+C", "clipboard", "..."}});
    EXPECT_GE(current().row, 5);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), toQt(program.grid.Text(current())));
    const auto* model = grid().model();
    EXPECT_EQ(model->headerData(1, Qt::Vertical).toString() +
                  model->headerData(1, Qt::Horizontal).toString(),
              "160");
    EXPECT_EQ(byte(147, 12, Qt::ToolTipRole), " 480i CR02 White Balance ");
}

TEST_F(GridTest, AsksBeforeEditsInItAreLost) {
    play({{"at:0 type:99 page:0", "title", "Data Modified"},
          {"No", "title", "C A U T I O N"},
          {"No", "status", "Chroma Settings"},
          {"mnuFile", "title", "D A T A - Changed"},
          {"Yes Esc"}});
    EXPECT_TRUE(program.buffer[0] == 99 && !program.state.GridChanged);
    play({{"mnuFileExit No"}});
    EXPECT_TRUE(window.isVisible());
    play({{[this] { window.close(); }}, {"Yes"}});
    EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace tarnwell
