// The main window, driven with real key and mouse events.
#include <QAccessible>
#include <regex>

#include "support/MainWindow.h"

namespace tarnwell {
namespace {

const std::string kSettingsFile =
    "S021000048616C7620446F726E205461726E77656C6C2032020253657474696E677390\n"
    "S10408B4053A\nS9030000FC\n";

TEST_F(FormMainTest, EachMenuItemOpensItsWindowOrTellsWhatItDid) {
    const QString title = " Tarnwell 2 - Simulated Television";
    sights["crc"] = [this] {
        return text("statusPanel_3").remove(toQt(mCRC32::BufferCrcText(program.buffer)));
    };
    play({{"", "state", "Welcome to Tarnwell|Decimal Pri|EEPsel_0 SelMode_0 PortSel_0 "},
          {"", "title", title},
          {"mnuEEPsel_1", "title", "W A R N I N G"},
          {"Cancel", "mnuEEPsel_1", "Secondary (Unknown)"},
          {"mnuFileLoadImage", "title", "Load EEProm Image"},
          {"Esc mnuFileLoadValues", "title", "Load Settings"},
          {"Esc mnuFileSaveImage", "title", "E R R O R"},
          {"OK mnuFileSaveValues", "title", "Save Settings As..."},
          {"Esc mnuPortTest", "title", " W A R N I N G"},
          {"OK mnuHelpHistory", "title", "E R R O R"},
          {"OK mnuOptionsPortSer", "title", "E R R O R"},
          {"OK", "title", "Cut-N-Paste Window"},
          {"Esc mnuEEPRead", "state", "Primary EEProm Data Read Into Memory|Decimal Pri|..."},
          {"mnuSelMode_1", "state",
           "Number Mode Changed to Hexadecimal|Hex Pri|EEPsel_0 SelMode_1 PortSel_0 "},
          {"mnuEEPsel_1 OK", "state",
           "Secondary EEProm Selected as Target Device|Hex Sec|EEPsel_1 SelMode_1 PortSel_0 "},
          {"mnuEEPRead", "state", "Use the Data Editor to View/Modify data|Hex Sec|..."},
          {"mnuSelMode_0", "state", "Number Mode Changed to Decimal|Decimal Sec|..."},
          {"mnuEEPsel_0", "state", "Primary EEProm Selected as Target Device|Decimal Pri|..."},
          {"mnuReadTwice", "state", "Whole EEProms Are Read Twice|Decimal Pri|...ReadTwice "},
          {"mnuPortSel_2", "state", "Programming Port Changed to LPT3 (3BCh)|...PortSel_2 ..."},
          {"mnuPortSel_1", "state", "Programming Port Changed to LPT2 (278h)|...PortSel_1 ..."},
          {"mnuPortSel_0", "state crc",
           "Programming Port Changed to LPT1 (378h)|...PortSel_0 ... / "},
          {"Alt+R", "status", "Settings Values Read from EEPROM"},
          {"Alt+M", "status", "Settings Values Merged Into Memory Buffer"}});
    EXPECT_EQ(QtTimer().timer().timerType(), Qt::PreciseTimer);
    for (const char* end : {"exit 0", "exit 3", "sleep 2"}) {
        const bool fails = end == std::string("exit 3");
        Viewer viewer(end);
        play({{"mnuHelpHelp"}});
        EXPECT_EQ(viewer.opened(), "Tarnwell.html\n");
        bool isTold = false;
        const auto wait = [&] {
            EXPECT_EQ(QTest::qWaitFor([&] { return isTold; }, fails ? kPatience : 200), fails);
        };
        const auto close = [&] {
            isTold = true;
            perform("OK");
        };
        fails ? play({{wait, "title", "E R R O R"}, {close}}) : play({{wait}});
    }
}

TEST_F(FormMainTest, ShowsAtTheStartWhatTheOptionsSay) {
    for (auto& [key, values] : registry.keys)
        values["ReadTwice"] = "True", values["NumMode"] = "Hex", values["PortAddr"] = "632";
    window.startUp();
    play({{"", "state lblSetting_0.accessibleName",
           "Welcome to Tarnwell|Hex Pri|EEPsel_0 SelMode_1 PortSel_1 ReadTwice  / 480i CR02 0"}});
}

TEST_F(FormMainTest, SaysBelowTheMenuThatNothingReachesASetOrWasReadOfIt) {
    const auto connect = [this](bool simulated) {
        return [=, this] { program.state.simulated = simulated; };
    };
    const QString hint = "HintStrip.visible lblHint.text";
    play(
        {{"mnuSelMode_1", hint, "true / Simulated television: nothing you write reaches a set."},
         {"cmdUseI2C", "title", "I2C Bus"},
         {"Esc cmdUsePort", "mnuPort.visible", "true"},
         {"Esc"},
         {connect(false)},
         {"mnuSelMode_0", hint, "true / Nothing read yet."},
         {"cmdReadNow", "status HintStrip.visible", "Primary EEProm Data Read Into Memory / false"},
         {connect(true)},
         {"mnuSelMode_1", "HintStrip.visible", "true"},
         {"mnuPortSel_1 mnuPortSel_0", hint, "true / Simulated..."},
         {connect(false)},
         {[this] { television.Inject({.kind = FaultKind::PortFails}); }},
         {"mnuPortTest", "title", "E R R O R"},
         {"OK", hint, "true / The parallel port cannot be used: nothing reaches a set."},
         {"cmdUseI2C", "title", "I2C Bus"},
         {"Esc cmdHideStrip mnuSelMode_0", "HintStrip.visible", "false"}});
}

TEST_F(FormMainTest, TurnsPagesByKeyboardAndStartsTheExtraProgramByDoubleClick) {
    QWidget& caption = child("lblSBinfo_0");
    const auto doNothing = [&] {
        QTest::mouseDClick(&caption, Qt::RightButton);
        QTest::keyClick(&caption, Qt::Key_A);
    };
    const auto press = [&] {
        QAccessible::queryAccessibleInterface(&caption)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());  // types a blank
        QCoreApplication::processEvents();
    };
    play({{"Ctrl+Shift+Backtab cmdAccept", "SSTab1", "5"},
          {"Ctrl+Tab", "status", "Chroma Settings"},
          {doNothing, "title", " Tarnwell..."},
          {press, "title", "E R R O R"},
          {"OK"},
          {"twice:lblSBinfo_0", "title", "E R R O R"},
          {"OK"}});
    EXPECT_EQ(caption.focusPolicy(), Qt::NoFocus);
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
        tabs().setCurrentIndex(5);
        EXPECT_EQ(tabs().currentIndex(), 0);
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
    play({{"mnuEEPWrite", "title", "W A R N I N G"},
          {"Yes", "title", "V E R I F Y"},
          {"Yes", "status statusPanel_4", "EEP Verified OK; EEProm Write Successful / Pri"},
          {"", "title", toQt(caption)}});
    QCoreApplication::processEvents();
    EXPECT_THAT(seen,
                testing::Contains(testing::MatchesRegex(caption + " - [0-9]+%, [0-9]+ s left")));
    EXPECT_TRUE(paints);
    EXPECT_LE(seen.size(), 6 + elapsed.elapsed() / 100) << "painted more often than it is seen";
}

TEST_F(FormMainTest, StopsByItsButtonOrByEscapeTwice) {
    auto& button = child<QPushButton>("cmdStop");
    const auto press = [&] { QTest::mousePress(&button, Qt::LeftButton); };
    const auto release = [&](QPoint at) { QTest::mouseRelease(&button, Qt::LeftButton, {}, at); };
    const auto escape = [&] { QTest::keyClick(&window, Qt::Key_Escape); };
    const std::vector<std::pair<std::function<void()>, QString>> gestures{
        {[&] {
             press(), release({3, 3});
         },
         "I2C Operation Stopped"},
        {[&] { escape(), escape(); }, "I2C Operation Stopped"},
        {[&] { button.click(); }, "I2C Operation Stopped"},  // as a screen reader does
        {[&] {
             press(), release({3, -3});
         },
         "Primary EEProm Data Read Into Memory"},
        {[&] {
             release({3, 3}), escape();
         },
         "Primary EEProm Data Read Into Memory"},
        {[&] { QTest::mouseClick(&button, Qt::RightButton); },
         "Primary EEProm Data Read Into Memory"}};
    const std::function<void()>* gesture = nullptr;
    QObject::connect(&window, &QWidget::windowTitleChanged, [&] {
        if (gesture != nullptr && button.isVisible())
            (*std::exchange(gesture, nullptr))();
    });
    for (const auto& [does, told] : gestures) {
        play({{[&, next = &does] { gesture = next; }, "cmdStop.visible", "false"},
              {"mnuEEPRead", "status cmdStop.visible cmdStop.down", told + " / false / false"}});
        EXPECT_EQ(gesture, nullptr);
    }
}

TEST_F(FormMainTest, OpensAGivenArchiveWithTheChecksOfTheMenu) {
    const std::string name = "im\xE4ge.mot";
    folder.Write(name, "S0030000FC\r\nS1040012AB3E\r\nS9030000FC\r\n");
    const auto open = [&] { window.openArchive(folder.Path(name)); };
    sights["parent"] = [&] { return front().parentWidget()->objectName(); };
    play({{"mnuEEPRead"},
          {open, "parent", "formMain"},
          {"No", "status", "EEProm Image Load Canceled"},
          {open},
          {"Yes", "parent", "formMain"},
          {"Yes", "status", "Record Checksums OK; EEP Image Loaded into Buffer"}});
    EXPECT_EQ(program.buffer[0x12], 0xAB);
    EXPECT_EQ(program.state.archiveFolder + "/", folder.Path());
    std::filesystem::rename(folder.Path(name), folder.Path("a&b.mot"));
    play({{"", "mnuFileSettings", "~Recent Settings"},
          {"mnuFileImages_0", "title", "I N F O"},
          {"OK", "mnuFileImages", "~Recent Images"},
          {[&] { window.openArchive(folder.Path("a&b.mot")); }},
          {"Yes", "mnuFileImages_0", "1 ab.mot"},
          {"", "mnuFileImages_0.toolTip", pathToQt(folder.Path()).chopped(1)},
          {"mnuFileImages_0"},
          {"Yes", "status", "Record Checksums OK; EEP Image Loaded into Buffer"}});

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
    program.statusBar.PutStatus("");
    play({{"mnuFileSettings_0", "status", "Settings Loaded from Archive Disk File"}});
    EXPECT_EQ(program.buffer[0x12], 0xAB);
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
