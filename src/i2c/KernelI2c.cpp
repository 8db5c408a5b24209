#include "i2c/KernelI2c.h"

#include <array>
#include <cerrno>

namespace tarnwell {

namespace {

/// What names end with: " at bus 003 device 010", " on hidraw2".
constexpr std::array<std::string_view, 2> kPlaces{" at bus ", " on hidraw"};

std::string_view WithoutPlace(std::string_view name) {
    for (const std::string_view place : kPlaces)
        name = name.substr(0, name.rfind(place));
    return name;
}

/// Those of this name and node, or else of this name, or else of a name that is alike.
std::vector<I2cBus> Candidates(const std::vector<I2cBus>& buses, const I2cBus& wanted) {
    std::vector<I2cBus> named;
    std::vector<I2cBus> alike;
    for (const I2cBus& bus : buses) {
        if (bus.name == wanted.name && bus.node == wanted.node)
            return {bus};
        if (bus.name == wanted.name)
            named.push_back(bus);
        if (WithoutPlace(bus.name) == WithoutPlace(wanted.name))
            alike.push_back(bus);
    }
    return named.empty() ? alike : named;
}

class NoBuses final : public KernelI2c {
  public:
    BusTime Now() override { return {}; }
    void WaitUntil(BusTime /*time*/) override {}
    std::vector<I2cBus> Buses() override { return {}; }
    std::optional<I2cDriver> DriverAt(const I2cBus& /*bus*/, std::uint8_t /*device*/) override {
        return std::nullopt;
    }
    void Open(const I2cBus& bus) override { failure_ = NoI2cBusLine({}, bus); }
    void Close() override {}
    const std::string& Failure() const override { return failure_; }
    bool IsTaken() const override { return false; }
    int Transfer(std::span<const I2cMessage> /*messages*/) override { return -ENODEV; }

  private:
    std::string failure_;
};

}  // namespace

std::optional<I2cBus> FindI2cBus(const std::vector<I2cBus>& buses, const I2cBus& wanted) {
    const auto found = Candidates(buses, wanted);
    return found.size() == 1 ? std::optional(found.front()) : std::nullopt;
}

std::string NoI2cBusLine(const std::vector<I2cBus>& buses, const I2cBus& wanted) {
    constexpr std::string_view kMenu = "with the menu Options, Parallel Port, I2C Bus or ";
    std::string nodes;
    for (const I2cBus& bus : Candidates(buses, wanted))
        nodes += (nodes.empty() ? "" : ", ") + bus.node;
    const std::string name = wanted.name.empty() ? wanted.node : wanted.name;
    if (nodes.empty())
        return "The I2C bus " + name +
               " is not there. Plug its adapter in, or choose another bus " + std::string(kMenu) +
               "with --port.";
    return "Several I2C buses are named " + std::string(WithoutPlace(name)) + ": " + nodes +
           ". Choose one " + std::string(kMenu) + "by --port=i2c: and its node.";
}

KernelI2c& NoKernelI2c() {
    static NoBuses none;
    return none;
}

}  // namespace tarnwell
