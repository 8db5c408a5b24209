// Moves setting values between their cells, the memory buffer and the EEPROM.
#pragma once

#include "editor/EditorPage.h"
#include "settings/SettingCells.h"

namespace tarnwell {

inline constexpr std::string_view kUseDataEditor = "Use the Data Editor to View/Modify data";

class SettingsEngine final : private Command {
  public:
    SettingsEngine(const CommandContext& context, MemoryBuffer& buffer, DataGrid& grid,
                   EditorPage& editorPage, SettingCells& cells);

    /// Shows the settings that the buffer holds; refuses while the secondary EEPROM is the target.
    void ShowSettingsFromBuffer();

    void ReadSettingsFromEep();
    void MergeSettingsWithBuffer();
    void WriteSettingsToEep();

    /// Posts the refusal and returns true while the secondary EEPROM is the target.
    bool RefuseOnSecondary();

  private:
    enum class Outcome : std::uint8_t { Verified, Mismatch, Aborted };

    bool BufferHoldsImage() const { return state_.eepRead || state_.bufferChanged; }
    void Merge();
    bool HasCellToWrite() const;
    [[nodiscard]] Transfer WriteCells();
    [[nodiscard]] Transfer WriteCell(int cell, std::uint8_t value);
    Outcome VerifyEEP();
    void MarkUnverifiedForSaving();

    MemoryBuffer& buffer_;
    DataGrid& grid_;
    EditorPage& editorPage_;
    SettingCells& cells_;
};

}  // namespace tarnwell
