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
    int AddressOf(const EditRecord& entry) const { return ParseNumber(entry.EditAddress, mode_); }
    std::optional<std::uint8_t> GridValue(std::size_t address) const {
        return ByteFromText((*to_.grid.texts)[address], mode_);
    }
    bool GridDiffers(std::size_t address) const {
        return (*now_.grid.texts)[address] != (*to_.grid.texts)[address];
    }
    std::optional<std::uint8_t> ComingValue(int address) const;
    [[nodiscard]] bool Append(const EditRecord& entry);

    const KeptStep& step_;
    const Snapshot& now_;
    const CrossingContext& context_;
    const NumberMode mode_;
    Snapshot to_;
};

/// Whether the cell shows the 0 of the start, which is nobody's value and must not be written.
bool NeverHadValue(const CellContents& cell) {
    return cell.mark == Mark::Clean && cell.colour == CellColour::Normal && !cell.lastRead;
}

void Crossing::MarkWrittenSettings() {
    for (std::size_t index = 0; index < to_.cells.size(); ++index) {
        CellContents& cell = to_.cells[index];
        const CellInfo& info = kCells[index];
        const auto value = ValueOf(cell, mode_);
        if (cell == now_.cells[index] || !value || NeverHadValue(cell) ||
            !Written(TargetDevice::Primary, info.address))
            continue;
        const auto held = context_.known.Value(TargetDevice::Primary, info.address);
        const bool clean = held && WithField(*held, *value, info.setting->shift) == *held;
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
    for (std::size_t address = 0; address < kEepromBytes; ++address) {
        if (GridDiffers(address) || now_.buffer[address] != to_.buffer[address] ||
            now_.grid.changed[address] != to_.grid.changed[address])
            to_.grid.changed[address] = GridValue(address).value_or(0) != to_.buffer[address];
    }
    to_.GridChanged = to_.grid.changed.any();
}

/// The entries that `entries` has beyond `others`.
std::vector<EditRecord> Without(std::vector<EditRecord> entries,
                                const std::vector<EditRecord>& others) {
    for (const EditRecord& other : others) {
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
    for (const EditRecord& gone : Without(queues->from, queues->to)) {
        for (int row = to_.pending.count - 1; row >= 0; --row) {
            if (to_.pending.rows[static_cast<std::size_t>(row)] == gone) {
                to_.pending.Remove(row);
                break;
            }
        }
    }
    return std::ranges::all_of(Without(queues->to, queues->from), [this](const EditRecord& entry) {
        return Written(to_.target, AddressOf(entry)) || Append(entry);
    });
}

/// What the device will hold once the queue is written, as far as that is known.
std::optional<std::uint8_t> Crossing::ComingValue(int address) const {
    auto coming = context_.known.Value(to_.target, address);
    for (const EditRecord& entry : to_.pending.Entries()) {
        if (AddressOf(entry) == address)
            coming = ByteFromText(entry.EditNewValue, mode_);
    }
    return coming;
}

/// What would be written is what the grid shows.
void Crossing::DropLostEntries() {
    for (int row = to_.pending.count - 1; row >= 0; --row) {
        const int address = AddressOf(to_.pending.rows[static_cast<std::size_t>(row)]);
        const auto index = static_cast<std::size_t>(address);
        const bool shown = ComingValue(address) == GridValue(index);
        if (GridDiffers(index) && !shown && !(EditorIsOn() && GridValue(index)))
            to_.pending.Remove(row);
    }
}

bool Crossing::QueueWrittenBytes() {
    if (!EditorIsOn())
        return true;
    for (int address = 0; address < kEepromBytes; ++address) {
        const auto index = static_cast<std::size_t>(address);
        if (!Written(to_.target, address) || !GridDiffers(index))
            continue;
        const auto value = GridValue(index);
        if (!value || ComingValue(address) == value)
            continue;
        if (!Append({NumberText(static_cast<std::uint32_t>(address), mode_),
                     (*now_.grid.texts)[index], (*to_.grid.texts)[index]}))
            return false;
    }
    return true;
}

bool Crossing::Append(const EditRecord& entry) {
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
