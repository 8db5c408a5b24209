// What the commands on named settings share.
#pragma once

#include "cli/tools/Files.h"
#include "cli/tools/Writing.h"

namespace tarnwell::cli {

/// Named settings are those of the primary EEPROM: on the secondary one the command ends.
[[nodiscard]] bool RefusesSettings(const Arguments& arguments, Report& report);

/// The bytes in which the device has these values, with the other bits as they are, or nothing if
/// they could not be read. `image` gets the bytes as they were read for this.
std::optional<ByteValues> BytesWith(const CellValues& values, Device& device, MemoryBuffer& image);

/// Puts those of the cells that a file holds into the report.
void ShowSettings(const std::vector<int>& cells, const Content& content, Report& report);

/// Brings the device to an image, or to the values of a settings archive, by what differs.
void WriteContentDifferences(const Content& content, const Arguments& arguments, Device& device,
                             Report& report);

Writing SettingsWriting(ByteValues bytes);

}  // namespace tarnwell::cli
