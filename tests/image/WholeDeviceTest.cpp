// The checksum, and the commands on a whole device with their texts and outcomes.
#include <algorithm>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

TEST(Crc32, IsTakenOverTheHexadecimalText) {
    using namespace mCRC32;
    EXPECT_EQ(CrcFinal(CrcAddText("123456789", MakeCrcTable())), 0xCBF43926U);
    MemoryBuffer buffer{};
    EXPECT_EQ(BufferCrcText(buffer), "15A36921");
    buffer[8192] = 7;
    EXPECT_EQ(BufferCrcText(buffer), "15A36921");
    buffer.fill(0xFF);
    EXPECT_EQ(BufferCrcText(buffer), "A87C97F3");
    MemoryBuffer other = buffer;
    buffer[5] = 0x01;
    buffer[6] = 0x23;
    other[5] = 0x12;
    other[6] = 0x03;
    EXPECT_EQ(BufferCrcText(buffer), BufferCrcText(other));
}

TEST(FillValue, TakesOneWholeDecimalNumber) {
    for (const auto& [text, value] : {std::pair{"255", 255},
                                      {" 0 ", 0},
                                      {"254.5", 255},
                                      {"0.4", 0},
                                      {"-0.5", 0},
                                      {"7.", 7},
                                      {".5", 1},
                                      {"+9", 9}})
        EXPECT_EQ(FillValue(text), value) << text;
    for (const char* text : {"255.5", "-1", "", "  ", "12abc", "1 2", "0x10", "1.2.3", ".", "256",
                             "99999999999999999999"})
        EXPECT_EQ(FillValue(text), std::nullopt) << text;
}

bool SameImage(const MemoryBuffer& buffer, const EepromImage& image) {
    return std::equal(image.begin(), image.end(), buffer.begin());
}

struct WholeDevice : ::testing::Test {
    TestProgram test{{.writeCycle = 300us}};
    EepromImage& primary = test.television.Memory(Chip::Primary);
    EepromImage& secondary = test.television.Memory(Chip::Secondary);

    void SetUp() override {
        for (std::size_t address = 0; address < primary.size(); ++address) {
            primary[address] = static_cast<std::uint8_t>(address * 7 + address / 256);
            secondary[address] = static_cast<std::uint8_t>(address ^ 0x5A);
        }
    }
};

TEST_F(WholeDevice, ReadsTheTargetIntoTheBuffer) {
    test.program.wholeDevice.ReadEntireEep();
    EXPECT_TRUE(SameImage(test.program.buffer, primary));
    EXPECT_EQ(test.Status(), "Primary EEProm Data Read Into Memory");
    EXPECT_EQ(test.Crc(), mCRC32::BufferCrcText(test.program.buffer));
    EXPECT_TRUE(test.program.state.EepRead);
    EXPECT_FALSE(test.program.state.BufferChanged);
    EXPECT_EQ(test.program.grid.Text({1, 1}), std::to_string(primary[16]));
    EXPECT_EQ(test.program.cells.Caption(0), std::to_string(primary[2363]));

    test.WillAnswer({Answer::Ok});
    test.program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    test.program.wholeDevice.ReadEntireEep();
    EXPECT_TRUE(SameImage(test.program.buffer, secondary));
    EXPECT_EQ(test.Status(), "Use the Data Editor to View/Modify data");
    EXPECT_EQ(test.program.cells.Caption(0), "");
}

TEST_F(WholeDevice, WritesTheBufferAndVerifiesIt) {
    test.program.wholeDevice.ReadEntireEep();
    test.WillAnswer({Answer::Ok, Answer::Cancel, Answer::Yes});
    test.program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    test.user.boxes.clear();
    test.program.wholeDevice.WriteEntireEep();
    EXPECT_EQ(test.Status(), "EEProm Write Cancelled");
    EXPECT_NE(secondary, primary);

    std::vector<std::string> shown;
    test.user.onBox = [&](const Box&) { shown.push_back(test.Status()); };
    test.program.wholeDevice.WriteEntireEep();
    EXPECT_EQ(secondary, primary);
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre("V E R I F Y|Write memory buffer to EEProm?",
                                                   "V E R I F Y|Write memory buffer to EEProm?"));
    EXPECT_EQ(test.Status(), "EEP Verified OK; EEProm Write Successful");
    EXPECT_EQ(test.Eep(), "Sec");
    EXPECT_TRUE(test.program.state.EepRead);
    EXPECT_GE(test.user.paintings, kEepromBytes);
}

constexpr const char* kVerifyFailed =
    "E R R O R - Verify Failed|EEProm data verification failed;\r\n"
    "The EEProm was not programmed correctly, try again.";

TEST_F(WholeDevice, TellsEachByteThatDoesNotVerify) {
    test.program.wholeDevice.ReadEntireEep();
    test.television.Inject({.kind = FaultKind::FlippedBit, .address = 8191, .mask = 0x10});
    std::vector<std::string> details;
    test.user.onBox = [&](const Box& box) {
        if (box.style != BoxStyle::Critical)
            return;
        EXPECT_EQ(test.Status(), "ERROR: EEP and Memory Buffer Values Do Not Match!");
        EXPECT_EQ(test.timer.running, 30000ms);
        details.push_back(box.details);
    };
    for (const auto mode : {NumberMode::Hex, NumberMode::Decimal}) {
        test.program.numberModeMenu.Select(mode);
        test.WillAnswer({Answer::Yes});
        test.program.wholeDevice.WriteEntireEep();
        EXPECT_EQ(test.Status(), "");
        EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(HasSubstr("V E R I F Y"), kVerifyFailed));
        test.television.ClearFaults();
        test.television.Inject({.kind = FaultKind::WrongWrite, .mask = 0x01});
    }
    EXPECT_EQ(details[0], "1 byte differs.\nAddress 1FFF: wrote 18, read 8");
    EXPECT_THAT(details[1],
                ::testing::StartsWith("8192 bytes differ.\nAddress 0: wrote 0, read 1\n"));
    EXPECT_THAT(details[1], ::testing::EndsWith("\nAddress 8191: wrote 24, read 25"));
    EXPECT_EQ(test.user.beeps, 2);
}

TEST_F(WholeDevice, FillsTheDeviceAndLeavesTheBufferAlone) {
    test.program.wholeDevice.ReadEntireEep();
    const MemoryBuffer before = test.program.buffer;
    test.user.texts = {"42", "256", std::nullopt};
    test.program.wholeDevice.FillEntireEep();
    EXPECT_EQ(std::ranges::count(primary, 42), kEepromBytes);
    EXPECT_EQ(test.Status(), "EEP Verified OK; EEProm Write Successful");
    EXPECT_EQ(test.program.buffer, before);

    test.program.wholeDevice.FillEntireEep();
    EXPECT_THAT(test.user.TakeBoxes(),
                ElementsAre("E R R O R|Please enter a whole number from 0 to 255."));
    test.program.wholeDevice.FillEntireEep();
    EXPECT_EQ(test.Status(), "EEProm Write Cancelled");
    EXPECT_THAT(test.user.TakeBoxes(), IsEmpty());
    EXPECT_EQ(std::ranges::count(primary, 42), kEepromBytes);
}

TEST_F(WholeDevice, SelectsTheTargetAndKeepsTheDevicesApart) {
    test.program.wholeDevice.ReadEntireEep();
    test.WillAnswer({Answer::Cancel, Answer::Ok});
    test.program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    EXPECT_EQ(test.Status(), "Target EEProm Not Changed - Primary EEP Still Selected");
    EXPECT_EQ(test.Eep(), "Pri");
    EXPECT_FALSE(test.program.cells.IsEmpty(0));
    test.program.wholeDevice.SelectEeprom(TargetDevice::Primary);
    EXPECT_EQ(test.Status(), "Primary EEProm Selected as Target Device");
    EXPECT_FALSE(test.program.cells.IsEmpty(0));

    test.program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    EXPECT_THAT(test.user.TakeBoxes().back(),
                "W A R N I N G|B E   C A R E F U L !\r\nLittle is known about this EEProm.\r\n"
                "Bad data values here could KILL your HDTV!");
    EXPECT_EQ(test.Status(), "Secondary EEProm Selected as Target Device");
    EXPECT_EQ(test.Eep(), "Sec");
    EXPECT_TRUE(test.program.cells.IsEmpty(0));
    test.program.wholeDevice.ReadEntireEep();
    test.program.cells.SetMark(3, Mark::Save);
    for (const auto& [answer, panel] : {std::pair{Answer::No, "Pri"}, {Answer::Yes, "Sec"}}) {
        test.program.wholeDevice.SelectEeprom(TargetDevice::Primary);
        test.WillAnswer({Answer::Ok, answer});
        test.program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
        EXPECT_EQ(test.Eep(), panel);
        EXPECT_EQ(test.user.TakeBoxes().back(),
                  "W A R N I N G|Setting values have been changed, but not archived\r\n"
                  "to a disk or written to an EEProm.\r\n\r\n"
                  "Really select the secondary EEProm without saving the changes?");
    }
    test.program.cells.ShowValue(0, 1);
    test.program.wholeDevice.SelectEeprom(TargetDevice::Primary);
    EXPECT_TRUE(test.program.cells.IsEmpty(0));
}

}  // namespace
}  // namespace tarnwell
