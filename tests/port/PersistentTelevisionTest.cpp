#include "port/PersistentTelevision.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "BitBang.h"
#include "port/FactoryImage.h"
#include "port/LinuxSystemCalls.h"
#include "support/TemporaryFolder.h"

namespace tarnwell {
namespace {

constexpr const char* kFile = "tarnwell/simulated-secondary.bin";
constexpr std::uint16_t kAddress = 77;

class PersistentTelevisionTest : public testing::Test {
  protected:
    static void Write(Port& port, int value) {
        BitBang(port).Write(0xA2, kAddress, {static_cast<std::uint8_t>(value)});
        port.Release();
    }

    static int Read(Port& port) {
        const int value = BitBang(port).Read(0xA2, kAddress, 1).front();
        port.Release();
        return value;
    }

    const int factory_ = FactoryImage(Chip::Secondary)[kAddress];
    TemporaryFolder folder_;
    LinuxSystemCalls system_;
    PersistentTelevision first_{system_, folder_.Path("tarnwell")};
    PersistentTelevision second_{system_, folder_.Path("tarnwell"), {.writeCycle = BusTime(0)}};
};

TEST_F(PersistentTelevisionTest, SavesWhatChangedAndReadsItAnewAtEachClaim) {
    EXPECT_EQ(Read(first_), factory_);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path(kFile)));
    Write(second_, factory_ ^ 0xFF);
    EXPECT_EQ(Read(first_), factory_ ^ 0xFF);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("tarnwell/simulated-primary.bin")));

    std::string content = folder_.Read(kFile);
    ASSERT_EQ(content.size(), 8192U);
    content[kAddress] = 0x12;
    folder_.Write(kFile, content);
    EXPECT_EQ(Read(first_), 0x12);
    for (const std::string& wrong : {content.substr(1), content + "x", std::string()}) {
        folder_.Write(kFile, wrong);
        EXPECT_EQ(Read(first_), factory_);
    }
}

TEST_F(PersistentTelevisionTest, RefusesASecondInstanceWithinASecond) {
    first_.Claim(0x378);
    const auto before = system_.Now();
    second_.Claim(0x3BC);
    EXPECT_LE(system_.Now() - before, std::chrono::seconds(1));
    EXPECT_EQ(second_.Failure(),
              "The simulated television is in use by another program. Close it and try again.");
    EXPECT_EQ(second_.DlPortReadPortUchar(0x3BC), 0xFF);
    first_.Release();
    second_.Claim(0x3BC);
    EXPECT_EQ(second_.Failure(), "");
    EXPECT_EQ(second_.DlPortReadPortUchar(0x3BC), 0x00);
}

TEST_F(PersistentTelevisionTest, WhatCouldNotBeSavedIsToldAndNotLost) {
    const std::string part = folder_.Path(kFile) + ".part";
    std::filesystem::create_directories(part);
    Write(second_, factory_ ^ 0xFF);
    EXPECT_NE(second_.Failure().find("secondary.bin could not be saved"), std::string::npos);
    std::filesystem::remove(part);
    EXPECT_EQ(Read(second_), factory_ ^ 0xFF);
    EXPECT_EQ(second_.Failure(), "");
    EXPECT_EQ(Read(first_), factory_ ^ 0xFF);
}

TEST_F(PersistentTelevisionTest, IsRefusedWhereItsFolderCannotBe) {
    folder_.Write("file", "");
    PersistentTelevision television(system_, folder_.Path("file"));
    television.Claim(0x378);
    EXPECT_NE(television.Failure().find("simulated.lock: Not a directory"), std::string::npos);
}

TEST(DataFolder, FollowsTheDesktopsRule) {
    setenv("HOME", "/home/somebody", 1);
    for (const auto& [dataHome, folder] :
         {std::pair{"", "/home/somebody/.local/share/tarnwell"},
          std::pair{"relative", "/home/somebody/.local/share/tarnwell"},
          std::pair{"/data", "/data/tarnwell"}}) {
        setenv("XDG_DATA_HOME", dataHome, 1);
        EXPECT_EQ(DataFolder(), folder);
    }
}

}  // namespace
}  // namespace tarnwell
