// Names of one's own in the window: made, shown, changed, removed and read from files.
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

}  // namespace
}  // namespace tarnwell
