// The places that the user can name to go to: addresses and settings.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/Catalog.h"

namespace tarnwell {

/// A byte of the grid, or a setting's cell on its page.
struct Destination {
    int address;
    std::optional<int> cell;

    bool operator==(const Destination&) const = default;
};

/// The place that `text` names: a setting ("R-YR 480p", "480p R-YR"; without a format its first
/// cell; case does not matter), an address in the form of `mode` or, behind 0x, in hexadecimal, or
/// else the first setting of whose name and description each word begins one ("red sat 480p").
/// What can be read as both a name and an address is the setting.
std::optional<Destination> DestinationFrom(std::string_view text, NumberMode mode);

/// The names of all cells, with their descriptions, in the order of the catalog.
std::vector<std::string> DestinationNames();

/// What is told of a text that names no place.
std::string NoDestinationText(NumberMode mode);

}  // namespace tarnwell
