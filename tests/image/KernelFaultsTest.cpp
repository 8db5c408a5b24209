// Each command that touches the bus, over the kernel's, under each fault of a transfer.
#include <cerrno>
#include <random>

#include "support/BusCommands.h"
#include "support/FakeI2c.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

/// An image that was read, two changed settings, a pending write, and changes of three pages.
struct KernelProgram : FakeKernel, TestProgram {
    explicit KernelProgram(bool combines = true, std::size_t longest = kEepromBytes)
        : TestProgram({}, kernel) {
        system.combines = combines;
        system.longest = longest;
        std::mt19937 random{5};
        for (std::uint8_t& byte : Memory())
            byte = static_cast<std::uint8_t>(random());
        program.state.i2cBus = "Test adapter|";
        if (!combines)
            user.answers = {Answer::Yes};
        program.wholeDevice.ReadEntireEep();
        for (std::uint8_t& byte : std::span(program.buffer).first(3 * kPageBytes))
            byte ^= 0x04;
        for (const int cell : {0, 1}) {
            program.cells.ShowValue(cell, 201);
            program.cells.SetMark(cell, Mark::Save);
            program.cells.SetColour(cell, CellColour::Changed);
        }
        program.pending.AddPendingWrite({"16", "80", "201"});
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
        command.run(*this);
        EXPECT_THAT(user.answers, testing::SizeIs(testing::Le(1)));  // that it was not asked for
        user.answers.clear();
        return system.transfers - before;
    }
};

constexpr const char* kAborted =
    "E R R O R|There is an I2C bus or\r\nInterface Hardware Problem\r\n";
constexpr const char* kCause =
    "not acknowledge|stuck|Some adapters|is gone|Another master|a part only|within 50 ms";

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
            EXPECT_THAT(boxes.back(), testing::AllOf(testing::StartsWith(kAborted),
                                                     testing::ContainsRegex(kCause)));
        }
        test.system.fault = {};
        test.system.now += 1s;
        test.system.devices.at(0x50).busyUntil = {};
        test.system.devices.at(0x50).writeCycle = 5ms;
        if (aborted) {
            test.Run(GetParam());
            EXPECT_THAT(test.user.TakeBoxes(),
                        testing::Each(testing::Not(testing::HasSubstr("E R R O R"))));
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
    // Whether a fault of one transfer may go unseen: the bus is asked again, or the poll goes on.
    constexpr std::pair<int, bool> kFaults[] = {
        {ENXIO, true},   {EREMOTEIO, true}, {ETIMEDOUT, true}, {EIO, true},
        {ENODEV, false}, {EAGAIN, true},    {EPROTO, true},
    };
    std::size_t carried = 0;
    for (const auto& [error, mayPass] : kFaults) {
        for (const std::uint64_t first :
             {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{2}, std::uint64_t{3},
              transfers_ / 2, transfers_ - 2, transfers_ - 1}) {
            for (const bool stays : {true, false}) {
                if (first >= transfers_)
                    continue;
                SCOPED_TRACE(testing::Message() << error << " from " << first << " on " << stays);
                KernelProgram test;
                test.system.carried = carried = (carried + 7) % 31;
                std::uint64_t transfer = 0;
                test.system.fault = [&, error = error, first = first] {
                    const std::uint64_t now = transfer++;
                    return now == first || (stays && now > first) ? error : 0;
                };
                Check(test, !stays && mayPass);
            }
        }
    }
}

TEST_P(KernelFaults, WorkOnEveryAdapterAndEndWithAnEndlessWriteCycle) {
    for (const bool combines : {true, false}) {
        for (const std::size_t longest : {4096U, 255U, 32U}) {
            SCOPED_TRACE(testing::Message() << combines << " " << longest);
            KernelProgram test(combines, longest);
            Check(test, true);
        }
    }
    for (const auto& [cycle, works] : {std::pair<BusTime, bool>{40ms, true}, {1h, false}}) {
        KernelProgram test;
        test.system.devices.at(0x50).writeCycle = cycle;
        Check(test, works || !GetParam().writes);
    }
}

TEST_P(KernelFaults, AskAboutAnotherDeviceAndLeaveItAlone) {
    KernelProgram test;
    test.system.PlugInAgain();
    FakeEeprom& device = test.system.devices.at(0x50);
    device = {{device.memory.begin(), device.memory.begin() + 256}, 1};
    int questions = 0;
    test.user.onBox = [&](const Box& box) {
        if (box.text.find("its addresses have one byte") == std::string::npos)
            return;
        ++questions;
        test.user.answers.push_front(Answer::No);
    };
    GetParam().run(test);
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(test.Status(), "I2C Operation Aborted");
    EXPECT_EQ(device.stores, 0U);
}

INSTANTIATE_TEST_SUITE_P(EveryCommand, KernelFaults, testing::ValuesIn(kBusCommands),
                         [](const auto& command) { return std::string(command.param.name); });
INSTANTIATE_TEST_SUITE_P(Differences, KernelFaults, testing::Values(kWriteDifferences));

}  // namespace
}  // namespace tarnwell
