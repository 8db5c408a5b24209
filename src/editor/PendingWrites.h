// The queue of changed bytes that are written straight to the EEPROM.
#pragma once

#include <bitset>
#include <string>
#include <vector>

#include "command/Command.h"
#include "editor/DataGrid.h"

namespace tarnwell {

inline constexpr int kPendingRows = 10;

/// A committed change of a byte.
struct PendingEntry {
    int address = 0;
    ShownByte before{};
    ShownByte after{};

    bool operator==(const PendingEntry&) const = default;
};

/// The same as it is shown.
struct EditRecord {
    std::string EditAddress{};
    std::string EditOldValue{};
    std::string EditNewValue{};
};

/// The queue's ten rows: the entries, then rows that are empty, but that a change of the number
/// mode makes them read "0".
struct PendingRows {
    std::vector<PendingEntry> entries;
    std::bitset<kPendingRows> zeros;  ///< the rows that read "0"

    bool operator==(const PendingRows&) const = default;
    int Count() const { return static_cast<int>(entries.size()); }
    bool IsFull() const { return Count() == kPendingRows; }

    /// There must be room.
    void Append(PendingEntry entry);
    void Remove(int row);

    /// Each number reads in its own form, and the empty rows "0".
    void ForgetTexts();
};

class PendingWrites final : public NumberDisplay, private Command {
  public:
    PendingWrites(const CommandContext& context, DataGrid& grid, EditorView& view);

    /// Queues the entry; with the tenth the user is asked to write at once or to give up the
    /// queue, which must not be full.
    void AddPendingWrite(PendingEntry entry);

    /// Asks the question of a full queue again; whether there is room now.
    bool MakeRoom();

    void ClearPendingWrites();

    /// Takes an entry out of the queue. The byte has its old value again where the grid still
    /// shows the entry's, unless a later entry changes it, too.
    void TakeBack(int row);

    /// Forgets the entries of bytes that were given another value elsewhere.
    void Forget(GridRange range);

    /// The address of an entry's byte.
    int Address(int row) const { return Entry(row).address; }

    /// Writes all entries in order, each read back, and on success makes the grid the buffer.
    void WritePending();

    /// How often that was begun.
    int Attempts() const { return attempts_; }

    bool IsFull() const { return queue_.IsFull(); }
    int Room() const { return kPendingRows - Count(); }
    int Count() const { return queue_.Count(); }
    const PendingEntry& Entry(int row) const {
        return queue_.entries[static_cast<std::size_t>(row)];
    }

    /// What one of the ten rows shows.
    EditRecord Row(int row) const;

    const PendingRows& Contents() const { return queue_; }
    void SetContents(const PendingRows& queue);

    void ConvertNumbers(NumberMode mode) override;

  private:
    [[nodiscard]] Transfer WriteEntries(std::vector<Mismatch>& mismatches);
    void TakeGridAsWritten();
    void AskToWriteNow();

    DataGrid& grid_;
    EditorView& view_;
    PendingRows queue_;
    int attempts_ = 0;
};

}  // namespace tarnwell
