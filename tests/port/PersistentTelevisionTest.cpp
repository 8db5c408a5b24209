#include "port/simulated/PersistentTelevision.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/files/SmallFile.h"
#include "port/simulated/FactoryImage.h"
#include "port/system/LinuxSystemCalls.h"
#include "support/FullDisk.h"
#include "support/Instance.h"

namespace tarnwell {
namespace {

constexpr const char* kFile = "tarnwell/simulated-secondary.bin";

/// The kernel's calls; the time passes only while the program sleeps.
class SleepingTime final : public LinuxSystemCalls {
  public:
    std::chrono::nanoseconds Now() override { return now_; }
    void Sleep(std::chrono::nanoseconds duration) override { now_ += duration; }

  private:
    std::chrono::nanoseconds now_{0};
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

TEST_F(PersistentTelevisionTest, RefusesASecondInstanceWithinASecondAndOtherAddresses) {
    first_.Claim(0x378);
    second_.Claim(0x3BC);
    EXPECT_GT(system_.Now(), std::chrono::milliseconds(900));
    EXPECT_LE(system_.Now(), std::chrono::seconds(1));
    EXPECT_EQ(second_.Failure(),
              "The simulated television is in use by another program. Close it and try again.");
    first_.Release();
    second_.Claim(0x3BC);
    EXPECT_EQ(second_.DlPortReadPortUchar(0x3BC), 0x00);
    second_.Claim(0x123);
    EXPECT_THAT(second_.Failure(), testing::HasSubstr("no parallel port at 123h"));
}

TEST_F(PersistentTelevisionTest, WhatCannotBeSavedIsToldBeforeItIsVerifiedAndKept) {
    Instance instance{folder_.Path()};
    instance.program.buffer.fill(0x5A);
    {
        const FullDisk full;
        instance.program.wholeDevice.WriteEntireEep();
        EXPECT_EQ(instance.program.statusBar.Text(Panel::Status), "I2C Operation Aborted");
        EXPECT_THAT(instance.quiet.user.lastBox,
                    testing::HasSubstr("primary.bin could not be saved"));
        Byte(second_, 0xFF);
    }
    EXPECT_EQ(Byte(second_), factory_ ^ 0xFF);
    EXPECT_EQ(Byte(first_), factory_ ^ 0xFF);
    instance.program.wholeDevice.ReadEntireEep();
    EXPECT_TRUE(folder_.Read("tarnwell/simulated-primary.bin") == std::string(8192, '\x5A'));
}

TEST_F(PersistentTelevisionTest, RefusesWhatIsNoImageAndLeavesItAlone) {
    const std::string large(kSmallFileBytes + 1, 'x');
    folder_.Write(kFile, large);
    Byte(first_, 0xFF);
    EXPECT_THAT(first_.Failure(), testing::HasSubstr("secondary.bin is no image"));
    EXPECT_TRUE(folder_.Read(kFile) == large);
    PersistentTelevision nowhere(system_, folder_.Path(kFile));
    nowhere.Claim(0x378);
    EXPECT_THAT(nowhere.Failure(), testing::HasSubstr("simulated.lock: Not a directory"));
    std::filesystem::remove(folder_.Path(kFile));
    std::filesystem::create_directory(folder_.Path(kFile));
    first_.Claim(0x378);
    EXPECT_THAT(first_.Failure(), testing::HasSubstr("secondary.bin is no image"));
}

}  // namespace
}  // namespace tarnwell
