#include "core/ChosenBus.h"

#include <algorithm>
#include <charconv>

namespace tarnwell {

namespace {

constexpr char kBar = '|';

}  // namespace

std::string TextOf(const ChosenBus& bus) {
    return bus.kernel ? bus.kernel->name + kBar + bus.kernel->node : std::string();
}

ChosenBus ChosenBusFrom(std::string_view text) {
    if (text.empty())
        return {};
    const std::size_t bar = text.rfind(kBar);
    if (bar == std::string_view::npos)
        return {I2cBus{std::string(text), {}}};
    return {I2cBus{std::string(text.substr(0, bar)), std::string(text.substr(bar + 1))}};
}

std::string PortAddressText(std::uint16_t address) {
    return address == 0 ? std::string() : std::to_string(address);
}

std::uint16_t PortAddressValue(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    std::uint16_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace tarnwell
