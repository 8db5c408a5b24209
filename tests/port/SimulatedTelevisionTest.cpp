// The simulated adapter, its bus and its two 24C64s, driven edge by edge.
#include "port/SimulatedTelevision.h"

#include <gtest/gtest.h>

#include <sstream>

#include "core/Number.h"
#include "port/FactoryImage.h"
#include "settings/Catalog.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t kBase = 0x378;

class SimulatedTelevisionTest : public testing::Test {
  protected:
    SimulatedTelevisionTest() { tv_.Claim(kBase); }

    /// Drives the master's part of `wire`, written as by ToText, and senses the devices' part.
    std::string Play(const std::string& wire) {
        std::istringstream words(wire);
        std::string sensed;
        for (std::string word; words >> word;)
            sensed += (sensed.empty() ? "" : " ") + PlayWord(word);
        return sensed;
    }

    std::string PlayWord(std::string word) {
        if (word[0] == 'S' || word[0] == 'P')
            Drive(word[0] == 'S' ? "DCdc" : "dCD");
        if (word.find_first_of("SP~") == 0) {
            for (int bits = word[0] == '~' ? word[1] - '0' : 0; bits > 0; --bits)
                Clock(true);
            return word;
        }
        const std::size_t digits = word[0] == '<' ? 1 : 0;
        const int sent = digits == 1 ? 0xFF : std::stoi(word, nullptr, 16);
        unsigned value = 0;
        for (int mask = 0x80; mask != 0; mask >>= 1)
            value = value << 1 | static_cast<unsigned>(Clock((sent & mask) != 0));
        for (std::size_t i = digits + 2; i < word.size(); ++i)
            word[i] = Clock(digits == 0 || word[i] == '-') ? '-' : '+';
        return word.replace(digits, 2, HexText(value, 2));
    }

    bool Clock(bool sda) {
        Drive(sda ? "DC" : "dC");
        const bool sensed = (tv_.DlPortReadPortUchar(kBase + 1) & 0x20) != 0;
        Drive("c");
        return sensed;
    }

    /// Moves SCL (C) and SDA (D) up, or down (small letters).
    void Drive(const std::string& edges) {
        for (const char edge : edges) {
            const int bit = (edge | 0x20) == 'c' ? 0x01 : 0x02;
            const int data = tv_.DlPortReadPortUchar(kBase);
            tv_.DlPortWritePortUchar(
                kBase, static_cast<std::uint8_t>(edge < 'a' ? data & ~bit : data | bit));
        }
    }

    void Expect(const std::string& wire) {
        tv_.Record();
        EXPECT_EQ(Play(wire), wire);
        EXPECT_EQ(ToText(tv_.Events()), wire);
    }

    std::uint8_t& Memory(std::size_t address) { return tv_.Memory(Chip::Primary)[address]; }

    SimulatedTelevision tv_;
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
    EepromImage expected = tv_.Memory(Chip::Primary);
    std::string wire = "S A0+ 00+ 47+";
    for (std::uint8_t i = 0; i < 34; ++i) {
        expected[0x40 + (7U + i) % 32] = i;
        wire += " " + HexText(i, 2) + "+";
    }
    Expect(wire + " P");
    const BusTime stop = tv_.Now();
    EXPECT_EQ(tv_.Memory(Chip::Primary), expected);
    EXPECT_EQ(tv_.Memory(Chip::Secondary), FactoryImage(Chip::Secondary));
    Expect("S A0- P S A2+ P");
    tv_.WaitUntil(stop + 3490us);
    tv_.WaitUntil(stop);
    Expect("S A0- P S A1+ <" + HexText(expected[0x49], 2) + "- P");
}

TEST_F(SimulatedTelevisionTest, StoresOnlyAtAStopRightAfterTheAcknowledge) {
    Memory(9) = 0xFF;
    for (const char* end : {"5A+ Sr P", "5A+ ~1 P", "5A+ ~7 P", "P"})
        Expect("S A0+ 00+ 09+ " + std::string(end) + " S A0+ P");
    EXPECT_EQ(Memory(9), 0xFF);
    EXPECT_EQ(tv_.Count(WireEvent::WriteCycle), 0U);
}

TEST_F(SimulatedTelevisionTest, AStartAnywhereResetsAndAReadNotAcknowledgedEnds) {
    tv_.Memory(Chip::Primary) = {0xFF, 0x00, 0x00};
    Expect("S A0+ 00+ 00+ Sr ~1 Sr A1+ <FF- P S A1+ <00- <FF+ P");
    Play("S A1+ ~7");
    EXPECT_FALSE(tv_.Sda()) << "a device in the middle of a zero holds the line";
    Play("~1");
    EXPECT_TRUE(tv_.Sda());
}

TEST_F(SimulatedTelevisionTest, APortFailureStaysUntilItIsOver) {
    tv_.Inject({.kind = FaultKind::PortFails, .begins = {WireEvent::Access, 3}});
    Drive("cC");
    EXPECT_NE(tv_.Failure(), "");
    tv_.Claim(kBase);
    EXPECT_NE(tv_.Failure(), "");
    tv_.ClearFaults();
    tv_.Claim(0x3BC);
    EXPECT_EQ(tv_.Failure(), "");
    EXPECT_EQ(tv_.DlPortReadPortUchar(0x3BC), 0x01);
    EXPECT_EQ(tv_.DlPortReadPortUchar(kBase), 0xFF);
}

TEST_F(SimulatedTelevisionTest, DeviceFaultsShowOnTheWireAndInTheMemory) {
    const std::string write = "S A0+ 00+ 20+ 33+ 44+ P ";
    const std::string both = write + "S A0+ 00+ 20+ Sr A1+ ";
    const auto silent = [](WireEvent event, std::uint64_t count) {
        return Fault{.kind = FaultKind::DeviceSilent, .begins = {event, count}};
    };
    const struct {
        Fault fault;
        std::string wire;
        int stored;  ///< in place of 01 02
    } rows[] = {
        {{.kind = FaultKind::WrongWrite, .chip = Chip::Secondary}, both + "<33+ <44- P", 0x3344},
        {{.kind = FaultKind::WrongWrite, .mask = 0x81}, both + "<B2+ <C5- P", 0xB2C5},
        {{.kind = FaultKind::LostWrite}, both + "<01+ <02- P", 0x0102},
        {{.kind = FaultKind::FlippedBit, .address = 0x21}, both + "<33+ <45- P", 0x3344},
        {{.kind = FaultKind::LateAcknowledge, .samples = 3}, "S A0--+ ~1 Sr P", 0x0102},
        {{.kind = FaultKind::DeviceSilent}, "S A0- P S A0- P", 0x0102},
        {silent(WireEvent::Byte, 3), "S A0+ 00+ 20- P S A0- P", 0x0102},
        {silent(WireEvent::WriteCycle, 1), write + "S A0- P", 0x0102},
        {silent(WireEvent::Read, 1), both + "<FF+ <FF- P", 0x3344},
        {silent(WireEvent::Clock, 87), both + "<3F+ <FF- P", 0x3344},
    };
    tv_.SetWriteCycle(0ms);
    for (const auto& row : rows) {
        Memory(0x20) = 1;
        Memory(0x21) = 2;
        tv_.Inject(row.fault);
        Expect(row.wire);
        EXPECT_EQ(Memory(0x20) << 8 | Memory(0x21), row.stored) << row.wire;
        tv_.ClearFaults();
    }
}

TEST(FactoryImage, HoldsEverySettingInItsRange) {
    const EepromImage image = FactoryImage(Chip::Primary);
    for (const Setting& setting : kCatalog) {
        for (const CellPlace& place : setting.cells) {
            if (place.Exists())
                EXPECT_LE(image.at(static_cast<std::size_t>(place.address)) >> setting.shift,
                          setting.maximum);
        }
    }
    EXPECT_NE(image, FactoryImage(Chip::Secondary));
}

}  // namespace
}  // namespace tarnwell
