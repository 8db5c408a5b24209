// The bus on the wire: driving, event sequences, the bus check, bus times, bounds.
#include <algorithm>
#include <map>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;
using enum BusCheck;
using enum FaultKind;
using enum WireEvent;

/// The bus, claimed from its last check on, and a second program at the same port.
struct Bus : TestProgram {
    mI2Ccode& i2c = program.i2c;
    QuietProgram other{television, television};
    std::optional<BusClaim> claim;

    explicit Bus(Simulation simulation = {}) : TestProgram(simulation) {}
    BusCheck Check(Quiet quiet = Quiet::No) {
        television.Record();
        claim.emplace(i2c);
        return i2c.CheckBus(quiet);
    }
    std::string Events() const { return ToText(television.Events()); }
    bool IsIdle() const { return television.Scl() && television.Sda(); }

    /// Drives the bus by one of the programs and leaves it so: bytes that the device acknowledges,
    /// then levels.
    void Leave(mI2Ccode& by, std::initializer_list<std::uint8_t> bytes, int scl, int sda) {
        const BusClaim leaving(by);
        by.ReleaseBus();
        by.SendStart();
        for (const std::uint8_t byte : bytes) {
            by.SendByte(byte);
            EXPECT_EQ(by.ReadAck(), AckBit::Acknowledged);
        }
        by.SetSDA(static_cast<std::int16_t>(sda));
        by.SetSCL(static_cast<std::int16_t>(scl));
    }
    /// As that, in the middle of a byte of zeros that is read.
    void LeaveReading(mI2Ccode& by, int scl) {
        television.Memory(Chip::Primary).fill(0);
        Leave(by, {0xA1}, scl, 1);
    }
};

TEST(Transactions, PutTheirEventsOnTheWire) {
    Bus bus;
    ASSERT_EQ(bus.Check(), Ok);
    bus.television.Memory(Chip::Primary)[0x1235] = 0x5A;
    constexpr std::array<std::uint8_t, 3> kPage{7, 8, 9};
    const std::span page(kPage);
    const std::span<const std::uint8_t> none;
    using enum TargetDevice;
    for (const auto& [device, address, reads, writes, events] :
         {std::tuple(Primary, 0x1234, 3, none, "S A0. 12. 34. Sr A1. <...? <5A. <...* P"),
          {Primary, 300, 1, none, "S A0. 01. 2C. Sr A1. <...* P"},
          {Secondary, 0x1FFF, 0, page.first(1), "S A2. 1F. FF. 07. P S A2- Sr A2- .*Sr A2."},
          {Secondary, 0, 0, page.last(1), "Sr A2. 00. 00. 09. P S A2- Sr A2- .*Sr A2."},
          {Secondary, 0x3D, 0, page, "Sr A2. 00. 3D. 07. 08. 09. P S A2- .*Sr A2."}}) {
        bus.program.state.targetDevice = device;
        bus.television.Record();
        const auto at = static_cast<std::int16_t>(address);
        ASSERT_EQ(reads == 0 ? bus.i2c.WritePage(at, writes)
                             : bus.i2c.ReadBlock(at, static_cast<std::int16_t>(reads)),
                  Transfer::Done);
        EXPECT_THAT(bus.Events(), MatchesRegex(events));
        const auto* const held = bus.television.Memory(Chip::Secondary).data() + address;
        EXPECT_TRUE(std::equal(writes.begin(), writes.end(), held));
        EXPECT_EQ(bus.i2c.ReadData()[1], 0x5A);
    }
    EXPECT_EQ(bus.i2c.BytesWritten(), 5);
}

TEST(Transactions, EndBeforeAnotherBitWhereNoStartIsSeen) {
    for (const FaultKind fault : {LostWrite, SdaStuckLow, SdaStuckHigh}) {
        Bus bus;
        ASSERT_EQ(bus.Check(), Ok);
        ASSERT_EQ(bus.i2c.WriteByte(1, 1), Transfer::Done);
        bus.television.Inject({.kind = fault, .begins = {Clock, 1}, .accesses = 12});
        const auto before = bus.television.Count(Clock);
        EXPECT_EQ(bus.i2c.WriteByte(2, 2) == Transfer::Done, fault == LostWrite);
        EXPECT_EQ(bus.television.Count(Clock) - before == 1, fault != LostWrite);
    }
}

/// Lets the processor do something else for long after one of the accesses.
struct LongPause final : BusTrace {
    SimulatedTelevision television{{.writeCycle = 300us}};
    int accesses = 0, pauseAfter = 0;

    void Driven(BusLine, Level) override {
        if (++accesses == pauseAfter)
            television.WaitUntil(television.Now() + 200ms);
    }
};

TEST(Transactions, DoNotTakeAPauseOfTheProgramForASilentDevice) {
    LongPause pause;
    QuietProgram quiet(pause.television, pause.television, QuietProgram::kNoFolder, pause);
    const BusClaim claim(quiet.program.i2c);
    for (; pause.accesses >= pause.pauseAfter; ++pause.pauseAfter) {
        pause.accesses = 0;
        ASSERT_EQ(quiet.program.i2c.WriteByte(7, 1), Transfer::Done) << pause.pauseAfter;
    }
    EXPECT_GT(pause.pauseAfter, 200);
}

TEST(DeviceProgress, TellsPartDoneAndSecondsLeftOfAWholeDeviceAndGoesAway) {
    Bus bus;
    std::string shown;
    {
        DeviceProgress progress = bus.i2c.TrackProgress();
        const BusTime begin = bus.television.Now();
        for (const auto& [bytes, elapsed] :
             {std::pair{0, 0ms}, {63, 9ms}, {64, 260ms}, {1024, 4s}, {4096, 10s}, {8128, 32s}}) {
            bus.television.WaitUntil(begin + elapsed);
            progress.Show(bytes);
            const auto running = bus.program.statusBar.RunningProgress();
            shown += bus.Eep() + " " + std::to_string(running ? running->secondsLeft : -1) + ", ";
        }
        EXPECT_EQ(bus.user.paintings, 4);
    }
    EXPECT_EQ(shown + bus.Eep(), "Pri -1, Pri -1, 1% 34, 13% 28, 50% 10, 99% 1, Pri");
    ASSERT_EQ(bus.Check(), Ok);
    for (const auto& [count, changes] : {std::pair(8191, 0U), {8192, 128}}) {
        bus.outside.changes.clear();
        ASSERT_EQ(bus.i2c.ReadBlock(0, static_cast<std::int16_t>(count)), Transfer::Done);
        EXPECT_EQ(bus.outside.changes, std::vector<Shown>(changes, Shown::EepPanel));
    }
}

TEST(CheckBus, TellsEachOutcome) {
    constexpr const char* kSilent =
        "100E R R O R|There is an I2C bus or\r\nInterface Hardware Problem\r\n";
    constexpr const char* kActivity = "25E R R O R|There is I2C Bus Activity\r\n";
    constexpr const char* kHardware = "50E R R O R|I2C Interface Hardware Problem\r\n";
    for (const auto& [fault, samples, box, cause] :
         {std::tuple(LateAcknowledge, 1U, "0", ""),
          {LateAcknowledge, 5, "0", ""},
          {LateAcknowledge, 6, kSilent, "Both lines do what"},
          {DeviceSilent, 0, kSilent, "Both lines do what"},
          {SclStuckHigh, 0, kSilent, "SCL stays high"},
          {LinesJoined, 0, kSilent, "Driving either line"},
          {SclStuckLow, 0, kActivity, "SCL stays low. A device"},
          {SdaStuckLow, 0, kActivity, "SDA stays low. A device"},
          {InputsInverted, 0, kActivity, "SCL and SDA stay low."},
          {SdaStuckHigh, 0, kHardware, "SDA stays high though"},
          {AdapterGone, 0, kHardware, "Nothing follows what"}}) {
        for (const Quiet quiet : {Quiet::No, Quiet::Yes}) {
            Bus bus;
            bus.program.statusBar.ShowStatus("", 1);
            bus.television.Inject({.kind = fault, .samples = static_cast<std::uint8_t>(samples)});
            std::string outcome = std::to_string(static_cast<int>(bus.Check(quiet)));
            for (const std::string& shown : bus.user.TakeBoxes())
                outcome += shown;
            const bool nobody = box == kSilent && quiet == Quiet::Yes;
            EXPECT_THAT(outcome, StartsWith(nobody ? "75" : std::string(box) + cause));
            EXPECT_EQ(bus.Status(), outcome.size() < 3 ? "" : "I2C Operation Aborted");
            bus.television.ClearFaults();
            EXPECT_TRUE(bus.IsIdle());
        }
    }
}

TEST(CheckBus, TellsAnotherMasterFromALineThatStands) {
    for (const auto& [accesses, cause, seen] :
         {std::tuple(900U, "The lines move: another master", "P"), {2000, "SDA stays low.", ""}}) {
        Bus bus;
        bus.television.Inject({.kind = SdaStuckLow, .accesses = accesses});
        EXPECT_EQ(bus.Check(Quiet::Yes), BusActivity);
        EXPECT_THAT(bus.user.TakeBoxes(), ElementsAre(HasSubstr(cause)));
        EXPECT_EQ(bus.Events(), seen) << "nothing of ours";
    }
}

TEST(CheckBus, TakesNeitherALowSclNorAPortThatFailsForSilence) {
    Bus joined;
    joined.television.Inject({.kind = LinesJoined, .begins = {Byte, 1}, .accesses = 9});
    EXPECT_EQ(joined.Check(Quiet::Yes), Ok);
    EXPECT_TRUE(joined.IsIdle());
    EXPECT_EQ(joined.i2c.ReadBlock(0, 1), Transfer::Done) << "amiss no more";

    Bus silent({.television = Television::Absent});
    const auto before = silent.television.Count(Access);
    EXPECT_EQ(silent.Check(Quiet::Yes), NobodyAnswered);
    EXPECT_EQ(silent.Events(), "S P S A0----- P");
    EXPECT_THAT(silent.user.TakeBoxes(), IsEmpty());
    const auto accesses = silent.television.Count(Access) - before;
    for (std::uint64_t access = 1; access <= accesses; ++access) {
        silent.television.ClearFaults();
        silent.television.Inject({.kind = PortFails, .begins = {Access, access}});
        EXPECT_EQ(silent.Check(Quiet::Yes), HardwareProblem) << access;
        EXPECT_THAT(silent.user.TakeBoxes(), ElementsAre(HasSubstr("simulated port has failed")));
    }
}

struct Span {
    std::int64_t shortest = INT64_MAX, longest = 0;
};

/// The times, in ns, from an event on the wire to another before the next such event: SCL's rise
/// (C) and fall (c), a change of SDA while SCL is low (D, d where it comes with SCL's fall, which
/// is a device's), a start (S), a stop (P), and a look (L), which counts up to the next event only.
std::map<std::string, Span> Times(const std::vector<WireSample>& samples) {
    std::map<std::string, Span> times;
    std::map<char, std::int64_t> last;
    for (const WireSample& sample : samples) {
        const std::int64_t now = sample.time.count();
        char event = 'L';
        if (sample.cause == WireSample::Cause::Scl)
            event = sample.scl ? 'C' : 'c';
        else if (sample.cause == WireSample::Cause::Sda)
            event = sample.scl ? (sample.sda ? 'P' : 'S') : now == last['c'] ? 'd' : 'D';
        for (const auto& [from, time] : last) {
            Span& span = times[{from, event}];
            span.shortest = std::min(span.shortest, now - time);
            span.longest = std::max(span.longest, now - time);
        }
        last.erase('L');
        last[event] = now;
    }
    return times;
}

/// Shortest times, and up to what cost of an access none is longer: the looks cost nothing then.
constexpr std::tuple<const char*, int, int> kTimes[] = {
    {"cC", 4700, -1},   {"Cc", 4000, -1},   {"CC", 10000, 1000}, {"cc", 10000, -1},
    {"CS", 4700, 1000}, {"Sc", 4000, 1000}, {"CP", 4700, -1},    {"PS", 4700, 700},
    {"cD", 300, -1},    {"DC", 250, -1}};

TEST(BusTiming, HoldsEveryTimeOfTheStandardModeAndLooksAtNoCost) {
    for (const BusTime accessCost : {0ns, 100ns, 700ns, 1000ns, 1200ns, 5000ns}) {
        const std::int64_t cost = accessCost.count();
        Bus bus({.accessCost = accessCost, .writeCycle = 200us});
        ASSERT_EQ(bus.Check(), Ok);
        ASSERT_EQ(bus.i2c.WriteByte(77, 0x55), Transfer::Done);
        ASSERT_EQ(bus.i2c.ReadBlock(70, 20), Transfer::Done);
        bus.i2c.AbortOperation();
        auto times = Times(bus.television.Samples());
        for (const auto& [edges, least, freeUpTo] : kTimes) {
            EXPECT_GE(times.at(edges).shortest, least) << edges;
            EXPECT_TRUE(cost > freeUpTo || times.at(edges).shortest <= least + cost) << edges;
        }
        EXPECT_EQ(times.at("Lc").longest, 2 * cost) << "looks at the last moment";
        EXPECT_EQ(times.at("LS").shortest, 2 * cost);
    }
    Bus bus({.accessCost = 0ns});
    ASSERT_EQ(bus.Check(), Ok);
    const BusTime begin = bus.television.Now();
    ASSERT_EQ(bus.i2c.ReadBlock(0, 8192), Transfer::Done);
    EXPECT_LE((bus.television.Now() - begin) / (8192.0 * 9), BusTime(10'300));
}

constexpr std::uint16_t kFirstPort = 888, kSecondPort = 632, kThirdPort = 956;

TEST(Bounds, MakeUpForAPortThatFailedAtTheNextCommandThere) {
    Bus bus;
    bus.television.Memory(Chip::Primary).fill(1);
    bus.television.Inject({.kind = PortFails, .begins = {Byte, 100}});
    bus.program.wholeDevice.ReadEntireEep();
    EXPECT_THAT(bus.user.TakeBoxes(), ElementsAre(HasSubstr("There is an I2C bus or")));
    EXPECT_FALSE(bus.program.state.EepRead);
    EXPECT_EQ(bus.Crc(), "");
    bus.television.ClearFaults();
    for (const auto& [port, events] : {std::pair(kSecondPort, "~7 Sr P S A0+ P"),
                                       {kFirstPort, "S FF- Sr P S P S A0+ P"},
                                       {kFirstPort, "S P S A0+ P"}}) {
        bus.program.state.portAddress = port;
        EXPECT_EQ(bus.Check(), Ok);
        EXPECT_EQ(bus.Events(), events);
    }
}

TEST(Bounds, LetGoOfWhatAKilledProgramHeldAndStoreNothingOfIt) {
    for (const auto& [scl, sda] : {std::pair(0, 0), {0, 1}, {1, 0}}) {
        Bus bus;
        const EepromImage before = bus.television.Memory(Chip::Primary);
        for (const std::uint16_t port : {kFirstPort, kFirstPort, kThirdPort}) {
            bus.Leave(bus.other.program.i2c, {0xA0, 0x00, 0x10, 0x5A}, scl, sda);
            bus.program.state.portAddress = port;
            EXPECT_EQ(bus.Check(), Ok);
            EXPECT_THAT(bus.Events(), MatchesRegex("(~1 )?Sr P S A0. P")) << "no stop before";
            EXPECT_EQ(bus.television.Memory(Chip::Primary), before);
        }
    }
}

TEST(Bounds, FreeADeviceByClocksThatOurOwnLastCommandLeftAndNoOther) {
    constexpr const char* kFreed = "Clocks have freed the bus, and nothing was stored by that.";
    for (const auto& [port, scl, fault, cause, clocks] :
         {std::tuple(kFirstPort, 1, LostWrite, kFreed, 7 + 9 + 2),
          {kSecondPort, 0, LostWrite, kFreed, 8 + 9 + 2},
          {kSecondPort, 1, LostWrite, "SDA stays low.", 0},
          {kFirstPort, 1, SdaStuckLow, "SDA stays low.", 3 * 9},
          {kFirstPort, 1, SclStuckLow, "SCL and SDA stay low.", 0}}) {
        Bus bus;
        ASSERT_EQ(bus.Check(), Ok);
        bus.program.state.portAddress = port;
        bus.LeaveReading(port == kFirstPort ? bus.i2c : bus.other.program.i2c, scl);
        bus.television.Inject({.kind = fault});
        auto before = bus.television.Count(Clock);
        EXPECT_EQ(bus.Check(), BusActivity);
        EXPECT_EQ(bus.television.Count(Clock) - before, clocks) << cause;
        EXPECT_THAT(bus.user.TakeBoxes(), ElementsAre(HasSubstr(cause)));
        before = bus.television.Count(Clock);
        EXPECT_EQ(bus.Check(), cause == kFreed ? Ok : BusActivity);
        EXPECT_TRUE(cause == kFreed || bus.television.Count(Clock) == before) << "once";
    }
}

TEST(Bounds, FreeADeviceWhateverTheLinesSeemToSayAndLookTwiceWhereTheyAreLow) {
    int again = 0;
    for (const std::uint64_t misread : {0U, 1U, 6U, 11U}) {
        for (std::uint64_t access = 1; access < 120; ++access) {
            Bus bus;
            ASSERT_EQ(bus.Check(), Ok);
            bus.LeaveReading(bus.i2c, 0);
            bus.claim.emplace(bus.i2c);
            bus.television.Record();
            bus.television.Inject(
                {.kind = SdaMisread, .begins = {Access, access}, .accesses = misread});
            bus.i2c.AbortOperation();
            bus.television.ClearFaults();
            EXPECT_TRUE(bus.IsIdle()) << misread << " from " << access;
            again += misread == 1 && bus.Events().ends_with("P S FF- Sr P") ? 1 : 0;
        }
    }
    EXPECT_EQ(again, 7 + 9 + 1) << "while the device holds SDA, in the nine clocks, at the end";
}

TEST(GiveUp, FreesABusThatItHoldsAndTouchesNoOther) {
    for (const bool holds : {false, true}) {
        Bus bus;
        ASSERT_EQ(bus.Check(), Ok);
        EXPECT_TRUE(!holds || bus.i2c.WriteByte(1, 1) == Transfer::Done);
        bus.television.Inject({.kind = holds ? LostWrite : SdaStuckLow});
        bus.television.Record();
        bus.i2c.GiveUp();
        EXPECT_EQ(bus.Events(), holds ? "Sr FF- Sr P" : "");
        EXPECT_EQ(bus.IsIdle(), holds);
        EXPECT_EQ(bus.television.DlPortReadPortUchar(0x378), 0xFF) << "given back";
    }
}

}  // namespace
}  // namespace tarnwell
