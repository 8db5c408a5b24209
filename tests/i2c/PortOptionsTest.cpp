// Every pin-options string, the conflict rule, and the port options' buttons.
#include "i2c/PortOptions.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum PinPosition;
using testing::ElementsAre;
using testing::IsEmpty;

/// Two bare registers, reached only while they are claimed.
class TwoRegisters final : public Port, public Clock {
  public:
    std::uint8_t data = 0;
    std::uint8_t status = 0;
    bool claimed = false;
    std::string failure;

    void Claim(std::uint16_t) override { claimed = true; }
    void Release() override { claimed = false; }
    const std::string& Failure() const override { return failure; }
    std::uint8_t DlPortReadPortUchar(std::uint16_t address) override {
        return address == 0x378 ? data : status;
    }
    void DlPortWritePortUchar(std::uint16_t, std::uint8_t value) override {
        if (claimed)
            data = value;
    }
    BusTime Now() override { return now_; }
    void WaitUntil(BusTime time) override { now_ = time; }

  private:
    BusTime now_{0};
};

class PortOptionsTest : public testing::Test {
  protected:
    PortOptionsTest() {
        state_.portAddress = "888";
        state_.pinOptions = "11012010";
        options_.Load();
    }

    std::string Status() const { return std::string(statusBar_.Text(Panel::Status)); }

    ProgramState state_;
    TestSurroundings outside_;
    ManualTimer timer_;
    ScriptedUser user_;
    TwoRegisters port_;
    StatusBar statusBar_{state_, outside_, timer_};
    mI2Ccode i2c_{port_, port_, state_, statusBar_, user_};
    PortOptions options_{state_, statusBar_, user_, i2c_};
};

/// The meaning of eight digits, worked out bit by bit.
struct Wiring {
    unsigned dataOut, dataOutInverted, clockOut, clockOutInverted;
    unsigned dataIn, dataInInverted, clockIn, clockInInverted;

    explicit Wiring(unsigned number) {
        const auto next = [&number](unsigned count) {
            const unsigned digit = number % count;
            number /= count;
            return digit;
        };
        dataOut = next(8), dataOutInverted = next(2), clockOut = next(8);
        clockOutInverted = next(2), dataIn = next(5), dataInInverted = next(2);
        clockIn = next(5), clockInInverted = next(2);
    }

    std::string Digits() const {
        std::string digits;
        for (const unsigned digit : {dataOut, dataOutInverted, clockOut, clockOutInverted, dataIn,
                                     dataInInverted, clockIn, clockInInverted})
            digits += static_cast<char>('0' + digit);
        return digits;
    }

    bool Conflicts() const { return dataOut == clockOut || dataIn == clockIn; }
};

TEST_F(PortOptionsTest, EveryStringDrivesAndSensesAsItsDigitsSayAndOnlyThoseWithoutConflictPass) {
    int passed = 0;
    int refused = 0;
    for (unsigned number = 0; number < 25600 && !HasFailure(); ++number) {
        const Wiring wiring(number);
        SCOPED_TRACE(wiring.Digits());
        state_.pinOptions = wiring.Digits();
        options_.Load();
        const bool accepted = options_.Accept() == PortOptions::Accepted::Yes;
        ++(accepted ? passed : refused);
        ASSERT_EQ(accepted, !wiring.Conflicts());
        ASSERT_EQ(user_.TakeBoxes().size(), accepted ? 0 : 1);
        ASSERT_EQ(state_.pinOptions, wiring.Digits());

        const BusClaim claim(i2c_);
        i2c_.ApplyPortOptions();
        for (const bool high : {false, true}) {
            const unsigned level = high ? 1 : 0;
            const std::int16_t signal = high ? 0x40 : 0;
            const unsigned other = 0x5A;
            port_.data = other;
            i2c_.SetSDA(signal);
            ASSERT_EQ(port_.data, (other & ~(1U << wiring.dataOut)) |
                                      (level ^ wiring.dataOutInverted) << wiring.dataOut);
            port_.data = other;
            i2c_.SetSCL(signal);
            ASSERT_EQ(port_.data, (other & ~(1U << wiring.clockOut)) |
                                      (level ^ wiring.clockOutInverted) << wiring.clockOut);

            const unsigned bit = 8U << wiring.dataIn;
            port_.status = static_cast<std::uint8_t>(high ? bit : ~bit);
            ASSERT_EQ(i2c_.ReadAck() == AckBit::NotAcknowledged, level != wiring.dataInInverted);
            const unsigned complement = wiring.dataIn == 4 ? 1 : 0;
            ASSERT_EQ(i2c_.ReadByte(), (level ^ complement ^ wiring.dataInInverted) * 255);
        }
        ASSERT_EQ(i2c_.Pins().ClockInMask, 8U << wiring.clockIn);
        ASSERT_EQ(i2c_.Pins().ClockInInverted, wiring.clockInInverted != 0);
    }
    EXPECT_EQ(passed, 17920);
    EXPECT_EQ(refused, 7680);
}

TEST_F(PortOptionsTest, StoredStringsThatTheDialogNeverMadeLoadWithoutABox) {
    struct Case {
        const char* stored;
        std::array<std::optional<int>, kPinPositions> selected;
    };
    const std::array cases{
        Case{"", {{0, 0, {}, 0, 0, 0, {}, 0}}},
        Case{"8190517", {{0, 1, {}, 0, 0, 1, {}, 0}}},
        Case{"7x3 4-29", {{7, 0, 3, 0, 4, 0, 2, 1}}},
        Case{"10302030", {{1, 0, 3, 0, 2, 0, 3, 0}}},
    };
    for (const Case& c : cases) {
        state_.pinOptions = c.stored;
        options_.Load();
        for (const PinGroup& group : kPinGroups)
            EXPECT_EQ(options_.Selected(group.position),
                      c.selected[static_cast<std::size_t>(group.position)])
                << c.stored << ' ' << group.array;
    }
    EXPECT_THAT(user_.boxes, IsEmpty());
}

TEST_F(PortOptionsTest, ThePinOfTheOtherLineIsRefusedAndMustBeReplacedBeforeAccept) {
    struct Case {
        PinPosition clicked, other;
        const char* conflict;
        const char* missing;
    };
    const char* const scl =
        "You can't use the same port pin for both SCL and SDA!\r\n\r\n"
        "Please select a different pin for SCL.";
    const char* const sda =
        "You can't use the same port pin for both SDA and SCL!\r\n\r\n"
        "Please select a different pin for SDA.";
    const std::array cases{
        Case{ClockOut, DataOut, scl, "Output Pin Assignments\r\nPlease select a pin for SCL."},
        Case{DataOut, ClockOut, sda, "Output Pin Assignments\r\nPlease select a pin for SDA."},
        Case{ClockIn, DataIn, scl, "Input Pin Assignments\r\nPlease select a pin for SCL."},
        Case{DataIn, ClockIn, sda, "Input Pin Assignments\r\nPlease select a pin for SDA."},
    };
    for (const Case& c : cases) {
        state_.pinOptions = "11012010";
        options_.Load();
        const int taken = options_.Selected(c.other).value();
        const auto refused = options_.Select(c.clicked, taken);
        ASSERT_TRUE(refused);
        EXPECT_EQ(refused->text, c.conflict);
        EXPECT_EQ(refused->title, "E R R O R - Port Conflict");
        EXPECT_EQ(refused->style, BoxStyle::Exclamation);
        EXPECT_EQ(options_.Selected(c.clicked), std::nullopt);
        EXPECT_EQ(options_.Selected(c.other), taken);

        EXPECT_EQ(options_.Accept(), PortOptions::Accepted::No);
        EXPECT_THAT(user_.TakeBoxes(),
                    ElementsAre(std::string("E R R O R - Port Conflict|") + c.missing));
        EXPECT_EQ(state_.pinOptions, "11012010");
        EXPECT_EQ(Status(), "");

        EXPECT_EQ(options_.Select(c.clicked, 3), std::nullopt);
        EXPECT_EQ(options_.Accept(), PortOptions::Accepted::Yes);
        statusBar_.PutStatus("");
    }
    EXPECT_EQ(options_.Select(DataOut, 1), std::nullopt);
    EXPECT_EQ(options_.Select(DataIn, 0), std::nullopt) << "an input may have an output's number";
}

TEST_F(PortOptionsTest, AcceptReleasesBothLinesUnderTheNewMapping) {
    for (const auto& [position, index] : {std::pair{ClockOut, 2}, {ClockOutPol, 0}, {DataOut, 5}})
        EXPECT_EQ(options_.Select(position, index), std::nullopt);
    port_.data = 0xA1;
    EXPECT_EQ(options_.Accept(), PortOptions::Accepted::Yes);
    EXPECT_EQ(state_.pinOptions, "51202010");
    EXPECT_EQ(port_.data, 0x85) << "SCL's bit 2 set, SDA's inverted bit 5 cleared";
    EXPECT_FALSE(port_.claimed);
    EXPECT_EQ(Status(), "Port Configuration Settings Changed");
    EXPECT_EQ(timer_.running, std::chrono::seconds(5));
}

TEST_F(PortOptionsTest, DefaultsReplaceEverySelectionWithoutAConflict) {
    state_.pinOptions = "01114131";
    options_.Load();
    options_.Defaults();
    EXPECT_EQ(state_.pinOptions, "11012010");
    EXPECT_EQ(i2c_.Pins().DataInMask, 0x20);
    EXPECT_EQ(Status(), "Port Configuration Set to Defaults");
    EXPECT_THAT(user_.boxes, IsEmpty());
}

TEST_F(PortOptionsTest, CancelAndHelpChangeNothing) {
    EXPECT_EQ(options_.Select(DataOut, 7), std::nullopt);
    options_.Help();
    ASSERT_EQ(user_.boxes.size(), 1);
    EXPECT_EQ(user_.boxes[0].title, "I N F O");
    EXPECT_EQ(user_.boxes[0].style, BoxStyle::Exclamation);
    EXPECT_EQ(user_.boxes[0].text,
              "If you don't know what to do with all these options,\r\n"
              "please just click the <Cancel> button now.\r\n\r\n"
              "Otherwise select the I/O pins and polarity sense\r\n"
              "as required by your prefered I2C interface.\r\n\r\n"
              "The <Default> button sets the options for use with\r\n"
              "the 'Plimby I2C Interface' (See the Help File).\r\n\r\n"
              "Be advised that if you modify settings incorrectly,\r\n"
              "serious operational problems WILL result.\r\n\r\n");
    options_.Cancel();
    EXPECT_EQ(state_.pinOptions, "11012010");
    EXPECT_EQ(i2c_.Pins(), DecodePinOptions("11012010"));
    EXPECT_EQ(Status(), "Port Configuration Not Changed");
}

}  // namespace
}  // namespace tarnwell
