// The television sets and their histories in the window, operated as a user would.
#include <QPlainTextEdit>
#include <QTreeWidget>

#include "sets/HistoryFile.h"
#include "sets/SetStore.h"
#include "support/MainWindow.h"

namespace tarnwell {
namespace {

using SetsTest = FormMainTest;

TEST_F(SetsTest, AreMadeNamedChosenAndRemoved) {
    const QString own = " Tarnwell 2 - Kitchen - Simulated Television";
    folder.Write("sets/old/set.json", "{");
    const auto say = [](const char* text) {
        return [text] {
            qobject_cast<QPlainTextEdit*>(QApplication::focusWidget())->setPlainText(text);
        };
    };
    play({{"mnuSet", "tblSets cmdUse cmdUseNone lblDamaged",
           "|||| / ~Use / ~Use None / " + QString::fromStdString(folder.Path("sets/old/set.json")) +
               "..."},
          {"cmdNewSet", "title", "N E W   S E T"},
          {"type:Kitchen Return", "tblSets cmdUse.enabled", "Kitchen|||| / true"},
          {"cmdNewSet type:kitchen Return", "qt_msgbox_label",
           "There is a set of the name Kitchen."},
          {"Return on:txtModel type:KP-57 on:txtNotes"},
          {say("mine")},
          {"cmdNewSet type:Workshop Return Up", "tblSets txtNotes.plainText",
           "Kitchen|KP-57||| / mine"},
          {"cmdUse", "status title", "Record of Kitchen Chosen / " + own},
          {"mnuEEPRead mnuSet", "tblSets", "Kitchen|KP-57|...||no differences"},
          {"cmdRename type:Cellar Return", "title tblSets", "Television Set / Cellar..."},
          {"Esc", "title", " Tarnwell 2 - Cellar - Primary EEPROM - Simulated Television"}});
    EXPECT_EQ(program.state.set, "Cellar");
    EXPECT_EQ(program.sets.Find("cellar")->notes, "mine");
    window.close();
    EXPECT_EQ(registry.QueryRegValue(R"(SOFTWARE\Halvdorn\Tarnwell\ProgOpts)", "Set"), "Cellar");
    window.show();
    folder.Write("data/other", "");
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.Path("data")));
    play({{"mnuSet cmdRemove", "qt_msgbox_label", "Move the record of Cellar to the trash..."},
          {"Yes", "tblSets", "Workshop||||"},
          {"Esc", "title", " Tarnwell 2 - Primary EEPROM - Simulated Television"}});
}

TEST_F(SetsTest, AreRecognisedInTheStripAndNamedBeforeAWrite) {
    const auto bringTheOther = [this] {
        for (std::uint8_t& byte : eeprom)
            byte ^= 0xFF;
    };
    for (const char* name : {"Workshop", "Kitchen"}) {
        bringTheOther();
        program.ChooseSet(program.sets.Create(name));
        play({{"mnuEEPRead"}});
    }
    eeprom[5] ^= 1;
    const QString strip = "lblHint cmdUseSet.visible cmdUseI2C.visible";
    const QString simulated =
        "Simulated television: nothing you write reaches a set. / false / true";
    play({{"mnuSet Down cmdUse", strip, simulated},
          {"mnuEEPRead", strip, "This looks like Kitchen: 1 byte differs... / true / false"},
          {"cmdHideStrip", strip, simulated},
          {"mnuEEPWrite", "qt_msgbox_label",
           "The set on the bench looks like Kitchen, not like Workshop.\n..."},
          {"No"}});
    eeprom[6] ^= 1;
    play({{"mnuEEPRead", strip, "This looks like Kitchen: 2 bytes differ... / true / false"},
          {"cmdUseSet", strip, simulated},
          {"mnuEEPWrite", "qt_msgbox_label", "Write memory buffer to EEProm?..."},
          {"Yes"}});
    EXPECT_EQ(program.state.set, "Kitchen");
    bringTheOther();
    play({{"mnuEEPRead", strip, "This looks like Workshop: 2 bytes differ... / true / false"},
          {"cmdUseSet mnuEEPWrite Yes"}});
    for (const char* name : {"Workshop", "Kitchen"})
        EXPECT_EQ(ReadHistory(HistoryPath(*program.sets.Find(name))).events.size(), 3U) << name;
}

TEST_F(SetsTest, SheetsAreSavedByTheSuffixOfTheirNames) {
    play({{"mnuFileSheet", "qt_msgbox_label", "Must First Read the EEPROM! "},
          {"Return mnuEEPRead mnuFileSheet"},
          {toQt("type:" + folder.Path("a.html") + " Return"), "status", "Settings Sheet Saved"},
          {"mnuFileSheet"},
          {toQt("type:" + folder.Path("b") + " Return")},
          {"mnuEEPsel_1 OK mnuFileSheet", "qt_msgbox_label", "You must use the Data Editor..."},
          {"Return"}});
    EXPECT_THAT(folder.Read("a.html"), testing::HasSubstr("<h1>Primary EEPROM</h1>"));
    EXPECT_THAT(folder.Read("b.pdf"), testing::StartsWith("%PDF"));
    EXPECT_THAT(folder.Read("b.pdf"), testing::HasSubstr("/Count 1\n"));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    play({{"mnuEEPsel_0 mnuFileSheet"}, {toQt("type:" + folder.Path("c.PDF") + " Return")}});
    EXPECT_THAT(folder.Read("c.PDF"), testing::HasSubstr("/MediaBox [0 0 612.0"));
}

TEST_F(SetsTest, HistoriesTellWhatWasChangedAndTakeItBackInFiveSteps) {
    const auto set = program.sets.Create("Kitchen");
    program.setCommands.Use(set);
    HistoryEvent event{.time = "2026-02-01T10:00:00+01:00",
                       .kind = EventKind::Write,
                       .command = "Write Settings to EEP",
                       .written = 1};
    eeprom[2085] = 20 << 2;
    for (const auto& [address, from, to, held] : {EventByte{2085, 31 << 2, 25 << 2, 25 << 2},
                                                  {2085, 25 << 2, 20 << 2, 20 << 2},
                                                  {5, std::nullopt, 2, 3}}) {
        event.time[6] = static_cast<char>(event.time[6] + 1);
        event.bytes = {{address, from, to, held}};
        if (to == 20 << 2)
            event.bytes.push_back({9, 1, 7, 7});
        ASSERT_TRUE(AppendLine(set->folder + "/history.jsonl", JsonOf(event)));
    }
    const QString second = "2026-04-01 10:00:00|Write Settings to EEP|Primary|verified|1";
    play(
        {{"mnuSet cmdHistory", "title tblHistory picCourse.visible",
          "History of Kitchen / 2026-05-01... / false"},
         {"cmdTakeBack", "qt_msgbox_label", "What 1 byte held before is not known: left out."},
         {"Return Right Down", "tblHistory", "Address 5: not known becomes 2, holds 3||||"},
         {"chkSettingsOnly", "tblHistory", second},
         {"on:txtFilter type:tint", "tblHistory picCourse.visible picCourse.accessibleDescription",
          second + " / true / Global TINT: 31, 25, 20"},
         {"on:tblHistory Ctrl+C", "clipboard",
          "...2026-04-01 10:00:00\tWrite Settings to EEP\tPrimary\tverified\t2085\tGlobal "
          "TINT\t25\t20\t20..."},
         {"Down cmdTakeBack", "qt_msgbox_label", "1 byte was changed again since and left out."},
         {"Return Up cmdTakeBack", "qt_msgbox_label", "Take back 1 byte of the Primary EEProm?..."},
         {"Yes", "tblHistory", "...|Take Back|Primary|verified|1"},
         {"Esc"}});
    EXPECT_EQ(eeprom[2085], 25 << 2);
    play({{"mnuSet cmdHistory Alt+S type:tint cmdTakeBack Yes Esc"}});
    EXPECT_EQ(eeprom[2085], 20 << 2);
    play({{"mnuSet cmdHistory cmdGoBack", "qt_msgbox_label",
           "Restore 1 byte of the Primary EEProm?..."},
          {"Yes", "tblHistory", "...|Go Back|Primary|verified|1"},
          {"End cmdGoBack", "qt_msgbox_label",
           "What the EEProm held then is not known of 8192 bytes."},
          {"Return Esc mnuEEPsel_1 OK mnuSet cmdHistory cmdTakeBack", "qt_msgbox_label",
           "Select the Primary EEProm first."},
          {"Return Esc mnuSet cmdUseNone mnuSet cmdHistory",
           "cmdTakeBack.enabled cmdGoBack.toolTip", "false / Choose this set first"},
          {"Esc"}});
    EXPECT_EQ(eeprom[2085], 25 << 2);
}

}  // namespace
}  // namespace tarnwell
