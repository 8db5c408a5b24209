#include "differences/DifferenceWriter.h"

#include <algorithm>
#include <span>

namespace tarnwell {

namespace {

/// Pages of the smaller devices of the family, such as a 24C16.
constexpr int kShortPageBytes = 16;

std::int16_t Short(int number) {
    return static_cast<std::int16_t>(number);
}

std::size_t Index(int address) {
    return static_cast<std::size_t>(address);
}

}  // namespace

Transfer DifferenceWriter::Write(const MemoryBuffer& present, const MemoryBuffer& wanted) {
    wanted_ = wanted;
    differing_ = Differences(wanted, present);
    left_ = differing_;
    confirmed_ = 0;
    pageWrites_ = PageWrites::Unproven;
    const Transfer transfer = WriteAndVerify();
    if (transfer == Transfer::Aborted)
        ConfirmAfterAbort();
    return transfer;
}

Transfer DifferenceWriter::WriteAndVerify() {
    statusBar_.PutStatus("Please Wait, Writing Differences to EEProm...");
    if (WritePages() == Transfer::Aborted || Verify() == Transfer::Aborted)
        return Transfer::Aborted;
    if (left_.empty())
        return Transfer::Done;
    statusBar_.PutStatus("Please Wait, Writing Again What Did Not Arrive...");
    return WriteBytes(left_) == Transfer::Done ? Verify() : Transfer::Aborted;
}

Transfer DifferenceWriter::WritePages() {
    DeviceProgress progress = i2c_.TrackProgress();
    const auto page = [](const Mismatch& byte) { return byte.address / kPageBytes; };
    for (auto first = differing_.begin(); first != differing_.end();) {
        const auto end = std::find_if(first, differing_.end(), [&](const Mismatch& byte) {
            return page(byte) != page(*first);
        });
        if (WritePage({first, end}) == Transfer::Aborted)
            return Transfer::Aborted;
        progress.Show((page(*first) + 1) * kPageBytes % kEepromBytes);
        first = end;
    }
    return Transfer::Done;
}

Transfer DifferenceWriter::WritePage(const PageBytes& bytes) {
    if (pageWrites_ == PageWrites::Unfit)
        return WriteBytes(bytes);
    const int first = bytes.front().address;
    const int last = bytes.back().address;
    const std::span page(wanted_.begin() + first, Index(last - first + 1));
    if (i2c_.WritePage(Short(first), page) == Transfer::Aborted)
        return Transfer::Aborted;
    const bool crosses = first / kShortPageBytes != last / kShortPageBytes;
    return crosses && pageWrites_ == PageWrites::Unproven ? ProvePageWrite(bytes) : Transfer::Done;
}

Transfer DifferenceWriter::ProvePageWrite(const PageBytes& bytes) {
    const int start = bytes.front().address / kPageBytes * kPageBytes;
    if (i2c_.ReadBlock(Short(start), kPageBytes) == Transfer::Aborted)
        return Transfer::Aborted;
    PageBytes wrong;
    for (int place = 0; place < kPageBytes; ++place) {
        const std::uint8_t wanted = wanted_[Index(start + place)];
        const std::uint8_t found = i2c_.ReadData()[Index(place)];
        if (found != wanted)
            wrong.push_back({start + place, wanted, found});
    }
    pageWrites_ = wrong.empty() ? PageWrites::Proven : PageWrites::Unfit;
    confirmed_ += static_cast<int>(std::ranges::count_if(bytes, [&](const Mismatch& byte) {
        return i2c_.ReadData()[Index(byte.address - start)] == byte.expected;
    }));
    return WriteBytes(wrong);
}

Transfer DifferenceWriter::WriteBytes(const std::vector<Mismatch>& bytes) {
    for (const Mismatch& byte : bytes) {
        if (i2c_.WriteByte(Short(byte.address), byte.expected) == Transfer::Aborted)
            return Transfer::Aborted;
    }
    return Transfer::Done;
}

Transfer DifferenceWriter::Verify() {
    statusBar_.PutStatus("EEP Write Complete, Now Verifing Data...");
    if (i2c_.ReadBlock(0, kEepromBytes) == Transfer::Aborted)
        return Transfer::Aborted;
    NoteRead();
    return Transfer::Done;
}

void DifferenceWriter::ConfirmAfterAbort() {
    if (i2c_.Recover() == Transfer::Done && i2c_.ReadBlock(0, kEepromBytes) == Transfer::Done)
        NoteRead();
}

void DifferenceWriter::NoteRead() {
    const MemoryBuffer& found = i2c_.ReadData();
    left_ = Differences(wanted_, found);
    confirmed_ = static_cast<int>(std::ranges::count_if(differing_, [&](const Mismatch& byte) {
        return found[Index(byte.address)] == byte.expected;
    }));
}

std::string DifferenceWriter::ConfirmedText() const {
    return "Bytes confirmed on the EEProm: " + std::to_string(confirmed_) + " of " +
           std::to_string(differing_.size()) + ".";
}

}  // namespace tarnwell
