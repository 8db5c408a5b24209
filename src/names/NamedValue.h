// A value on one of the EEPROMs that has a name: a built-in setting, or what the user named.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "core/user/Number.h"
#include "settings/Catalog.h"

namespace tarnwell {

/// Bits of one byte, or two whole bytes that make one number.
struct NamedValue {
    std::string name{};  ///< "AGC.Level"; of a built-in setting "R-YR.480p", "TINT"
    TargetDevice device = TargetDevice::Primary;
    int address = 0;           ///< of two bytes the high one's
    std::optional<int> low{};  ///< the low one's
    BitRange bits{0, 7};       ///< that belong to it; of two bytes all
    int lowest = 0;
    int highest = 255;
    std::string text{};                   ///< what it does
    std::map<int, std::string> values{};  ///< what some of its values mean: 0 "off", 1 "on"
    std::optional<int> cell{};            ///< of a built-in setting
    std::string unknown{};                ///< what else its file says of it, as JSON; or empty

    bool operator==(const NamedValue&) const = default;
};

/// As it is shared by whoever shows it; a change makes another one.
using Named = std::shared_ptr<const NamedValue>;

/// The setting of a cell. Its bits are all from its lowest one up, since a value beyond its range
/// takes them, too.
NamedValue NamedSetting(int cell);

/// The largest number that the bits can hold.
int LargestIn(const NamedValue& named);

/// The bits of the byte at an address that belong to it; 0 at another address.
int MaskAt(const NamedValue& named, int address);

/// Its value as its device's image holds it.
int ValueIn(std::span<const std::uint8_t> image, const NamedValue& named);

/// The same of its one byte.
int ValueIn(std::uint8_t byte, const NamedValue& named);

/// Gives it a value; all other bits of the image stay.
void PutValue(std::span<std::uint8_t> image, const NamedValue& named, int value);

/// What it is called in front of people: "480p R-YR", "AGC.Level".
std::string TitleOf(const NamedValue& named);

/// Which bits it takes: "bits 2 to 7", "bit 0", "high byte, low byte at 4101".
std::string BitsText(const NamedValue& named, NumberMode mode);

/// "Primary EEProm, address 4100, bits 2 to 7".
std::string PlaceText(const NamedValue& named, NumberMode mode);

/// A value with what it means, where that is known: "1 (on)".
std::string ValueText(const NamedValue& named, int value, NumberMode mode);

/// What is wrong with it by itself, in one sentence; empty if nothing is. `key` gets what it is
/// wrong in, as the file calls it.
std::string FaultOf(const NamedValue& named, std::string& key);

}  // namespace tarnwell
