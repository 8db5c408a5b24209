#include "editor/PendingWrites.h"

#include <algorithm>
#include <utility>

#include "command/WriteTexts.h"

namespace tarnwell {

namespace {

constexpr Message kAskWriteNow{
    "There are now ten pending EEP changes. Click <Yes> to write the EEP changes now\r\n"
    "or click <No> to postpone the pending EEP write until later.\r\n\r\n"
    "If <No> is clicked, the entire EEP must be written later to save these changes.\r\n\r\n"
    "Do you want to write the EEP changes now?",
    "Write Changes?", BoxStyle::YesNoQuestion};

}  // namespace

void PendingRows::Append(PendingEntry entry) {
    zeros.reset(entries.size());
    entries.push_back(std::move(entry));
}

void PendingRows::Remove(int row) {
    entries.erase(entries.begin() + row);
}

void PendingRows::ForgetTexts() {
    for (PendingEntry& entry : entries) {
        entry.before.text.reset();
        entry.after.text.reset();
    }
    for (std::size_t row = entries.size(); row < kPendingRows; ++row)
        zeros.set(row);
}

PendingWrites::PendingWrites(const CommandContext& context, DataGrid& grid, EditorView& view)
    : Command(context), grid_(grid), view_(view) {}

void PendingWrites::AddPendingWrite(PendingEntry entry) {
    queue_.Append(std::move(entry));
    view_.PendingWritesChanged();
    if (IsFull())
        AskToWriteNow();
}

bool PendingWrites::MakeRoom() {
    AskToWriteNow();
    return !IsFull();
}

void PendingWrites::AskToWriteNow() {
    if (user_.ShowBox(writeGuard_.Described(WriteKind::Pending, kAskWriteNow)) == Answer::Yes)
        WritePending();
    else
        ClearPendingWrites();
}

void PendingWrites::ClearPendingWrites() {
    SetContents({});
}

void PendingWrites::SetContents(const PendingRows& queue) {
    queue_ = queue;
    view_.PendingWritesChanged();
}

EditRecord PendingWrites::Row(int row) const {
    if (row < Count()) {
        const auto& [address, before, after] = Entry(row);
        const NumberMode mode = state_.numberMode;
        return {NumberText(static_cast<std::uint32_t>(address), mode), before.Text(mode),
                after.Text(mode)};
    }
    return queue_.zeros[static_cast<std::size_t>(row)] ? EditRecord{"0", "0", "0"} : EditRecord{};
}

void PendingWrites::TakeBack(int row) {
    const CommandScope scope(statusBar_);
    const PendingEntry taken = Entry(row);
    const Step step(steps_, {.what = "Taking Back of Byte", .address = taken.address});
    queue_.Remove(row);
    auto& entries = queue_.entries;
    const auto later = std::ranges::find(entries.begin() + row, entries.end(), taken.address,
                                         &PendingEntry::address);
    if (later != entries.end())
        later->before = taken.before;
    else if (grid_.Shown(GridCell::At(taken.address)).Byte() == taken.after.value)
        grid_.TakeBack(taken.address, taken.before);
    view_.PendingWritesChanged();
    Post("Pending EEP Write Taken Back");
}

void PendingWrites::Forget(GridRange range) {
    std::erase_if(queue_.entries, [range](const PendingEntry& entry) {
        return entry.address >= range.first && entry.address <= range.last;
    });
    view_.PendingWritesChanged();
}

void PendingWrites::WritePending() {
    const CommandScope scope(statusBar_);
    ++attempts_;
    if (Count() == 0) {
        Post("There Are No Pending EEP Writes");
        return;
    }
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    if (!writeGuard_.Wants(WriteKind::Pending, AskWriteBytes(Count())) || !writeGuard_.MayWrite())
        return;
    std::vector<Mismatch> mismatches;
    if (WriteEntries(mismatches) == Transfer::Aborted)
        return i2c_.AbortOperation();
    if (!mismatches.empty())
        return TellNotVerified("ERROR: EEProm and New Data Do Not Match!", kBytesNotVerified,
                               mismatches);
    i2c_.EndWrite();
    TakeGridAsWritten();
    Post(kBytesWritten);
}

void PendingWrites::TakeGridAsWritten() {
    const Aside aside(steps_);
    ClearPendingWrites();
    origin_.Note(BufferChange::BytesTransferred);
    grid_.TransferGrid();
}

Transfer PendingWrites::WriteEntries(std::vector<Mismatch>& mismatches) {
    for (const PendingEntry& entry : queue_.entries) {
        const auto address = static_cast<std::int16_t>(entry.address);
        const std::uint8_t value = entry.after.value;
        if (i2c_.WriteByte(address, value) == Transfer::Aborted ||
            i2c_.ReadBlock(address, 1) == Transfer::Aborted)
            return Transfer::Aborted;
        if (const std::uint8_t found = i2c_.ReadData()[0]; found != value)
            mismatches.push_back({address, value, found});
    }
    return Transfer::Done;
}

void PendingWrites::ConvertNumbers(NumberMode /*mode*/) {
    queue_.ForgetTexts();
    view_.PendingWritesChanged();
}

}  // namespace tarnwell
