// The simulated adapter, its bus and its two 24C64s, driven edge by edge.
#include "port/SimulatedTelevision.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <set>

#include "BitBang.h"
#include "port/FactoryImage.h"
#include "settings/Catalog.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kPrimary = 0xA0;
constexpr std::uint8_t kSecondary = 0xA2;

class SimulatedTelevisionTest : public testing::Test {
  protected:
    std::uint8_t& Memory(std::size_t address) { return tv_.Memory(Chip::Primary)[address]; }

    bool Answers(std::uint8_t select) {
        bus_.Start();
        const bool acknowledged = bus_.Send(select);
        bus_.Stop();
        return acknowledged;
    }

    std::string Wire() const { return ToText(tv_.Events()); }

    SimulatedTelevision tv_;
    BitBang bus_{tv_};
};

TEST_F(SimulatedTelevisionTest, SequentialReadRunsThroughTheWholeDeviceAndOverItsEnd) {
    const EepromImage image = FactoryImage(Chip::Secondary);
    Bytes expected(image.begin() + 5000, image.end());
    expected.insert(expected.end(), image.begin(), image.begin() + 5001);
    EXPECT_EQ(bus_.Read(kSecondary, 5000, expected.size()), expected);
    EXPECT_EQ(bus_.ReadOn(kSecondary, 1), Bytes{image[5001]});
    EXPECT_EQ(bus_.Read(kPrimary, 0xE000 + 7, 1), Bytes{Memory(7)}) << "top three bits";
}

TEST_F(SimulatedTelevisionTest, PageWriteWrapsWithinItsPage) {
    EepromImage expected = tv_.Memory(Chip::Primary);
    Bytes data(34);
    std::iota(data.begin(), data.end(), std::uint8_t{100});
    bus_.Write(kPrimary, 0x47, data);
    for (std::size_t i = 0; i < data.size(); ++i)
        expected[0x40 + (7 + i) % 32] = data[i];
    EXPECT_EQ(tv_.Memory(Chip::Primary), expected);
    EXPECT_EQ(tv_.Memory(Chip::Secondary), FactoryImage(Chip::Secondary));

    tv_.WaitUntil(tv_.Now() + 4ms);
    EXPECT_EQ(bus_.ReadOn(kPrimary, 1), Bytes{expected[0x49]});
}

TEST_F(SimulatedTelevisionTest, AnswersNothingDuringTheWriteCycle) {
    bus_.Write(kPrimary, 5, {1});
    const BusTime stop = tv_.Now();
    while (!Answers(kPrimary))
        EXPECT_TRUE(Answers(kSecondary));
    EXPECT_GE(tv_.Now() - stop, 3500us);
    EXPECT_LE(tv_.Now() - stop, 3800us);
}

TEST_F(SimulatedTelevisionTest, StoresOnlyAtAStopRightAfterTheAcknowledge) {
    const std::uint8_t old = Memory(9);
    for (const int extraClocks : {0, 1, 7}) {
        bus_.Address(kPrimary, 9);
        bus_.Send(static_cast<std::uint8_t>(~old));
        if (extraClocks == 0)
            bus_.Start();
        for (int clock = 0; clock < extraClocks; ++clock)
            bus_.Clock(false);
        bus_.Stop();
        EXPECT_EQ(Memory(9), old);
        EXPECT_TRUE(Answers(kPrimary));
    }
    bus_.Write(kPrimary, 9, {});
    EXPECT_TRUE(Answers(kPrimary)) << "no data, no write cycle";
    EXPECT_EQ(tv_.Count(WireEvent::WriteCycle), 0U);
}

TEST_F(SimulatedTelevisionTest, AStartAnywhereResetsAndAReadNotAcknowledgedEnds) {
    Memory(0) = 0xFF;
    Memory(1) = 0x00;
    Memory(2) = 0x00;
    bus_.Address(kPrimary, 0);
    bus_.Start();
    bus_.Clock(true);
    EXPECT_EQ(bus_.ReadOn(kPrimary, 1), Bytes{0xFF});
    EXPECT_TRUE(tv_.Sda());

    bus_.Start();
    bus_.Send(kPrimary | 1);
    EXPECT_EQ(bus_.Receive(false), 0x00);
    EXPECT_EQ(bus_.Receive(true), 0xFF) << "lets go of the bus";

    bus_.Start();
    bus_.Send(kPrimary | 1);
    bus_.Clock(true);
    EXPECT_FALSE(tv_.Sda()) << "a device in the middle of a zero holds the line";
    for (int clock = 0; clock < 7; ++clock)
        EXPECT_FALSE(bus_.Clock(true));
    EXPECT_TRUE(tv_.Sda());
}

TEST_F(SimulatedTelevisionTest, TellsBrokenOffBytesAndRepeatedAcknowledgeClocks) {
    tv_.Inject({.kind = FaultKind::LateAcknowledge, .samples = 3});
    tv_.Record();
    bus_.Start();
    EXPECT_FALSE(bus_.Send(kPrimary));
    EXPECT_TRUE(bus_.Clock(true));
    EXPECT_FALSE(bus_.Clock(true)) << "acknowledged";
    bus_.Clock(true);
    bus_.Start();
    bus_.Stop();
    EXPECT_EQ(Wire(), "S A0--+ ~1 Sr P");
}

TEST_F(SimulatedTelevisionTest, AccessesCostTimeAndTakeEffectAtTheirEnd) {
    tv_.Record();
    const BusTime begin = tv_.Now();
    bus_.Scl(false);
    tv_.WaitUntil(begin + 10us);
    tv_.WaitUntil(begin);
    bus_.Sense();
    ASSERT_EQ(tv_.Samples().size(), 2U);
    EXPECT_EQ(tv_.Samples()[0].cause, WireSample::Cause::Scl);
    EXPECT_FALSE(tv_.Samples()[0].scl);
    EXPECT_EQ(tv_.Samples()[0].time - begin, 2us);
    EXPECT_EQ(tv_.Samples()[1].cause, WireSample::Cause::Sensed);
    EXPECT_EQ(tv_.Samples()[1].time - begin, 11us);
}

/// The status register with both lines released, with SCL and with SDA pulled low.
using AdapterRow = std::pair<FaultKind, std::array<int, 3>>;

constexpr AdapterRow kAdapterRows[] = {
    {FaultKind::SclStuckLow, {0xEF, 0xEF, 0xCF}},  {FaultKind::SdaStuckLow, {0xDF, 0xCF, 0xDF}},
    {FaultKind::SclStuckHigh, {0xFF, 0xFF, 0xDF}}, {FaultKind::SdaStuckHigh, {0xFF, 0xEF, 0xFF}},
    {FaultKind::LinesJoined, {0xFF, 0xCF, 0xCF}},  {FaultKind::InputsInverted, {0xCF, 0xDF, 0xEF}},
    {FaultKind::AdapterGone, {0xFF, 0xFF, 0xFF}},
};

TEST_F(SimulatedTelevisionTest, AdapterFaultsShowInTheStatusRegister) {
    const auto sense = [&](std::uint8_t data) -> int {
        tv_.DlPortWritePortUchar(BitBang::kBase, data);
        return tv_.DlPortReadPortUchar(BitBang::kBase + 1);
    };
    for (const auto& [kind, status] : kAdapterRows) {
        tv_.Inject({.kind = kind});
        EXPECT_THAT((std::array{sense(0), sense(1), sense(2)}), status) << static_cast<int>(kind);
        tv_.ClearFaults();
        EXPECT_EQ(sense(0), 0xFF);
        EXPECT_TRUE(Answers(kPrimary));
    }
}

TEST_F(SimulatedTelevisionTest, APortFailureStaysUntilItIsOver) {
    tv_.Inject({.kind = FaultKind::PortFails, .begins = {WireEvent::Access, 3}});
    bus_.Scl(false);
    EXPECT_EQ(tv_.Failure(), "");
    EXPECT_EQ(tv_.DlPortReadPortUchar(BitBang::kBase), 0xFF);
    EXPECT_NE(tv_.Failure(), "");
    tv_.Claim(BitBang::kBase);
    EXPECT_NE(tv_.Failure(), "");
    tv_.ClearFaults();
    tv_.Claim(0x3BC);
    EXPECT_EQ(tv_.Failure(), "");
    EXPECT_EQ(tv_.DlPortReadPortUchar(0x3BC), 0x01);
    EXPECT_EQ(tv_.DlPortReadPortUchar(BitBang::kBase), 0xFF);
}

/// What a write of 33 44 at 20, where 01 02 was, and a read of both look like.
struct DeviceRow {
    Fault fault;
    const char* wire;
    Bytes stored;
};

constexpr Fault Silent(WireEvent event, std::uint64_t count) {
    return {.kind = FaultKind::DeviceSilent, .begins = {event, count}};
}

#define WRITE "S A0+ 00+ 20+ 33+ 44+ P "
#define READ "S A0+ 00+ 20+ Sr A1+ "

const DeviceRow kDeviceRows[] = {
    {{.kind = FaultKind::WrongWrite, .chip = Chip::Secondary},
     WRITE READ "<33+ <44- P",
     {0x33, 0x44}},
    {{.kind = FaultKind::WrongWrite, .mask = 0x81}, WRITE READ "<B2+ <C5- P", {0xB2, 0xC5}},
    {{.kind = FaultKind::LostWrite}, WRITE READ "<01+ <02- P", {1, 2}},
    {{.kind = FaultKind::FlippedBit, .address = 0x21, .mask = 0x10},
     WRITE READ "<33+ <54- P",
     {0x33, 0x44}},
    {{.kind = FaultKind::DeviceSilent}, "S A0- P S A0- P", {1, 2}},
    {Silent(WireEvent::Byte, 3), "S A0+ 00+ 20- P S A0- P", {1, 2}},
    {Silent(WireEvent::WriteCycle, 1), WRITE "S A0- P", {1, 2}},
    {Silent(WireEvent::Read, 1), WRITE READ "<FF+ <FF- P", {0x33, 0x44}},
    {Silent(WireEvent::Clock, 87), WRITE READ "<3F+ <FF- P", {0x33, 0x44}},
};

#undef WRITE
#undef READ

TEST_F(SimulatedTelevisionTest, DeviceFaultsShowOnTheWireAndInTheMemory) {
    tv_.SetWriteCycle(0ms);
    for (const DeviceRow& row : kDeviceRows) {
        Memory(0x20) = 1;
        Memory(0x21) = 2;
        tv_.Inject(row.fault);
        tv_.Record();
        bus_.Write(kPrimary, 0x20, {0x33, 0x44});
        bus_.Read(kPrimary, 0x20, 2);
        EXPECT_EQ(Wire(), row.wire);
        EXPECT_EQ((Bytes{Memory(0x20), Memory(0x21)}), row.stored) << row.wire;
        tv_.ClearFaults();
    }
}

TEST(SimulatedTelevision, WithoutATelevisionOnlyTheAdapterAnswers) {
    SimulatedTelevision tv({.television = Television::Absent});
    BitBang bus(tv);
    bus.Start();
    EXPECT_FALSE(bus.Send(kPrimary));
    tv.Claim(0x123);
    EXPECT_NE(tv.Failure(), "");
    EXPECT_EQ(tv.DlPortReadPortUchar(0x124), 0xFF);
}

TEST(FactoryImage, VariesWithEverySettingInItsRange) {
    const EepromImage image = FactoryImage(Chip::Primary);
    for (const Setting& setting : kCatalog) {
        for (const CellPlace& place : setting.cells) {
            const auto address = static_cast<std::size_t>(place.Exists() ? place.address : 0);
            const int maximum = place.Exists() ? setting.maximum : 0xFF;
            EXPECT_LE(image[address] >> setting.shift, maximum) << setting.code;
        }
    }
    EXPECT_EQ(std::set(image.begin(), image.end()).size(), 256U);
    EXPECT_NE(image, FactoryImage(Chip::Secondary));
}

}  // namespace
}  // namespace tarnwell
