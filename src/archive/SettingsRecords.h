// The lines of a settings archive, both ways.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "archive/ArchiveFile.h"
#include "settings/SettingCells.h"

namespace tarnwell {

/// By cell, the two digits of its value as they stand in a file; empty where the file has none.
struct SettingDigits : std::array<std::string, kCellCount> {
    std::string misfit{};  ///< which value of which record ended the load since it does not fit
};

/// Header, a record for each setting group, terminator.
std::vector<std::string> SettingsRecords(const SettingCells& cells);

/// Takes the records of a file whose header was accepted, each as a whole if its values fit their
/// settings; of one that goes on behind the last cell, what stands before. `digits` holds what
/// stood before the end, whatever that is.
[[nodiscard]] LoadEnd LoadSettingsRecords(ArchiveFile& file, SettingDigits& digits);

}  // namespace tarnwell
