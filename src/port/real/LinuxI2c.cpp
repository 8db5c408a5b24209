#include "port/real/LinuxI2c.h"

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "port/system/FileLock.h"
#include "port/system/ParallelPorts.h"

namespace tarnwell {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kPrefix = "i2c-";

/// The number of "i2c-N"; nothing for a device on a bus.
std::optional<int> BusNumber(std::string_view entry) {
    if (!entry.starts_with(kPrefix) || entry.size() == kPrefix.size() ||
        entry.find_first_not_of("0123456789", kPrefix.size()) != std::string_view::npos)
        return std::nullopt;
    return std::stoi(std::string(entry.substr(kPrefix.size())));
}

std::uint64_t InstanceOf(const std::string& folder) {
    struct stat status {};
    return stat(folder.c_str(), &status) == 0 ? status.st_ino : 0;
}

}  // namespace

void LinuxI2c::WaitUntil(BusTime time) {
    if (const BusTime now = Now(); now < time)
        system_.Sleep(time - now);
}

std::vector<I2cBus> LinuxI2c::Buses() {
    std::vector<std::pair<int, I2cBus>> numbered;
    std::error_code error;
    for (fs::directory_iterator entry(BusesFolder(), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename();
        const auto number = BusNumber(name);
        if (!number)
            continue;
        I2cBus bus{{}, system_.DevFolder() + "/" + name, InstanceOf(entry->path())};
        std::getline(std::ifstream(entry->path() / "name"), bus.name);
        numbered.emplace_back(*number, std::move(bus));
    }
    std::ranges::sort(numbered, {}, [](const auto& pair) { return pair.first; });
    std::vector<I2cBus> buses;
    buses.reserve(numbered.size());
    for (auto& [number, bus] : numbered)
        buses.push_back(std::move(bus));
    return buses;
}

std::optional<I2cDriver> LinuxI2c::DriverAt(const I2cBus& bus, std::uint8_t device) {
    char entry[32];
    std::snprintf(entry, sizeof entry, "%s-%04x",
                  std::string(bus.ShortNode().substr(kPrefix.size())).c_str(), unsigned(device));
    std::error_code error;
    const std::string driver =
        fs::read_symlink(BusesFolder() + entry + "/driver", error).filename();
    // The one at a lower address has taken this one as well.
    if (driver == "dummy" && device > 0x50)
        return DriverAt(bus, 0x50);
    return driver.empty() ? std::nullopt : std::optional(I2cDriver{driver, entry});
}

void LinuxI2c::Open(const I2cBus& bus) {
    Close();
    failure_.clear();
    taken_ = false;
    const int descriptor = Uninterrupted([&] { return system_.Open(bus.node, O_RDWR); });
    if (descriptor < 0)
        return Fail(OpenLine(bus, -descriptor));
    file_ = OpenFile(system_, descriptor);
    const int locked = LockUntil(system_, file_, system_.Now() + kClaimPatience);
    taken_ = locked == -EWOULDBLOCK;
    if (taken_)
        return Fail(InUseLine(bus.node, system_.ProcFolder(), bus.node));
    if (locked < 0)
        return Fail(ErrorLine(bus.node, -locked, "Check the adapter and try again."));
    if (!SendsPlainMessages())
        Fail(bus.node +
             " takes SMBus commands only: with these an address of a 24C64 is no other than a byte "
             "that a smaller device stores. Choose another adapter.");
}

bool LinuxI2c::SendsPlainMessages() {
    unsigned long functions = 0;
    return system_.Ioctl(file_.Descriptor(), I2C_FUNCS, &functions) >= 0 &&
           (functions & I2C_FUNC_I2C) != 0;
}

std::string LinuxI2c::OpenLine(const I2cBus& bus, int error) const {
    const bool missing = error == ENOENT || error == ENODEV || error == ENXIO;
    if (missing && fs::exists(BusesFolder() + std::string(bus.ShortNode())))
        return bus.node +
               " is missing. Load the kernel module i2c-dev with \"sudo modprobe i2c-dev\".";
    if (missing)
        return NoI2cBusLine({}, bus);
    return ErrorLine(
        bus.node, error,
        error == EACCES || error == EPERM
            ? "Add your account to the group i2c and log in again, or give yourself this "
              "adapter by a udev rule."
            : "Check the adapter and try again.");
}

void LinuxI2c::Fail(std::string line) {
    failure_ = std::move(line);
    Close();
}

int LinuxI2c::Transfer(std::span<const I2cMessage> messages) {
    std::vector<i2c_msg> sent;
    for (const I2cMessage& message : messages) {
        const bool reads = message.direction == I2cDirection::Read;
        sent.push_back({.addr = message.device,
                        .flags = static_cast<std::uint16_t>(reads ? I2C_M_RD : 0),
                        .len = static_cast<std::uint16_t>(message.bytes.size()),
                        .buf = message.bytes.data()});
    }
    i2c_rdwr_ioctl_data all{.msgs = sent.data(), .nmsgs = static_cast<std::uint32_t>(sent.size())};
    const int result = system_.Ioctl(file_.Descriptor(), I2C_RDWR, &all);
    if (result < 0)
        return result;
    return static_cast<std::size_t>(result) == sent.size() ? 0 : -EPROTO;
}

}  // namespace tarnwell
