// The main window, driven with real key and mouse events.
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <regex>

#include "support/MainWindow.h"
#include "ui/dialogs/FormEdit.h"
#include "ui/dialogs/FormWarning.h"
#include "ui/looks/Colours.h"

namespace tarnwell {
namespace {

const std::string kSettingsFile =
    "S021000048616C7620446F726E205461726E77656C6C2032020253657474696E677390\n"
    "S10408B4053A\nS9030000FC\n";

/// Its items in order, with their keys; ~ stands before one that is hidden, / before one that is
/// disabled, * before one that is marked.
QString written(const QList<QAction*>& menu) {
    QStringList items;
    for (const QAction* item : menu) {
        QString text = item->isSeparator() ? QStringLiteral("-") : item->text();
        if (item->menu() != nullptr)
            text += " (" + written(item->menu()->actions()) + ")";
        text += ' ' + QKeySequence::listToString(item->shortcuts());
        items.append((item->isVisible() ? "" : "~") + QLatin1String(item->isEnabled() ? "" : "/") +
                     (item->isChecked() ? "*" : "") + text.trimmed());
    }
    return items.join(", ");
}

TEST_F(FormMainTest, HasTheGivenMenus) {
    EXPECT_EQ(status(), "Welcome to Tarnwell");
    EXPECT_EQ(QtTimer().timer().timerType(), Qt::PreciseTimer);
    EXPECT_EQ(window.windowTitle(), " Tarnwell 2 - Simulated Television");
    script.press(QMessageBox::Cancel);
    for (const char* chosen : {"mnuPortSel_0", "mnuSelMode_0", "mnuEEPsel_0", "mnuEEPsel_1"}) {
        choose(chosen);
        for (const char* marked : {"mnuPortSel_0", "mnuSelMode_0", "mnuEEPsel_0"})
            EXPECT_TRUE(child<QAction>(marked).isChecked()) << chosen;
        EXPECT_FALSE(child<QAction>("mnuEEPsel_1").isChecked());
    }
    EXPECT_EQ(
        fromQt(written(window.menuBar()->actions())),
        "Archive &File (&Load (EEP &Image, &Settings), &Save (EEP &Image, &Settings), -, Restore "
        "&Backup..., -, E&xit), &Edit (/&Undo Ctrl+Z, /&Redo Ctrl+Shift+Z; Ctrl+Y, -, &Go to... "
        "Ctrl+G, &Find... Ctrl+F, Find &Next F3, Find &Previous Shift+F3), I2C &Operations (&Read "
        "Entire EEP, &Write Entire EEP, ~/&Fill Entire EEP, -, &Select EEPROM (*&Primary (Color "
        "Values), &Secondary (Unknown)), -, &Compare... Ctrl+D, Write &Differences to EEP), "
        "Options (Number &Mode (*&Decimal, &Hex), &Parallel Port (*LPT&1 (378 h), LPT&2 (278 h), "
        "LPT&3 (3BC h), -, &Advanced Setup, &I2C Bus...), -, I2C Interface &Test, -, DLPortIO "
        "Service, -, Read "
        "T&wice), &Help (Help &Topics, -, Release &History, About &Tarnwell 2)");
}

TEST_F(FormMainTest, EachMenuItemOpensItsWindowOrTellsWhatItDid) {
    for (const auto& [item, title] : {std::pair{"mnuFileLoadImage", "Load EEProm Image"},
                                      {"mnuFileLoadValues", "Load Settings"},
                                      {"mnuFileSaveImage", "E R R O R"},
                                      {"mnuFileSaveValues", "Save Settings As..."},
                                      {"mnuEEPWrite", "V E R I F Y"},
                                      {"mnuEEPFill", "F I L L   E N T I R E   E E P"},
                                      {"mnuEEPsel_1", "W A R N I N G"},
                                      {"mnuPortOpts", "Advanced Port Setup"},
                                      {"mnuPortI2C", "I2C Bus"},
                                      {"mnuPortTest", " W A R N I N G"},
                                      {"mnuHelpHistory", "E R R O R"},
                                      {"mnuHelpAbout", "About Tarnwell 2"}}) {
        script.then([](QWidget& box) { static_cast<QDialog&>(box).reject(); });
        choose(item);
        EXPECT_THAT(script.takeTitles(), ElementsAre(title)) << item;
    }
    QTextBrowser viewer;
    QDesktopServices::setUrlHandler("file", &viewer, "setSource");
    choose("mnuHelpHelp");
    QDesktopServices::unsetUrlHandler("file");
    EXPECT_EQ(viewer.source().fileName(), "Tarnwell.html");
    script.press(QMessageBox::Ok);
    script.then([](QWidget& path) { static_cast<QDialog&>(path).reject(); });
    choose("mnuOptionsPortSer");
    EXPECT_THAT(script.takeTitles(), ElementsAre("E R R O R", "Cut-N-Paste Window"));
    const auto panels = [&] { return text("statusPanel_1") + ' ' + text("statusPanel_4"); };
    for (const auto& [item, told, shown] :
         {std::tuple{"mnuEEPRead", "Primary EEProm Data Read Into Memory", "Decimal Pri"},
          {"mnuSelMode_1", "Number Mode Changed to Hexadecimal", "Hex Pri"},
          {"mnuEEPsel_1", "Secondary EEProm Selected as Target Device", "Hex Sec"},
          {"mnuEEPRead", "Use the Data Editor to View/Modify data", "Hex Sec"},
          {"mnuSelMode_0", "Number Mode Changed to Decimal", "Decimal Sec"},
          {"mnuEEPsel_0", "Primary EEProm Selected as Target Device", "Decimal Pri"},
          {"mnuReadTwice", "Whole EEProms Are Read Twice", "Decimal Pri"},
          {"mnuPortSel_2", "Programming Port Changed to LPT3 (3BCh)", "Decimal Pri"},
          {"mnuPortSel_1", "Programming Port Changed to LPT2 (278h)", "Decimal Pri"},
          {"mnuPortSel_0", "Programming Port Changed to LPT1 (378h)", "Decimal Pri"}}) {
        const QLatin1String name(item);
        if (name == QLatin1String("mnuEEPsel_1"))
            script.press(QMessageBox::Ok);
        choose(item);
        EXPECT_EQ(status(), told);
        EXPECT_EQ(panels(), shown) << told;
        EXPECT_EQ(child<QAction>(item).isChecked(), name != QLatin1String("mnuEEPRead")) << item;
    }
    EXPECT_EQ(text("statusPanel_3"), toQt(mCRC32::BufferCrcText(program.buffer)));
    for (const auto& [button, told] :
         {std::pair("cmdReadSettings", "Settings Values Read from EEPROM"),
          {"cmdCopySettingsToBuffer", "Settings Values Merged Into Memory Buffer"}}) {
        child<QPushButton>(button).click();
        EXPECT_EQ(status(), told);
    }
}

TEST_F(FormMainTest, ShowsAtTheStartWhatTheOptionsSay) {
    for (auto& [key, values] : registry.keys)
        values["ReadTwice"] = "True", values["NumMode"] = "Hex", values["PortAddr"] = "632";
    window.startUp();
    std::string marked = fromQt(child("lblSetting_0").accessibleName());
    for (const QAction* item : window.findChildren<QAction*>(QRegularExpression("mnu")))
        marked += item->isChecked() ? fromQt(item->objectName()) + ' ' : "";
    EXPECT_EQ(marked, "480i CR02 0mnuEEPsel_0 mnuSelMode_1 mnuPortSel_1 mnuReadTwice ");
}

TEST_F(FormMainTest, TurnsPagesByKeyboardAndStartsTheExtraProgramByDoubleClick) {
    script.then([](QWidget& warning) { static_cast<QDialog&>(warning).accept(); });
    key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(child<QTabWidget>("SSTab1").currentIndex(), 5);
    key(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(status(), "Chroma Settings");
    QTest::mouseDClick(&child("lblSBinfo_0"), Qt::RightButton);
    QTest::keyClick(&child("lblSBinfo_0"), Qt::Key_A);
    script.press(QMessageBox::Ok);
    QAccessible::queryAccessibleInterface(&child("lblSBinfo_0"))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());  // types a blank
    QCoreApplication::processEvents();
    EXPECT_THAT(script.takeTitles(), testing::SizeIs(2));
    script.press(QMessageBox::Ok);
    QTest::mouseDClick(&child("lblSBinfo_0"), Qt::LeftButton);
    EXPECT_EQ(child("lblSBinfo_0").focusPolicy(), Qt::NoFocus);
}

TEST_F(FormMainTest, EditsASettingByKeyboardAndWritesIt) {
    choose("mnuEEPRead");
    EXPECT_EQ(text("statusPanel_3"), toQt(mCRC32::BufferCrcText(program.buffer)));
    auto& cell = child<QAbstractButton>("lblSetting_0");
    cell.setFocus();
    const int value = cell.text().toInt();
    script.then([&](QWidget& edit) {
        edit.close();
        EXPECT_TRUE(edit.isVisible()) << "the close box does nothing";
        auto& bar = *edit.findChild<QScrollBar*>(QStringLiteral("VScroll1"));
        EXPECT_EQ(bar.maximum(), 255);
        const auto* readout = edit.findChild<QLabel*>(QStringLiteral("Label1"));
        for (const auto& [pressed, shown] : {std::pair(Qt::Key_Home, 255),
                                             {Qt::Key_PageDown, 239},
                                             {Qt::Key_End, 0},
                                             {Qt::Key_PageUp, 16}}) {
            QTest::keyClick(&bar, pressed);
            EXPECT_EQ(readout->text().toInt(), shown);
        }
        const QPointF middle = bar.rect().center();
        for (const int turned : {60, 60, -240}) {
            QWheelEvent wheel(middle, middle, {}, {0, turned}, {}, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&bar, &wheel);
        }
        EXPECT_EQ(bar.value(), 15);
        bar.setValue(value);
        edit.move(150, 90);
        QTest::keyClick(&bar, Qt::Key_Up);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {bar.width() / 2, bar.height() / 4});
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {bar.width() / 2, bar.height() * 3 / 4});
        QTest::keyClick(&bar, Qt::Key_Return);
    });
    key(Qt::Key_Return);
    EXPECT_EQ(cell.text().toInt(), value + 1);
    EXPECT_EQ(status(), "480i CR02 Value Changed");
    EXPECT_EQ(program.state.editTop + " " + program.state.editLeft, "1350 2250");
    EXPECT_EQ(cell.grab().toImage().pixelColor(4, 4), QColor(239, 219, 137));
    std::string way;
    const std::map<char, Qt::Key> arrows{
        {'L', Qt::Key_Left}, {'R', Qt::Key_Right}, {'U', Qt::Key_Up}, {'D', Qt::Key_Down}};
    for (const char pressed : std::string("LURURDDDLLLDRRRRU")) {
        key(arrows.at(pressed));
        way += fromQt(focus()->objectName()).substr(11) + ' ';
    }
    EXPECT_EQ(way, "0 5 11 10 16 17 12 13 7 1 1 1 7 13 19 19 18 ");

    UpDownBar bar(nullptr);
    for (const auto& [top, page] : {std::pair(3, 1), {30, 1}, {31, 2}}) {
        bar.setTop(top);
        EXPECT_EQ(bar.pageStep(), page) << top;
    }

    script.press(QMessageBox::Yes);
    child<QPushButton>("cmdSaveSettings").click();
    EXPECT_EQ(status(), "EEP Verified OK; Settings Values Written to EEProm");
    EXPECT_EQ(television.Memory(Chip::Primary)[2363], value + 1);
    EXPECT_EQ(cell.grab().toImage().pixelColor(4, 4), QColor(255, 255, 192));
    EXPECT_THAT(script.takeTitles(), ElementsAre(" Edit Value", "V E R I F Y"));
}

TEST_F(FormMainTest, MovesThroughTheGridByTheKeysOfTheEditBox) {
    openEditor();
    constexpr GridCell kHere{4, 5};
    for (const auto& [pressed, modifiers, to] :
         {std::tuple(Qt::Key_Tab, Qt::NoModifier, GridCell{4, 6}),
          {Qt::Key_Right, {}, {4, 6}},
          {Qt::Key_Backtab, Qt::ShiftModifier, {4, 4}},
          {Qt::Key_Left, {}, {4, 4}},
          {Qt::Key_Return, {}, {5, 5}},
          {Qt::Key_Down, Qt::KeypadModifier, {5, 5}},
          {Qt::Key_Up, {}, {3, 5}},
          {Qt::Key_Up, Qt::ShiftModifier, kHere},
          {Qt::Key_Right, Qt::ControlModifier, kHere},
          {Qt::Key_Tab, Qt::ControlModifier, kHere},
          {Qt::Key_PageDown, Qt::ControlModifier, kHere}}) {
        program.cellEditor.MoveTo(kHere);
        program.cellEditor.Click();
        key(pressed, modifiers);
        EXPECT_EQ(current(), to) << pressed;
        EXPECT_TRUE(box().isVisible() && box().hasFocus()) << pressed;
        EXPECT_EQ(status(), QStringLiteral("Editing EEPROM Address: %1").arg(to.Address()));
    }
}

TEST_F(FormMainTest, ClicksBesideTheBytesAndMenusCommitAnOpenEntry) {
    openEditor();
    auto& grid = child<QTableView>("DataGrid");
    const auto popUp = [this](const char* menu) {
        child<QAction>(menu).menu()->popup({});
        child<QAction>(menu).menu()->close();
    };
    const auto click = [&](Qt::MouseButton button, int column, int right = 0) {
        const QRect place = grid.visualRect(grid.model()->index(3, column));
        QTest::mouseClick(grid.viewport(), button, {}, place.center() + QPoint(right, 0));
    };
    const std::function<void()> ways[] = {[&] { click(Qt::LeftButton, 0); },
                                          [&] { click(Qt::RightButton, 7); },
                                          [&] { click(Qt::LeftButton, 16, scaled(300)); },
                                          [&] { popUp("mnuOptions"); },
                                          [&] { popUp("mnuEdit"); },
                                          [&] { popUp("mnuHelp"); }};
    int entered = 200;
    for (const auto& leave : ways) {
        clickByte(2, 4);
        type(std::to_string(++entered).c_str());
        leave();
        EXPECT_EQ(program.grid.Text({2, 4}), std::to_string(entered));
        EXPECT_TRUE(!box().isVisible() && current() == (GridCell{2, 4}));
        EXPECT_EQ(focus()->objectName(), "DataGrid");
    }
    clickByte(2, 4);
    script.press(QMessageBox::Yes);
    child<QTabWidget>("SSTab1").setCurrentIndex(0);
    EXPECT_NE(focus()->objectName(), "cmdReadSettings");
    child<QTabWidget>("SSTab1").setCurrentIndex(5);
    EXPECT_EQ(focus()->objectName(), "DataGrid");
    EXPECT_THAT(script.takeTitles(), ElementsAre("Data Modified"));

    child<QCheckBox>("EditorEnabled").click();
    choose("mnuSelMode_1");
    EXPECT_EQ(text("lblNewData_5") + text("lblNewData_6"), "CE0");
    EXPECT_TRUE(child("lblNewData_5").isEnabled() && !child("lblNewData_6").isEnabled());
}

TEST_F(FormMainTest, HeadingsStandAboveTheirColumnsWithAnyScrollBar) {
    openEditor();
    auto& grid = child<QTableView>("DataGrid");
    for (const char* style : {"", "QScrollBar { width: 40px; }"}) {
        grid.setStyleSheet(QLatin1String(style));
        for (int offset = 0; offset < 16; ++offset) {
            const QRect column = grid.visualRect(grid.model()->index(0, offset + 1));
            const auto& heading = child("lblRow_" + std::to_string(offset));
            EXPECT_EQ(heading.x(),
                      grid.viewport()->mapTo(heading.parentWidget(), column.topLeft()).x());
            EXPECT_NEAR(heading.width(), column.width(), 1);
        }
        EXPECT_EQ(grid.horizontalScrollBar()->maximum(), 0);
    }
}

TEST_F(FormMainTest, FiltersCommitsAndAbandonsEntries) {
    openEditor();
    clickByte(1, 3);
    EXPECT_TRUE(box().selectedText() == "18" && box().alignment() == Qt::AlignCenter);
    type("x1a9");
    EXPECT_EQ(box().text(), "19");
    key(Qt::Key_Home);
    key(Qt::Key_Backspace);
    EXPECT_EQ(box().text(), "1");
    for (const auto& [pasted, entry] : {std::pair("abc", "1"), {"", "1"}, {"z2-3", "23"}}) {
        QMimeData dropped;
        dropped.setText(pasted);
        QGuiApplication::clipboard()->setText(pasted);
        QInputMethodEvent composed(QStringLiteral("\u00B4"), {});
        composed.setCommitString(pasted);
        const std::function<void()> ways[] = {
            [&] { key(Qt::Key_V, Qt::ControlModifier); },
            [&] { key(Qt::Key_Insert, Qt::ShiftModifier); },
            [&] { QCoreApplication::sendEvent(&box(), &composed); }, [&] { drop(box(), dropped); },
            [&] {
                QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
                QCoreApplication::sendEvent(&box(), &menu);
                for (QAction* item : QApplication::activePopupWidget()->actions())
                    item->text().startsWith("&Paste") ? item->trigger() : void();
                QApplication::activePopupWidget()->close();
            }};
        for (const auto& paste : ways) {
            box().setText(*entry == '2' ? "" : "1");
            box().selectAll();
            paste();
            EXPECT_EQ(box().text(), entry) << pasted;
            EXPECT_TRUE(*entry == '2' || box().selectedText() == "1") << pasted;
        }
    }
    box().selectAll();
    type("23");
    clickByte(2, 3);
    EXPECT_EQ(program.grid.Text({1, 3}), "23");
    auto& tabs = child<QTabWidget>("SSTab1");
    EXPECT_EQ(tabs.tabText(5) + tabs.tabToolTip(5), "Editor !1 value waits to be written");
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
    key(Qt::Key_Delete);
    EXPECT_FALSE(box().isVisible());
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
    EXPECT_EQ(text("lblAddy_0") + text("lblOldData_0") + text("lblNewData_0"), "");
    EXPECT_EQ(tabs.tabText(5) + tabs.tabToolTip(5), "Editor");
    EXPECT_THAT(script.takeTitles(), ElementsAre("W A R N I N G", "V E R I F Y"));
}

TEST_F(FormMainTest, BrowsesTheGridWithTheEditorOff) {
    openEditor();
    auto& lamp = child("EditorLamp");
    const auto lit = [&] { return lamp.grab().toImage().pixelColor(lamp.rect().center()); };
    EXPECT_TRUE(lit() == colours::kLampOn && !child<QAction>("mnuNum").isEnabled());
    child<QCheckBox>("EditorEnabled").click();
    EXPECT_EQ(lit(), colours::kLampOff);
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
    const auto& grid = child<QTableView>("DataGrid");
    const auto frame = [&] {  // of the current byte: how many of its upper edge's points are dark
        const QImage cell =
            grid.viewport()->grab(grid.visualRect(grid.model()->index(0, 2))).toImage();
        int dark = 0;
        for (int x = 0; x < cell.width(); ++x)
            dark += cell.pixelColor(x, 0).lightness() < 128 ? 1 : 0;
        return dark * 4 / cell.width();
    };
    EXPECT_GE(frame(), 3);
    child("EditorEnabled").setFocus();
    EXPECT_TRUE(frame() >= 1 && frame() <= 2);
    child("DataGrid").setFocus();
    key(Qt::Key_PageDown);
    EXPECT_GE(current().row, 5);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), toQt(program.grid.Text(current())));
    EXPECT_FALSE(box().isVisible());
    const auto* model = child<QTableView>("DataGrid").model();
    EXPECT_EQ(model->index(1, 3).data(Qt::AccessibleTextRole), "Address 18: 18");
    EXPECT_EQ(model->headerData(1, Qt::Vertical).toString() +
                  model->headerData(1, Qt::Horizontal).toString(),
              "160");
    EXPECT_EQ(model->data(model->index(147, 12), Qt::ToolTipRole), " 480i CR02 White Balance ");
}

TEST_F(FormMainTest, AsksBeforeEditsInTheGridAreLost) {
    openEditor();
    clickByte(0, 1);
    type("99");
    script.press(QMessageBox::No);
    script.press(QMessageBox::No);
    child<QTabWidget>("SSTab1").setCurrentIndex(0);
    EXPECT_TRUE(program.state.GridChanged);
    EXPECT_EQ(status(), "Chroma Settings");
    script.takeTitles();

    script.press(QMessageBox::Yes);
    auto& menu = *child<QAction>("mnuFile").menu();
    menu.popup({});
    menu.close();
    EXPECT_THAT(script.takeTitles(), ElementsAre("D A T A - Changed"));
    EXPECT_EQ(program.buffer[0], 99);
    EXPECT_FALSE(program.state.GridChanged);

    script.press(QMessageBox::No);
    choose("mnuFileExit");
    EXPECT_TRUE(window.isVisible());
    script.press(QMessageBox::Yes);
    window.close();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(FormMainTest, ShowsProgressAndDropsInputDuringAWholeDeviceOperation) {
    const std::string caption = " Tarnwell 2 - Simulated Television";
    std::vector<std::string> seen;
    bool paints = false;
    QObject::connect(&window, &QWidget::windowTitleChanged, [&](const QString& title) {
        seen.push_back(title.toStdString());
        if (seen.size() > 1)
            return;
        EXPECT_TRUE(status().startsWith("Please Wait,"));
        for (const char* pressed : {"cmdReadSettings", "lblSetting_0", "EditorEnabled"})
            child<QAbstractButton>(pressed).click();  // as a screen reader does
        choose("mnuEEPsel_1");
        EXPECT_FALSE(child<QAction>("mnuEEPsel_1").isChecked() ||
                     child<QCheckBox>("EditorEnabled").isChecked());
        child<QTabWidget>("SSTab1").setCurrentIndex(5);
        EXPECT_EQ(child<QTabWidget>("SSTab1").currentIndex(), 0);
        QLineEdit other;
        QTest::keyClick(&other, Qt::Key_A);
        EXPECT_EQ(other.text(), "");
        QTimer::singleShot(0, [&] { paints = status().startsWith("Please Wait,"); });
    });
    program.statusBar.ShowProgress({50, 17});
    const QImage bar = child("statusPanel_4").grab().toImage();
    const auto colour = [&](int x) { return bar.pixelColor(x, bar.height() - 4); };
    EXPECT_NE(colour(bar.width() / 2 - 4), colour(bar.width() / 2 + 4));
    EXPECT_TRUE(seen.empty()) << "a title is not worth each step";
    program.statusBar.EndProgress();
    QElapsedTimer elapsed;
    elapsed.start();
    television.SetWriteCycle(BusTime(3'500'000));
    script.press(QMessageBox::Yes);
    choose("mnuEEPWrite");
    QCoreApplication::processEvents();
    EXPECT_EQ(status(), "EEP Verified OK; EEProm Write Successful");
    EXPECT_THAT(seen,
                testing::Contains(testing::MatchesRegex(caption + " - [0-9]+%, [0-9]+ s left")));
    EXPECT_TRUE(paints);
    EXPECT_LE(seen.size(), 6 + elapsed.elapsed() / 100) << "painted more often than it is seen";
    EXPECT_EQ(window.windowTitle().toStdString(), caption);
    EXPECT_EQ(text("statusPanel_4"), "Pri");
}

TEST_F(FormMainTest, OpensAGivenArchiveWithTheChecksOfTheMenu) {
    const std::string name = "im\xE4ge.mot";
    folder.Write(name, "S0030000FC\r\nS1040012AB3E\r\nS9030000FC\r\n");
    choose("mnuEEPRead");
    script.press(QMessageBox::No);
    window.openArchive(folder.Path(name));
    EXPECT_EQ(status(), "EEProm Image Load Canceled");
    script.press(QMessageBox::Yes);
    script.then([this](QWidget& box) {
        EXPECT_EQ(box.parentWidget(), &window);
        dynamic_cast<QMessageBox&>(box).button(QMessageBox::Yes)->click();
    });
    window.openArchive(folder.Path(name));
    EXPECT_EQ(status(), "Record Checksums OK; EEP Image Loaded into Buffer");
    EXPECT_EQ(program.buffer[0x12], 0xAB);
    EXPECT_EQ(program.state.archiveFolder + "/", folder.Path());

    folder.Write("settings.mot", kSettingsFile);
    QMimeData data;
    const auto dropFiles = [&](const QList<QUrl>& urls) {
        data.setUrls(urls);
        return drop(window, data);
    };
    const QUrl settings = QUrl::fromLocalFile(pathToQt(folder.Path("settings.mot")));
    for (const QList<QUrl>& urls :
         {QList<QUrl>{}, {settings, settings}, {QUrl("http://a/b")}, {QUrl("file:///tmp")}})
        EXPECT_FALSE(dropFiles(urls));
    EXPECT_TRUE(dropFiles({settings}));
    EXPECT_EQ(status(), "Settings Loaded from Archive Disk File");
    EXPECT_EQ(child<QAbstractButton>("lblSetting_71").text(), "5");
    EXPECT_EQ(program.buffer[0x12], 0xAB);
}

TEST_F(FormMainTest, PicksArchivesInOneDialogThatKeepsItsFilter) {
    program.state.archiveFolder = folder.Path();
    program.state.BufferChanged = true;
    folder.Write("plain", kSettingsFile);
    bool first = true;
    const auto expect = [&](const char* item, const char* proposed, const char* typed,
                            const char* result, const ModalWindows::Action& next = {}) {
        script.then([=, &first](QWidget& shown) {
            auto& dialog = dynamic_cast<QFileDialog&>(shown);
            auto& name = Child<QLineEdit>(dialog, QStringLiteral("fileNameEdit"));
            EXPECT_TRUE(name.text().startsWith(proposed)) << name.text().toStdString();
            EXPECT_EQ(name.text().isEmpty(), *proposed == 0);
            EXPECT_EQ(dialog.selectedNameFilter().startsWith("Motorola"), first);
            dialog.selectNameFilter(dialog.nameFilters().last());
            first = false;
            name.setText(typed);
            static_cast<QDialog&>(shown).accept();
        });
        if (next)
            script.then(next);
        choose(item);
        EXPECT_EQ(status(), result);
    };
    expect("mnuFileSaveImage", "Tarnwell-", "saved", "EEProm Image Saved to Disk");
    EXPECT_TRUE(std::filesystem::exists(folder.Path("saved.mot")));
    expect("mnuFileLoadImage", "", "saved", "Record Checksums OK; EEP Image Loaded into Buffer");
    expect("mnuFileLoadValues", "Tarnwell-Settings", "plain",
           "Settings Loaded from Archive Disk File");
    expect("mnuFileLoadValues", "Tarnwell-Settings", "missing", "Load Settings Canceled");
    expect("mnuFileLoadImage", "", "plain", "EEProm Image Load Cancelled", [](QWidget& question) {
        QTest::keyClick(&question, Qt::Key_Return);  // No
    });
}

TEST(DesktopTest, WritesSecondsAsTheLocaleSeparatesMinutes) {
    for (const auto& [name, form] : {std::pair("da_DK", R"(\d\d\.\d\d\.\d\d)"),
                                     {"en_US", R"(\d+:\d\d:\d\d .*)"},
                                     {"C", R"(\d\d:\d\d:\d\d)"}}) {
        QLocale::setDefault(QLocale(name));
        EXPECT_TRUE(std::regex_match(Desktop().TimeWithSeconds(), std::regex(form))) << name;
    }
}

}  // namespace
}  // namespace tarnwell
