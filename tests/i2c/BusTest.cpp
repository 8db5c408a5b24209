// The bus on the wire: driving, event sequences, the bus check, bus times, bounds.
#include <algorithm>
#include <map>

#include "i2c/InterfaceTest.h"
#include "support/BusChanges.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum WireEvent;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

TEST(Drive, TakesEveryPositiveLevelForHighAndLeavesTheLineAtANegativeOne) {
    TestProgram test;
    const BusClaim claim(test.program.i2c);
    for (const auto& [level, high] : {std::pair{0, false}, {-1, false}, {0x40, true}, {-1, true}}) {
        test.program.i2c.SetSDA(static_cast<std::int16_t>(level));
        EXPECT_EQ(test.television.Sda(), high);
    }
}

TEST(Transactions, PutTheirEventsOnTheWire) {
    TestProgram test;
    auto& i2c = test.program.i2c;
    const BusClaim claim(i2c);
    test.television.Memory(Chip::Primary)[0x1235] = 0x5A;
    test.television.Record();
    ASSERT_EQ(i2c.ReadBlock(0x1234, 3), Transfer::Done);
    EXPECT_THAT(ToText(test.television.Events()),
                ::testing::MatchesRegex("S A0. 12. 34. Sr A1. <...? <5A. <...* P"));
    EXPECT_EQ(i2c.ReadData()[1], 0x5A);

    test.television.Record();
    ASSERT_EQ(i2c.ReadBlock(300, 1), Transfer::Done);
    EXPECT_THAT(ToText(test.television.Events()), ::testing::StartsWith("S A0+ 01+ 2C+ Sr A1+ <"));

    test.program.state.targetDevice = TargetDevice::Secondary;
    test.television.Record();
    ASSERT_EQ(i2c.WriteByte(0x1FFF, 0x5A), Transfer::Done);
    EXPECT_THAT(ToText(test.television.Events()),
                ::testing::StartsWith("S A2+ 1F+ FF+ 5A+ P S A2- Sr A2- "));
    EXPECT_THAT(ToText(test.television.Events()), ::testing::EndsWith("Sr A2+"));
    EXPECT_EQ(test.television.Memory(Chip::Secondary)[0x1FFF], 0x5A);

    test.television.Record();
    ASSERT_EQ(i2c.WriteByte(0, 1), Transfer::Done);
    EXPECT_THAT(ToText(test.television.Events()), ::testing::StartsWith("Sr A2+ 00+ 00+ 01+ P"));

    constexpr std::array<std::uint8_t, 3> kPage{7, 8, 9};
    test.television.Record();
    ASSERT_EQ(i2c.WritePage(0x003D, kPage), Transfer::Done);
    EXPECT_THAT(ToText(test.television.Events()),
                ::testing::StartsWith("Sr A2+ 00+ 3D+ 07+ 08+ 09+ P S A2- Sr A2- "));
    EXPECT_EQ(test.television.Memory(Chip::Secondary)[0x003F], 9);
    EXPECT_EQ(i2c.BytesWritten(), 2 + 3);
}

/// Lets the processor do something else for long after one of the accesses.
struct LongPause final : BusTrace {
    SimulatedTelevision television;
    int accesses = 0;
    int pauseAfter = 0;

    void Driven(BusLine, Level) override {
        if (++accesses == pauseAfter)
            television.WaitUntil(television.Now() + std::chrono::milliseconds(200));
    }
};

TEST(Transactions, DoNotTakeAPauseOfTheProgramForASilentDevice) {
    LongPause pause;
    QuietProgram quiet(pause.television, pause.television, QuietProgram::kNoFolder, pause);
    const BusClaim claim(quiet.program.i2c);
    pause.television.SetWriteCycle(std::chrono::microseconds(300));
    int paused = 0;
    for (bool within = true; within; ++paused) {
        pause.accesses = 0;
        pause.pauseAfter = paused;
        ASSERT_EQ(quiet.program.i2c.WriteByte(7, 1), Transfer::Done) << paused;
        within = pause.accesses >= paused;
    }
    EXPECT_GT(paused, 200);
}

TEST(Transactions, ShowTheProgressOfAWholeDeviceOnly) {
    TestProgram test;
    const BusClaim claim(test.program.i2c);
    ASSERT_EQ(test.program.i2c.ReadBlock(0, 8191), Transfer::Done);
    EXPECT_THAT(test.outside.changes, IsEmpty());
    ASSERT_EQ(test.program.i2c.ReadBlock(0, 8192), Transfer::Done);
    EXPECT_EQ(test.outside.changes, std::vector<Shown>(128, Shown::EepPanel));
    EXPECT_EQ(test.Eep(), "Pri");
}

TEST(DeviceProgress, TellsPartDoneAndSecondsLeftAndGoesAway) {
    using namespace std::chrono_literals;
    TestProgram test;
    std::string shown;
    {
        DeviceProgress progress = test.program.i2c.TrackProgress();
        const BusTime begin = test.television.Now();
        for (const auto& [bytes, elapsed] :
             {std::pair{0, 0ms}, {63, 9ms}, {64, 260ms}, {1024, 4s}, {4096, 10s}, {8128, 32s}}) {
            test.television.WaitUntil(begin + elapsed);
            progress.Show(bytes);
            const auto running = test.program.statusBar.RunningProgress();
            shown +=
                test.Eep() + (running ? " " + std::to_string(running->secondsLeft) : "") + ", ";
        }
        EXPECT_EQ(test.user.paintings, 4);
    }
    EXPECT_EQ(shown + test.Eep(), "Pri, Pri, 1% 34, 13% 28, 50% 10, 99% 1, Pri");
}

constexpr const char* kBusActivity = "E R R O R|There is I2C Bus Activity";
constexpr const char* kHardware = "E R R O R|I2C Interface Hardware Problem";
constexpr const char* kNoAcknowledge =
    "E R R O R|There is an I2C bus or\r\nInterface Hardware Problem";

TEST(CheckBus, TellsEachOutcome) {
    using enum BusCheck;
    struct Row {
        FaultKind fault;
        std::uint8_t samples;
        BusCheck result;
        const char* box;
        const char* cause;
    };
    for (const Row& row : {
             Row{FaultKind::LateAcknowledge, 1, Ok, "", ""},
             Row{FaultKind::LateAcknowledge, 5, Ok, "", ""},
             Row{FaultKind::LateAcknowledge, 6, NoAcknowledge, kNoAcknowledge, "Both lines do"},
             Row{FaultKind::DeviceSilent, 0, NoAcknowledge, kNoAcknowledge, "Both lines do what"},
             Row{FaultKind::SclStuckHigh, 0, NoAcknowledge, kNoAcknowledge, "SCL stays high"},
             Row{FaultKind::LinesJoined, 0, NoAcknowledge, kNoAcknowledge, "Driving either line"},
             Row{FaultKind::SclStuckLow, 0, BusActivity, kBusActivity, "SCL stays low. A device"},
             Row{FaultKind::SdaStuckLow, 0, BusActivity, kBusActivity, "SDA stays low. A device"},
             Row{FaultKind::InputsInverted, 0, BusActivity, kBusActivity, "SCL and SDA stay low."},
             Row{FaultKind::SdaStuckHigh, 0, HardwareProblem, kHardware, "SDA stays high though"},
             Row{FaultKind::AdapterGone, 0, HardwareProblem, kHardware, "Nothing follows what"},
         }) {
        for (const Quiet quiet : {Quiet::No, Quiet::Yes}) {
            TestProgram test;
            test.program.statusBar.ShowStatus("", 1);
            test.television.Inject({.kind = row.fault, .samples = row.samples});
            const BusClaim claim(test.program.i2c);
            const bool nobody = row.result == NoAcknowledge && quiet == Quiet::Yes;
            EXPECT_EQ(test.program.i2c.CheckBus(quiet), nobody ? NobodyAnswered : row.result);
            const bool told = row.result != Ok && !nobody;
            const auto boxes = test.user.TakeBoxes();
            ASSERT_EQ(boxes.size(), told ? 1U : 0U);
            if (told) {
                EXPECT_THAT(boxes[0],
                            ::testing::StartsWith(std::string(row.box) + "\r\n" + row.cause));
            }
            EXPECT_EQ(test.Status(), told ? "I2C Operation Aborted" : "");
            test.television.ClearFaults();
            EXPECT_TRUE(test.television.Scl() && test.television.Sda());
        }
    }
}

TEST(CheckBus, TellsAnotherMasterFromALineThatStands) {
    for (const auto& [accesses, cause, seen] :
         {std::tuple(900, "The lines move: another master", "P"), {2000, "SDA stays low.", ""}}) {
        TestProgram test;
        test.television.Inject(
            {.kind = FaultKind::SdaStuckLow, .accesses = static_cast<std::uint64_t>(accesses)});
        test.television.Record();
        const BusClaim claim(test.program.i2c);
        EXPECT_EQ(test.program.i2c.CheckBus(Quiet::Yes), BusCheck::BusActivity);
        EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(::testing::HasSubstr(cause)));
        EXPECT_EQ(ToText(test.television.Events()), seen) << "nothing of ours";
    }
}

TEST(CheckBus, SamplesASilentDeviceFiveTimesAndStops) {
    TestProgram test({.television = Television::Absent});
    test.television.Record();
    const BusClaim claim(test.program.i2c);
    EXPECT_EQ(test.program.i2c.CheckBus(Quiet::Yes), BusCheck::NobodyAnswered);
    EXPECT_EQ(ToText(test.television.Events()), "S P S A0----- P");
    EXPECT_THAT(test.user.TakeBoxes(), IsEmpty());
}

TEST(CheckBus, TakesAnAcknowledgeAtWhichSclWasLow) {
    TestProgram test;
    test.television.Inject({.kind = FaultKind::LinesJoined, .begins = {Byte, 1}, .accesses = 9});
    const BusClaim claim(test.program.i2c);
    EXPECT_EQ(test.program.i2c.CheckBus(Quiet::Yes), BusCheck::Ok);
    EXPECT_TRUE(test.television.Scl() && test.television.Sda());
}

/// The shortest times, in ns, from an edge on the wire to another before the next such edge: SCL's
/// rise (C) and fall (c), a change of SDA (D), a start (S) and a stop (P).
std::map<std::string, std::int64_t> ShortestTimes(const Changes& wire) {
    std::map<char, std::int64_t> last;
    std::map<std::string, std::int64_t> shortest;
    bool scl = true;
    for (std::size_t index = 0; index < wire.lines.size(); ++index) {
        const char line = wire.lines[index];
        const bool isClock = line == 'C' || line == 'c';
        scl = isClock ? line == 'C' : scl;
        const char edge = isClock ? line : !scl ? 'D' : line == 'd' ? 'S' : 'P';
        for (const auto& [from, time] : last) {
            auto& least = shortest.try_emplace({from, edge}, INT64_MAX).first->second;
            least = std::min(least, wire.times[index] - time);
        }
        last[edge] = wire.times[index];
    }
    return shortest;
}

/// The longest time from a sample, the last event of SCL's high time, to SCL's fall.
BusTime SampledBeforeFall(const std::vector<WireSample>& samples) {
    BusTime longest{}, sampled{};
    for (const WireSample& sample : samples) {
        if (sample.cause == WireSample::Cause::Sensed)
            sampled = sample.time;
        else if (sample.cause == WireSample::Cause::Scl && !sample.scl && sampled > BusTime{})
            longest = std::max(longest, sample.time - sampled);
        if (sample.cause != WireSample::Cause::Sensed)
            sampled = {};
    }
    return longest;
}

/// The shortest time from SCL's fall to a change of SDA, those left out that a device makes at
/// once.
BusTime ShortestDataHold(const std::vector<WireSample>& samples) {
    BusTime shortest = BusTime::max(), fall{};
    for (const WireSample& sample : samples) {
        if (sample.cause == WireSample::Cause::Scl && !sample.scl)
            fall = sample.time;
        else if (sample.cause == WireSample::Cause::Sda && !sample.scl && sample.time > fall)
            shortest = std::min(shortest, sample.time - fall);
    }
    return shortest;
}

TEST(BusTiming, HoldsEveryTimeOfTheStandardMode) {
    using namespace std::chrono_literals;
    for (const BusTime accessCost : {0ns, 100ns, 1000ns, 1200ns, 5000ns}) {
        TestProgram test({.accessCost = accessCost, .writeCycle = 200us});
        test.television.Record();
        {
            const BusClaim claim(test.program.i2c);
            ASSERT_EQ(test.program.i2c.CheckBus(Quiet::No), BusCheck::Ok);
            ASSERT_EQ(test.program.i2c.WriteByte(77, 0x55), Transfer::Done);
            ASSERT_EQ(test.program.i2c.ReadBlock(70, 20), Transfer::Done);
        }
        EXPECT_EQ(SampledBeforeFall(test.television.Samples()), 2 * accessCost);
        EXPECT_GE(ShortestDataHold(test.television.Samples()), 300ns);
        auto times = ShortestTimes(OnWire(test.television.Samples()));
        for (const auto& [edges, least] : {std::pair{"cC", 4700},
                                           {"Cc", 4000},
                                           {"CC", 10000},
                                           {"cc", 10000},
                                           {"CS", 4700},
                                           {"Sc", 4000},
                                           {"CP", 4700},
                                           {"PS", 4700},
                                           {"DC", 250}})
            EXPECT_GE(times.at(edges), least) << edges;
        EXPECT_LE(times.at("CC"), accessCost <= 1us ? 10000 + accessCost.count() : INT64_MAX);
    }
}

TEST(BusTiming, ReadsAWholeDeviceAtTheLimitOfAFreePort) {
    TestProgram test({.accessCost = BusTime(0)});
    const BusClaim claim(test.program.i2c);
    const BusTime begin = test.television.Now();
    ASSERT_EQ(test.program.i2c.ReadBlock(0, 8192), Transfer::Done);
    EXPECT_LE((test.television.Now() - begin) / (8192.0 * 9), BusTime(10'300));
}

TEST(Bounds, ClockADeviceThatHoldsSdaOffTheBus) {
    TestProgram test;
    test.television.Memory(Chip::Primary).fill(0);
    const BusClaim claim(test.program.i2c);
    ASSERT_EQ(test.program.i2c.ReadBlock(0, 1), Transfer::Done);
    test.program.i2c.SendStart();
    test.program.i2c.SendByte(0xA1);
    ASSERT_EQ(test.program.i2c.ReadAck(), AckBit::Acknowledged);
    ASSERT_FALSE(test.television.Sda());
    test.program.i2c.AbortOperation();
    EXPECT_TRUE(test.television.Scl() && test.television.Sda());
    EXPECT_EQ(test.program.i2c.CheckBus(Quiet::Yes), BusCheck::Ok);
    test.television.Inject({.kind = FaultKind::SdaStuckLow});
    const auto before = test.television.Count(Clock);
    test.program.i2c.AbortOperation();
    EXPECT_EQ(test.television.Count(Clock) - before, 9U);
}

TEST(Bounds, MakeUpForAPortThatFailedAtTheNextCommand) {
    TestProgram test;
    test.television.Memory(Chip::Primary).fill(1);
    test.television.Inject({.kind = FaultKind::PortFails, .begins = {Byte, 100}});
    test.program.wholeDevice.ReadEntireEep();
    EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(::testing::StartsWith(kNoAcknowledge)));
    EXPECT_FALSE(test.program.state.EepRead);
    EXPECT_EQ(test.Crc(), "");

    test.television.ClearFaults();
    test.program.wholeDevice.ReadEntireEep();
    EXPECT_THAT(test.user.TakeBoxes(), IsEmpty());
    EXPECT_TRUE(test.program.state.EepRead);
}

/// The port holds both lines low by bits that were set before it was taken away.
struct HeldLines : TestProgram {
    InterfaceTest interfaceTest{program.i2c, television, program.statusBar, user};

    void FailWith(int data) {
        television.Claim(0x378);
        television.DlPortWritePortUchar(0x378, static_cast<std::uint8_t>(data));
        television.Release();
        television.Inject({.kind = FaultKind::PortFails});
    }
    std::string Check(const char* portAddress = "888") {
        program.state.portAddress = portAddress;
        television.ClearFaults();
        television.Record();
        const BusClaim claim(program.i2c);
        program.i2c.CheckBus(Quiet::Yes);
        return ToText(television.Events());
    }
};

TEST(Bounds, MakeUpForAReleaseThatDidNotArriveAtItsAddressAndForNothingElse) {
    HeldLines foreign;
    foreign.FailWith(3);
    EXPECT_EQ(foreign.Check(), "") << "nothing was driven here, nothing is owed";

    HeldLines refused;
    refused.FailWith(3);
    {
        const BusClaim claim(refused.program.i2c);
        refused.program.i2c.ReleaseBus();
    }
    EXPECT_EQ(refused.Check("632"), "") << "another port";
    EXPECT_EQ(refused.Check(), "P S P S A0+ P");
    refused.FailWith(3);
    EXPECT_EQ(refused.Check(), "") << "made up for once";

    HeldLines tested;
    tested.television.Inject({.kind = FaultKind::DeviceSilent});
    ASSERT_TRUE(tested.interfaceTest.PreCheck());
    tested.interfaceTest.Open();
    tested.interfaceTest.DriveClock(Level::Low);
    tested.television.Inject({.kind = FaultKind::PortFails});
    tested.interfaceTest.Close();
    EXPECT_EQ(tested.Check(), "S P S A0+ P");

    HeldLines cut;
    cut.television.Inject({.kind = FaultKind::PortFails, .begins = {Clock, 40}});
    cut.program.wholeDevice.ReadEntireEep();
    EXPECT_EQ(cut.Check("632"), "");
    EXPECT_THAT(cut.Check(), ::testing::EndsWith("P S P S A0+ P"));
}

}  // namespace
}  // namespace tarnwell
