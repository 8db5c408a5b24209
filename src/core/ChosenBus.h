// The bus that was chosen to work over, as a value and as the options keep it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// An I2C bus that the kernel drives.
struct I2cBus {
    std::string name;            ///< of the adapter, in /sys
    std::string node;            ///< such as "/dev/i2c-7"
    std::uint64_t instance = 0;  ///< another one once the adapter was plugged in again

    /// The node without its folder.
    std::string_view ShortNode() const {
        return std::string_view(node).substr(node.rfind('/') + 1);
    }

    bool operator==(const I2cBus&) const = default;
};

struct ChosenBus {
    std::optional<I2cBus> kernel{};  ///< nothing for the parallel port

    bool operator==(const ChosenBus&) const = default;
};

/// "NAME|NODE", and back; a text without the bar is a name, and the empty text the parallel port.
std::string TextOf(const ChosenBus& bus);
ChosenBus ChosenBusFrom(std::string_view text);

/// A base address in decimal, and back; 0, which no port has, is the empty text, and what a text
/// gives that is none.
std::string PortAddressText(std::uint16_t address);
std::uint16_t PortAddressValue(std::string_view text);

}  // namespace tarnwell
