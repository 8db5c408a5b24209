// Both archive kinds: exact files, round trips, other programs, and input that is no good.
#include <sys/stat.h>

#include <sstream>

#include "archive/ImageArchive.h"
#include "archive/SRecord.h"
#include "archive/SettingsArchive.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

const std::string kProgram = "S021000048616C7620446F726E205461726E77656C6C20320202";
const std::string kImage = kProgram + "4461746146696C65E7\r\n";
const std::string kSettings = kProgram + "53657474696E677390\r\n";
const std::string kEnd = "S9030000FC\r\n";
const std::string kLoaded = "Record Checksums OK; EEP Image Loaded into Buffer";

constexpr std::size_t kLargest = 1U << 20U;
const std::string kTooLarge = "E R R O R - File Mismatch|The file is too large to be an archive.";
const std::string kTooLong = "E R R O R - File Mismatch|A line of the file is too long.";
const std::string kLongLine(65537, ' ');

/// The records, divided by blanks, as lines with their checksums.
std::string Lines(const std::string& records) {
    std::istringstream words(records);
    std::string lines;
    for (std::string record; words >> record;)
        lines += record + RecordChecksum(record) + "\r\n";
    return lines;
}

/// What most tests put into the cells: their own numbers, and in the last one what it can hold.
std::uint32_t Number(int cell) {
    return cell == 71 ? 7U : static_cast<std::uint32_t>(cell);
}

/// The records of that.
const std::string kFirst = "S109093B000102030405 ";
const std::string kNext =
    "S109095F060708090A0B S10909830C0D0E0F1011 S10909A7121314151617 "
    "S10B091818191A1B1C1D1E1F S104082520 S10C092C212223242526272829 "
    "S10C09502A2B2C2D2E2F303132 S10C0974333435363738393A3B "
    "S10C09983C3D3E3F4041424344 S10409CB45 S10409F546 S10408B407";

/// What a file makes of a load: the beginning of the box, if any, and the status.
struct Load {
    std::string content, box, status;
};

class ArchiveTest : public testing::Test, protected TestProgram {
  protected:
    /// The status after a command whose dialog gives the file `name`; it is cancelled without one.
    template <typename Archive>
    std::string Run(void (Archive::*command)(), const std::string& name) {
        program.statusBar.PutStatus("");
        user.files = {name.empty() ? std::nullopt : std::optional(folder.Path(name))};
        (std::get<Archive&>(std::tie(program.imageArchive, program.settingsArchive)).*command)();
        const auto boxes = user.TakeBoxes();
        box = boxes.empty() ? "" : boxes[0];
        return Status();
    }

    template <typename Archive>
    void Expect(const Load& load, void (Archive::*command)()) {
        folder.Write("archive", load.content);
        EXPECT_EQ(Run(command, "archive"), load.status) << load.content;
        EXPECT_TRUE(box.starts_with(load.box) && box.empty() == load.box.empty()) << box;
    }

    /// Runs a shell command in the folder and drops what it prints.
    void Shell(const std::string& command) const {
        const std::string line = "cd " + folder.Path() + "; (" + command + ") > log 2>&1";
        EXPECT_EQ(std::system(line.c_str()), 0) << command;
    }

    bool BufferIsShown() const {
        return Crc() == mCRC32::BufferCrcText(program.buffer) &&
               program.grid.Text({0, 1}) == std::to_string(program.buffer[0]) &&
               program.cells.Value(0) == program.buffer[2363];
    }

    void FillCells(Mark mark, std::uint32_t (*valueOf)(int)) {
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

    std::string box;  ///< the first of the last command
};

TEST_F(ArchiveTest, ImageHoldsWhatDiffersFromAnErasedDevice) {
    EXPECT_EQ(Run(&ImageArchive::SaveImage, "unused"), "");
    EXPECT_EQ(box, "E R R O R|Must First Read the EEPROM! ");
    program.buffer.fill(0xFF);
    program.buffer[0x123] = 0x5A;
    program.state.EepRead = program.state.BufferChanged = true;
    std::filesystem::create_symlink("/dev/full", folder.Path("full.mot"));
    for (const char* name : {"", "full.mot", "missing/image.mot"})
        EXPECT_EQ(Run(&ImageArchive::SaveImage, name), "EEProm Image Save Cancelled") << name;
    EXPECT_TRUE(program.state.EepRead && program.state.BufferChanged);

    EXPECT_EQ(Run(&ImageArchive::SaveImage, "a.mot"), "EEProm Image Saved to Disk");
    EXPECT_FALSE(program.state.EepRead || program.state.BufferChanged);
    EXPECT_EQ(folder.Read("a.mot"),
              kImage + "S1130120FFFFFF5AFFFFFFFFFFFFFFFFFFFFFFFF80\r\n" + kEnd);
    EXPECT_EQ(program.state.archiveFolder + "/", folder.Path());
    EXPECT_EQ(user.fileRequests.back().fileName, "Tarnwell-11172026-92101 PM");
}

TEST_F(ArchiveTest, NoImageIsLostBeforeTheHeaderIsAccepted) {
    program.state.EepRead = true;
    program.grid.SetGridChanged(true);
    WillAnswer({Answer::No, Answer::Yes, Answer::No});
    EXPECT_EQ(Run(&ImageArchive::LoadImage, "unused"), "");
    EXPECT_EQ(Run(&ImageArchive::LoadImage, "unused"), "EEProm Image Load Canceled");
    mkfifo(folder.Path("pipe").c_str(), 0600);
    for (const char* name : {"", "missing", ".", "pipe"}) {
        WillAnswer({Answer::Yes, Answer::Yes});
        EXPECT_EQ(Run(&ImageArchive::LoadImage, name), "EEProm Image Load Cancelled") << name;
        EXPECT_TRUE(program.state.GridChanged) << "only a refill discards";
        EXPECT_EQ(box, "C A U T I O N|Really discard the Data Grid changes?");
    }
    EXPECT_EQ(program.buffer, MemoryBuffer{});
    EXPECT_TRUE(program.state.EepRead && !program.state.BufferChanged);
    folder.Write("stops", kImage);
    WillAnswer({Answer::Yes, Answer::Yes});
    Run(&ImageArchive::LoadImage, "stops");
    EXPECT_EQ(program.state.archiveFolder + "/", folder.Path());
    EXPECT_TRUE(!program.state.EepRead && program.state.BufferChanged);
    EXPECT_FALSE(program.state.GridChanged);
}

TEST_F(ArchiveTest, ImageLoadTable) {
    const std::string noSRecords = "E R R O R - File Mismatch|The archive is not an S-Record file";
    const std::string noImage = "E R R O R - File Mismatch|The archive is not a valid EEP image";
    const std::string foreign = "C A U T I O N - File Type|The file is not a Tarnwell EEProm data";
    const std::string question = "\r\n\r\nDo you want to load it anyway? (Is it 24C64 data?)";
    const std::string settings = foreign + " file;" + question +
                                 "\r\nThis is a Tarnwell settings archive: 72 values, no image.";
    const std::string part = "The buffer holds only part of the file.";
    const std::string corrupt =
        "E R R O R - Checksum|Data in the S-Record file may be corrupt;"
        "\r\n\r\nEEProm image load has been aborted.\r\n" +
        part;
    const std::string stopped = "I N F O|" + part;
    const std::string cancelled = "EEProm Image Load Cancelled";
    const std::string failed = "EEProm Image Load Failed";
    const std::string last = "1FF0" + std::string(32, '0') + "AB";
    constexpr int kKept = 0x11;
    const std::tuple<Load, int, std::size_t> rows[] = {
        {{"", "", cancelled}, kKept, 0},
        {{{"\0\x7F\n", 3}, noSRecords, failed}, kKept, 0},
        {{"S00F0000ColorVal\n", noImage, failed}, kKept, 0},
        {{"S00F0000Settings", noImage, failed}, kKept, 0},
        {{kImage.substr(0, 70) + " \r\n", foreign, cancelled}, kKept, 0},
        {{kSettings + kEnd, settings, cancelled}, kKept, 0},
        {{"S0" + kLongLine, kTooLong, failed}, kKept, 0},
        {{std::string(kLargest + 1, '\n'), kTooLarge, failed}, kKept, 0},
        {{(kImage + kEnd).append(kLargest - 84, '\n'), "", kLoaded}, 0xFF, 0},
        {{kImage + "S104000042B9\n" + kLongLine, kTooLong + "\r\n" + part, failed}, 0x42, 0},
        {{kImage, stopped, cancelled}, 0xFF, 0},
        {{kImage + "S1130000", corrupt, failed}, 0, 0},
        {{kImage + "S104000042b9\n", corrupt, failed}, 0x42, 0},
        {{kImage + "S1040000G1FA\nS5030001FB\n", stopped, cancelled}, 0x01, 0},
        {{kImage + "S1040000ab50\nS70500000000FA\n", stopped, cancelled}, 0xAB, 0},
        {{kImage + "S114" + last + "31\n" + kEnd, "", kLoaded}, 0xAB, 8192},
        {{kImage + "S115" + last, stopped, cancelled}, 0xAB, 8192},
        {{kImage + "S102FFFF", stopped, cancelled}, 0xFF, 0},
    };
    for (const char* record : {"S1041FF100", "S20501000000", "S306FFFFFFF000"}) {
        folder.Write("archive", kImage + record);
        EXPECT_THROW(Run(&ImageArchive::LoadImage, "archive"), ProgramEnd) << record;
    }
    EXPECT_EQ(user.TakeBoxes().at(2).substr(0, 21), "F A T A L   E R R O R");
    for (const auto& [load, byte, slot] : rows) {
        SCOPED_TRACE(load.content.substr(0, 99));
        const bool changed = byte != kKept;
        program.buffer.fill(kKept);
        program.state.BufferChanged = false;
        program.statusBar.ShowCrc("");
        user.answers = {Answer::No};
        const bool defaultIsNo = load.box == settings;
        user.onBox = [&](const Box& shown) {
            EXPECT_EQ(BufferIsShown(), changed);
            EXPECT_EQ(shown.defaultButton == DefaultButton::No, defaultIsNo);
        };
        Expect(load, &ImageArchive::LoadImage);
        EXPECT_EQ(program.buffer[slot], byte);
        EXPECT_EQ(program.state.BufferChanged, changed);
        EXPECT_EQ(BufferIsShown(), changed);
    }
}

TEST_F(ArchiveTest, ImagesGoRoundThroughOtherPrograms) {
    const std::string cat = "srec_cat in.bin -binary -disable=data-count -o out -motorola ";
    for (const std::string& write :
         {cat + "-address-length=2", cat + "-address-length=3", cat + "-address-length=4",
          std::string("objcopy -I binary -O srec in.bin out")}) {
        for (std::size_t i = 0; i < kEepromBytes; ++i)
            program.buffer[i] = static_cast<std::uint8_t>(i * i / 7 & 0x7F);
        program.buffer.back() = 0xFF;
        program.state.BufferChanged = true;
        const MemoryBuffer image = program.buffer;
        for (const char* name : {"a.bin", "a.hex", "a.mot"}) {
            program.state.BufferChanged = true;
            EXPECT_EQ(Run(&ImageArchive::SaveImage, name), "EEProm Image Saved to Disk");
        }
        Shell("objcopy -I srec -O binary --gap-fill=0xFF a.mot in.bin");
        EXPECT_EQ(folder.Read("in.bin"), std::string(image.begin(), image.end() - 1));
        Shell("srec_cat a.mot -fill 0xFF 0 8192 -o cat.bin -binary; cmp cat.bin in.bin");
        Shell(
            "cmp a.bin in.bin; srec_cat a.hex -intel -fill 0xFF 0 8192 -o - -binary | cmp - "
            "in.bin");
        Shell("srec_cat in.bin -binary -o b.hex -intel; objcopy -I binary -O ihex in.bin c.IHX");
        Shell(write);
        Shell("(head -1 out; sed 's/\\r//; /^S[1-3]/!d' out | shuf; printf S9030000FC) > b.mot");
        for (const char* name : {"b.mot", "a.mot", "a.bin", "a.hex", "b.hex", "c.IHX"}) {
            program.buffer.fill(0);
            user.answers = {Answer::Yes};
            EXPECT_EQ(Run(&ImageArchive::LoadImage, name), kLoaded) << write;
            EXPECT_EQ(program.buffer, image);
        }
    }
}

TEST_F(ArchiveTest, OtherFormsOfImagesAreTakenAsAForeignFile) {
    const std::string stopped = "I N F O|The buffer holds only part of the file.";
    const std::string last = "\r\n:00000001FF\r\n";
    const std::string full(kEepromBytes, 'x');
    const std::string large = kTooLarge;
    const std::string notHex =
        "E R R O R - File Mismatch|The file is not an Intel HEX file, as its name says.";
    for (const auto& [name, content, told, first, at8191] :
         {std::tuple("a.bin", full, std::string(), 'x', 'x'),
          {"a.BIN", "xyz", "", 'x', '\xFF'},
          {"a.bin", full + "x", large, '\x11', '\x11'},
          {"a.bin", kImage + "S104000042B9\n" + kEnd, "", 'B', '\xFF'},
          {"a.hex", full, notHex, '\x11', '\x11'},
          {"a.hex", ":0100000042BD" + last, "", 'B', '\xFF'},
          {"a.hex", ":020000021000EC\n:0100000042BD" + last, stopped, '\xFF', '\xFF'},
          {"a.hex", ":0200000201FFFC\n:01000F0042AE" + last, "", '\xFF', 'B'},
          {"a.hex", ":0200000201FFFC\n:01100F00429E" + last, stopped, '\xFF', '\xFF'},
          {"a.hex",
           ":020000040000FA\n:0400000300000000F9\n:011FFF0042"
           "9F" +
               last,
           "", '\xFF', 'B'},
          {"a.hex", ":0100000042BE" + last, "E R R O R - Checksum", '\xFF', '\xFF'},
          {"a.hex", ":0100000042BD\n", stopped, 'B', '\xFF'},
          {"a.hex", ":0100000042BD0" + last, stopped, '\xFF', '\xFF'},
          {"a.hex",
           ":01000006"
           "42B7" +
               last,
           stopped, '\xFF', '\xFF'},
          {"a.hex", ":0100000G42BD" + last, stopped, '\xFF', '\xFF'}}) {
        SCOPED_TRACE(content.substr(0, 60));
        program.buffer.fill(0x11);
        folder.Write(name, content);
        user.answers = {Answer::Yes};
        std::string end;
        user.onBox = [&](const Box& shown) {
            const bool tells = shown.style != BoxStyle::YesNoQuestion;
            end = tells ? shown.title + "|" + shown.text : "";
        };
        Run(&ImageArchive::LoadImage, name);
        EXPECT_TRUE(end.starts_with(told) && end.empty() == told.empty()) << end;
        const bool asks = first != '\x11' && !content.starts_with(kImage);
        EXPECT_EQ(user.answers.empty(), asks);
        EXPECT_EQ(box.starts_with("C A U T I O N - File Type|"), asks) << box;
        EXPECT_EQ(static_cast<char>(program.buffer[0]), first);
        EXPECT_EQ(static_cast<char>(program.buffer[8191]), at8191);
    }
}

TEST_F(ArchiveTest, SettingsAreFifteenLinesThatLoadInTheOtherMode) {
    for (const auto mode : {NumberMode::Hex, NumberMode::Decimal}) {
        FillCells(Mark::Save, Number);
        for (const char* name : {"", "missing/settings.mot"})
            EXPECT_EQ(Run(&SettingsArchive::SaveSettings, name), "Settings Save Cancelled");
        EXPECT_EQ(program.cells.Colour(71), CellColour::Changed);
        EXPECT_EQ(Run(&SettingsArchive::SaveSettings, "a.mot"),
                  "Settings Saved to Archive Disk File");
        EXPECT_EQ(folder.Read("a.mot"), kSettings + Lines(kFirst + kNext) + kEnd);
        EXPECT_EQ(CellsToSave(), kCellCount);
        EXPECT_EQ(program.cells.Colour(71), CellColour::Normal);
        program.numberModeMenu.Select(mode);
        FillCells(Mark::Clean, [](int) { return 0U; });
        Run(&SettingsArchive::LoadSettings, "a.mot");
        for (int cell = 0; cell < kCellCount; ++cell)
            EXPECT_EQ(program.cells.Caption(cell), mode == NumberMode::Hex
                                                       ? HexText(Number(cell), 2)
                                                       : std::to_string(Number(cell)));
    }
    Shell("srec_info a.mot");
}

TEST_F(ArchiveTest, SettingsLoadTable) {
    const std::string noSRecords = "A B O R T - File Load|The file is not an S-Record File";
    const std::string noSettings = "A B O R T - File Load|File is not a Tarnwell Settings file";
    const std::string corrupt = "E R R O R - Checksum|Data in the Settings file may be corrupt";
    const std::string loaded = "Settings Loaded from Archive Disk File";
    const std::string canceled = "Load Settings Canceled";
    const std::string failed = "Load Settings Failed";
    const std::string misfit =
        "E R R O R - File Mismatch|A value in the Settings file does not fit;\r\n"
        "Its record and those behind it were not loaded.\r\nRecord 2, address ";
    const std::string one = kSettings + Lines(kFirst);
    const std::pair<Load, int> rows[] = {
        {{"", "", canceled}, 0},
        {{"\n", noSRecords, failed}, 0},
        {{"S0\n" + Lines(kFirst + kNext) + kEnd, noSettings, failed}, 0},
        {{one + Lines(kNext) + "not read", "", loaded}, 72},
        {{one, "", canceled}, 6},
        {{kSettings + Lines("S10408B407 " + kFirst) + kEnd, "", loaded}, 7},
        {{one + "S10", corrupt, failed}, 6},
        {{one + Lines("S104093C00"), "", canceled}, 6},
        {{kSettings + Lines("S10A093B01020304050607") + kEnd, "", loaded}, 7},
        {{one + Lines("S10508B40102"), "", canceled}, 7},
        {{one + Lines("S10508B41002"), misfit + "2228: \"10\" does not fit into SHPM, bits 4 to 7.",
          canceled},
         6},
        {{one + kLongLine, kTooLong, failed}, 6},
        {{std::string(kLargest + 1, 'S'), kTooLarge, failed}, 0},
        {{kSettings + Lines("S10408253F S10408B40F") + kEnd, "", loaded}, 2},
        {{one + Lines("S104082540"), misfit + "2085: \"40\"", canceled}, 6},
        {{one + Lines("S109095F0102030405G6"), misfit + "2404: \"G6\"", canceled}, 6},
        {{kSettings + Lines("S102093B") + kEnd, "", loaded}, 0},
    };
    for (const auto& [load, cellsToSave] : rows) {
        FillCells(Mark::Clean, [](int) { return 0U; });
        Expect(load, &SettingsArchive::LoadSettings);
        EXPECT_EQ(CellsToSave(), cellsToSave) << load.content;
    }
}

TEST_F(ArchiveTest, SettingsRefusalsAndTheHiddenMenu) {
    program.cells.ClearSettingCells();
    EXPECT_EQ(Run(&SettingsArchive::SaveSettings, "unused"), "Settings Save Cancelled");
    EXPECT_THAT(box, StartsWith("E R R O R|There are empty settings values;\r\nread or"));
    for (const char* name : {"", "missing", "quillmer.mot"})
        EXPECT_EQ(Run(&SettingsArchive::LoadSettings, name), "Load Settings Canceled") << name;
    program.state.targetDevice = TargetDevice::Secondary;
    EXPECT_EQ(Run(&SettingsArchive::SaveSettings, "unused"), kUseDataEditor);
    Expect({kSettings + Lines(kFirst + kNext), "", std::string(kUseDataEditor)},
           &SettingsArchive::LoadSettings);
    EXPECT_EQ(CellsToSave(), 0);
    EXPECT_EQ(Run(&SettingsArchive::LoadSettings, "missing/MyQuillmer.mot"), "");
    EXPECT_TRUE(program.state.fillItemVisible);
}

}  // namespace
}  // namespace tarnwell
