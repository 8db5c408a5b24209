// Each command that touches the bus, under each fault of the television, from each moment on, and
// over the kernel's bus, under each fault of a transfer.
#include <algorithm>
#include <cerrno>
#include <random>

#include "image/WholeWrite.h"
#include "support/BusCommands.h"
#include "support/FakeI2c.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

/// How a command ends, as a letter of the table below.
///   o  it works
///   a  "There is I2C Bus Activity"            h  "I2C Interface Hardware Problem"
///   n  cut short: "There is an I2C bus or"    v  "E R R O R - Verify Failed"
///   r  it reads wrong bytes and cannot know: the wire shows only 0xFF or a flipped bit
///   s  n after the read of a whole device, which is asked whether it still answers; else r or v
struct Row {
    FaultKind fault;
    std::string_view reading;  ///< the fault begins before, in the select byte, address, data
    std::string_view writing;  ///< likewise, and in the write cycle, in the verification
    /// Of writing the differences: as reading, then in the first page's address, data and write
    /// cycle, in the reading that proves it, in the second page's write cycle, in the verification.
    std::string_view differences;
};

constexpr std::array kMatrix{
    Row{FaultKind::SclStuckLow, "annn", "annnnn", "annnnnnnnn"},
    Row{FaultKind::SdaStuckLow, "annn", "annnnn", "annnnnnnnn"},
    Row{FaultKind::SclStuckHigh, "nnns", "nnnnns", "nnnnnnnnnn"},
    Row{FaultKind::SdaStuckHigh, "hnns", "hnnnns", "hnnnnnnnnn"},
    Row{FaultKind::LinesJoined, "nnnn", "nnnnnn", "nnnnnnnnnn"},
    Row{FaultKind::InputsInverted, "annn", "annnnn", "annnnnnnnn"},
    Row{FaultKind::AdapterGone, "hnns", "hnnnns", "hnnnnnnnnn"},
    Row{FaultKind::PortFails, "hnnn", "hnnnnn", "hnnnnnnnnn"},
    Row{FaultKind::DeviceSilent, "nnns", "nnnnns", "nnnnnnnnnn"},
    // A device that never answers at once is found by the polling; one that answered at once in
    // the check and does no longer has lost a clock.
    Row{FaultKind::LateAcknowledge, "onno", "nnnnno", "nnnnnnnnno"},
    Row{FaultKind::LostWrite, "oooo", "vvvvvo", "vvvvvvvvvo"},
    Row{FaultKind::WrongWrite, "oooo", "vvvvvo", "vvvvvvvvvo"},
    Row{FaultKind::ShortPages, "", "", "oooooooooo"},
    Row{FaultKind::NoPageWrites, "", "", "oooooooooo"},
    Row{FaultKind::FlippedBit, "rrr", "vvvvv", "vvvvvvvvv"},
};

/// When the faults begin; the bus check sends one byte of its own, with ten clocks in all. The
/// last is in the data of the last read, which of a write is that of its verification.
std::vector<Moment> MomentsOf(const BusCommand& command) {
    using enum WireEvent;
    if (IsDifferences(command))
        return {{Access, 0},  {Clock, 14},     {Byte, 3},  {Read, 1},       {Byte, 8339},
                {Byte, 8343}, {WriteCycle, 1}, {Read, 11}, {WriteCycle, 2}, {Read, 12}};
    const Moment lastRead{Read, command.reads};
    if (command.writes)
        return {{Access, 0}, {Clock, 14}, {Byte, 3}, {Byte, 5}, {WriteCycle, 1}, lastRead};
    return {{Access, 0}, {Clock, 14}, {Byte, 3}, lastRead};
}

char ExpectedOf(const BusCommand& command, char letter) {
    if (letter != 's')
        return letter;
    const bool wholeDevice = std::string_view(command.name).ends_with("EntireEep");
    return wholeDevice ? 'n' : command.writes ? 'v' : 'r';
}

/// All that a command that was cut short must leave as it was.
Snapshot LeftAlone(const TestProgram& test) {
    Snapshot now = test.program.history.Now();
    for (CellContents& cell : now.cells)
        cell = {.shown = cell.shown};
    return now;
}

/// Every byte has bits 7 and 0 set: what a device that gets lost leaves on SDA does not depend on
/// the place.
void Prepare(TestProgram& test) {
    auto& memory = test.television.Memory(Chip::Primary);
    for (std::size_t address = 0; address < memory.size(); ++address)
        memory[address] = static_cast<std::uint8_t>(0x81 + 2 * (address % 32));
    PrepareWrites(test);
}

char OutcomeOf(TestProgram& test, const BusCommand& command) {
    const auto boxes = test.user.TakeBoxes();
    const auto told = [&](std::string_view text) {
        return std::ranges::any_of(
            boxes, [&](const std::string& box) { return box.find(text) != std::string::npos; });
    };
    for (const auto& [letter, text] : {std::pair('a', "I2C Bus Activity"),
                                       {'n', "I2C bus or"},
                                       {'h', "Hardware Problem"},
                                       {'v', "Verify Failed"}}) {
        if (told(text))
            return letter;
    }
    if (command.writes)
        return 'o';
    const auto& memory = test.television.Memory(Chip::Primary);
    bool right =
        command.reads > 1 || std::equal(memory.begin(), memory.end(), test.program.buffer.begin());
    for (int cell = 0; cell < kCellCount; ++cell)
        right = right && test.program.cells.Value(cell) == ValueIn(memory, cell);
    return right ? 'o' : 'r';
}

/// How many bytes the device holds as they were asked for; the others are as it held them.
int ArrivedBytes(TestProgram& test, const EepromImage& held) {
    int arrived = 0;
    const EepromImage& memory = test.television.Memory(Chip::Primary);
    for (std::size_t address = 0; address < memory.size(); ++address) {
        EXPECT_TRUE(memory[address] == held[address] ||
                    memory[address] == test.program.buffer[address])
            << address;
        arrived += memory[address] != held[address] ? 1 : 0;
    }
    return arrived;
}

class FaultMatrix : public ::testing::TestWithParam<BusCommand> {
  protected:
    static BusTime TimeOf(TestProgram& test, const BusCommand& command) {
        const BusTime begin = test.television.Now();
        command.Run(test);
        return test.television.Now() - begin;
    }

    static void Check(const BusCommand& command, FaultKind fault, Moment begins, char expected,
                      BusTime healthyTime) {
        TestProgram test({.writeCycle = 20us});
        Prepare(test);
        const Snapshot before = LeftAlone(test);
        const EepromImage held = test.television.Memory(Chip::Primary);
        std::string told;
        test.user.onBox = [&](const Box& box) { told = box.text; };
        test.television.Inject({.kind = fault,
                                .begins = begins,
                                .address = command.firstAddress,
                                .mask = 0x80,
                                .samples = 3});
        const BusTime wholeRead = command.writes ? 820ms : 0ms;  // which finds what else changed
        EXPECT_LE(TimeOf(test, command), 2 * healthyTime + 120ms + wholeRead);
        EXPECT_EQ(OutcomeOf(test, command), expected);
        if (expected == 'a' || expected == 'h' || expected == 'n') {
            EXPECT_TRUE(LeftAlone(test) == before && test.Eep() == "Pri");
            EXPECT_EQ(test.Status(), "I2C Operation Aborted");
            for (const int cell : {0, 1})  // waits, or is verified
                EXPECT_TRUE(test.program.cells.MarkOf(cell) == Mark::Clean ||
                            (test.program.cells.MarkOf(cell) == Mark::Save &&
                             test.program.cells.Colour(cell) == CellColour::Changed));
        }
        if (IsDifferences(command) && fault != FaultKind::WrongWrite) {
            const int arrived = ArrivedBytes(test, held);
            const std::size_t confirmed = told.find("EEProm: ");
            if (confirmed == std::string::npos)
                EXPECT_EQ(arrived, told.starts_with("Write ") ? kChangedBytes : 0) << told;
            else
                EXPECT_LE(std::stoi(told.substr(confirmed + 8)), arrived);
        }
        test.television.ClearFaults();
        const bool idle = test.television.Scl() && test.television.Sda();
        if (!idle && fault != FaultKind::PortFails) {  // in the middle of a byte
            test.program.settings.ReadSettingsFromEep();
            EXPECT_THAT(test.user.TakeBoxes(), ElementsAre(HasSubstr("Clocks have freed the bus")));
            EXPECT_TRUE(test.television.Scl() && test.television.Sda());
        }
        EXPECT_EQ(test.program.state.targetDevice, TargetDevice::Primary);
        test.program.settings.ReadSettingsFromEep();
        EXPECT_EQ(test.Status(), "Settings Values Read from EEPROM");
        EXPECT_TRUE(test.television.Scl() && test.television.Sda());
        if (IsDifferences(command)) {
            command.Run(test);
            EXPECT_EQ(ArrivedBytes(test, held), kChangedBytes) << "called again, it finishes";
        }
    }
};

TEST_P(FaultMatrix, EndsAsTheTableSays) {
    const BusCommand& command = GetParam();
    TestProgram healthy({.writeCycle = 20us});
    Prepare(healthy);
    const BusTime healthyTime = TimeOf(healthy, command);
    const std::vector<Moment> moments = MomentsOf(command);
    for (const Row& row : kMatrix) {
        const std::string_view outcomes = IsDifferences(command) ? row.differences
                                          : command.writes       ? row.writing
                                                                 : row.reading;
        for (std::size_t moment = 0; moment < outcomes.size(); ++moment) {
            SCOPED_TRACE(testing::Message()
                         << "fault " << static_cast<int>(row.fault) << " moment " << moment);
            Check(command, row.fault, moments[moment], ExpectedOf(command, outcomes[moment]),
                  healthyTime);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCommand, FaultMatrix, ::testing::ValuesIn(kBusCommands),
                         [](const auto& command) { return std::string(command.param.name); });

struct KernelProgram : FakeKernel, TestProgram {
    explicit KernelProgram(bool combines = true, std::size_t longest = kEepromBytes,
                           int refusal = 0)
        : TestProgram({}, kernel) {
        system.combines = combines;
        system.longest = longest;
        system.tooLong = refusal;
        std::mt19937 random{5};
        for (std::uint8_t& byte : Memory())
            byte = static_cast<std::uint8_t>(random());
        program.state.bus.kernel = I2cBus{"Test adapter", ""};
        if (!combines)
            user.answers = {Answer::Yes};
        PrepareWrites(*this);
        user.TakeBoxes();
    }
    std::vector<std::uint8_t>& Memory() { return system.devices.at(0x50).memory; }

    /// How many transfers it took.
    std::uint64_t Run(const BusCommand& command) {
        const std::uint64_t before = system.transfers;
        user.onBox = [this](const Box& box) {  // a filled device, after its adapter was gone
            if (box.text.find("too many of its bytes are alike") != std::string::npos)
                user.answers.push_front(Answer::Yes);
        };
        command.Run(*this);
        return system.transfers - before;
    }
};

constexpr const char* kAborted =
    "E R R O R|There is an I2C bus or\r\nInterface Hardware Problem\r\n";
constexpr const char* kCause =
    "not acknowledge|stuck|Some adapters|is gone|Another master|a part only|within 50 ms|SDA is "
    "held low";

class KernelFaults : public testing::TestWithParam<BusCommand> {
  protected:
    KernelFaults() { transfers_ = healthy_.Run(GetParam()); }

    /// A command that was cut short says why; called again without the fault it does its work.
    void Check(KernelProgram& test, bool mayWork) {
        const auto held = test.Memory();
        test.Run(GetParam());
        const auto boxes = test.user.TakeBoxes();
        const bool aborted = test.Status() == "I2C Operation Aborted";
        EXPECT_TRUE(aborted || mayWork) << test.Status();
        int wrong = 0;
        for (std::size_t address = 0; address < held.size(); ++address) {
            const std::uint8_t byte = test.Memory()[address];
            wrong += byte == held[address] || byte == healthy_.Memory()[address] ? 0 : 1;
        }
        EXPECT_EQ(wrong, 0) << "bytes that nobody asked for";
        if (aborted) {
            EXPECT_THAT(boxes.back(), AllOf(StartsWith(kAborted), ContainsRegex(kCause)));
        }
        test.system.fault = {};
        test.system.sdaLow = false;
        test.system.now += 1s;
        test.system.devices.at(0x50).busyUntil = {};
        test.system.devices.at(0x50).writeCycle = 5ms;
        if (aborted) {
            test.Run(GetParam());
            EXPECT_THAT(test.user.TakeBoxes(), Each(Not(HasSubstr("E R R O R"))));
        } else {
            EXPECT_EQ(test.Status(), healthy_.Status());
        }
        EXPECT_EQ(test.Memory(), healthy_.Memory());
        EXPECT_EQ(test.program.buffer, healthy_.program.buffer);
    }

    KernelProgram healthy_;
    std::uint64_t transfers_;
};

TEST_P(KernelFaults, LeaveTheDeviceAsTheMessageSays) {
    constexpr int kSdaFalls = -1;
    // Whether a fault of one transfer may go unseen: the bus is asked again, the poll goes
    // on, or nobody was to answer, at the end of a whole reading.
    constexpr std::pair<int, bool> kFaults[] = {
        {ENXIO, true},   {EREMOTEIO, true}, {ETIMEDOUT, true}, {EIO, true},
        {ENODEV, false}, {EAGAIN, true},    {EPROTO, true},    {kSdaFalls, false},
    };
    std::size_t carried = 0;
    for (const auto& [error, mayPass] : kFaults) {
        for (const std::uint64_t first :
             {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{2}, std::uint64_t{3},
              transfers_ / 2, transfers_ - 2, transfers_ - 1}) {
            for (const bool stays : {true, false}) {
                if (first >= transfers_ || (error == kSdaFalls && !stays))
                    continue;
                SCOPED_TRACE(testing::Message() << error << " from " << first << " on " << stays);
                KernelProgram test;
                test.system.carried = carried = (carried + 7) % 31;
                std::uint64_t transfer = 0;
                test.system.fault = [&, error = error, first = first] {
                    const std::uint64_t now = transfer++;
                    const bool due = now == first || (stays && now > first);
                    test.system.sdaLow = due && error == kSdaFalls;
                    return due && error != kSdaFalls ? error : 0;
                };
                Check(test, mayPass && (!stays || first == transfers_ - 1));
            }
        }
    }
}

TEST_P(KernelFaults, WorkOnEveryAdapterAndEndWithAnEndlessWriteCycle) {
    for (const bool combines : {true, false}) {
        for (const auto& [longest, refusal] : {std::pair<std::size_t, int>{4096, EOPNOTSUPP},
                                               {4096, ETIMEDOUT},
                                               {254, EIO},
                                               {255, EREMOTEIO},
                                               {255, EMSGSIZE},
                                               {34, EPROTO},
                                               {32, EINVAL},
                                               {32, EIO}}) {
            SCOPED_TRACE(testing::Message() << combines << " " << longest << " " << refusal);
            KernelProgram test(combines, longest, refusal);
            Check(test, true);
            EXPECT_GT(test.user.paintings, 0);
        }
    }
    for (const auto& [cycle, works] : {std::pair<BusTime, bool>{40ms, true}, {1h, false}}) {
        KernelProgram test;
        test.system.devices.at(0x50).writeCycle = cycle;
        Check(test, works || !GetParam().writes);
    }
}

/// Watches two places once, then while something is wrong, then again until both were read twice.
/// Whether a failure was told.
bool WatchThrough(Program& program, const std::function<void()>& begin,
                  const std::function<void()>& end) {
    Watch& watch = program.watch;
    watch.Begin(TargetDevice::Primary, {{0, 40}, {2363, 2}});
    while (watch.Readings() == 0)
        watch.Step();
    begin();
    bool told = false;
    for (int step = 0; step < 4; ++step) {
        EXPECT_LE(watch.Step(), 4s);
        told = told || !watch.Failure().empty();
    }
    end();
    for (const int readings = watch.Readings(); watch.Readings() < readings + 2;)
        EXPECT_GE(watch.Step(), 10ms);
    EXPECT_EQ(watch.Failure(), "");
    return told;
}

TEST(WatchFaults, AreToldAndTriedAgainAndNoByteIsStored) {
    using enum WireEvent;
    for (const Row& row : kMatrix) {
        const Moment moments[] = {{Access, 0}, {Clock, 14}, {Byte, 3}, {Read, 1}};
        for (std::size_t moment = 0; moment < row.reading.size(); ++moment) {
            SCOPED_TRACE(testing::Message()
                         << "fault " << static_cast<int>(row.fault) << " moment " << moment);
            TestProgram test({.writeCycle = 20us});
            auto& memory = test.television.Memory(Chip::Primary);
            for (std::size_t address = 0; address < memory.size(); ++address)
                memory[address] = static_cast<std::uint8_t>(0x81 + 2 * (address % 32));
            const EepromImage held = memory;
            const auto inject = [&] {
                test.television.Inject({row.fault, moments[moment], 0, Chip::Primary, 3, 0x80, 3});
            };
            const auto switchOffAndOn = [&] {
                test.television.PowerCycle();
                test.television.ClearFaults();
            };
            const char letter = row.reading[moment];
            EXPECT_EQ(WatchThrough(test.program, inject, switchOffAndOn),
                      letter != 'o' && letter != 'r');
            EXPECT_THAT(test.program.watch.Changes(), SizeIs(letter == 'r' ? 2 : 0));
            EXPECT_EQ(test.television.Count(WriteCycle), 0U);
            EXPECT_TRUE(memory == held && test.television.Scl() && test.television.Sda());
            EXPECT_THAT(test.user.TakeBoxes(), IsEmpty());
        }
    }
}

TEST(WatchFaults, StoreNoByteOverTheKernelsBusEither) {
    for (const int error : {ENXIO, EREMOTEIO, ETIMEDOUT, EIO, ENODEV, EAGAIN, EPROTO, 0}) {
        for (std::size_t first = 0; first < 8; ++first) {
            SCOPED_TRACE(testing::Message() << error << " from " << first << " on");
            KernelProgram test;
            test.system.carried = 2 + first;
            const auto fail = [&] {
                test.system.fault = [&, transfer = std::uint64_t{0}]() mutable {
                    test.system.sdaLow = error == 0 && transfer >= first;
                    return transfer++ >= first ? error : 0;
                };
            };
            const auto end = [&] {
                test.system.fault = {};
                test.system.sdaLow = false;
            };
            EXPECT_TRUE(WatchThrough(test.program, fail, end));
            EXPECT_THAT(test.program.watch.Changes(), IsEmpty());
            EXPECT_EQ(test.system.devices.at(0x50).stores, 0U);
            EXPECT_THAT(test.user.TakeBoxes(), IsEmpty());
        }
    }
}

TEST(WholeWrite, GoesByPagesOnTheKernelsBusWhereTheyArriveAndCountsEachByteOnce) {
    for (const auto& [page, cycles] : {std::pair(32U, 256U), {16U, 1U + 8192U}}) {
        KernelProgram test;
        FakeEeprom& device = test.system.devices.at(0x50);
        device.pageSize = page;
        const std::uint64_t before = device.cycles;
        FollowedBus& bus = test.program.bus;
        for (unsigned claim = 1; claim <= 2; ++claim) {
            const BusClaim claimed(bus);
            EXPECT_EQ(WriteWhole(bus, test.program.buffer), Transfer::Done);
            EXPECT_EQ(bus.BytesWritten(), 8192);
            EXPECT_EQ(device.cycles - before, claim * cycles);
        }
        EXPECT_TRUE(std::ranges::equal(device.memory, std::span(test.program.buffer).first(8192)));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCommand, KernelFaults, testing::ValuesIn(kBusCommands),
                         [](const auto& command) { return std::string(command.param.name); });

}  // namespace
}  // namespace tarnwell
