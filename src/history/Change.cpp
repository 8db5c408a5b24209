#include "history/Change.h"

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

template <typename Element>
std::size_t OwnBytes(const std::vector<Element>& elements) {
    return elements.capacity() * sizeof(Element);
}

}  // namespace

Change::Change(const Snapshot& from, const Snapshot& to, Extent extent, NumberMode mode)
    : mode_(mode),
      extent_(extent),
      eepRead_(IfOther(from.EepRead, to.EepRead)),
      bufferChanged_(IfOther(from.BufferChanged, to.BufferChanged)),
      gridChanged_(IfOther(from.GridChanged, to.GridChanged)),
      target_(IfOther(from.target, to.target)),
      crc_(IfOther(from.crc, to.crc)),
      origin_(IfOther(from.origin, to.origin)) {
    const bool everything = extent == Extent::Everything;
    if (everything || from.buffer != to.buffer)
        buffer_.Keep(to.buffer, [&](int address) {
            const auto index = static_cast<std::size_t>(address);
            return everything || from.buffer[index] != to.buffer[index];
        });
    if (everything && origin_ && *origin_->image == to.buffer) {
        static const Shared<EepromArray> kLeftOut;
        origin_->image = kLeftOut;
        bufferIsOrigins_ = true;
    }
    if (everything || from.grid != to.grid)
        KeepGrid(from.grid, to.grid);
    KeepCells(from, to);
    for (std::size_t layer = 0; layer < kNameLayers; ++layer) {
        if (from.names[layer] != to.names[layer])
            names_[layer] = to.names[layer];
    }
    if (from.pending != to.pending)
        queues_ =
            std::make_unique<const std::pair<PendingRows, PendingRows>>(from.pending, to.pending);
}

void Change::KeepGrid(const GridContents& from, const GridContents& to) {
    const bool everything = extent_ == Extent::Everything;
    GridContents::Marks empty;
    grid_.Keep(*to.bytes, [&](int address) {
        const bool kept = everything || !from.ShowsSame(to, address);
        const auto index = static_cast<std::size_t>(address);
        empty[index] = kept && to.empty[index];
        return kept;
    });
    if (empty.any())
        empty_ = std::make_unique<const GridContents::Marks>(empty);
    for (const auto& [address, text] : to.texts) {
        if (everything || !from.ShowsSame(to, address))
            texts_.emplace_back(address, text);
    }
    for (std::size_t address = 0; address < kEepromBytes; ++address) {
        if (to.changed[address] != (!everything && from.changed[address]))
            marks_.push_back({static_cast<std::uint16_t>(address), to.changed[address]});
    }
    marks_.shrink_to_fit();
}

void Change::KeepCells(const Snapshot& from, const Snapshot& to) {
    for (std::size_t cell = 0; cell < to.cells.size(); ++cell) {
        if (from.cells[cell] != to.cells[cell])
            cells_.emplace_back(cell, to.cells[cell]);
    }
    cells_.shrink_to_fit();
}

Snapshot Change::AppliedTo(const Snapshot& now, NumberMode mode) const {
    Snapshot to = now;
    buffer_.ForEach([&](int address, std::uint8_t value) {
        to.buffer[static_cast<std::size_t>(address)] = value;
    });
    ApplyGrid(to.grid, mode);
    for (const auto& [cell, contents] : cells_) {
        to.cells[cell] = contents;
        if (mode != mode_)
            to.cells[cell].shown.text.reset();
    }
    if (queues_)
        to.pending = ChangedQueues(mode)->second;
    Set(to.EepRead, eepRead_);
    Set(to.BufferChanged, bufferChanged_);
    Set(to.GridChanged, gridChanged_);
    Set(to.target, target_);
    Set(to.crc, crc_);
    Set(to.origin, origin_);
    for (std::size_t layer = 0; layer < kNameLayers; ++layer) {
        const auto& open = now.names[layer];
        if (names_[layer] && open && open->path == names_[layer]->path)
            to.names[layer] = names_[layer];
    }
    if (bufferIsOrigins_)
        to.origin.image.Edit() = to.buffer;
    return to;
}

void Change::ApplyGrid(GridContents& grid, NumberMode mode) const {
    grid_.ForEach([&](int address, std::uint8_t value) {
        const bool empty = empty_ && (*empty_)[static_cast<std::size_t>(address)];
        grid.Put(address,
                 {value, empty && mode == mode_ ? std::optional<std::string>("") : std::nullopt});
    });
    for (const auto& [address, text] : texts_) {
        if (mode == mode_)
            grid.Put(address, {(*grid.bytes)[static_cast<std::size_t>(address)], text});
    }
    if (extent_ == Extent::Everything)
        grid.changed.reset();
    for (const auto& [address, changed] : marks_)
        grid.changed[address] = changed;
}

std::optional<std::pair<PendingRows, PendingRows>> Change::ChangedQueues(NumberMode mode) const {
    if (!queues_)
        return std::nullopt;
    auto queues = *queues_;
    if (mode != mode_) {
        queues.first.ForgetTexts();
        queues.second.ForgetTexts();
    }
    return queues;
}

std::size_t Change::Bytes() const {
    std::size_t bytes = sizeof *this + buffer_.Bytes() + grid_.Bytes() +
                        (empty_ ? sizeof *empty_ : 0) + OwnBytes(texts_) + OwnBytes(marks_) +
                        OwnBytes(cells_) + (origin_ ? origin_->place.capacity() : 0) +
                        (origin_ && !bufferIsOrigins_ ? sizeof(EepromArray) : 0);
    for (const auto& file : names_)
        bytes += file ? OwnBytes(file->names) : 0;
    if (queues_)
        bytes +=
            sizeof *queues_ + OwnBytes(queues_->first.entries) + OwnBytes(queues_->second.entries);
    return bytes;
}

}  // namespace tarnwell
