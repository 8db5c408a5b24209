// The settings archive: the values of all named settings as a file of S-records.
#pragma once

#include "archive/ArchiveFile.h"
#include "archive/SRecord.h"
#include "settings/SettingsEngine.h"

namespace tarnwell {

class SettingsArchive {
  public:
    SettingsArchive(ProgramState& state, StatusBar& statusBar, Screen& screen, User& user,
                    SettingCells& cells, SettingsEngine& settings);

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
    void Post(std::string_view outcome) { statusBar_.ShowStatus(outcome, kResultSeconds); }

    ProgramState& state_;
    StatusBar& statusBar_;
    Screen& screen_;
    User& user_;
    SettingCells& cells_;
    SettingsEngine& settings_;
};

}  // namespace tarnwell
