// The adapter: every pin-options string, the port options' buttons, and the interface test against
// every fault, and what it makes of them.
#include "i2c/parallel/PortOptions.h"

#include "i2c/parallel/InterfaceTest.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum PinPosition;
using enum Level;

/// Two bare registers, written only while they are claimed, and what SCL was last sensed as.
struct TwoRegisters final : Port, BusTrace {
    std::uint8_t data = 0, status = 0;
    Level scl{};
    bool claimed = false, takes = true;
    std::string failure;

    void Claim(std::uint16_t) override { claimed = failure.empty(); }
    void Release() override { claimed = false; }
    const std::string& Failure() const override { return failure; }
    std::uint8_t DlPortReadPortUchar(std::uint16_t address) override {
        return address == 0x378 ? data : status;
    }
    void DlPortWritePortUchar(std::uint16_t, std::uint8_t value) override {
        data = claimed && takes ? value : data;
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
            ASSERT_EQ(port_.scl == High, sclBit != (d[7] != (d[6] == 4)));
            ASSERT_EQ(i2c_.ReadByte(), (level ^ d[5] ^ (d[4] == 4 ? 1 : 0)) * 255);
        }
    }
    EXPECT_EQ(passed, 17920);
    const std::uint8_t before = port_.data;
    i2c_.SetSDA(-1);
    EXPECT_EQ(port_.data, before);
}

TEST_F(PortOptionsTest, ThePinOfTheOtherLineIsRefusedAndMustBeReplacedBeforeAccept) {
    for (const auto& [clicked, other, pin, told] :
         {std::tuple(ClockOut, DataOut, "SCL.", "SCL and SDA"),
          {DataOut, ClockOut, "SDA.", "SDA and SCL"},
          {ClockIn, DataIn, "SCL.", "SCL and SDA"},
          {DataIn, ClockIn, "SDA.", "SDA and SCL"}}) {
        Load("11012010");
        const auto taken = options_.Selected(other);
        options_.Show(options_.Select(clicked, taken.value()).value());
        EXPECT_EQ(options_.Selected(clicked), std::nullopt);
        EXPECT_EQ(options_.Selected(other), taken);
        EXPECT_FALSE(Accept());
        EXPECT_EQ(state_.pinOptions, "11012010");
        EXPECT_THAT(t_.user.TakeBoxes(),
                    ElementsAre(AllOf(HasSubstr(told), EndsWith(pin)), EndsWith(pin)));
        EXPECT_EQ(options_.Select(clicked, 3), std::nullopt);
        EXPECT_TRUE(Accept());
    }
}

TEST(PortAddressValue, IsThatOfSixteenBitsOrNone) {
    for (const auto& [text, value] : {std::pair("65535", 65535), {"65536", 0}, {"0", 0}, {"-1", 0}})
        EXPECT_EQ(PortAddressValue(text), value);
}

TEST_F(PortOptionsTest, StoredStringsLoadWithoutABox) {
    for (const auto& [stored, shown] : {std::pair("", "00-000-0"),
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
    EXPECT_TRUE(t_.user.boxes.empty());
}

TEST_F(PortOptionsTest, ButtonsReleaseBothLinesAtOnceOrWhenThePortIsFree) {
    for (const char* failure : {"", "The port is in use."}) {
        Load("51202010");
        port_.data = 0xA1;
        port_.failure = failure;
        EXPECT_TRUE(Accept());
        EXPECT_FALSE(port_.claimed);
        EXPECT_EQ(state_.pinOptions + t_.Status(), "51202010Port Configuration Settings Changed");
        EXPECT_EQ(port_.data, *failure == '\0' ? 0x85 : 0xA1);
        port_.failure.clear();
        const BusClaim claim(i2c_);
        i2c_.CheckBus(Quiet::Yes);
        EXPECT_EQ(port_.data, 0x85) << "SCL's bit 2 set, SDA's inverted bit 5 cleared";
    }
    options_.Defaults();
    EXPECT_EQ(port_.data, 0x84);
    EXPECT_EQ(state_.pinOptions + t_.Status(), "11012010Port Configuration Set to Defaults");
    t_.user.boxes.clear();
    port_.data = 0x03;
    port_.takes = false;
    const BusClaim claim(i2c_);
    EXPECT_EQ(i2c_.CheckBus(Quiet::Yes), BusCheck::BusActivity);
    EXPECT_THAT(t_.user.TakeBoxes(),
                ElementsAre(HasSubstr("SCL and SDA are held low by the port itself: its data")));
}

using enum FaultKind;

constexpr const char* kUsual = "11012010";

struct Bench : TestProgram {
    InterfaceTest test{program.i2c, television, program.statusBar, user};

    explicit Bench(Television onTheBus) : TestProgram(Simulation{.television = onTheBus}) {}
    explicit Bench(const char* pinOptions = kUsual) : Bench(Television::Absent) {
        EXPECT_TRUE(test.PreCheck());
        program.state.pinOptions = pinOptions;
        program.i2c.ApplyPortOptions();
        test.Open();
    }
    /// "SCL SDA result" as the indicators show them after a tick.
    std::string Tick() {
        test.Tick();
        return std::string(test.ClockIndicator() == High ? "1" : "0") +
               (test.DataIndicator() == High ? "1 " : "0 ") + std::string(test.ResultText());
    }
};

TEST(InterfaceTest, OpensOnlyWhenNobodyIsOnTheBus) {
    const std::string connected = "You MUST be disconnected from the I2C Bus;";
    const std::string active = "There is I2C Bus Activity;" + connected;
    const std::string hardware = "I2C Interface Hardware Problem;";
    for (const auto& [onTheBus, fault, told] :
         {std::tuple(Television::Absent, LostWrite, std::string()),
          {Television::Connected, LostWrite, connected},
          {Television::Absent, SclStuckLow, active},
          {Television::Absent, InputsInverted, active},
          {Television::Absent, SdaStuckHigh, hardware},
          {Television::Absent, PortFails, hardware}}) {
        Bench bench(onTheBus);
        bench.television.Inject({.kind = fault});
        EXPECT_EQ(bench.test.PreCheck(), told.empty());
        std::string lines;
        for (const Box& box : bench.user.boxes)
            lines += std::string(box.text.substr(0, box.text.find('\r'))) + ";";
        EXPECT_EQ(lines, told);
        EXPECT_EQ(bench.television.DlPortReadPortUchar(0x378) != 0xFF, told.empty()) << "claimed";
    }
}

/// Two ticks, SCL driven low with SDA high and the reverse, and the diagnosis then.
TEST(InterfaceTest, AutoTestNamesEveryFaultAndEveryWrongPinOrPolarity) {
    for (const auto& [fault, pinOptions, shown] :
         {std::tuple(LostWrite, kUsual, "01 OK, 10 OK: $"),
          {LinesJoined, kUsual, "00 Err: SDA, 00 Err: SCL: Driving either line low"},
          {SclStuckLow, kUsual, "01 OK, 00 Err: SCL: SCL stays low"},
          {SdaStuckLow, kUsual, "00 Err: SDA, 10 OK: SDA stays low"},
          {SclStuckHigh, kUsual, "11 OK, 10 OK: SCL stays high"},
          {SdaStuckHigh, kUsual, "01 OK, 11 OK: SDA stays high"},
          {InputsInverted, kUsual, "10 Err: SDA, 01 Err: SCL: SCL and SDA read the opposite of"},
          {AdapterGone, kUsual, "11 OK, 11 OK: Nothing follows what is driven: no adapter"},
          {PortFails, kUsual, "11 OK, 11 OK: The simulated port has failed. Plug it in again"},
          {LostWrite, "11011020", "10 Err: SDA, 01 Err: SCL: SDA follows SCL and the reverse"},
          {LostWrite, "01112010", "10 Err: SDA, 01 Err: SCL: SDA follows SCL and the reverse"},
          {LostWrite, "10012010", "00 Err: SDA, 11 OK: SDA reads the opposite of what is driven"},
          {LostWrite, "11002010", "11 OK, 00 Err: SCL: SCL reads the opposite of what is driven"},
          {LostWrite, "10002010", "10 Err: SDA, 01 Err: SCL: SCL and SDA read the opposite of"},
          {LostWrite, "71012010", "01 OK, 11 OK: SDA stays high though driven low."},
          {LostWrite, "11010040", "11 OK, 11 OK: Nothing follows what is driven"}}) {
        Bench bench(pinOptions);
        bench.television.Inject({.kind = fault});
        const std::string first = bench.Tick() + ", ";
        const std::string second = bench.Tick();
        bench.test.StopAutoTest();
        EXPECT_THAT(second, EndsWith(bench.test.ResultText()));
        EXPECT_THAT(first + second + ": " + bench.test.Diagnosis() + "$", StartsWith(shown));
    }
}

TEST(InterfaceTest, ATickContinuesFromWhatWasDrivenAndMakesNoBusCondition) {
    Bench bench;
    bench.test.DriveClock(Low);
    bench.television.Record();
    for (const char* shown : {"10 OK", "01 OK", "10 OK"})
        EXPECT_EQ(bench.Tick(), shown);
    EXPECT_EQ(ToText(bench.television.Events()), "");
}

/// Readings written "driven>sensed", each SCL before SDA.
TEST(AdapterDiagnosis, SaysNoMoreThanTheReadingsTell) {
    const auto levels = [](const char* text) {
        return LineLevels{text[0] == '1' ? High : Low, text[1] == '1' ? High : Low};
    };
    using Readings = std::vector<const char*>;
    constexpr const char* kComplemented = "11014010";
    for (const auto& [readings, pinOptions, text] :
         {std::tuple(Readings{"11>01"}, kUsual, "SCL is low though driven high: stuck or"),
          {{"11>00"}, kUsual, "SCL and SDA are low though driven high"},
          {{"11>00", "00>00"}, kUsual, "SCL and SDA stay low"},
          {{"11>10", "10>11"}, kComplemented, "SDA reads the opposite of what is driven: the port"},
          {{"11>10", "00>10"}, kComplemented, "Nothing follows"},
          {{"11>11", "10>11", "01>00"}, kUsual, "SDA follows the other"},
          {{"10>10", "11>01", "01>01"}, kUsual, "SCL stays low"},
          {{"11>00", "10>00", "11>11", "10>10", "01>01"}, kUsual, "$"}}) {
        AdapterDiagnosis diagnosis;
        for (const char* reading : readings)
            diagnosis.Note({levels(reading), levels(reading + 3)});
        EXPECT_THAT(diagnosis.Text(DecodePinOptions(pinOptions)) + "$", StartsWith(text));
    }
}

}  // namespace
}  // namespace tarnwell
