// The window Compare, by keyboard and by mouse.
#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QComboBox>
#include <QHelpEvent>
#include <QToolTip>
#include <QTreeView>
#include <QTreeWidget>

#include "archive/ImageRecords.h"
#include "support/MainWindow.h"
#include "ui/comparing/DifferenceMap.h"

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
};

TEST_F(CompareTest, GoesThroughTheDifferencesAndTakesThem) {
    const auto testModel = [this] {
        auto* model = Child<QTreeView>(window, "tblDifferences").model();
        using Mode = QAbstractItemModelTester::FailureReportingMode;
        new QAbstractItemModelTester(model, Mode::Fatal, model);
    };
    play({{"Ctrl+D", "lblDifferences", "3 bytes differ: 1 setting, 2 other bytes in 1 place"},
          {testModel, "cboLeft cboRight cmdTake cmdShowInEditor",
           "Memory Buffer / Primary EEProm / ~Take / ~Show in Editor"},
          {"F6", "tblDifferences", "2363|..."},
          {"F6", "tblDifferences", "4096 - 4097|..."},
          {"F6", "tblDifferences", "2363|..."},
          {"Shift+F6 Ctrl+C", "tblDifferences clipboard",
           "4096 - 4097|... / Address\t...\n4096\t...\n4097\t...\n"},
          {"Right Down", "tblDifferences cmdShowSetting", "4096|... / ~Show Setting"},
          {"cmdTake", "lblDifferences", "2 bytes differ: 1 setting, 1 other byte in 1 place"},
          {"chkSettingsOnly on:tblDifferences Ctrl+A cmdTake", "lblDifferences tblDifferences",
           "1 byte differs: 1 byte in 1 place / ||||"},
          {"Esc", "lblSetting_0", "104"}});
    EXPECT_EQ(program.buffer[4096], eeprom[4096]);
    EXPECT_TRUE(program.cells.AnyHasMark(Mark::Save));
}

TEST_F(CompareTest, ReadsTheDeviceAgainAndWritesWhatIsSelected) {
    sights["selected"] = [this] {
        QString rows;
        for (const QModelIndex& row :
             Child<QTreeView>(window, "tblDifferences").selectionModel()->selectedRows())
            rows += row.data().toString() + ';';
        return rows;
    };
    sights["byte"] = [this] { return QString::number(eeprom[4097] ^ program.buffer[4097]); };
    play({{"Ctrl+D"},
          {[&] { eeprom[4097] ^= 0x40, eeprom[8000] ^= 1; }},
          {"F5", "selected", "4096 - 4097;8000;"},
          {"", "lblDifferences",
           "4 bytes differ: 1 setting, 3 other bytes in 2 places.  2 bytes changed since the last "
           "reading"},
          {"cmdWriteSelected", "title", "V E R I F Y"},
          {"No", "selected byte", "4096 - 4097;8000; / 81"},
          {"cmdWriteSelected Yes", "lblDifferences byte selected",
           "1 byte differs: 1 setting.  EEP Verified OK; 3 Bytes Written / 0 / "},
          {"cmdWriteSelected Yes", "lblDifferences cmdWriteSelected.toolTip",
           "No differences.  EEP Verified OK; 1 Byte Written / No row is shown"},
          {"Esc"}});
}

TEST_F(CompareTest, WatchesTheDeviceUntilTheBoxIsUnchecked) {
    const auto untilChanges = [this](int rows) {
        auto& table = Child<QTreeWidget>(window, "tblChanges");
        const QDeadlineTimer deadline(20'000);
        while (table.topLevelItemCount() != rows && !deadline.hasExpired())
            QTest::qWait(5);
    };
    sights["rows"] = [this] {
        const auto& table = Child<QTreeWidget>(window, "tblChanges");
        return QString::number(table.isVisible() ? table.topLevelItemCount() : -1);
    };
    sights["copied"] = [] {  // behind the time
        return QGuiApplication::clipboard()->text().mid(9).replace('\t', '|');
    };
    play({{"Ctrl+D", "rows chkWatch.enabled", "-1 / true"},
          {"chkWatch", "rows lblWatch", "0 / Watching the Primary EEProm: 0 readings"},
          {[&] { eeprom[8000] ^= 1, eeprom[2363] ^= 1, untilChanges(2); },
           "lblDifferences cmdIgnore.toolTip",
           "4 bytes differ: 1 setting, 3 other bytes in 2 places / Select a change first"},
          {"on:tblChanges End Home Ctrl+C", "copied", "2363|CR02|480i|104|105\n"},
          {"cmdIgnore", "rows", "1"},
          {[&] { eeprom[2363] ^= 2, eeprom[8000] ^= 1, untilChanges(2); }},
          {"on:tblChanges Home End Ctrl+C", "copied", "8000|||218|219\n"},
          {"on:cboLeft Down Home Down Return", "lblWatch", "Watching the Primary EEProm: ..."},
          {"chkWatch", "rows lblWatch", "2 / 1 byte ignored"},
          {[&] { eeprom[8000] ^= 1, QTest::qWait(200); }, "rows", "2"},
          {"cmdClearChanges", "rows", "-1"},
          {"Esc"}});
}

TEST_F(CompareTest, AFileIsPickedOnceForBothSides) {
    folder.Write("tv.mot", ArchiveText(ImageRecords(program.buffer)));
    play({{"Ctrl+D"},
          {"on:cboLeft Down Down Down Down Return", "title", "Load EEProm Image"},
          {toQt("type:" + folder.Path("tv.mot") + " Return"), "cboLeft", "Image: tv.mot"},
          {"", "cboLeft.toolTip", pathToQt(folder.Path()).chopped(1)},
          {"on:cboRight Down End Return", "cboRight", "Image: tv.mot"},
          {"", "lblDifferences", "No differences"},
          {"Esc"}});
}

TEST_F(CompareTest, AnEntryInTheGridIsSettledBefore) {
    play({{"page:5 EditorEnabled at:0 type:200 Ctrl+D", "title", "D A T A - Changed"},
          {"Yes", "lblDifferences", "1 byte differs: 1 byte in 1 place"},
          {"Esc"}});
}

TEST_F(CompareTest, ThePictureMarksEachKindOfByte) {
    MemoryBuffer left{}, right{};
    left[0] = left[2363] = 1;
    left[900] = right[900] = 0xFF;
    const NameBook names;
    DifferenceMap map;
    map.setFixedSize(1300, 700);
    std::string marks;  // from the corner, the side and the middle of their cells
    for (const auto device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        map.show(left, right, names, device, NumberMode::Decimal);
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
    const auto map = [this]() -> DifferenceMap& {
        return Child<DifferenceMap>(window, "mapDifferences");
    };
    const auto place = [&](int address) {
        const QRectF first = map().cellOf(0);
        const QPointF middle(address % 128 + 0.5, address / 128 + 0.5);
        return (first.topLeft() + middle * first.width()).toPoint();
    };
    const auto click = [&](const QPoint& at) { QTest::mouseClick(&map(), Qt::LeftButton, {}, at); };
    sights["byte"] = [&] { return map().accessibleDescription().section(':', 0, 0).mid(8); };
    sights["tip"] = [] { return QToolTip::text(); };
    const auto moveAbout = [&] {
        map().window()->setGeometry(40, 30, 740, 500);
        const std::tuple<const char*, int, int> ways[] = {
            {"Up", 127, 127},     {"Up", 128, 0},     {"Down", 8063, 8191},
            {"Down", 8064, 8064}, {"Left", 0, 0},     {"Left", 4098, 4097},
            {"Home", 200, 0},     {"End", 200, 8191}, {"Right", 4096, 4097}};
        for (const auto& [pressed, from, to] : ways) {
            click(place(from));
            perform(pressed);
            EXPECT_EQ(sights["byte"]().toInt(), to) << from;
        }
    };
    const auto point = [&] {
        QHelpEvent pointing(QEvent::ToolTip, place(2363), map().mapToGlobal(place(2363)));
        QCoreApplication::sendEvent(&map(), &pointing);
    };
    play({{"Ctrl+D"},
          {moveAbout},
          {"on:mapDifferences Return", "tblDifferences", "4097|..."},
          {[&] { click(place(2363)); }, "tblDifferences", "2363|..."},
          {[&] { click(map().cellOf(0).topLeft().toPoint() - QPoint(1, 1)); }, "byte",
           "2363 (480i CR02)"},
          {point, "tip", "Address 2363 (480i CR02): 121 left, 104 right"},
          {"cmdShowSetting", "focus", "lblSetting_0"},
          {"Ctrl+D"},
          {[&] { EXPECT_EQ(map().window()->geometry(), QRect(40, 30, 740, 500)); }},
          {"Shift+F6 cmdShowInEditor", "address SSTab1", "4096 / 5"}});
}

TEST_F(CompareTest, ASideThatCannotBeReadIsEmptyAndTheListIsSaved) {
    sights["reasons"] = [this] {
        QString reasons;
        for (const auto* button : front().findChildren<QPushButton*>())
            reasons += button->isEnabled() || !button->isVisible() ? "" : button->toolTip() + ';';
        return reasons;
    };
    play({{"Ctrl+D"},
          {"cmdSaveList", "title", "Save List As..."},
          {toQt("type:" + folder.Path("list.csv") + " Return")},
          {[&] { television.Inject({.kind = FaultKind::SclStuckLow}); }},
          {"on:cboLeft Down", "cboLeft", "Memory Buffer"},  // a step alone reads nothing
          {"Down Return", "title", "E R R O R"},
          {"OK", "lblDifferences cboLeft cmdSaveList mapDifferences.accessibleDescription",
           "Choose both sides /  / ~Save List... / "},
          {"", "reasons",
           "Choose the memory buffer on one side only;Choose an EEPROM on one side only;Select a "
           "row first;Select a row first;No row is shown;"},
          {"Esc"}});
    EXPECT_TRUE(
        folder.Read("list.csv").starts_with("Address,Setting,Format,Left,Right\n2363,CR02,480i,"));
}

struct OnPaint final : QObject {
    std::function<void()> does;
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            does();
        return false;
    }
};

/// Each step is one key or one click.
TEST_F(CompareTest, FewStepsLeadBackToAnArchiveOrABackup) {
    EepromImage& device = television.Memory(Chip::Primary);
    const EepromImage before = device;
    const auto restored = [&] { EXPECT_TRUE(std::ranges::equal(device, before)); };
    const auto spoil = [&] { device[7] ^= 0xFF, device[2400] ^= 1; };
    play({{"mnuEEPRead"},
          {"mnuFileSaveImage"},
          {toQt("type:" + folder.Path("old.mot") + " Return")}});
    const auto pick = [this] {
        auto& box = Child<QComboBox>(window, "cboLeft");
        box.showPopup();
        const int row = box.findText("Image: old.mot");
        QTest::mouseClick(box.view()->viewport(), Qt::LeftButton, {},
                          box.view()->visualRect(box.model()->index(row, 0)).center());
    };
    const QString done = "EEP Verified OK; 2 Bytes Written";
    play({{spoil},
          {"Ctrl+D Alt+F End Return", "cboLeft", "Image: old.mot"},
          {"Alt+W Alt+Y", "lblDifferences...", "..." + done},
          {restored},
          {"Esc"},
          {spoil},
          {"mnuEEP mnuEEPCompare"},
          {pick},
          {"cmdWriteSelected Yes", "lblDifferences...", "..." + done},
          {restored},
          {"Esc"}});
    for (const char* back : {"Alt+F B Alt+R Alt+Y", "mnuFile mnuFileBackups cmdRestore Yes"}) {
        ASSERT_NE(program.backups.Keep(TargetDevice::Primary, program.buffer), "");
        play({{spoil}, {back, "status...", done}, {restored}});
    }
    for (std::uint8_t& byte : std::span(program.buffer).first(200))
        byte ^= 1;
    OnPaint stop;
    stop.does = [this] {
        if (status().startsWith("Please Wait, Writing Buffer"))
            child<QPushButton>("cmdStop").click();
    };
    child("statusPanel_2").installEventFilter(&stop);
    play({{"mnuEEPWrite Yes", "title", "I N F O"},
          {[&] { EXPECT_NE(device[0], before[0]); }},
          {"Return Alt+F B Alt+R Alt+Y", "status...", "EEP Verified OK; ... Written"},
          {restored}});
}

TEST_F(CompareTest, TheListOfBackupsLeadsBackToOne) {
    MemoryBuffer image = program.buffer;
    image[5] ^= 1;
    ASSERT_NE(program.backups.Keep(TargetDevice::Primary, image), "");
    const auto chooseLeft = [this] {
        Q_EMIT Child<QComboBox>(window, "cboLeft").activated(static_cast<int>(Source::Backup));
    };
    play({{"mnuFileBackups", "tblBackups", "Primary|...|1 byte differs: 1 byte in 1 place"},
          {"cmdCompare", "cboRight", "Backup: Tarnwell-...-Pri.mot"},
          {chooseLeft, "title", "Restore Backup"},
          {"cmdClose", "cboLeft", "Memory Buffer"},
          {chooseLeft},
          {"cmdCompare", "cboLeft lblDifferences", "Backup: ... / No differences"},
          {"Esc"},
          {"mnuFileBackups"},
          {"cmdLoad", "title", "..."},
          {"Yes", "title", "..."}});
    EXPECT_TRUE(program.buffer[5] == image[5] && program.buffer[4096] == image[4096]);
    play({{"mnuFileBackups cmdRestore", "title", "V E R I F Y"},
          {"Yes", "status", "EEP Verified OK; 4 Bytes Written"}});
}

}  // namespace
}  // namespace tarnwell
