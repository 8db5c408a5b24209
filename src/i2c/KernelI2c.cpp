#include "i2c/KernelI2c.h"

#include <algorithm>
#include <cerrno>

namespace tarnwell {

namespace {

constexpr char kBar = '|';

class NoBuses final : public KernelI2c {
  public:
    BusTime Now() override { return {}; }
    void WaitUntil(BusTime /*time*/) override {}
    std::vector<I2cBus> Buses() override { return {}; }
    std::string DriverAt(const I2cBus& /*bus*/, std::uint8_t /*device*/) override { return {}; }
    void Open(const I2cBus& bus) override { failure_ = NoI2cBusLine(bus.name); }
    void Close() override {}
    const std::string& Failure() const override { return failure_; }
    bool IsTaken() const override { return false; }
    int Transfer(std::span<const I2cMessage> /*messages*/) override { return -ENODEV; }

  private:
    std::string failure_;
};

}  // namespace

std::string I2cBusText(const I2cBus& bus) {
    return bus.name + kBar + bus.node;
}

I2cBus I2cBusFromText(std::string_view text) {
    const std::size_t bar = text.rfind(kBar);
    if (bar == std::string_view::npos)
        return {std::string(text), {}};
    return {std::string(text.substr(0, bar)), std::string(text.substr(bar + 1))};
}

std::optional<I2cBus> FindI2cBus(const std::vector<I2cBus>& buses, const I2cBus& wanted) {
    std::vector<I2cBus> named;
    for (const I2cBus& bus : buses) {
        if (bus.name != wanted.name)
            continue;
        if (bus.node == wanted.node)
            return bus;
        named.push_back(bus);
    }
    return named.size() == 1 ? std::optional(named.front()) : std::nullopt;
}

std::string NoI2cBusLine(const std::string& nameOrNode) {
    return "The I2C bus " + nameOrNode +
           " is not there. Plug its adapter in, or choose another bus with the menu Options, "
           "Parallel Port, I2C Bus or with --port.";
}

KernelI2c& NoKernelI2c() {
    static NoBuses none;
    return none;
}

}  // namespace tarnwell
