// Settings archives: their lines, round trips and refusals.
#include "archive/SettingsArchive.h"

#include <sstream>

#include "archive/ArchiveCommands.h"

namespace tarnwell {
namespace {

const std::string kHeader =
    "S021000048616C7620446F726E205461726E77656C6C2032020253657474696E677390\r\n";
const std::string kEnd = "S9030000FC\r\n";
const std::string kSaved = "Settings Saved to Archive Disk File";
const std::string kSaveCancelled = "Settings Save Cancelled";
const std::string kLoaded = "Settings Loaded from Archive Disk File";
const std::string kCanceled = "Load Settings Canceled";
const std::string kFailed = "Load Settings Failed";

/// The records, divided by blanks, as lines with their checksums.
std::string Lines(const std::string& records) {
    std::istringstream words(records);
    std::string lines;
    for (std::string record; words >> record;)
        lines += record + RecordChecksum(record) + "\r\n";
    return lines;
}

/// The records of cells that hold their own numbers, 7 in the last one.
const std::string kFirst = "S109093B000102030405 ";
const std::string kNext =
    "S109095F060708090A0B S10909830C0D0E0F1011 S10909A7121314151617 "
    "S10B091818191A1B1C1D1E1F S104082520 S10C092C212223242526272829 "
    "S10C09502A2B2C2D2E2F303132 S10C0974333435363738393A3B "
    "S10C09983C3D3E3F4041424344 S10409CB45 S10409F546 S10408B407";

class SettingsArchiveTest : public ArchiveCommands {
  protected:
    std::string Save(const std::string& name) {
        return Run(program.settingsArchive, &SettingsArchive::SaveSettings, name);
    }
    std::string Load(const std::string& name) {
        return Run(program.settingsArchive, &SettingsArchive::LoadSettings, name);
    }
    template <typename ValueOf>
    void FillCells(Mark mark, ValueOf valueOf) {
        for (int cell = 0; cell < kCellCount; ++cell) {
            program.cells.ShowValue(cell, static_cast<std::uint8_t>(valueOf(cell)));
            program.cells.SetMark(cell, mark);
            program.cells.SetColour(cell, CellColour::Changed);
        }
    }
    int CellsToSave() const {
        int count = 0;
        for (int cell = 0; cell < kCellCount; ++cell)
            count += program.cells.MarkOf(cell) == Mark::Save ? 1 : 0;
        return count;
    }
};

TEST_F(SettingsArchiveTest, SavesFifteenLines) {
    FillCells(Mark::Save, [](int cell) { return cell == 71 ? 7 : cell; });
    EXPECT_EQ(Save(""), kSaveCancelled);
    EXPECT_EQ(Save("missing/settings.mot"), kSaveCancelled);
    EXPECT_EQ(program.cells.Colour(71), CellColour::Changed);
    EXPECT_EQ(Save("settings.mot"), kSaved);
    EXPECT_EQ(folder.Read("settings.mot"), kHeader + Lines(kFirst + kNext) + kEnd);
    EXPECT_TRUE(Shell("srec_info settings.mot"));
    EXPECT_EQ(CellsToSave(), kCellCount);
    EXPECT_EQ(program.cells.Colour(71), CellColour::Normal);
}

TEST_F(SettingsArchiveTest, RoundTripsInEachPairOfModes) {
    for (int pair = 0; pair < 4; ++pair) {
        program.numberModeMenu.Select(pair < 2 ? NumberMode::Decimal : NumberMode::Hex);
        std::map<int, std::uint8_t> values;
        FillCells(Mark::Clean, [&](int cell) {
            const auto byte = static_cast<std::uint8_t>(random() & 0xFF);
            return values[cell] = FieldOf(byte, Cell(cell).setting->shift);
        });
        ASSERT_EQ(Save("settings.mot"), kSaved);
        const bool hex = pair % 2 == 1;
        program.numberModeMenu.Select(hex ? NumberMode::Hex : NumberMode::Decimal);
        FillCells(Mark::Clean, [](int) { return 0; });
        ASSERT_EQ(Load("settings.mot"), kLoaded);
        for (const auto& [cell, value] : values)
            EXPECT_EQ(program.cells.Caption(cell), hex ? HexText(value, 2) : std::to_string(value));
        EXPECT_EQ(CellsToSave(), kCellCount);
        EXPECT_EQ(program.cells.Colour(0), CellColour::Changed);
    }
}

TEST_F(SettingsArchiveTest, LoadTable) {
    const std::string noSRecords =
        "A B O R T - File Load|The file is not an S-Record File;\r\n"
        "The settings values were not loaded.";
    const std::string noSettings =
        "A B O R T - File Load|File is not a Tarnwell Settings file;\r\n"
        "The Settings were not loaded.";
    const std::string corrupt =
        "E R R O R - Checksum|Data in the Settings file may be corrupt;\r\n\r\n"
        "Settings were not loaded.";
    const std::string one = kHeader + Lines(kFirst);
    const struct {
        std::string content, box, status;
        int cellsToSave;
    } rows[] = {
        {"", "", kCanceled, 0},
        {"\n", noSRecords, kFailed, 0},
        {"S0\n" + Lines(kFirst + kNext) + kEnd, noSettings, kFailed, 0},
        {one + Lines(kNext) + "not read", "", kLoaded, 72},
        {one, "", kCanceled, 6},
        {kHeader + Lines("S10408B407 " + kFirst) + kEnd, "", kLoaded, 7},
        {one + "S10408252000\n", corrupt, kFailed, 6},
        {one + "S10", corrupt, kFailed, 6},
        {one + Lines("S104093C00"), "", kCanceled, 6},
        {kHeader + Lines("S10A093B01020304050607") + kEnd, "", kLoaded, 7},
        {one + Lines("S10508B40102"), "", kCanceled, 6},
        {kHeader + Lines("S10408253F S10408B40F") + kEnd, "", kLoaded, 2},
        {one + Lines("S104082540"), "", kCanceled, 6},
        {one + Lines("S10408B410"), "", kCanceled, 6},
        {one + Lines("S109095F0102030405G6"), "", kCanceled, 6},
        {kHeader + Lines("S102093B") + kEnd, "", kLoaded, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        FillCells(Mark::Clean, [](int) { return 0; });
        folder.Write("settings.mot", row.content);
        EXPECT_EQ(Load("settings.mot"), row.status);
        const auto boxes = test.user.TakeBoxes();
        EXPECT_EQ(boxes.empty() ? "" : boxes[0], row.box);
        EXPECT_EQ(CellsToSave(), row.cellsToSave);
    }
}

TEST_F(SettingsArchiveTest, RefusalsAndTheHiddenMenu) {
    program.cells.ClearSettingCells();
    EXPECT_EQ(Save("unused"), kSaveCancelled);
    EXPECT_EQ(test.user.TakeBoxes().at(0),
              "E R R O R|There are empty settings values;\r\nread or load the settings first.");
    for (const char* name : {"", "missing", "quillmer.mot"})
        EXPECT_EQ(Load(name), kCanceled) << name;
    program.state.targetDevice = TargetDevice::Secondary;
    folder.Write("settings.mot", kHeader + Lines(kFirst + kNext));
    EXPECT_EQ(Save("unused"), kUseDataEditor);
    EXPECT_EQ(Load("settings.mot"), kUseDataEditor);
    EXPECT_EQ(CellsToSave(), 0);
    EXPECT_FALSE(program.state.fillItemVisible);
    EXPECT_EQ(Load("missing/MyQuillmer.mot"), "");
    EXPECT_TRUE(program.state.fillItemVisible);
    EXPECT_EQ(program.state.archiveFolder + "/", folder.Path());
}

}  // namespace
}  // namespace tarnwell
