// Each command that touches the bus, under each fault of the television, from each moment on.
#include <algorithm>
#include <span>

#include "support/BusCommands.h"

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

bool IsDifferences(const BusCommand& command) {
    return command.name == kWriteDifferences.name;
}

/// When the faults begin; the bus check sends one byte of its own, with ten clocks in all. The
/// last is in the data of the last read, which of a write is that of its verification.
std::vector<Moment> MomentsOf(const BusCommand& command) {
    using enum WireEvent;
    if (IsDifferences(command))
        return {{Access, 0},  {Clock, 14},     {Byte, 3}, {Read, 1},       {Byte, 8199},
                {Byte, 8203}, {WriteCycle, 1}, {Read, 2}, {WriteCycle, 2}, {Read, 3}};
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
        cell = {.caption = cell.caption};
    return now;
}

constexpr int kChangedBytes = 3 * kPageBytes;

/// A program with an image, two changed settings and a pending write. Every byte has bits 7 and
/// 0 set: what a device that gets lost leaves on SDA does not depend on the place.
void Prepare(TestProgram& test) {
    auto& memory = test.television.Memory(Chip::Primary);
    for (std::size_t address = 0; address < memory.size(); ++address)
        memory[address] = static_cast<std::uint8_t>(0x81 + 2 * (address % 32));
    test.program.wholeDevice.ReadEntireEep();
    for (std::uint8_t& byte : std::span(test.program.buffer).first(kChangedBytes))
        byte ^= 0x04;
    for (const int cell : {0, 1}) {
        test.program.cells.ShowValue(cell, 201);
        test.program.cells.SetMark(cell, Mark::Save);
        test.program.cells.SetColour(cell, CellColour::Changed);
    }
    test.program.pending.AddPendingWrite({"16", "80", "201"});
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
    bool right = true;
    if (std::string_view(command.name) == "ReadEntireEep")
        right = std::equal(memory.begin(), memory.end(), test.program.buffer.begin());
    for (int cell = 0; cell < kCellCount; ++cell) {
        const auto byte = memory[static_cast<std::size_t>(Cell(cell).address)];
        right = right && test.program.cells.Caption(cell) ==
                             std::to_string(FieldOf(byte, Cell(cell).setting->shift));
    }
    return right ? 'o' : 'r';
}

void ExpectSettingsRemembered(const TestProgram& test) {
    for (const int cell : {0, 1}) {
        const bool waits = test.program.cells.MarkOf(cell) == Mark::Save &&
                           test.program.cells.Colour(cell) == CellColour::Changed;
        const bool verified = test.program.cells.MarkOf(cell) == Mark::Clean;
        EXPECT_TRUE(waits || verified) << "cell " << cell;
    }
}

/// A device that the fault left in the middle of a byte lets go when it is switched off and on.
void ExpectNothingDriven(TestProgram& test) {
    test.television.Record();
    test.program.settings.ReadSettingsFromEep();
    EXPECT_THAT(test.user.TakeBoxes(),
                ::testing::ElementsAre(::testing::HasSubstr("I2C Bus Activity")));
    EXPECT_EQ(ToText(test.television.Events()), "");
    test.television.PowerCycle();
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

/// As many bytes as were told to be confirmed have arrived.
void ExpectTrue(const std::string& told, int arrived) {
    const std::size_t confirmed = told.find("EEProm: ");
    if (confirmed == std::string::npos)
        EXPECT_EQ(arrived, told.starts_with("Write ") ? kChangedBytes : 0) << told;
    else
        EXPECT_LE(std::stoi(told.substr(confirmed + 8)), arrived);
}

class FaultMatrix : public ::testing::TestWithParam<BusCommand> {
  protected:
    static BusTime TimeOf(TestProgram& test, const BusCommand& command) {
        const BusTime begin = test.television.Now();
        command.run(test);
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
        EXPECT_LE(TimeOf(test, command), 2 * healthyTime + 120ms);
        EXPECT_EQ(OutcomeOf(test, command), expected);
        if (expected == 'a' || expected == 'h' || expected == 'n') {
            EXPECT_TRUE(LeftAlone(test) == before && test.Eep() == "Pri");
            EXPECT_EQ(test.Status(), "I2C Operation Aborted");
            ExpectSettingsRemembered(test);
        }
        if (IsDifferences(command) && fault != FaultKind::WrongWrite)
            ExpectTrue(told, ArrivedBytes(test, held));
        test.television.ClearFaults();
        const bool idle = test.television.Scl() && test.television.Sda();
        if (!idle && fault != FaultKind::PortFails)
            ExpectNothingDriven(test);
        EXPECT_EQ(test.program.state.targetDevice, TargetDevice::Primary);
        test.program.settings.ReadSettingsFromEep();
        EXPECT_EQ(test.Status(), "Settings Values Read from EEPROM");
        EXPECT_TRUE(test.television.Scl() && test.television.Sda());
        if (IsDifferences(command)) {
            kWriteDifferences.run(test);
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
INSTANTIATE_TEST_SUITE_P(Differences, FaultMatrix, ::testing::Values(kWriteDifferences));

}  // namespace
}  // namespace tarnwell
