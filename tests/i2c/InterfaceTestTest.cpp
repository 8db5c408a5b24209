// The interface test against every fault of the adapter, and what it makes of them.
#include "i2c/InterfaceTest.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum Level;
using Boxes = std::vector<std::string>;
using testing::StartsWith;

constexpr const char* kActivity = "E R R O R|There is I2C Bus Activity";
constexpr const char* kHardware = "E R R O R|I2C Interface Hardware Problem";
constexpr const char* kConnected =
    " W A R N I N G|You MUST be disconnected from the I2C Bus\r\n"
    "in order to use the Test Module.\r\n\r\nI2C Interface Test Aborted.";
constexpr const char* kPortFailure =
    "The simulated port has failed. Plug it in again and repeat the command.";

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
    using enum FaultKind;
    const Boxes portFailed{std::string(kHardware) + "\r\n" + kPortFailure};
    for (const auto& [onTheBus, fault, boxes] :
         {std::tuple(Television::Absent, LostWrite, Boxes{}),
          {Television::Connected, LostWrite, {kConnected}},
          {Television::Absent, SclStuckLow, {kActivity, kConnected}},
          {Television::Absent, InputsInverted, {kActivity, kConnected}},
          {Television::Absent, SdaStuckHigh, {kHardware}},
          {Television::Absent, PortFails, portFailed}}) {
        Bench bench(onTheBus);
        bench.television.Inject({.kind = fault});
        EXPECT_EQ(bench.test.PreCheck(), boxes.empty());
        const Boxes shown = bench.user.TakeBoxes();
        ASSERT_EQ(shown.size(), boxes.size());
        for (std::size_t box = 0; box < boxes.size(); ++box)
            EXPECT_THAT(shown[box], StartsWith(boxes[box]));
        EXPECT_EQ(bench.television.DlPortReadPortUchar(0x378) != 0xFF, boxes.empty()) << "claimed";
    }
}

/// What two ticks show, SCL driven low with SDA high and the reverse, and the diagnosis then.
std::string AutoTest(FaultKind fault, const char* pinOptions) {
    Bench bench(pinOptions);
    bench.television.Inject({.kind = fault});
    std::string shown = bench.Tick() + ", ";
    shown += bench.Tick();
    bench.test.StopAutoTest();
    EXPECT_THAT(shown, testing::EndsWith(bench.test.ResultText()));
    return shown + ": " + bench.test.Diagnosis();
}

TEST(InterfaceTest, AutoTestNamesEveryFaultAndEveryWrongPinOrPolarity) {
    using enum FaultKind;
    EXPECT_EQ(AutoTest(LostWrite, kUsual), "01 OK, 10 OK: ");
    for (const auto& [fault, pinOptions, shown] :
         {std::tuple(LinesJoined, kUsual, "00 Err: SDA, 00 Err: SCL: Driving either line low"),
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
          {LostWrite, "11010040", "11 OK, 11 OK: Nothing follows what is driven"}})
        EXPECT_THAT(AutoTest(fault, pinOptions), StartsWith(shown)) << pinOptions;
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
std::string Diagnosis(std::vector<const char*> readings, const char* pinOptions = kUsual) {
    const auto levels = [](const char* text) {
        return LineLevels{text[0] == '1' ? High : Low, text[1] == '1' ? High : Low};
    };
    AdapterDiagnosis diagnosis;
    for (const char* reading : readings)
        diagnosis.Note({levels(reading), levels(reading + 3)});
    return diagnosis.Text(DecodePinOptions(pinOptions));
}

TEST(AdapterDiagnosis, SaysNoMoreThanTheReadingsTell) {
    EXPECT_THAT(Diagnosis({"11>01"}), StartsWith("SCL is low though driven high: stuck or"));
    EXPECT_THAT(Diagnosis({"11>00"}), StartsWith("SCL and SDA are low though driven high"));
    EXPECT_THAT(Diagnosis({"11>00", "00>00"}), StartsWith("SCL and SDA stay low"));
    EXPECT_THAT(Diagnosis({"11>10", "10>11"}, "11014010"),
                testing::HasSubstr("the port itself inverts"));
    EXPECT_THAT(Diagnosis({"11>10", "00>10"}, "11014010"), StartsWith("Nothing follows"));
    EXPECT_THAT(Diagnosis({"11>11", "10>11", "01>00"}), StartsWith("SDA follows the other"));
    EXPECT_THAT(Diagnosis({"10>10", "11>01", "01>01"}), StartsWith("SCL stays low"))
        << "the fault came after the first reading";
    EXPECT_EQ(Diagnosis({"11>00", "10>00", "11>11", "10>10", "01>01"}), "");
}

}  // namespace
}  // namespace tarnwell
