// The interface test against every fault of the adapter, and what it makes of them.
#include "i2c/InterfaceTest.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum Level;
using testing::ElementsAreArray;
using testing::StartsWith;

constexpr const char* kActivity = "E R R O R|There is I2C Bus Activity";
constexpr const char* kHardware = "E R R O R|I2C Interface Hardware Problem";
constexpr const char* kConnected =
    " W A R N I N G|You MUST be disconnected from the I2C Bus\r\n"
    "in order to use the Test Module.\r\n\r\nI2C Interface Test Aborted.";
constexpr const char* kPortFailure =
    "The simulated port has failed. Plug it in again and repeat the command.";

struct Bench : TestProgram {
    InterfaceTest test{program.i2c, television, program.statusBar, user};

    explicit Bench(Television onTheBus = Television::Absent)
        : TestProgram(Simulation{.television = onTheBus}) {}

    void Open() {
        ASSERT_TRUE(test.PreCheck());
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
    struct Case {
        Television television;
        std::optional<FaultKind> fault;
        std::vector<std::string> boxes;
    };
    for (const Case& c :
         {Case{Television::Absent, {}, {}}, Case{Television::Connected, {}, {kConnected}},
          Case{Television::Absent, FaultKind::SclStuckLow, {kActivity, kConnected}},
          Case{Television::Absent, FaultKind::InputsInverted, {kActivity, kConnected}},
          Case{Television::Absent, FaultKind::SdaStuckHigh, {kHardware}},
          Case{Television::Absent,
               FaultKind::PortFails,
               {std::string(kHardware) + "\r\n" + kPortFailure}}}) {
        Bench bench(c.television);
        if (c.fault)
            bench.television.Inject({.kind = *c.fault});
        EXPECT_EQ(bench.test.PreCheck(), c.boxes.empty());
        EXPECT_THAT(bench.user.TakeBoxes(), ElementsAreArray(c.boxes));
        const bool claimed = bench.television.DlPortReadPortUchar(0x378) != 0xFF;
        EXPECT_EQ(claimed, c.boxes.empty());
    }
}

TEST(InterfaceTest, AutoTestAndDiagnosisOfEveryFault) {
    struct Case {
        FaultKind fault;
        const char* firstTick;   // SCL driven low, SDA high
        const char* secondTick;  // SCL driven high, SDA low
        const char* diagnosis;
    };
    for (const Case& c : {Case{FaultKind::LostWrite, "01 OK", "10 OK", ""},
                          Case{FaultKind::LinesJoined, "00 Err: SDA", "00 Err: SCL",
                               "Driving either line low pulls both low: SCL and SDA are joined."},
                          Case{FaultKind::SclStuckLow, "01 OK", "00 Err: SCL", "SCL stays low"},
                          Case{FaultKind::SdaStuckLow, "00 Err: SDA", "10 OK", "SDA stays low"},
                          Case{FaultKind::SclStuckHigh, "11 OK", "10 OK", "SCL stays high"},
                          Case{FaultKind::SdaStuckHigh, "01 OK", "11 OK", "SDA stays high"},
                          Case{FaultKind::InputsInverted, "10 Err: SDA", "01 Err: SCL",
                               "SCL and SDA read the opposite of what is driven"},
                          Case{FaultKind::AdapterGone, "11 OK", "11 OK",
                               "Nothing follows what is driven: no adapter"},
                          Case{FaultKind::PortFails, "11 OK", "11 OK", kPortFailure}}) {
        Bench bench;
        bench.Open();
        bench.television.Inject({.kind = c.fault});
        EXPECT_EQ(bench.Tick(), c.firstTick);
        EXPECT_EQ(bench.Tick(), c.secondTick);
        bench.test.StopAutoTest();
        EXPECT_THAT(std::string(c.secondTick), testing::EndsWith(bench.test.ResultText()));
        EXPECT_EQ(bench.test.Diagnosis().substr(0, std::string(c.diagnosis).size()), c.diagnosis);
        EXPECT_EQ(bench.test.Diagnosis().empty(), c.fault == FaultKind::LostWrite);
    }
}

TEST(InterfaceTest, AWrongPinOrPolarityIsNamed) {
    for (const auto& [pinOptions, diagnosis] :
         {std::pair{"11011020", "SDA follows SCL and the reverse: either the two input pins"},
          {"01112010", "SDA follows SCL and the reverse: either the two input pins"},
          {"10012010", "SDA reads the opposite of what is driven: output or input is inverted"},
          {"11002010", "SCL reads the opposite of what is driven: output or input is inverted"},
          {"10002010", "SCL and SDA read the opposite of what is driven"},
          {"71012010", "SDA stays high though driven low."},
          {"11010040", "Nothing follows what is driven"}}) {
        Bench bench;
        ASSERT_TRUE(bench.test.PreCheck());
        bench.program.state.pinOptions = pinOptions;
        bench.program.i2c.ApplyPortOptions();
        bench.test.Open();
        bench.test.DriveClock(Low);
        bench.test.DriveData(Low);
        bench.test.DriveClock(High);
        EXPECT_THAT(bench.test.Diagnosis(), StartsWith(diagnosis)) << pinOptions;
    }
}

TEST(InterfaceTest, ATickContinuesFromWhatWasDrivenAndMakesNoBusCondition) {
    Bench bench;
    bench.Open();
    bench.test.DriveClock(Low);
    const auto conditions = [&] {
        return bench.television.Count(WireEvent::Start) + bench.television.Count(WireEvent::Stop);
    };
    const auto before = conditions();
    EXPECT_EQ(bench.Tick(), "10 OK");
    EXPECT_EQ(bench.Tick(), "01 OK");
    EXPECT_EQ(bench.Tick(), "10 OK");
    EXPECT_EQ(conditions(), before);
}

/// Readings written "driven>sensed", each SCL before SDA.
std::string Diagnosis(std::initializer_list<const char*> readings, const char* pinOptions) {
    const auto levels = [](const char* text) {
        return LineLevels{text[0] == '1' ? High : Low, text[1] == '1' ? High : Low};
    };
    AdapterDiagnosis diagnosis;
    for (const char* reading : readings)
        diagnosis.Note({levels(reading), levels(reading + 3)});
    return diagnosis.Text(DecodePinOptions(pinOptions));
}

TEST(AdapterDiagnosis, SaysNoMoreThanTheReadingsTell) {
    const char* const bit7 = "11014010";
    const char* const usual = kDefaultPinOptions.data();
    EXPECT_THAT(Diagnosis({"11>01"}, usual), StartsWith("SCL is low though driven high: stuck or"));
    EXPECT_THAT(Diagnosis({"11>00"}, usual), StartsWith("SCL and SDA are low though driven high"));
    EXPECT_THAT(Diagnosis({"11>00", "00>00"}, usual), StartsWith("SCL and SDA stay low"));
    EXPECT_THAT(Diagnosis({"11>10", "10>11"}, bit7), testing::HasSubstr("the port itself inverts"));
    EXPECT_THAT(Diagnosis({"11>10", "00>10"}, bit7), StartsWith("Nothing follows"));
    EXPECT_THAT(Diagnosis({"11>11", "10>11", "01>00"}, usual), StartsWith("SDA follows the other"));
    EXPECT_THAT(Diagnosis({"10>10", "11>01", "01>01"}, usual), StartsWith("SCL stays low"))
        << "the fault came after the first reading";
    EXPECT_EQ(Diagnosis({"11>00", "10>00", "11>11", "10>10", "01>01"}, usual), "");
}

}  // namespace
}  // namespace tarnwell
