// Image archives: round trips, other programs, and input that is no good.
#include "archive/ImageArchive.h"

#include <sys/stat.h>

#include "archive/ArchiveCommands.h"

namespace tarnwell {
namespace {

const std::string kHeader =
    "S021000048616C7620446F726E205461726E77656C6C203202024461746146696C65E7\r\n";
const std::string kSaved = "EEProm Image Saved to Disk";
const std::string kLoaded = "Record Checksums OK; EEP Image Loaded into Buffer";
const std::string kCancelled = "EEProm Image Load Cancelled";
const std::string kFailed = "EEProm Image Load Failed";

class ImageArchiveTest : public ArchiveCommands {
  protected:
    std::string Save(const std::string& name) {
        return Run(program.imageArchive, &ImageArchive::SaveImage, name);
    }
    std::string Load(const std::string& name) {
        return Run(program.imageArchive, &ImageArchive::LoadImage, name);
    }
    std::string Image() const {
        return {program.buffer.begin(), program.buffer.begin() + kEepromBytes};
    }
    bool BufferIsShown() const {
        return test.Crc() == mCRC32::BufferCrcText(program.buffer) &&
               program.grid.Text({0, 1}) == std::to_string(program.buffer[0]) &&
               program.cells.Value(0) == program.buffer[2363];
    }
};

TEST_F(ImageArchiveTest, SavesWhatDiffersFromAnErasedDevice) {
    EXPECT_EQ(Save("unused"), "");
    EXPECT_EQ(test.user.TakeBoxes().at(0), "E R R O R|Must First Read the EEPROM! ");
    program.buffer.fill(0xFF);
    program.buffer[0x123] = 0x5A;
    program.state.eepRead = program.state.bufferChanged = true;
    folder.Write("full.mot", "former");
    std::filesystem::create_symlink("/dev/full", folder.Path("full.mot.part"));
    for (const char* name : {"", "full.mot", "missing/image.mot"})
        EXPECT_EQ(Save(name), "EEProm Image Save Cancelled") << name;
    EXPECT_EQ(folder.Read("full.mot"), "former");
    EXPECT_TRUE(program.state.eepRead && program.state.bufferChanged);

    EXPECT_EQ(Save("one.mot"), kSaved);
    EXPECT_FALSE(program.state.eepRead || program.state.bufferChanged);
    EXPECT_EQ(folder.Read("one.mot"),
              kHeader + "S1130120FFFFFF5AFFFFFFFFFFFFFFFFFFFFFFFF80\r\nS9030000FC\r\n");
    EXPECT_EQ(program.state.archiveFolder + "/one.mot", folder.Path("one.mot"));
    SetArchiveFolder(program.state, "/root.mot");
    EXPECT_EQ(program.state.archiveFolder, "/");
    EXPECT_EQ(test.user.fileRequests.back().fileName, "Tarnwell-11172026-92101 PM");
}

TEST_F(ImageArchiveTest, NothingIsLostBeforeTheHeaderIsAccepted) {
    program.state.eepRead = true;
    program.grid.SetGridChanged(true);
    test.WillAnswer({Answer::No, Answer::Yes, Answer::No});
    EXPECT_EQ(Load("unused"), "");
    EXPECT_EQ(Load("unused"), "EEProm Image Load Canceled");
    EXPECT_EQ(test.user.TakeBoxes().back(), "D I S K   L O A D|Discard Present EEProm Image?");
    EXPECT_TRUE(test.user.fileRequests.empty());

    mkfifo(folder.Path("pipe").c_str(), 0600);
    folder.Write("gigabyte/file", "");
    std::filesystem::resize_file(folder.Path("gigabyte/file"), 1UL << 30);
    for (const char* name : {"", "missing", "gigabyte", "pipe", "gigabyte/file"}) {
        test.WillAnswer({Answer::Yes});
        EXPECT_EQ(Load(name), name == std::string("gigabyte/file") ? kFailed : kCancelled);
    }
    EXPECT_EQ(program.buffer, MemoryBuffer{});
    EXPECT_TRUE(program.state.eepRead && !program.state.bufferChanged);
}

TEST_F(ImageArchiveTest, BadInputTable) {
    const std::string notLoaded = ";\r\nAn EEProm image was not loaded.";
    const std::string noSRecords =
        "E R R O R - File Mismatch|The archive is not an S-Record file" + notLoaded;
    const std::string noImage =
        "E R R O R - File Mismatch|The archive is not a valid EEP image file" + notLoaded;
    const std::string foreign =
        "C A U T I O N - File Type|The file is not a Tarnwell EEProm data file;\r\n\r\n"
        "Do you want to load it anyway? (Is it 24C64 data?)";
    const std::string corrupt =
        "E R R O R - Checksum|Data in the S-Record file may be corrupt;\r\n\r\n"
        "EEProm image load has been aborted.";
    const std::string byte = kHeader + "S104000042B9";
    const std::string endless(200000, ' ');
    constexpr int kKept = 0x11;
    const struct {
        std::string content, box, status;
        int firstByte;
    } rows[] = {
        {"", "", kCancelled, kKept},
        {{"\0\x7F\n", 3}, noSRecords, kFailed, kKept},
        {"s0" + kHeader.substr(2), noSRecords, kFailed, kKept},
        {"S00F0000ColorVal\n", noImage, kFailed, kKept},
        {"S00F0000Settings", noImage, kFailed, kKept},
        {kHeader.substr(0, 70) + " \r\n", foreign, kCancelled, kKept},
        {"S0" + endless, foreign, kCancelled, kKept},
        {kHeader, "", kCancelled, 0xFF},
        {byte, "", kCancelled, 0x42},
        {kHeader + "S1130000", corrupt, kFailed, 0},
        {kHeader + "S104000042B8\n", corrupt, kFailed, 0x42},
        {kHeader + "S104000042b9\n", corrupt, kFailed, 0x42},
        {byte + endless, corrupt, kFailed, 0x42},
        {byte + "\nS5030001FB\n", "", kCancelled, 0x42},
        {byte + "\nS70500000000FA\n", "", kCancelled, 0x42},
        {byte + "\nS804000000FB\n", "", kCancelled, 0x42},
        {kHeader + "S1FF1FF0\n", "", kCancelled, 0xFF},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content.substr(0, 99));
        program.buffer.fill(kKept);
        program.state.bufferChanged = false;
        program.statusBar.ShowCrc("");
        folder.Write("bad.mot", row.content);
        test.user.answers = {Answer::No};
        test.user.onBox = [&](const Box&) { EXPECT_EQ(BufferIsShown(), row.box == corrupt); };
        EXPECT_EQ(Load("bad.mot"), row.status);
        const auto boxes = test.user.TakeBoxes();
        EXPECT_EQ(boxes.empty() ? "" : boxes[0], row.box);
        EXPECT_EQ(program.buffer[0], row.firstByte);
        EXPECT_EQ(program.state.bufferChanged, row.firstByte != kKept);
        EXPECT_EQ(BufferIsShown(), row.firstByte != kKept);
    }
}

TEST_F(ImageArchiveTest, RandomBuffersGoRoundThroughOtherPrograms) {
    const std::string cat = "srec_cat in.bin -binary -o out.mot -motorola -disable=data-count";
    for (const std::string& write :
         {cat + " -address-length=2", cat + " -address-length=3", cat + " -address-length=4",
          std::string("objcopy -I binary -O srec in.bin out.mot")}) {
        SCOPED_TRACE(write);
        for (std::uint8_t& slot : program.buffer)
            slot = static_cast<std::uint8_t>(random() & 0x7F);
        std::fill_n(program.buffer.begin() + 0x1230, 0x30, 0xFF);
        program.state.bufferChanged = true;
        const std::string image = Image();
        ASSERT_EQ(Save("ours.mot"), kSaved);
        EXPECT_TRUE(Shell("srec_info ours.mot"));
        EXPECT_TRUE(Shell("srec_cat ours.mot -fill 0xFF 0 8192 -o in.bin -binary"));
        EXPECT_EQ(folder.Read("in.bin"), image);
        EXPECT_TRUE(Shell("objcopy -I srec -O binary --gap-fill=0xFF ours.mot in.bin"));
        EXPECT_EQ(folder.Read("in.bin"), image);

        ASSERT_TRUE(Shell(write));
        ASSERT_TRUE(
            Shell("(head -1 out.mot; sed 's/\\r//; /^S[1-3]/!d' out.mot | shuf; "
                  "printf S9030000FC) | tee theirs.mot"));
        for (const char* name : {"theirs.mot", "ours.mot"}) {
            program.buffer.fill(0);
            test.user.answers = {Answer::Yes};
            EXPECT_EQ(Load(name), kLoaded);
            EXPECT_EQ(Image(), image);
            EXPECT_TRUE(BufferIsShown() && program.state.bufferChanged);
        }
    }
}

}  // namespace
}  // namespace tarnwell
