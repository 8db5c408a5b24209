// The queue of changed bytes that are written straight to the EEPROM.
#pragma once

#include <array>
#include <string>

#include "editor/DataGrid.h"
#include "image/Command.h"

namespace tarnwell {

inline constexpr int kPendingRows = 10;

/// A committed change, as texts in the current number mode.
struct EditRecord {
    std::string EditAddress;
    std::string EditOldValue;
    std::string EditNewValue;
};

class PendingWrites final : public NumberDisplay, private Command {
  public:
    PendingWrites(const CommandContext& context, DataGrid& grid, EditorView& view);

    /// Queues the record; with the tenth the user is asked to write at once or to give up the
    /// queue. Does nothing without an address. The queue must not be full.
    void AddPendingWrite(const EditRecord& record);

    /// Asks the question of a full queue again; whether there is room now.
    bool MakeRoom();

    void ClearPendingWrites();

    /// Takes an entry out of the queue. The byte has its old value again, unless a later entry
    /// changes it, too.
    void TakeBack(int row);

    /// The address of an entry's byte.
    int Address(int row) const;

    /// Writes all entries in order, each read back, and on success makes the grid the buffer.
    void WritePending();

    bool IsFull() const { return count_ == kPendingRows; }
    int Count() const { return count_; }
    const EditRecord& Row(int row) const { return rows_[static_cast<std::size_t>(row)]; }

    /// Converts all ten rows, the empty ones included.
    void ConvertNumbers(NumberMode mode) override;

  private:
    enum class Outcome : std::uint8_t { Verified, Mismatch, Aborted };
    Outcome WriteEntries();
    void AskToWriteNow();

    DataGrid& grid_;
    EditorView& view_;
    std::array<EditRecord, kPendingRows> rows_;
    int count_ = 0;
};

}  // namespace tarnwell
