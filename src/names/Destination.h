// The places that the user can name to go to: addresses, settings and names of one's own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "names/NameBook.h"

namespace tarnwell {

/// A byte of the grid, or a setting's cell on its page.
struct Destination {
    int address;
    std::optional<int> cell;

    bool operator==(const Destination&) const = default;
};

/// What can be named: the settings, and the names of one's own that are on the target device.
struct Destinations {
    const NameBook& names;
    TargetDevice target;
    NumberMode mode;

    /// The place that `text` names: a setting or another name ("R-YR 480p", "480p R-YR"; without a
    /// format its first cell; case does not matter), an address in the form of the mode or, behind
    /// 0x, in hexadecimal, or else the first of whose name and description each word begins one
    /// ("red sat 480p"). What can be read as both a name and an address is the name.
    std::optional<Destination> From(std::string_view text) const;

    /// All names with their descriptions, settings first.
    std::vector<std::string> Names() const;

    /// What is told of a text that names no place.
    std::string NoneText(std::string_view text) const;

  private:
    NameList All() const;
};

}  // namespace tarnwell
