// The image archive: a whole EEPROM image as a file of S-records.
#pragma once

#include "archive/ArchiveFile.h"
#include "archive/SRecord.h"
#include "core/Calendar.h"
#include "settings/SettingsEngine.h"

namespace tarnwell {

class ImageArchive {
  public:
    ImageArchive(ProgramState& state, StatusBar& statusBar, User& user, const Calendar& calendar,
                 MemoryBuffer& buffer, DataGrid& grid, EditorPage& editorPage,
                 SettingsEngine& settings);

    void SaveImage();
    void LoadImage();

    /// The same with the file `path`, a full path, which nobody is asked for.
    void LoadImageFile(const std::string& path);

  private:
    enum class Header : std::uint8_t { Accepted, Refused, Unreadable };
    enum class Records : std::uint8_t { Complete, Corrupt, Unusable };

    std::string ProposedName() const;
    [[nodiscard]] bool SaveTo(const std::string& path);
    bool MayReplaceBuffer();
    void LoadFrom(const std::string& path);
    Header CheckHeader(ArchiveReader& archive);
    void LoadBuffer(ArchiveReader& archive);
    Records StoreRecords(ArchiveReader& archive);
    void ShowBuffer();
    void Post(std::string_view outcome) { statusBar_.ShowStatus(outcome, kResultSeconds); }

    ProgramState& state_;
    StatusBar& statusBar_;
    User& user_;
    const Calendar& calendar_;
    MemoryBuffer& buffer_;
    DataGrid& grid_;
    EditorPage& editorPage_;
    SettingsEngine& settings_;
};

}  // namespace tarnwell
