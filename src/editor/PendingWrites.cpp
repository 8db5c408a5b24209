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

void PendingRows::Remove(int row) {
    std::rotate(rows.begin() + row, rows.begin() + row + 1, rows.begin() + count);
    rows[static_cast<std::size_t>(--count)] = {};
}

void PendingRows::Convert(NumberMode mode) {
    for (EditRecord& row : rows) {
        row.EditAddress = ConvertedNumber(row.EditAddress, mode);
        row.EditOldValue = ConvertedNumber(row.EditOldValue, mode);
        row.EditNewValue = ConvertedNumber(row.EditNewValue, mode);
    }
}

PendingWrites::PendingWrites(const CommandContext& context, DataGrid& grid, EditorView& view)
    : Command(context), grid_(grid), view_(view) {}

void PendingWrites::AddPendingWrite(const EditRecord& record) {
    if (record.EditAddress.empty())
        return;
    queue_.Append(record);
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
    SetContents({});
}

void PendingWrites::SetContents(const PendingRows& queue) {
    queue_ = queue;
    view_.PendingWritesChanged();
}

int PendingWrites::Address(int row) const {
    return ParseNumber(Row(row).EditAddress, state_.numberMode);
}

void PendingWrites::TakeBack(int row) {
    const CommandScope scope(statusBar_);
    const EditRecord taken = Row(row);
    const Step step(steps_, {.what = "Taking Back of Byte", .address = Address(row)});
    queue_.Remove(row);
    const auto end = queue_.rows.begin() + queue_.count;
    const auto later = std::find_if(queue_.rows.begin() + row, end, [&](const EditRecord& record) {
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
    if (queue_.count == 0) {
        Post("There Are No Pending EEP Writes");
        return;
    }
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    if (user_.ShowBox(AskWriteBytes(queue_.count)) != Answer::Yes) {
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
            TakeGridAsWritten();
            statusBar_.ShowStatus(kBytesWritten, kResultSeconds);
            return;
    }
}

void PendingWrites::TakeGridAsWritten() {
    const Aside aside(steps_);
    ClearPendingWrites();
    grid_.TransferGrid();
}

PendingWrites::Outcome PendingWrites::WriteEntries() {
    Outcome outcome = Outcome::Verified;
    for (const EditRecord& entry : queue_.Entries()) {
        const auto address =
            static_cast<std::int16_t>(ParseNumber(entry.EditAddress, state_.numberMode));
        const auto value =
            static_cast<std::uint8_t>(ParseNumber(entry.EditNewValue, state_.numberMode));
        if (i2c_.WriteByte(address, value) == Transfer::Aborted ||
            i2c_.ReadBlock(address, 1) == Transfer::Aborted)
            return Outcome::Aborted;
        if (i2c_.ReadData()[0] != value)
            outcome = Outcome::Mismatch;
    }
    return outcome;
}

void PendingWrites::ConvertNumbers(NumberMode mode) {
    queue_.Convert(mode);
    view_.PendingWritesChanged();
}

}  // namespace tarnwell
