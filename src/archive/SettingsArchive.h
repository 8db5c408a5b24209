// The settings archive: the values of all named settings as a file of S-records.
#pragma once

#include "archive/ArchiveFile.h"
#include "archive/SRecord.h"
#include "settings/SettingsEngine.h"

namespace tarnwell {

class SettingsArchive final : private Command {
  public:
    SettingsArchive(const CommandContext& context, SettingCells& cells, SettingsEngine& settings);

    void SaveSettings();

    /// Picking a file of the hidden menu's name shows the fill item instead.
    void LoadSettings();

  private:
    enum class Outcome : std::uint8_t { Loaded, Refused, Unusable };

    [[nodiscard]] bool SaveTo(const std::string& path);
    Outcome LoadFrom(const std::string& path);
    Outcome CheckHeader(ArchiveReader& archive);
    Outcome LoadRecords(ArchiveReader& archive);
    [[nodiscard]] bool LoadRecord(std::string_view record);
    void LoadValue(int cell, std::string_view digits);

    SettingCells& cells_;
    SettingsEngine& settings_;
};

}  // namespace tarnwell
