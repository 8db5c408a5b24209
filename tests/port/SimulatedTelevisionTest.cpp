// The simulated adapter, its bus and its two 24C64s, driven edge by edge.
#include "port/simulated/SimulatedTelevision.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "core/Number.h"
#include "port/simulated/FactoryImage.h"
#include "settings/Catalog.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t kBase = 0x378;

class SimulatedTelevisionTest : public testing::Test {
  protected:
    SimulatedTelevisionTest() { tv_.Claim(kBase); }

    /// Drives the master's part of `wire`, written as by ToText, and senses the devices' part.
    void Expect(const std::string& wire) {
        std::istringstream words(wire);
        std::string sensed;
        tv_.Record();
        for (std::string word; words >> word;)
            sensed += (sensed.empty() ? "" : " ") + Play(word);
        EXPECT_EQ(sensed, wire);
        EXPECT_EQ(ToText(tv_.Events()), wire);
    }

    std::string Play(const std::string& word) {
        static const std::map<std::string, const char*> edges{
            {"S", "DCdc"}, {"Sr", "DCdc"}, {"P", "dCD"}, {"~1", "DCc"}, {"~7", "DCcCcCcCcCcCcCc"}};
        if (!edges.contains(word))
            return PlayByte(word);
        Drive(edges.at(word));
        return word;
    }

    std::string PlayByte(std::string word) {
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
            const int bit = edge == 'C' || edge == 'c' ? 0x01 : 0x02;
            data_ = edge < 'a' ? data_ & ~bit : data_ | bit;
            tv_.DlPortWritePortUchar(kBase, static_cast<std::uint8_t>(data_));
        }
    }

    SimulatedTelevision tv_;
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
    tv_.Memory(Chip::Primary)[9] = 0xFF;
    for (const char* end : {"5A+ Sr P", "5A+ ~1 P", "5A+ ~7 P", "P"})
        Expect("S A0+ 00+ 09+ " + std::string(end) + " S A0+ P");
    EXPECT_EQ(tv_.Memory(Chip::Primary)[9], 0xFF);
}

TEST_F(SimulatedTelevisionTest, AStartAnywhereResetsAndAReadNotAcknowledgedEnds) {
    tv_.Memory(Chip::Primary) = {0xFF, 0x00, 0x00};
    Expect("S A0+ 00+ 00+ Sr ~1 Sr A1+ <FF- P S A1+ <00- <FF+ P S A1+");
    Play("~7");
    EXPECT_FALSE(tv_.Sda()) << "a device in the middle of a zero holds the line";
    Play("~1");
    EXPECT_TRUE(tv_.Sda());
}

TEST_F(SimulatedTelevisionTest, DeviceFaultsShowOnTheWire) {
    tv_.SetWriteCycle(0ms);
    tv_.Inject({.kind = FaultKind::WrongWrite, .mask = 0x81});
    tv_.Inject({.kind = FaultKind::WrongWrite, .chip = Chip::Secondary, .mask = 0x42});
    Expect("S A0+ 00+ 20+ 33+ 44+ P S A0+ 00+ 20+ Sr A1+ <B2+ <C5- P");
    EXPECT_EQ(tv_.Memory(Chip::Primary)[0x22], FactoryImage(Chip::Primary)[0x22]);
    tv_.Inject({.kind = FaultKind::LateAcknowledge, .samples = 3});
    Expect("S A0--+ ~1 Sr P");
}

TEST(FactoryImage, HoldsEverySettingInItsRange) {
    const EepromImage image = FactoryImage(Chip::Primary);
    for (const Setting& setting : kCatalog) {
        for (const CellPlace& place : setting.cells) {
            const int byte = place.Exists() ? image.at(static_cast<std::size_t>(place.address)) : 0;
            EXPECT_LE(byte >> setting.shift, setting.maximum) << setting.code;
        }
    }
    EXPECT_NE(image, FactoryImage(Chip::Secondary));
}

}  // namespace
}  // namespace tarnwell
