// The settings archive: the values of all named settings as a file of S-records.
#pragma once

#include "archive/ArchiveCommand.h"
#include "archive/SettingsRecords.h"
#include "settings/SettingsEngine.h"

namespace tarnwell {

class SettingsArchive final : private ArchiveCommand {
  public:
    SettingsArchive(const CommandContext& context, SettingCells& cells, SettingsEngine& settings);

    void SaveSettings();

    /// Picking a file of the hidden menu's name shows the fill item instead.
    void LoadSettings();

    /// The same with the file `path`, a full path, which nobody is asked for, whatever its name.
    void LoadSettingsFile(const std::string& path);

    /// The same with one that was used before.
    void LoadRecentSettings(const std::string& path);

    using ArchiveCommand::AskToLook;

    /// The values of a file that the user picked, now or before; the cells stay as they are.
    /// Nothing if the file is not taken as a whole, which a box has told.
    std::optional<SettingDigits> LookAt(const std::string& path);

  private:
    static const Texts kTexts;

    void LoadFrom(const std::string& path);
    bool MayLoad(const ArchiveFile& file);
    bool LoadRecords(ArchiveFile& file, const std::string& path);
    void ShowValues(const SettingDigits& digits);

    SettingCells& cells_;
    SettingsEngine& settings_;
};

}  // namespace tarnwell
