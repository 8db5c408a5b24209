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

/// An adapter on a port, and the test of it.
struct Bench {
    ProgramState state;
    TestSurroundings outside;
    ManualTimer timer;
    ScriptedUser user;
    SimulatedTelevision adapter;
    StatusBar statusBar{state, outside, timer};
    mI2Ccode i2c{adapter, adapter, state, statusBar, user};
    InterfaceTest test{i2c, adapter, statusBar, user};

    explicit Bench(Television television = Television::Absent)
        : adapter(Simulation{.television = television}) {
        state.portAddress = "888";
        state.pinOptions = "11012010";
    }

    bool PortIsClaimed() { return adapter.DlPortReadPortUchar(0x378) != 0xFF; }

    /// "SCL SDA result" as the indicators show them.
    std::string Shown() const {
        const auto level = [](Level l) { return l == High ? "1" : "0"; };
        return std::string(level(test.ClockIndicator())) + level(test.DataIndicator()) + " " +
               std::string(test.ResultText());
    }

    void DriveEveryPair() {
        test.DriveClock(Low);
        test.DriveData(Low);
        test.DriveClock(High);
        test.DriveData(High);
    }
};

TEST(InterfaceTest, OpensOnlyWhenNobodyIsOnTheBus) {
    struct Case {
        const char* what;
        Television television;
        std::optional<FaultKind> fault;
        std::vector<std::string> boxes;
    };
    const std::array cases{
        Case{"adapter alone", Television::Absent, {}, {}},
        Case{"television", Television::Connected, {}, {kConnected}},
        Case{"SCL low", Television::Absent, FaultKind::SclStuckLow, {kActivity, kConnected}},
        Case{"inverted", Television::Absent, FaultKind::InputsInverted, {kActivity, kConnected}},
        Case{"SDA high", Television::Absent, FaultKind::SdaStuckHigh, {kHardware}},
        Case{"no adapter", Television::Absent, FaultKind::AdapterGone, {kHardware}},
        Case{"no port",
             Television::Absent,
             FaultKind::PortFails,
             {std::string(kHardware) + "\r\n" + kPortFailure}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Bench bench(c.television);
        if (c.fault)
            bench.adapter.Inject({.kind = *c.fault});
        EXPECT_EQ(bench.test.PreCheck(), c.boxes.empty());
        if (!c.boxes.empty() && c.boxes.back() == kConnected) {
            EXPECT_EQ(bench.user.boxes.back().style, BoxStyle::Critical);
        }
        EXPECT_THAT(bench.user.TakeBoxes(), ElementsAreArray(c.boxes));
        EXPECT_EQ(bench.PortIsClaimed(), c.boxes.empty());
    }
}

TEST(InterfaceTest, AutoTestAndDiagnosisOfEveryFault) {
    struct Case {
        std::optional<FaultKind> fault;
        const char* firstTick;   // SCL driven low, SDA high
        const char* secondTick;  // SCL driven high, SDA low
        const char* diagnosis;
    };
    const std::array cases{
        Case{{}, "01 OK", "10 OK", ""},
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
        Case{FaultKind::PortFails, "11 OK", "11 OK", kPortFailure},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.diagnosis);
        Bench bench;
        ASSERT_TRUE(bench.test.PreCheck());
        bench.test.Open();
        EXPECT_EQ(bench.Shown(), "11 ");
        EXPECT_EQ(bench.test.Diagnosis(), "");
        if (c.fault)
            bench.adapter.Inject({.kind = *c.fault});
        bench.test.StartAutoTest();
        bench.test.Tick();
        EXPECT_EQ(bench.Shown(), c.firstTick);
        bench.test.Tick();
        EXPECT_EQ(bench.Shown(), c.secondTick);
        const std::string result(bench.test.ResultText());
        bench.test.StopAutoTest();
        EXPECT_EQ(bench.test.ResultText(), result);
        if (c.fault)
            EXPECT_THAT(bench.test.Diagnosis(), StartsWith(c.diagnosis));
        else
            EXPECT_EQ(bench.test.Diagnosis(), "");
    }
}

TEST(InterfaceTest, AWrongPinOrPolarityIsNamed) {
    struct Case {
        const char* pinOptions;
        const char* diagnosis;
    };
    const std::array cases{
        Case{"11011020",
             "SDA follows SCL and the reverse: either the two input pins or the two "
             "output pins are swapped"},
        Case{"01112010", "SDA follows SCL and the reverse: either"},
        Case{"10012010", "SDA reads the opposite of what is driven: output or input is inverted"},
        Case{"11002010", "SCL reads the opposite of what is driven: output or input is inverted"},
        Case{"10002010", "SCL and SDA read the opposite"},
        Case{"71012010", "SDA stays high though driven low. Check its output and input pin"},
        Case{"11712010", "SCL stays high though driven low."},
        Case{"71112010",
             "SCL stays high though driven low. Check its output and input pin in "
             "Advanced Setup, then the adapter's driver for this line. SDA follows"},
        Case{"11010040", "Nothing follows what is driven"},
    };
    for (const Case& c : cases) {
        Bench bench;
        ASSERT_TRUE(bench.test.PreCheck());
        bench.state.pinOptions = c.pinOptions;
        bench.i2c.ApplyPortOptions();
        bench.test.Open();
        bench.DriveEveryPair();
        EXPECT_THAT(bench.test.Diagnosis(), StartsWith(c.diagnosis)) << c.pinOptions;
    }
}

TEST(InterfaceTest, ATickNeverMakesABusConditionAndContinuesFromWhatWasDriven) {
    Bench bench;
    ASSERT_TRUE(bench.test.PreCheck());
    bench.test.Open();
    bench.test.DriveData(Low);
    const auto starts = bench.adapter.Count(WireEvent::Start);
    const auto stops = bench.adapter.Count(WireEvent::Stop);
    for (int tick = 0; tick < 4; ++tick)
        bench.test.Tick();
    EXPECT_EQ(bench.adapter.Count(WireEvent::Start), starts);
    EXPECT_EQ(bench.adapter.Count(WireEvent::Stop), stops);

    bench.test.StopAutoTest();
    bench.test.DriveClock(Low);
    bench.adapter.Inject({.kind = FaultKind::SclStuckLow});
    bench.test.Tick();
    EXPECT_EQ(bench.test.ResultText(), "Err: SCL");
    EXPECT_EQ(bench.test.ClockState(), High);
    EXPECT_EQ(bench.test.DataState(), Low);
}

TEST(InterfaceTest, ClosingReleasesLinesAndPortAndOpensAfresh) {
    Bench bench;
    ASSERT_TRUE(bench.test.PreCheck());
    bench.test.Open();
    bench.test.StartAutoTest();
    bench.adapter.Inject({.kind = FaultKind::LinesJoined});
    bench.test.Tick();
    bench.adapter.ClearFaults();
    EXPECT_FALSE(bench.adapter.Scl());
    bench.test.Close();
    EXPECT_TRUE(bench.adapter.Scl() && bench.adapter.Sda());
    EXPECT_FALSE(bench.test.AutoTestRuns() || bench.PortIsClaimed());

    ASSERT_TRUE(bench.test.PreCheck());
    bench.test.Open();
    EXPECT_EQ(bench.Shown(), "11 ");
    EXPECT_EQ(bench.test.Diagnosis(), "");
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
    struct Case {
        std::initializer_list<const char*> readings;
        const char* pinOptions;
        const char* diagnosis;
    };
    const std::array cases{
        Case{{"11>01"}, "11012010", "SCL is low though driven high: stuck or inverted."},
        Case{{"11>00"}, "11012010", "SCL and SDA are low though driven high"},
        Case{{"00>11"}, "11012010", "SCL and SDA are high though driven low"},
        Case{{"11>00", "00>00"}, "11012010", "SCL and SDA stay low though driven high."},
        Case{{"11>10", "10>11"}, "11014010", "SDA reads the opposite of what is driven: the port"},
        Case{{"11>10", "00>10"}, "11014010", "Nothing follows what is driven"},
        Case{{"11>11", "01>01", "10>10", "11>01", "01>01"}, "11012010", "SCL stays low"},
        Case{{"11>11", "10>11", "01>00"}, "11012010", "SDA follows the other line"},
    };
    for (const Case& c : cases)
        EXPECT_THAT(Diagnosis(c.readings, c.pinOptions), StartsWith(c.diagnosis));
    EXPECT_EQ(Diagnosis({"11>00", "10>00", "11>11", "10>10", "01>01"}, "11012010"), "")
        << "the fault is gone";
}

}  // namespace
}  // namespace tarnwell
