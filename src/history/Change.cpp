#include "history/Change.h"

#include <algorithm>

namespace tarnwell {

namespace {

template <typename Value>
std::optional<Value> IfOther(const Value& from, const Value& to) {
    return from == to ? std::nullopt : std::optional(to);
}

template <typename Value>
void Set(Value& value, const std::optional<Value>& to) {
    if (to)
        value = *to;
}

std::size_t TextBytes(const std::string& text) {
    return text.capacity() < sizeof(std::string) / 2 ? 0 : text.capacity() + 1;
}

std::size_t TextBytes(const EditRecord& row) {
    return TextBytes(row.EditAddress) + TextBytes(row.EditOldValue) + TextBytes(row.EditNewValue);
}

template <typename Element>
std::size_t OwnBytes(const std::vector<Element>& elements) {
    return elements.capacity() * sizeof(Element);
}

}  // namespace

Change::Change(const Snapshot& from, const Snapshot& to, Extent extent, NumberMode mode)
    : mode_(mode),
      eepRead_(IfOther(from.EepRead, to.EepRead)),
      bufferChanged_(IfOther(from.BufferChanged, to.BufferChanged)),
      gridChanged_(IfOther(from.GridChanged, to.GridChanged)),
      target_(IfOther(from.target, to.target)),
      crc_(IfOther(from.crc, to.crc)) {
    KeepBuffer(from, to, extent);
    KeepGrid(from, to, extent);
    KeepCells(from, to);
    if (from.pending != to.pending)
        queues_ = std::make_unique<const std::pair<Queue, Queue>>(Packed(from.pending),
                                                                  Packed(to.pending));
}

void Change::KeepBuffer(const Snapshot& from, const Snapshot& to, Extent extent) {
    if (extent == Extent::Everything) {
        image_ = std::make_unique<const MemoryBuffer>(to.buffer);
        return;
    }
    for (std::size_t address = 0; address < to.buffer.size(); ++address) {
        if (from.buffer[address] != to.buffer[address])
            bytes_.push_back({static_cast<std::uint16_t>(address), to.buffer[address]});
    }
    bytes_.shrink_to_fit();
}

Change::Form Change::FormOf(const std::string& text) const {
    if (text.empty())
        return Form::Nothing;
    const auto value = ByteFromText(text, mode_);
    return value && text == NumberText(*value, mode_) ? Form::Number : Form::Odd;
}

void Change::KeepGrid(const Snapshot& from, const Snapshot& to, Extent extent) {
    const bool everything = extent == Extent::Everything;
    if (!everything && from.grid == to.grid)
        return;
    for (std::size_t address = 0; address < kEepromBytes; ++address) {
        const std::string& text = (*to.grid.texts)[address];
        const bool changed = to.grid.changed[address];
        const bool sameText = text == (everything ? NumberText(to.buffer[address], mode_)
                                                  : (*from.grid.texts)[address]);
        const bool sameMark = changed == (!everything && from.grid.changed[address]);
        if (sameText && sameMark)
            continue;
        const Form form = sameText ? Form::Same : FormOf(text);
        grid_.push_back({static_cast<std::uint16_t>(address), ByteFromText(text, mode_).value_or(0),
                         form, sameMark ? std::nullopt : std::optional(changed)});
        if (form == Form::Odd)
            oddTexts_.push_back(text);
    }
    grid_.shrink_to_fit();
}

void Change::KeepCells(const Snapshot& from, const Snapshot& to) {
    for (std::size_t cell = 0; cell < to.cells.size(); ++cell) {
        if (from.cells[cell] != to.cells[cell])
            cells_.push_back({static_cast<int>(cell), to.cells[cell]});
    }
    cells_.shrink_to_fit();
}

bool Change::ChangesNothing() const {
    return !image_ && bytes_.empty() && grid_.empty() && cells_.empty() && !queues_ && !eepRead_ &&
           !bufferChanged_ && !gridChanged_ && !target_ && !crc_;
}

Snapshot Change::AppliedTo(const Snapshot& now, NumberMode mode) const {
    Snapshot to = now;
    if (image_)
        to.buffer = *image_;
    for (const BufferByte& byte : bytes_)
        to.buffer[byte.address] = byte.value;
    if (image_ || !grid_.empty())
        ApplyGrid(to.grid, to.buffer, mode);
    for (const Cell& cell : cells_) {
        CellContents& contents = to.cells[static_cast<std::size_t>(cell.cell)];
        contents = cell.contents;
        if (mode != mode_)
            contents.caption = ConvertedNumber(contents.caption, mode);
    }
    if (queues_)
        to.pending = Unpacked(queues_->second, mode);
    Set(to.EepRead, eepRead_);
    Set(to.BufferChanged, bufferChanged_);
    Set(to.GridChanged, gridChanged_);
    Set(to.target, target_);
    Set(to.crc, crc_);
    return to;
}

void Change::ApplyGrid(GridContents& grid, const MemoryBuffer& buffer, NumberMode mode) const {
    auto& texts = grid.texts.Edit();
    if (image_) {
        for (std::size_t address = 0; address < texts.size(); ++address)
            texts[address] = NumberText(buffer[address], mode);
        grid.changed.reset();
    }
    auto odd = oddTexts_.begin();
    for (const GridByte& byte : grid_) {
        std::string& text = texts[byte.address];
        switch (byte.form) {
            case Form::Same:
                break;
            case Form::Number:
                text = NumberText(byte.value, mode);
                break;
            case Form::Nothing:
                text = mode == mode_ ? std::string() : ConvertedNumber({}, mode);
                break;
            case Form::Odd:
                text = mode == mode_ ? *odd : ConvertedNumber(*odd, mode);
                ++odd;
                break;
        }
        if (byte.changed)
            grid.changed[byte.address] = *byte.changed;
    }
}

Change::Queue Change::Packed(const PendingRows& pending) {
    auto last = pending.rows.end();
    while (last != pending.rows.begin() && *(last - 1) == EditRecord())
        --last;
    return {{pending.rows.begin(), last}, pending.count};
}

PendingRows Change::Unpacked(const Queue& queue, NumberMode mode) const {
    PendingRows pending{.rows = {}, .count = queue.count};
    std::ranges::copy(queue.rows, pending.rows.begin());
    if (mode != mode_)
        pending.Convert(mode);
    return pending;
}

std::optional<Change::Queues> Change::ChangedQueues(NumberMode mode) const {
    if (!queues_)
        return std::nullopt;
    const auto entries = [&](const Queue& queue) {
        const PendingRows pending = Unpacked(queue, mode);
        const auto rows = pending.Entries();
        return std::vector<EditRecord>(rows.begin(), rows.end());
    };
    return Queues{entries(queues_->first), entries(queues_->second)};
}

std::size_t Change::Bytes() const {
    std::size_t bytes = sizeof *this + OwnBytes(bytes_) + OwnBytes(grid_) + OwnBytes(oddTexts_) +
                        OwnBytes(cells_) + (image_ ? sizeof *image_ : 0);
    for (const std::string& text : oddTexts_)
        bytes += TextBytes(text);
    for (const Cell& cell : cells_)
        bytes += TextBytes(cell.contents.caption);
    if (crc_)
        bytes += TextBytes(*crc_);
    if (queues_) {
        for (const Queue* queue : {&queues_->first, &queues_->second}) {
            bytes += sizeof *queue + OwnBytes(queue->rows);
            for (const EditRecord& row : queue->rows)
                bytes += TextBytes(row);
        }
    }
    return bytes;
}

}  // namespace tarnwell
