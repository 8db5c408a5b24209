#include "editor/PendingWrites.h"

#include <algorithm>

#include "image/WriteTexts.h"

namespace tarnwell {

namespace {

constexpr Message kAskWriteNow{
    "There are now ten pending EEP changes. Click <Yes> to write the EEP changes now\r\n"
    "or click <No> to postpone the pending EEP write until later.\r\n\r\n"
    "If <No> is clicked, the entire EEP must be written later to save these changes.\r\n\r\n"
    "Do you want to write the EEP changes now?",
    "Write Changes?", BoxStyle::YesNoQuestion};

}  // namespace

PendingWrites::PendingWrites(const CommandContext& context, DataGrid& grid, EditorView& view)
    : Command(context), grid_(grid), view_(view) {}

void PendingWrites::AddPendingWrite(const EditRecord& record) {
    if (record.EditAddress.empty())
        return;
    rows_.at(static_cast<std::size_t>(count_)) = record;
    ++count_;
    view_.PendingWritesChanged();
    if (IsFull())
        AskToWriteNow();
}

bool PendingWrites::MakeRoom() {
    AskToWriteNow();
    return !IsFull();
}

void PendingWrites::AskToWriteNow() {
    if (user_.ShowBox(kAskWriteNow) == Answer::Yes)
        WritePending();
    else
        ClearPendingWrites();
}

void PendingWrites::ClearPendingWrites() {
    rows_.fill({});
    count_ = 0;
    view_.PendingWritesChanged();
}

int PendingWrites::Address(int row) const {
    return ParseNumber(Row(row).EditAddress, state_.numberMode);
}

void PendingWrites::TakeBack(int row) {
    const CommandScope scope(statusBar_);
    const EditRecord taken = Row(row);
    const auto begin = rows_.begin() + row;
    std::move(begin + 1, rows_.end(), begin);
    rows_.back() = {};
    --count_;
    const auto end = rows_.begin() + count_;
    const auto later = std::find_if(begin, end, [&](const EditRecord& record) {
        return record.EditAddress == taken.EditAddress;
    });
    if (later != end)
        later->EditOldValue = taken.EditOldValue;
    else
        grid_.TakeBackText(ParseNumber(taken.EditAddress, state_.numberMode), taken.EditOldValue);
    view_.PendingWritesChanged();
    Post("Pending EEP Write Taken Back");
}

void PendingWrites::WritePending() {
    const CommandScope scope(statusBar_);
    if (count_ == 0) {
        Post("There Are No Pending EEP Writes");
        return;
    }
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    if (user_.ShowBox(AskWriteBytes(count_)) != Answer::Yes) {
        Post(kWriteCancelled);
        return;
    }
    if (!writeGuard_.MayWrite())
        return;
    switch (WriteEntries()) {
        case Outcome::Aborted:
            i2c_.AbortOperation();
            return;
        case Outcome::Mismatch:
            statusBar_.ShowStatus("ERROR: EEProm and New Data Do Not Match!", kMismatchSeconds);
            user_.Beep();
            user_.ShowBox(kBytesNotVerified);
            statusBar_.PutStatus("");
            return;
        case Outcome::Verified:
            ClearPendingWrites();
            grid_.TransferGrid();
            statusBar_.ShowStatus(kBytesWritten, kResultSeconds);
            return;
    }
}

PendingWrites::Outcome PendingWrites::WriteEntries() {
    Outcome outcome = Outcome::Verified;
    for (int row = 0; row < count_; ++row) {
        const auto address = static_cast<std::int16_t>(Address(row));
        const auto value =
            static_cast<std::uint8_t>(ParseNumber(Row(row).EditNewValue, state_.numberMode));
        if (i2c_.WriteByte(address, value) == Transfer::Aborted ||
            i2c_.ReadBlock(address, 1) == Transfer::Aborted)
            return Outcome::Aborted;
        if (i2c_.ReadData()[0] != value)
            outcome = Outcome::Mismatch;
    }
    return outcome;
}

void PendingWrites::ConvertNumbers(NumberMode mode) {
    for (EditRecord& row : rows_) {
        row.EditAddress = ConvertedNumber(row.EditAddress, mode);
        row.EditOldValue = ConvertedNumber(row.EditOldValue, mode);
        row.EditNewValue = ConvertedNumber(row.EditNewValue, mode);
    }
    view_.PendingWritesChanged();
}

}  // namespace tarnwell
