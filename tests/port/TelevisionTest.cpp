// The simulated television, its adapter and bus driven edge by edge; what is saved of it, refused
// and told.
#include "port/simulated/PersistentTelevision.h"

#include <map>
#include <sstream>

#include "core/files/SmallFile.h"
#include "core/user/Number.h"
#include "port/simulated/FactoryImage.h"
#include "port/system/LinuxSystemCalls.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t kBase = 0x378;

class SimulatedTelevisionTest : public testing::Test {
  protected:
    SimulatedTelevisionTest() { tv_.Claim(kBase); }

    /// Drives the master's part of `wire`, written as by ToText, to which the devices add theirs.
    void Expect(const std::string& wire) {
        tv_.Record();
        Play(wire);
        EXPECT_EQ(ToText(tv_.Events()), wire);
    }

    void Play(const std::string& wire) {
        static const std::map<std::string, const char*> edges{
            {"S", "DCdc"}, {"Sr", "DCdc"}, {"P", "dCD"}, {"~1", "DCc"}, {"~7", "DCcCcCcCcCcCcCc"}};
        std::istringstream words(wire);
        for (std::string word; words >> word;) {
            if (edges.contains(word)) {
                Drive(edges.at(word));
                continue;
            }
            const bool reads = word[0] == '<';
            const int sent = reads ? 0xFF : std::stoi(word, nullptr, 16);
            for (int mask = 0x80; mask != 0; mask >>= 1)
                Drive((sent & mask) != 0 ? "DCc" : "dCc");
            for (const char acknowledge : word.substr(reads ? 3 : 2))
                Drive(reads && acknowledge == '+' ? "dCc" : "DCc");
        }
    }

    /// Moves SCL (C) and SDA (D) up, or down (small letters).
    void Drive(const std::string& edges) {
        for (const char edge : edges) {
            const int bit = edge == 'C' || edge == 'c' ? 0x01 : 0x02;
            data_ = edge < 'a' ? data_ & ~bit : data_ | bit;
            tv_.DlPortWritePortUchar(kBase, static_cast<std::uint8_t>(data_));
        }
    }

    SimulatedTelevision tv_;
    EepromImage& primary_ = tv_.Memory(Chip::Primary);
    int data_ = 0;
};

TEST_F(SimulatedTelevisionTest, AReadRunsThroughTheWholeDeviceAndOverItsEnd) {
    const EepromImage image = FactoryImage(Chip::Secondary);
    std::string wire = "S A2+ F3+ 88+ Sr A3+";
    const auto byte = [&](std::size_t i) { return " <" + HexText(image[i % kEepromSize], 2); };
    for (std::size_t i = 0x1388; i < 0x1388 + kEepromSize; ++i)
        wire += byte(i) + "+";
    Expect(wire + byte(0x1388) + "- P S A3+" + byte(0x1389) + "- P");
}

TEST_F(SimulatedTelevisionTest, APageWriteWrapsAndItsCycleAnswersNothing) {
    EepromImage expected = primary_;
    std::string wire = "S A0+ 00+ 47+";
    for (std::uint8_t i = 0; i < 34; ++i) {
        expected[0x40 + (7U + i) % 32] = i;
        wire += " " + HexText(i, 2) + "+";
    }
    Expect(wire + " P");
    const BusTime stop = tv_.Now();
    EXPECT_EQ(primary_, expected);
    EXPECT_EQ(tv_.Memory(Chip::Secondary), FactoryImage(Chip::Secondary));
    Expect("S A0- P S A2+ P");
    tv_.WaitUntil(stop + 3490us);
    tv_.WaitUntil(stop);
    Expect("S A0- P S A1+ <" + HexText(expected[0x49], 2) + "- P");
}

TEST_F(SimulatedTelevisionTest, StoresOnlyAtAStopRightAfterTheAcknowledgeAndForgetsAtAStart) {
    primary_ = {0xFF, 0x00, 0x00};
    primary_[9] = 0xFF;
    for (const char* end : {"5A+ Sr P", "5A+ ~1 P", "5A+ ~7 P", "P"})
        Expect("S A0+ 00+ 09+ " + std::string(end) + " S A0+ P");
    EXPECT_EQ(primary_[9], 0xFF);
    Expect("S A0+ 00+ 00+ Sr ~1 Sr A1+ <FF- P S A1+ <00- <FF+ P S A1+");
    Play("~7");
    EXPECT_FALSE(tv_.Sda()) << "a device in the middle of a zero holds the line";
    Play("~1");
    EXPECT_TRUE(tv_.Sda());
}

TEST_F(SimulatedTelevisionTest, ADeviceThatHasLostClocksWaitsForThem) {
    tv_.Inject({.kind = FaultKind::LostClocks, .begins = {WireEvent::Byte, 1}, .clocks = 2});
    Expect("S A0+");
    for (const bool free : {false, true}) {
        Play("~1");
        EXPECT_EQ(tv_.Sda(), free);
    }
}

constexpr const char* kFile = "tarnwell/simulated-secondary.bin";

/// The kernel's calls; the time passes only while the program sleeps.
struct SleepingTime final : LinuxSystemCalls {
    std::chrono::nanoseconds now{0};
    std::chrono::nanoseconds Now() override { return now; }
    void Sleep(std::chrono::nanoseconds duration) override { now += duration; }
};

class PersistentTelevisionTest : public testing::Test {
  protected:
    /// What the byte is after its bits of `mask` are complemented by one command.
    static int Byte(PersistentTelevision& television, std::uint8_t mask = 0) {
        television.Claim(0x378);
        const int value = television.Memory(Chip::Secondary)[77] ^= mask;
        television.Release();
        return value;
    }
    static void ExpectRefusal(PersistentTelevision& television, int address, const char* line) {
        television.Claim(static_cast<std::uint16_t>(address));
        EXPECT_THAT(television.Failure(), HasSubstr(line));
    }

    const int factory_ = FactoryImage(Chip::Secondary)[77];
    TemporaryFolder folder_;
    SleepingTime system_;
    PersistentTelevision first_{system_, folder_.Path("tarnwell")};
    PersistentTelevision second_{system_, folder_.Path("tarnwell")};
};

TEST_F(PersistentTelevisionTest, SavesWhatChangedAndReadsItAnewAtEachClaim) {
    EXPECT_EQ(Byte(first_), factory_);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path(kFile)));
    Byte(second_, 0xFF);
    EXPECT_EQ(Byte(first_), factory_ ^ 0xFF);
    for (const std::string& wrong : {folder_.Read(kFile) + "x", std::string(8191, 'x')}) {
        folder_.Write(kFile, wrong);
        EXPECT_EQ(Byte(first_), factory_);
    }
}

TEST_F(PersistentTelevisionTest, WhatCannotBeSavedIsToldBeforeItIsVerifiedAndKept) {
    QuietProgram quiet{first_, first_};
    quiet.program.buffer.fill(0x5A);
    quiet.user.file = folder_.Path("image.mot");
    {
        const FullDisk full;
        quiet.program.wholeDevice.WriteEntireEep();
        EXPECT_EQ(quiet.program.statusBar.Text(Panel::Status), "I2C Operation Aborted");
        EXPECT_THAT(quiet.user.lastBox, HasSubstr("primary.bin could not be saved"));
        quiet.program.state.BufferChanged = true;
        quiet.program.imageArchive.SaveImage();
        EXPECT_EQ(quiet.program.statusBar.Text(Panel::Status), "EEProm Image Save Cancelled");
        Byte(second_, 0xFF);
        EXPECT_EQ(folder_.Read("image.mot") + folder_.Read(kFile), "") << "nothing in part";
    }
    EXPECT_EQ(Byte(second_), factory_ ^ 0xFF);
    EXPECT_EQ(Byte(first_), factory_ ^ 0xFF);
    quiet.program.wholeDevice.ReadEntireEep();
    EXPECT_TRUE(folder_.Read("tarnwell/simulated-primary.bin") == std::string(8192, '\x5A'));
}

TEST_F(PersistentTelevisionTest, RefusesASecondInstanceOtherAddressesAndWhatIsNoImage) {
    first_.Claim(0x378);
    ExpectRefusal(second_, 0x3BC,
                  "The simulated television is in use by another program. Close it and try again.");
    EXPECT_GT(system_.Now(), std::chrono::milliseconds(900));
    EXPECT_LE(system_.Now(), std::chrono::seconds(1));
    first_.Release();
    ExpectRefusal(second_, 0x3BC, "");
    EXPECT_EQ(second_.DlPortReadPortUchar(0x3BC), 0x00);
    ExpectRefusal(second_, 0x123, "no parallel port at 123h");

    const std::string large(kSmallFileBytes + 1, 'x');
    folder_.Write(kFile, large);
    Byte(first_, 0xFF);
    EXPECT_TRUE(folder_.Read(kFile) == large);
    ExpectRefusal(first_, 0x378, "secondary.bin is no image");
    PersistentTelevision nowhere(system_, folder_.Path(kFile));
    ExpectRefusal(nowhere, 0x378, "simulated.lock: Not a directory");
    std::filesystem::remove(folder_.Path(kFile));
    std::filesystem::create_directory(folder_.Path(kFile));
    ExpectRefusal(first_, 0x378, "secondary.bin is no image");
}

}  // namespace
}  // namespace tarnwell
