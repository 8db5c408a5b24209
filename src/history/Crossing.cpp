#include "history/Crossing.h"

#include <algorithm>

namespace tarnwell {

namespace {

class Crossing {
  public:
    Crossing(const KeptStep& step, const Snapshot& now, const CrossingContext& context)
        : step_(step),
          now_(now),
          context_(context),
          mode_(context.state.numberMode),
          to_(step.change.AppliedTo(now, mode_)) {}

    std::optional<Snapshot> Result() {
        MarkWrittenSettings();
        if (step_.asides != context_.asides) {
            KeepAsides();
            if (!KeepQueue())
                return std::nullopt;
            DropLostEntries();
        }
        return QueueWrittenBytes() ? std::optional(std::move(to_)) : std::nullopt;
    }

  private:
    void MarkWrittenSettings();
    void KeepAsides();
    [[nodiscard]] bool KeepQueue();
    void DropLostEntries();
    [[nodiscard]] bool QueueWrittenBytes();

    bool Written(TargetDevice device, int address) const {
        return context_.known.WrittenSince(step_.writes, device, address);
    }
    bool EditorIsOn() const { return context_.state.editor == EditorSwitch::On; }
    std::optional<std::uint8_t> GridValue(int address) const { return to_.grid.At(address).Byte(); }
    bool GridDiffers(int address) const { return !now_.grid.ShowsSame(to_.grid, address); }
    std::optional<std::uint8_t> ComingValue(int address) const;
    [[nodiscard]] bool Append(const PendingEntry& entry);

    const KeptStep& step_;
    const Snapshot& now_;
    const CrossingContext& context_;
    const NumberMode mode_;
    Snapshot to_;
};

/// Whether the cell shows the 0 of the start, which is nobody's value and must not be written.
bool NeverHadValue(const CellContents& cell) {
    return !cell.given && cell.mark == Mark::Clean;
}

void Crossing::MarkWrittenSettings() {
    for (std::size_t index = 0; index < to_.cells.size(); ++index) {
        CellContents& cell = to_.cells[index];
        const CellInfo& info = kCells[index];
        const auto value = cell.Value();
        if (cell == now_.cells[index] || !value || NeverHadValue(cell) ||
            !Written(TargetDevice::Primary, info.address))
            continue;
        const auto held = context_.known.Value(TargetDevice::Primary, info.address);
        const bool clean = held && WithValue(*held, static_cast<int>(index), *value) == *held;
        cell.mark = clean ? Mark::Clean : Mark::Save;
        cell.colour = clean ? CellColour::Normal : CellColour::Changed;
        cell.lastRead = now_.cells[index].lastRead;
    }
}

/// A buffer that never held anything has no checksum.
void Crossing::KeepAsides() {
    const bool otherBytes = now_.buffer != to_.buffer;
    if (to_.crc.empty()) {
        to_.BufferChanged = false;
    } else if (otherBytes) {
        to_.crc = mCRC32::BufferCrcText(to_.buffer);
        to_.BufferChanged = true;
    } else {
        to_.crc = now_.crc;
    }
    if (!otherBytes && now_.grid == to_.grid)
        return;
    for (std::size_t index = 0; index < kEepromBytes; ++index) {
        if (GridDiffers(static_cast<int>(index)) || now_.buffer[index] != to_.buffer[index] ||
            now_.grid.changed[index] != to_.grid.changed[index])
            to_.grid.changed[index] = (*to_.grid.bytes)[index] != to_.buffer[index];
    }
    to_.GridChanged = to_.grid.changed.any();
}

/// The entries that `entries` has beyond `others`.
std::vector<PendingEntry> Without(std::vector<PendingEntry> entries,
                                  const std::vector<PendingEntry>& others) {
    for (const PendingEntry& other : others) {
        if (const auto found = std::ranges::find(entries, other); found != entries.end())
            entries.erase(found);
    }
    return entries;
}

bool Crossing::KeepQueue() {
    to_.pending = now_.pending;
    const auto queues = step_.change.ChangedQueues(mode_);
    if (!queues)
        return true;
    const auto& [from, to] = *queues;
    for (const PendingEntry& gone : Without(from.entries, to.entries)) {
        for (int row = to_.pending.Count() - 1; row >= 0; --row) {
            if (to_.pending.entries[static_cast<std::size_t>(row)] == gone) {
                to_.pending.Remove(row);
                break;
            }
        }
    }
    return std::ranges::all_of(Without(to.entries, from.entries), [this](const auto& entry) {
        return Written(to_.target, entry.address) || Append(entry);
    });
}

/// What the device will hold once the queue is written, as far as that is known.
std::optional<std::uint8_t> Crossing::ComingValue(int address) const {
    auto coming = context_.known.Value(to_.target, address);
    for (const PendingEntry& entry : to_.pending.entries) {
        if (entry.address == address)
            coming = entry.after.value;
    }
    return coming;
}

/// What would be written is what the grid shows.
void Crossing::DropLostEntries() {
    for (int row = to_.pending.Count() - 1; row >= 0; --row) {
        const int address = to_.pending.entries[static_cast<std::size_t>(row)].address;
        const bool shown = ComingValue(address) == GridValue(address);
        if (GridDiffers(address) && !shown && !(EditorIsOn() && GridValue(address)))
            to_.pending.Remove(row);
    }
}

bool Crossing::QueueWrittenBytes() {
    if (!EditorIsOn())
        return true;
    for (int address = 0; address < kEepromBytes; ++address) {
        if (!Written(to_.target, address) || !GridDiffers(address))
            continue;
        const auto value = GridValue(address);
        if (!value || ComingValue(address) == value)
            continue;
        if (!Append({address, now_.grid.At(address), to_.grid.At(address)}))
            return false;
    }
    return true;
}

bool Crossing::Append(const PendingEntry& entry) {
    if (to_.pending.IsFull())
        return false;
    to_.pending.Append(entry);
    return true;
}

}  // namespace

std::optional<Snapshot> OtherSide(const KeptStep& step, const Snapshot& now,
                                  const CrossingContext& context) {
    return Crossing(step, now, context).Result();
}

}  // namespace tarnwell
