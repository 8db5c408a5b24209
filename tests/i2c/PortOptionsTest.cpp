// Every pin-options string, the conflict rule, and the port options' buttons.
#include "i2c/PortOptions.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum PinPosition;

const std::string kConflict = "E R R O R - Port Conflict|";

/// Two bare registers, written only while they are claimed, and what SCL was last sensed as.
struct TwoRegisters final : Port, BusTrace {
    std::uint8_t data = 0, status = 0;
    Level scl{};
    bool claimed = false;
    std::string failure;

    void Claim(std::uint16_t) override { claimed = true; }
    void Release() override { claimed = false; }
    const std::string& Failure() const override { return failure; }
    std::uint8_t DlPortReadPortUchar(std::uint16_t address) override {
        return address == 0x378 ? data : status;
    }
    void DlPortWritePortUchar(std::uint16_t, std::uint8_t value) override {
        data = claimed ? value : data;
    }
    void Sensed(Level sensed, Level) override { scl = sensed; }
};

class PortOptionsTest : public testing::Test {
  protected:
    void Load(const std::string& digits) {
        state_.pinOptions = digits;
        options_.Load();
    }
    bool Accept() { return options_.Accept() == PortOptions::Accepted::Yes; }

    TestProgram t_;
    ProgramState& state_ = t_.program.state;
    TwoRegisters port_;
    mI2Ccode i2c_{{port_, t_.television, port_}, state_, t_.program.statusBar, t_.user};
    PortOptions options_{state_, t_.program.statusBar, t_.user, i2c_};
};

TEST_F(PortOptionsTest, EveryStringDrivesAndSensesAsItsDigitsSayAndOnlyThoseWithoutConflictPass) {
    int passed = 0;
    for (unsigned number = 0; number < 25600 && !HasFailure(); ++number) {
        std::array<unsigned, 8> d{};
        std::string digits;
        for (unsigned rest = number, i = 0; i < 8; ++i) {
            const unsigned count = i % 2 == 1 ? 2 : i < 4 ? 8 : 5;
            d[i] = rest % count;
            rest /= count;
            digits += static_cast<char>('0' + d[i]);
        }
        SCOPED_TRACE(digits);
        Load(digits);
        const bool conflictIn = d[4] == d[6];
        const bool conflict = d[0] == d[2] || conflictIn;
        ASSERT_EQ(Accept(), !conflict);
        ASSERT_EQ(t_.user.TakeBoxes().size(), conflict ? 1 : 0);
        ASSERT_EQ(state_.pinOptions, digits);
        passed += conflict ? 0 : 1;

        const BusClaim claim(i2c_);
        i2c_.ApplyPortOptions();
        ASSERT_EQ(i2c_.Pins().ClockInMask, 8U << d[6]);
        for (const unsigned level : {0U, 1U}) {
            const auto driven = static_cast<std::int16_t>(level * 0x40);
            port_.data = 0x5A;
            i2c_.SetSDA(driven);
            ASSERT_EQ(port_.data, (0x5A & ~(1U << d[0])) | (level ^ d[1]) << d[0]);
            port_.data = 0x5A;
            i2c_.SetSCL(driven);
            ASSERT_EQ(port_.data, (0x5A & ~(1U << d[2])) | (level ^ d[3]) << d[2]);

            port_.status = static_cast<std::uint8_t>((8U << d[4]) ^ (level - 1));
            ASSERT_EQ(i2c_.ReadAck() == AckBit::NotAcknowledged, level != d[5]);
            const bool sclBit = (level == 1) == conflictIn;
            ASSERT_EQ(port_.scl == Level::High, sclBit != (d[7] != (d[6] == 4)));
            ASSERT_EQ(i2c_.ReadByte(), (level ^ d[5] ^ (d[4] == 4 ? 1 : 0)) * 255);
        }
    }
    EXPECT_EQ(passed, 17920);
}

TEST_F(PortOptionsTest, ThePinOfTheOtherLineIsRefusedAndMustBeReplacedBeforeAccept) {
    for (const auto& [clicked, other, lines, heading] :
         {std::tuple(ClockOut, DataOut, std::string("SCL and SDA"), "Output Pin Assignments\r\n"),
          {DataOut, ClockOut, "SDA and SCL", "Output Pin Assignments\r\n"},
          {ClockIn, DataIn, "SCL and SDA", "Input Pin Assignments\r\n"},
          {DataIn, ClockIn, "SDA and SCL", "Input Pin Assignments\r\n"}}) {
        Load("11012010");
        const auto taken = options_.Selected(other);
        options_.Show(options_.Select(clicked, taken.value()).value());
        EXPECT_EQ(options_.Selected(clicked), std::nullopt);
        EXPECT_EQ(options_.Selected(other), taken);
        EXPECT_FALSE(Accept());
        EXPECT_EQ(state_.pinOptions, "11012010");
        const std::string ending = " pin for " + lines.substr(0, 3) + ".";
        EXPECT_THAT(t_.user.TakeBoxes(),
                    testing::ElementsAre(kConflict + "You can't use the same port pin for both " +
                                             lines + "!\r\n\r\nPlease select a different" + ending,
                                         kConflict + heading + "Please select a" + ending));
        EXPECT_EQ(options_.Select(clicked, 3), std::nullopt);
        EXPECT_TRUE(Accept());
    }
}

TEST(PortAddressValue, IsThatOfSixteenBitsOrNone) {
    for (const auto& [text, value] : {std::pair("65535", 65535), {"65536", 0}, {"0", 0}, {"-1", 0}})
        EXPECT_EQ(PortAddressValue(text), value);
}

TEST_F(PortOptionsTest, StoredStringsLoadWithoutABoxAndButtonsReleaseBothLines) {
    for (const auto& [stored, shown] : {std::pair{"", "00-000-0"},
                                        {"8190517", "01-001-0"},
                                        {"7x3 4-29", "70304021"},
                                        {"10122010", "10-12010"}}) {
        Load(stored);
        std::string selections;
        for (const PinGroup& group : kPinGroups) {
            const auto index = options_.Selected(group.position);
            selections += index ? std::to_string(*index) : "-";
        }
        EXPECT_EQ(selections, shown) << stored;
    }
    Load("51202010");
    port_.data = 0xA1;
    EXPECT_TRUE(Accept());
    EXPECT_EQ(port_.data, 0x85) << "SCL's bit 2 set, SDA's inverted bit 5 cleared";
    EXPECT_FALSE(port_.claimed);
    EXPECT_EQ(t_.Status(), "Port Configuration Settings Changed");
    options_.Defaults();
    EXPECT_EQ(port_.data, 0x84);
    EXPECT_EQ(state_.pinOptions + t_.Status(), "11012010Port Configuration Set to Defaults");
    EXPECT_TRUE(t_.user.boxes.empty());
}

}  // namespace
}  // namespace tarnwell
