// The checksum, and the commands on a whole device with their texts and outcomes.
#include <algorithm>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

TEST(Crc32, IsTakenOverTheHexadecimalText) {
    using namespace mCRC32;
    EXPECT_EQ(CrcFinal(CrcAddText("123456789", MakeCrcTable())), 0xCBF43926U);
    MemoryBuffer buffer{};
    buffer[8192] = 7;
    EXPECT_EQ(BufferCrcText(buffer), "15A36921");
    buffer.fill(0xFF);
    EXPECT_EQ(BufferCrcText(buffer), "A87C97F3");
    MemoryBuffer other = buffer;
    std::tie(buffer[5], buffer[6], other[5], other[6]) = std::tuple(0x01, 0x23, 0x12, 0x03);
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

struct WholeDeviceTest : testing::Test, TestProgram {
    EepromImage& primary = television.Memory(Chip::Primary);
    EepromImage& secondary = television.Memory(Chip::Secondary);

    WholeDeviceTest() : TestProgram({.writeCycle = 300us}) {
        for (std::size_t address = 0; address < primary.size(); ++address)
            primary[address] = static_cast<std::uint8_t>(address * 7 + address / 256);
        program.wholeDevice.ReadEntireEep();
    }
};

TEST_F(WholeDeviceTest, WritesOrFillsTheTargetAndVerifiesIt) {
    const std::string ask =
        "V E R I F Y|Write memory buffer to EEProm?\r\nPrimary EEProm on LPT1: 8,192 bytes; ";
    const std::string writing =
        "Please Wait, Writing Buffer to EEProm...; EEP Write Complete, Now Verifing Data...; ";
    const std::string filling =
        "Please Wait, Writing Fill Value to EEProm...; Please Wait, Verifing Fill Value...; ";
    const std::string failed =
        "E R R O R - Verify Failed|EEProm data verification failed;\r\n"
        "The EEProm was not programmed correctly, try again.; ERROR: EEP and ";
    const std::string done = "EEP Verified OK; EEProm Write Successful";
    const std::string differs = "Memory Buffer Values Do Not Match!; 1 byte differs.\nAddress ";
    const Fault flips{.kind = FaultKind::FlippedBit, .address = 8191, .mask = 0x10};
    const MemoryBuffer before = program.buffer;
    user.ignoresDoubts = true;
    std::string story;  // what the status line told meanwhile, and the boxes
    const auto tell = [&](const std::string& line) {
        if (!story.ends_with(line + "; "))
            story += line + "; ";
    };
    user.onPainting = [&] { tell(Status()); };
    user.onBox = [&](const Box& box) {
        tell(box.title + "|" + std::string(box.text));
        if (box.style != BoxStyle::Critical)
            return;
        EXPECT_EQ(timer.running, 30s);
        tell(Status());
        tell(box.details);
    };
    using enum NumberMode;
    for (const auto& [fill, fault, mode, told, held] :
         {std::tuple("no", Fault{}, Decimal, ask + "EEProm Write Cancelled", -1),
          {"7", {}, Decimal, "Please Wait, Reading the EEPROM Again...; " + filling + done, 7},
          {"42", {}, Decimal, filling + done, 42},
          {"256", {}, Decimal, "E R R O R|Please enter a whole number from 0 to 255.; ", 42},
          {"", {}, Decimal, "EEProm Write Cancelled", 42},
          {"43",
           {FaultKind::LostWrite},
           Decimal,
           filling + failed + "Desired Value Do Not Match!; 8192 bytes differ.\nAddress 0:",
           42},
          {"yes", {}, Decimal, ask + writing + done, -1},
          {"yes", flips, Hex, ask + writing + failed + differs + "1FFF: wrote 18, read 8", -1},
          {"yes", flips, Decimal, ask + writing + failed + differs + "8191: wrote 24, read 8",
           -1}}) {
        if (fault.kind != Fault{}.kind)
            television.Inject(fault);
        program.numberModeMenu.Select(mode);
        story.clear();
        const bool fills = std::isdigit(*fill) != 0 || *fill == '\0';
        user.texts = {*fill == '\0' ? std::nullopt : std::optional<std::string>(fill)};
        user.answers = {*fill == 'y' ? Answer::Yes : Answer::Cancel};
        fills ? program.wholeDevice.FillEntireEep() : program.wholeDevice.WriteEntireEep();
        EXPECT_TRUE((story + Status()).starts_with(told)) << story << Status();
        EXPECT_TRUE(held < 0 ? std::equal(primary.begin(), primary.end(), before.begin())
                             : std::ranges::count(primary, held) == kEepromBytes);
        EXPECT_EQ(program.buffer, before);
        television.ClearFaults();
    }
    EXPECT_EQ(user.beeps, 3);
    EXPECT_GE(user.paintings, 12 * kEepromBytes / 2);
}

TEST_F(WholeDeviceTest, WritesOfAFewBytesThatGoWrongTellWhatElseHasChanged) {
    for (const auto kind : {FaultKind::WrongWrite, FaultKind::SdaStuckLow, FaultKind::LostWrite}) {
        for (const bool settings : {true, false}) {
            const bool isWell = kind == FaultKind::LostWrite;
            television.ClearFaults();
            program.wholeDevice.ReadEntireEep();
            program.cells.ShowValue(0, 7);
            program.cells.SetMark(0, Mark::Save);
            program.pending.ClearPendingWrites();
            program.pending.AddPendingWrite({5, {0}, {90}});
            primary[9] ^= 1;  // as a write that took another way would do
            if (!isWell)
                television.Inject(
                    {.kind = kind, .begins = {WireEvent::WriteCycle, 1}, .accesses = 30});
            const std::uint64_t reads = television.Count(WireEvent::Read);
            Box last = Message{"", "E R R O R", BoxStyle::Exclamation};
            user.onBox = [&](const Box& box) {
                if (box.style != BoxStyle::YesNoQuestion)
                    last = box;
            };
            user.answers = {Answer::Yes};
            settings ? program.settings.WriteSettingsToEep() : program.pending.WritePending();
            EXPECT_EQ(television.Count(WireEvent::Read) - reads == 1, isWell);
            const std::string told = "1 other byte has changed.\nAddress 9: held " +
                                     std::to_string(primary[9] ^ 1) + ", read " +
                                     std::to_string(primary[9]);
            EXPECT_TRUE(isWell ? last.details.empty() : last.details.ends_with(told))
                << last.details;
            EXPECT_EQ(last.details.starts_with("1 byte differs.\nAddress "),
                      kind == FaultKind::WrongWrite);
        }
    }
}

TEST_F(WholeDeviceTest, StopsWhereTheUserWantsAndTellsHowFarItCame) {
    for (const auto& [command, status, paintings, rest] :
         {std::tuple("r", "Please Wait, Reading", 3, ""),
          {"r", "Please Wait, Reading the EEPROM Again", 2, ""},
          {"f", "Please Wait, Writing Fill", 70, ""},
          {"w", "Please Wait, Writing", 70, "\r\nWrite Differences to EEP writes the rest."},
          {"w", "EEP Write Complete", 1, "\r\nWrite Differences to EEP writes the rest."},
          {"d", "Please Wait, Writing", 7, "\r\nWrite Differences to EEP writes the rest."}}) {
        SCOPED_TRACE(status);
        primary.fill(0xAA);
        user.ignoresDoubts = true;
        user.onPainting = nullptr;
        program.state.readPasses = 2;
        program.wholeDevice.ReadEntireEep();
        const bool reads = *command == 'r';
        program.buffer.fill(*command == 'f' ? 0xAA : 0x55);
        const auto before = program.buffer;
        user.TakeBoxes();
        user.texts = {"85"};
        user.answers = {Answer::Yes};
        user.onPainting = [&, status = status, left = paintings]() mutable {
            if (Status().starts_with(status) && --left == 0)
                user.stopsAt = user.paintings;
        };
        reads             ? program.wholeDevice.ReadEntireEep()
        : *command == 'f' ? program.wholeDevice.FillEntireEep()
        : *command == 'w' ? program.wholeDevice.WriteEntireEep()
                          : program.writeDifferences.WriteDifferencesToEep();
        const auto written = static_cast<int>(std::ranges::count(primary, 0x55));
        EXPECT_EQ(written > 0, !reads);
        EXPECT_EQ(written == kEepromBytes, status == std::string_view("EEP Write Complete"));
        EXPECT_EQ(Status(), "I2C Operation Stopped");
        EXPECT_EQ(program.buffer, before);
        const std::string count = std::to_string(written);
        const std::string all = *command == 'd' ? "8192" : count;
        const auto boxes = user.TakeBoxes();
        EXPECT_EQ(boxes.empty() ? "" : boxes.back(),
                  reads ? ""
                        : "I N F O|The operation was stopped.\r\n" + count +
                              " bytes were written.\r\nBytes confirmed on the EEProm: " + count +
                              " of " + all + "." + rest);
    }
    user.answers = {Answer::Yes};
    program.writeDifferences.WriteDifferencesToEep();
    EXPECT_THAT(Status(), StartsWith("EEP Verified OK; "));
    EXPECT_EQ(std::ranges::count(primary, 0x55), kEepromBytes);
}

TEST_F(WholeDeviceTest, SelectsTheTargetAndKeepsTheDevicesApart) {
    const auto select = [&](TargetDevice device, std::initializer_list<Answer> answers) {
        WillAnswer(answers);
        program.wholeDevice.SelectEeprom(device);
        return Eep() + " " + Status() + program.cells.Caption(0);
    };
    using enum TargetDevice;
    using enum Answer;
    secondary[2363] = 77;
    const std::string selected = "Primary EEProm Selected as Target Device";
    const std::string other = "Sec Secondary EEProm Selected as Target Device";
    const std::string value = std::to_string(primary[2363]);
    EXPECT_EQ(Crc(), mCRC32::BufferCrcText(program.buffer));
    EXPECT_TRUE(program.state.EepRead && !program.state.BufferChanged);
    EXPECT_EQ(select(Secondary, {Cancel}),
              "Pri Target EEProm Not Changed - Primary EEP Still Selected" + value);
    EXPECT_EQ(select(Primary, {}), "Pri " + selected + value);
    EXPECT_EQ(select(Secondary, {Ok}), other);
    EXPECT_EQ(user.TakeBoxes().back(),
              "W A R N I N G|B E   C A R E F U L !\r\nLittle is known about this EEProm.\r\n"
              "Bad data values here could KILL your HDTV!");
    program.wholeDevice.ReadEntireEep();
    EXPECT_EQ(program.buffer[2363], 77);
    program.cells.SetMark(3, Mark::Save);
    EXPECT_EQ(select(Primary, {}), "Pri " + selected);
    EXPECT_THAT(select(Secondary, {Ok, No}), StartsWith("Pri "));
    EXPECT_EQ(user.TakeBoxes().back(),
              "W A R N I N G|Setting values have been changed, but not archived\r\n"
              "to a disk or written to an EEProm.\r\n\r\n"
              "Really select the secondary EEProm without saving the changes?");
    EXPECT_EQ(select(Secondary, {Ok, Yes}), other);
    program.cells.ShowValue(0, 1);
    EXPECT_EQ(select(Primary, {}), "Pri " + selected);
}

}  // namespace
}  // namespace tarnwell
