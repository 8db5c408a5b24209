// Names of one's own in the window: made, shown, changed, removed and read from files.
#include <QTreeWidget>

#include "names/NamesFile.h"
#include "support/MainWindow.h"

namespace tarnwell {
namespace {

class NamesWindowTest : public FormMainTest {
  protected:
    void SetUp() override {
        FormMainTest::SetUp();
        openEditor();
        sights["own"] = [this] { return QString::number(program.names.Own().size()); };
    }
};

TEST_F(NamesWindowTest, AByteIsNamedFromTheGridAndKnownThere) {
    const auto tip = [this](int role) { return grid().model()->index(4, 5).data(role).toString(); };
    sights["tip"] = [&] { return tip(Qt::ToolTipRole) + tip(GridModel::kOwnNameRole); };
    play({{"at:68 Ctrl+N", "title txtAddress txtHighest cboKept tip",
           "New Name / 68 / 255 / ~among your names / false"},
          {"cmdAccept", "lblNameProblem focus", "A name has 1 to 40 characters. / txtName"},
          {"type:AGC on:spnHighestBit Down Down Down Down", "txtHighest", "15"},
          {"on:txtText type:level on:txtValues type:4~low Return type:x cmdAccept", "focus",
           "txtValues"},
          {"Backspace Backspace on:txtLowByte type:67 cmdAccept", "lblNameProblem focus",
           "Two bytes are one number with all their bits. / spnLowestBit"},
          {"on:txtLowByte Backspace Backspace cmdAccept", "own tip",
           "1 /  AGC, bits 0 to 3: level true"}});
    play({{"on:DataGrid Ctrl+N", "title txtName txtValues.plainText", "Name / AGC / 4 low"},
          {"on:txtLowest Backspace type:5 cmdAccept", "focus", "txtValues"},
          {"Esc menu:DataGrid mnuGridName", "txtLowest", "0"},
          {"Esc at:69 Ctrl+N type:agc cmdAccept", "focus", "txtName"},
          {"Esc mnuEditUndo", "own tip", "0 / false"}});
    const NamedValue free = program.nameCommands.Proposed(TargetDevice::Primary, 2085);
    EXPECT_TRUE(free.bits.lowest == 0 && free.bits.highest == 1 && free.highest == 3);
    EXPECT_EQ(program.nameCommands.Proposed(TargetDevice::Secondary, 2085).highest, 255);
}

TEST_F(NamesWindowTest, AreFoundChangedRemovedAndReadFromFiles) {
    folder.Write("names", R"({"format": 1, "names": [
        {"name": "AGC", "device": "primary", "address": 68, "bits": [0, 3], "values": {"4": "low"}},
        {"name": "Far", "device": "primary", "address": 8190, "low": 8191, "text": "two of it"},
        {"name": "Sec", "device": "secondary", "address": 7}, {"name": "?"}]})");
    program.nameCommands.ReadInto(NameLayer::User, folder.Path("names"));
    EXPECT_EQ(ReadNames(folder.Path("names.json")).names.size(), 3U);
    const QString far = QString("Far|Primary|8190|high byte, low byte at 8191|%1|%1|two of it")
                            .arg(eeprom[8190] * 256 + eeprom[8191]);
    play({{"at:68 type:2 Tab mnuEditNames", "tblNames lblFaults.visible",
           "AGC|Primary|68|bits 0 to 3|2|4 (low)| / false"},
          {"on:txtFilter type:OF~pri", "tblNames", far},
          {"type:x", "tblNames cmdEditName.toolTip", "|||||| / Select one name first"},
          {"Ctrl+A Backspace on:tblNames End", "tblNames cmdShowInEditor",
           "Sec|Secondary|7|bits 0 to 7||| / ~Show in Editor"},
          {"Del", "own tblNames", "2 / ..."},
          {"on:tblNames Home cmdEditName", "txtName txtAddress cboKept",
           "AGC / 68 / ~among your names"},
          {"on:txtName type:AGC2 cmdAccept", "tblNames", "AGC2|..."},
          {"on:tblNames Ctrl+A Del", "own cmdRemoveName.toolTip", "0 / Select names first"},
          {"Esc mnuEditUndo mnuEditNames on:txtFilter type:far cmdShowInEditor", "address own",
           "8190 / 2"}});
    EXPECT_EQ(program.history.NextName(Direction::Redo), "Removal of 2 Names");
}

TEST_F(NamesWindowTest, WhatChangesIsFoundNamedChangedByItsNameAndWritten) {
    sights["found"] = [this] {
        QString rows;
        const auto& table = Child<QTreeWidget>(window, "tblChanges");
        for (int row = 0; row < table.topLevelItemCount(); ++row)
            rows += table.topLevelItem(row)->text(1) + table.topLevelItem(row)->text(2) + ' ';
        return rows;
    };
    const auto turn = [this] { eeprom[8000] ^= 1, eeprom[8001] ^= 1; };
    play({{"Ctrl+D chkWatch", "lblWatch...", "Watching the Primary EEProm: 1 reading"},
          {turn, "found...", "8000 8001 "},
          {"on:tblChanges Ctrl+A Ctrl+N", "title txtAddress", "New Name / 8000"},
          {"type:Tilt on:txtLowest Backspace type:5 on:txtHighest Ctrl+A type:9 on:txtValues "
           "type:7~level cmdAccept",
           "title txtAddress", "New Name / 8001"},
          {"Esc", "found focus", "8000Tilt 8001  / tblChanges"},
          {"chkWatch on:tblDifferences Ctrl+A mnuCompareName", "txtName", "Tilt"},
          {"cmdCancel", "lblDifferences", "2 bytes differ: 1 setting, 1 other byte in 1 place"},
          {"Esc mnuEditNames cmdChangeValue", "title Label1 lblWritten chkLive.visible",
           " Edit Value / 219 /  / false"},
          {"OK", "title", " Edit Value"},
          {"4 OK", "title status", " Edit Value / Tilt goes from 5 to 9"},
          {"on:VScroll1 End", "Label1", "5"},
          {"7", "Label1 lblWritten", "7 / level"},
          {"OK", "tblNames focus", "Tilt|Primary|8000|bits 0 to 7|7 (level)|218| / tblNames"},
          {"Esc", "address lblAddy_0 lblNewData_0 mnuEditUndo.text",
           "8000 / 8000 / 7 / &Undo Value of Tilt"},
          {"cmdWriteData", "title", "V E R I F Y"},
          {"Yes", "status lblAddy_0", "EEP Verified OK... / ~"}});
    EXPECT_EQ(eeprom[8000], 7);
    play({{"EditorEnabled mnuEditNames", "cmdChangeValue.toolTip", "The data editor is off"},
          {"Esc"},
          {[this] { program.state.targetDevice = TargetDevice::Secondary; }},
          {"mnuEditNames", "cmdChangeValue.toolTip", "It is on the other EEPROM"},
          {"Esc"}});
}

}  // namespace
}  // namespace tarnwell
