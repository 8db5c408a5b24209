// Rows: whole devices and single writes on the wire.
#include <time.h>

#include <random>
#include <span>
#include <stdexcept>
#include <thread>

#include "RealTimePort.h"
#include "Rows.h"
#include "port/system/SteadyClock.h"
#include "support/FakeI2c.h"
#include "support/TestProgram.h"

namespace tarnwell::bench {

namespace {

constexpr double kClock = 10e-6;
constexpr double kHighTime = 4e-6;
constexpr double kWriteCycleSeconds = 3.5e-3;
constexpr int kReadClocks = kEepromBytes * 9;

/// Select, two address bytes and the value, then the poll that the device answers.
constexpr int kWriteClocks = 4 * 9 + 9;
constexpr int kByteClocks = 9;

/// What a port with accesses of `access` seconds allows. The edge may lie anywhere in its access,
/// so a period is 10 us and an access. The clock after a byte read has four accesses for SDA and
/// one for SCL before the access with which SCL rises, and one between the high time and the fall.
struct Limits {
    double access;

    double Clock() const { return kClock + access; }
    double Read() const {
        return kEepromBytes * (8 * Clock() + std::max(Clock(), 7 * access + kHighTime));
    }
    /// `pages` pages with `bytes` bytes in all.
    double WritePages(int pages, int bytes) const {
        return (bytes * kByteClocks + pages * (kWriteClocks - kByteClocks)) * Clock() +
               pages * kWriteCycleSeconds;
    }
    double Write(int bytes) const { return bytes * (kWriteClocks * Clock() + kWriteCycleSeconds); }
};

void AddTimes(Table& table, const RealTimePort& port, const Limits& limits) {
    if (limits.access == 0)
        table.Add("  SCL periods within 2 % of 10 us", port.Times().ShareNearLimit(), 1, "all",
                  Unit::Share);
    table.Add("  bus times violated", static_cast<double>(port.Times().Violations()), 0, "none",
              Unit::Count);
}

double WriteSeconds(Program& program, int bytes) {
    return SecondsOf([&] {
        const BusClaim claim(program.i2c);
        for (int address = 0; address < bytes; ++address) {
            const auto value = program.buffer[static_cast<std::size_t>(address)];
            if (program.i2c.WriteByte(static_cast<std::int16_t>(address), value) ==
                Transfer::Aborted)
                return;
        }
        program.i2c.ReleaseBus();
    });
}

void AddRealTime(Table& table, const std::string& name, BusTime accessCost, Length length) {
    const Limits limits{std::chrono::duration<double>(accessCost).count()};
    const std::string limitIs =
        accessCost.count() == 0 ? "10 us a clock" : "what such accesses allow, computed";
    {
        RealTimePort port(accessCost);
        QuietProgram quiet(port, port.TheClock());
        table.Add("read, " + name + " (best of 3)",
                  BestOf(3, [&] { quiet.program.wholeDevice.ReadEntireEep(); }), limits.Read(),
                  limitIs);
        if (accessCost.count() != 0)
            table.Add("  against the standard mode", limits.Read(), kReadClocks * kClock,
                      "10 us a clock");
        AddTimes(table, port, limits);
    }
    RealTimePort port(accessCost);
    QuietProgram quiet(port, port.TheClock());
    quiet.program.wholeDevice.ReadEntireEep();
    if (length == Length::Quick)
        table.Add("write of 256 bytes, " + name, WriteSeconds(quiet.program, 256),
                  limits.Write(256), limitIs + ", and the write cycles");
    else
        table.Add("write with verification, " + name,
                  SecondsOf([&] { quiet.program.wholeDevice.WriteEntireEep(); }),
                  limits.Write(kEepromBytes) + limits.Read(), limitIs + ", and the write cycles");
    AddTimes(table, port, limits);
}

/// All bytes different, and one setting, on a port that costs nothing: two whole reads, what is
/// written over a second time, and the pages.
void AddDifferences(Table& table) {
    const Limits limits{0};
    RealTimePort port(BusTime(0));
    QuietProgram quiet(port, port.TheClock());
    Program& program = quiet.program;
    program.wholeDevice.ReadEntireEep();
    const auto writeOf = [&](std::size_t first, std::size_t bytes) {
        return BestOf(3, [&] {
            for (std::uint8_t& byte : std::span(program.buffer).subspan(first, bytes))
                byte ^= 0x5A;
            program.writeDifferences.WriteDifferencesToEep();
        });
    };
    table.Add("write of differences, all 8192 bytes (best of 3)", writeOf(0, kEepromBytes),
              3 * limits.Read() + limits.WritePages(kEepromBytes / kPageBytes, kEepromBytes),
              "three whole reads at 10 us a clock, the pages, and the write cycles");
    table.Add("write of differences, one setting (best of 3)", writeOf(2363, 1),
              2 * limits.Read() + kWriteCycleSeconds, "two whole reads and a write cycle");
    AddTimes(table, port, limits);
}

/// From the moment at which the device is ready to the acknowledge that the program sees.
void AddPolling(Table& table) {
    SimulatedTelevision television({.accessCost = BusTime(0)});
    QuietProgram quiet(television, television);
    const BusClaim claim(quiet.program.i2c);
    BusTime longest{};
    BusTime frame{};
    for (std::int16_t address = 0; address < 100; ++address) {
        television.SetWriteCycle(std::chrono::microseconds(3'000 + 11 * address));
        television.Record();
        if (quiet.program.i2c.WriteByte(address, 0x55) == Transfer::Aborted)
            return;
        const auto& events = television.Events();
        const auto stop = std::ranges::find(events, BusEvent::Kind::Stop, &BusEvent::kind);
        const BusTime ready = stop->time + std::chrono::microseconds(3'000 + 11 * address);
        longest = std::max(longest, television.Now() - ready);
        frame = events[events.size() - 2].time - events[events.size() - 4].time;
    }
    table.Add("write: device ready until its acknowledge (longest)",
              std::chrono::duration<double>(longest).count(),
              std::chrono::duration<double>(2 * frame).count(),
              "one polling frame that it missed, one that it answers");
}

/// An adapter whose transfers take the time that they need, in which the program sleeps.
class RealTimeAdapter final : public FakeI2c {
  public:
    explicit RealTimeAdapter(BusTime costOfTransfer) {
        cost = costOfTransfer;
        std::mt19937 random{1};
        for (auto& [address, device] : devices) {
            device.writeCycle = std::chrono::duration_cast<BusTime>(
                std::chrono::duration<double>(kWriteCycleSeconds));
            for (std::uint8_t& byte : device.memory)
                byte = static_cast<std::uint8_t>(random());
        }
    }
    std::chrono::nanoseconds Now() override { return clock_.Now(); }
    void Sleep(std::chrono::nanoseconds duration) override {
        std::this_thread::sleep_for(duration);
    }
    int Ioctl(int file, unsigned long request, void* argument) override {
        now = clock_.Now();
        const int result = FakeI2c::Ioctl(file, request, argument);
        std::this_thread::sleep_for(now - clock_.Now());
        return result;
    }

  private:
    SteadyClock clock_;
};

/// A transfer takes its cost, and 9 clocks for each byte and for the device's address.
void AddKernelBus(Table& table) {
    constexpr BusTime kCost = std::chrono::milliseconds(1);
    constexpr double kCostSeconds = 1e-3;
    constexpr double kRead = kReadClocks * kClock + kCostSeconds;
    constexpr int kPages = kEepromBytes / kPageBytes;
    const auto transfer = [](int bytes) {
        return kCostSeconds + (bytes + 1) * kByteClocks * kClock;
    };
    RealTimeAdapter adapter(kCost);
    LinuxI2c kernel(adapter);
    SimulatedTelevision television;
    QuietProgram quiet(television, television, QuietProgram::kNoFolder, NoBusTrace(), kernel);
    Program& program = quiet.program;
    program.state.bus.kernel = I2cBus{"Test adapter", ""};
    const auto read = [&] { program.wholeDevice.ReadEntireEep(); };
    table.Add("kernel's bus, 1 ms a transfer: first read of a run", SecondsOf(read), kRead,
              "10 us a clock, and one transfer; it looks at the device first");
    table.Add("kernel's bus, 1 ms a transfer: read (best of 3)", BestOf(3, read), kRead,
              "10 us a clock, and one transfer");
    table.Add("  processor time", LeastProcessorSeconds(3, read), 0.05, "the aim, 0.05 s");
    const double pages = BestOf(3, [&] {
        for (std::uint8_t& byte : std::span(program.buffer).first(kEepromBytes))
            byte ^= 0x5A;
        program.writeDifferences.WriteDifferencesToEep();
    });
    table.Add("kernel's bus: write of differences, all bytes (best of 3)", pages,
              3 * kRead + kPages * (transfer(2 + kPageBytes) + kWriteCycleSeconds + transfer(1)),
              "three reads, and of each page its transfer, write cycle and poll");
    if (!std::ranges::equal(std::span(program.buffer).first(kEepromBytes),
                            adapter.devices.at(0x50).memory))
        throw std::runtime_error("the kernel's bus wrote other bytes");
}

void AddSimulated(Table& table) {
    SimulatedTelevision television;
    QuietProgram quiet(television, television);
    table.Add("simulated read: processor time",
              LeastProcessorSeconds(3, [&] { quiet.program.wholeDevice.ReadEntireEep(); }), 0.1,
              "the aim, 0.1 s");
    table.Add("simulated write with verification: processor time",
              LeastProcessorSeconds(3, [&] { quiet.program.wholeDevice.WriteEntireEep(); }), 1,
              "the aim, 1 s");
}

}  // namespace

void AddWire(Table& table, Length length) {
    AddSimulated(table);
    AddPolling(table);
    AddDifferences(table);
    AddKernelBus(table);
    AddRealTime(table, "port that costs nothing", BusTime(0), length);
    AddRealTime(table, "port of 1.2 us an access", BusTime(1200), length);
}

}  // namespace tarnwell::bench
