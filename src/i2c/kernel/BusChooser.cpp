#include "i2c/kernel/BusChooser.h"

#include "i2c/kernel/FailureLines.h"
#include "i2c/kernel/KernelTransfers.h"

namespace tarnwell {

namespace {

constexpr std::string_view kNone =
    "The kernel drives no I2C bus. Plug an adapter in; if none appears here, its driver is not "
    "loaded.";
constexpr std::string_view kSelect = "Select the bus of your adapter.";
constexpr std::string_view kLook =
    "Look asks the two addresses of the EEPROMs for a byte. It writes nothing.";
constexpr std::string_view kMainboard =
    "This is the mainboard's own bus: memory modules have the addresses of the EEPROMs there, so "
    "nothing is asked. Use it only if you know that your EEPROMs are connected to it.";

}  // namespace

bool BusChooser::Refresh() {
    auto now = kernel_.Buses();
    if (now == buses_)
        return false;
    buses_ = std::move(now);
    return true;
}

std::string BusChooser::Advice(const I2cBus* selected) const {
    if (selected == nullptr)
        return std::string(buses_.empty() ? kNone : kSelect);
    return std::string(MayLook(*selected) ? kLook : kMainboard);
}

std::string BusChooser::Look(const I2cBus& bus) {
    if (!MayLook(bus))
        return std::string(kMainboard);
    kernel_.Open(bus);
    std::string found = kernel_.Failure();
    if (const int error = found.empty() ? KernelTransfers(kernel_, stop_).LookAtSda() : 0;
        error == kSdaHeld || error == kClockHeld)
        found = FailureLine(bus, error);
    if (found.empty())
        found = "0x50 (primary EEPROM): " + AnswerOf(bus, 0x50) +
                "\n0x51 (secondary EEPROM): " + AnswerOf(bus, 0x51);
    kernel_.Close();
    return found;
}

std::string BusChooser::AnswerOf(const I2cBus& bus, std::uint8_t device) {
    if (const auto driver = kernel_.DriverAt(bus, device))
        return "not asked, since the kernel's driver " + driver->name + " uses it.";
    const int error = KernelTransfers(kernel_, stop_).ReadCurrent(device);
    stop_.Obey();
    if (error == 0)
        return "a device answers.";
    return IsNoAcknowledge(error) ? "nothing answers." : FailureLine(bus, error);
}

// A bus that another program has now may be free when a command needs it.
std::string BusChooser::Obstacle(const I2cBus& bus) {
    kernel_.Open(bus);
    std::string line = kernel_.IsTaken() ? "" : kernel_.Failure();
    kernel_.Close();
    return line;
}

}  // namespace tarnwell
