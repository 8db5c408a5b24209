// The queue of changed bytes that are written straight to the EEPROM.
#pragma once

#include <array>
#include <span>
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

    bool operator==(const EditRecord&) const = default;
};

/// The rows of the queue, of which the first `count` are entries. The others are empty, but a
/// change of the number mode makes them read "0".
struct PendingRows {
    std::array<EditRecord, kPendingRows> rows;
    int count = 0;

    bool operator==(const PendingRows&) const = default;
    bool IsFull() const { return count == kPendingRows; }
    std::span<const EditRecord> Entries() const {
        return {rows.data(), static_cast<std::size_t>(count)};
    }

    /// There must be room.
    void Append(const EditRecord& record) { rows.at(static_cast<std::size_t>(count++)) = record; }
    void Remove(int row);

    /// All ten.
    void Convert(NumberMode mode);
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

    bool IsFull() const { return queue_.IsFull(); }
    int Count() const { return queue_.count; }
    const EditRecord& Row(int row) const { return queue_.rows[static_cast<std::size_t>(row)]; }

    const PendingRows& Contents() const { return queue_; }
    void SetContents(const PendingRows& queue);

    /// Converts all ten rows, the empty ones included.
    void ConvertNumbers(NumberMode mode) override;

  private:
    enum class Outcome : std::uint8_t { Verified, Mismatch, Aborted };
    Outcome WriteEntries();
    void TakeGridAsWritten();
    void AskToWriteNow();

    DataGrid& grid_;
    EditorView& view_;
    PendingRows queue_;
};

}  // namespace tarnwell
