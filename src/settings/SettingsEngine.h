// Moves setting values between their cells, the memory buffer and the EEPROM.
#pragma once

#include "editor/EditorPage.h"
#include "settings/SettingCells.h"

namespace tarnwell {

inline constexpr std::string_view kUseDataEditor = "Use the Data Editor to View/Modify data";

class SettingsEngine final : private Command {
  public:
    SettingsEngine(const CommandContext& context, MemoryBuffer& buffer, EditorPage& editorPage,
                   SettingCells& cells);

    /// Shows the settings that the buffer holds; refuses while the secondary EEPROM is the target.
    void ShowSettingsFromBuffer();

    void ReadSettingsFromEep();
    void MergeSettingsWithBuffer();
    void WriteSettingsToEep();

    /// Posts the refusal and returns true while the secondary EEPROM is the target.
    bool RefuseOnSecondary();

  private:
    /// A cell with the whole byte that was written for it.
    struct Written {
        int cell;
        std::uint8_t byte;
    };

    bool BufferHoldsImage() const { return state_.EepRead || state_.BufferChanged; }
    void Merge();
    bool HasCellToWrite() const;
    bool MayMergeAfterWrite();

    /// What waits in the memory buffer for another command, as a line; or empty.
    std::string UnwrittenLine() const;
    void WriteAndVerify();

    /// What differs of the bytes written; nothing if a transfer was aborted.
    std::optional<std::vector<Mismatch>> WriteMarkedCells();
    void MergeWritten();
    [[nodiscard]] Transfer WriteCells(std::vector<Written>& written);
    [[nodiscard]] Transfer WriteCell(int cell, std::uint8_t& byte);

    /// What differs of the bytes written; nothing if a read was aborted.
    std::optional<std::vector<Mismatch>> VerifyEEP(const std::vector<Written>& written);
    void MarkForSaving(int cell);
    void MarkUnverifiedForSaving();

    MemoryBuffer& buffer_;
    EditorPage& editorPage_;
    SettingCells& cells_;
};

}  // namespace tarnwell
