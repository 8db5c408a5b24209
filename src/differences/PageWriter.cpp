#include "differences/PageWriter.h"

#include <algorithm>
#include <span>
#include <utility>

#include "command/WriteTexts.h"

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

Transfer PageWriter::Write(const MemoryBuffer& present, const MemoryBuffer& wanted, Others others) {
    present_ = present;
    wanted_ = wanted;
    differing_ = Mismatches(wanted, present);
    left_ = differing_;
    held_.reset();
    confirmed_ = 0;
    othersHeld_ = false;
    pageWrites_ = PageWrites::Unproven;
    const Transfer transfer = WriteAndVerify(others);
    if (transfer == Transfer::Aborted)
        ConfirmAfterAbort();
    return transfer;
}

Transfer PageWriter::WriteAndVerify(Others others) {
    statusBar_.PutStatus("Please Wait, Writing Differences to EEProm...");
    if (WritePages() == Transfer::Aborted || Verify() == Transfer::Aborted)
        return Transfer::Aborted;
    const std::vector<Mismatch> again = ToWriteAgain(others);
    if (again.empty())
        return Transfer::Done;
    statusBar_.PutStatus("Please Wait, Writing Again What Did Not Arrive...");
    return WriteBytes(again) == Transfer::Done ? Verify() : Transfer::Aborted;
}

/// Nothing on lines on which too much of what nobody wrote reads otherwise.
std::vector<Mismatch> PageWriter::ToWriteAgain(Others others) const {
    std::vector<Mismatch> again = left_;
    const auto left =
        std::erase_if(again, [this](const Mismatch& byte) { return !IsOnWrittenPage(byte); });
    if (left > kMostDisagreeing)
        return {};
    return others == Others::AsWanted ? left_ : again;
}

Transfer PageWriter::WritePages() {
    DeviceProgress progress = i2c_.TrackProgress();
    const auto page = [](const Mismatch& byte) { return byte.address / kPageBytes; };
    for (auto first = differing_.begin(); first != differing_.end();) {
        const auto end = std::find_if(first, differing_.end(), [&](const Mismatch& byte) {
            return page(byte) != page(*first);
        });
        if (WritePage({first, end}) == Transfer::Aborted)
            return Transfer::Aborted;
        progress.Show((page(*first) + 1) * kPageBytes % kEepromBytes);
        if (!progress.GoesOn())
            return Transfer::Aborted;
        first = end;
    }
    return Transfer::Done;
}

Transfer PageWriter::WritePage(const PageBytes& bytes) {
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

Transfer PageWriter::ProvePageWrite(const PageBytes& bytes) {
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

Transfer PageWriter::WriteBytes(const std::vector<Mismatch>& bytes) {
    for (const Mismatch& byte : bytes) {
        if (i2c_.WriteByte(Short(byte.address), byte.expected) == Transfer::Aborted)
            return Transfer::Aborted;
    }
    return Transfer::Done;
}

// A device that took a disturbance for a stop gives 0xFF from there on: one reading proves nothing.
Transfer PageWriter::Verify() {
    statusBar_.PutStatus("EEP Write Complete, Now Verifing Data...");
    Transfer read = i2c_.ReadBlock(0, kEepromBytes);
    if (read == Transfer::Done && OthersIn(i2c_.ReadData()).size() > kMostDisagreeing)
        read = i2c_.ReadBlock(0, kEepromBytes);
    return read == Transfer::Done ? Note(i2c_.ReadData()) : Transfer::Aborted;
}

void PageWriter::ConfirmAfterAbort() {
    if (const auto found = i2c_.ReadAfterAbort())
        static_cast<void>(Note(*found));
}

std::vector<Mismatch> PageWriter::OthersIn(const MemoryBuffer& found) const {
    std::vector<Mismatch> others = Mismatches(wanted_, found);
    std::erase_if(others, [this](const Mismatch& byte) { return IsOnWrittenPage(byte); });
    return others;
}

bool PageWriter::IsOnWrittenPage(const Mismatch& byte) const {
    const int page = byte.address / kPageBytes * kPageBytes;
    return !std::equal(wanted_.begin() + page, wanted_.begin() + page + kPageBytes,
                       present_.begin() + page);
}

Transfer PageWriter::Note(MemoryBuffer found) {
    const std::vector<Mismatch> all = Mismatches(wanted_, found);
    if (Agree(found, all.size() <= kMostDisagreeing ? all : OthersIn(found)) == Transfer::Aborted)
        return Transfer::Aborted;
    left_ = Mismatches(wanted_, found);
    held_ = found;
    confirmed_ = static_cast<int>(std::ranges::count_if(differing_, [&](const Mismatch& byte) {
        return found[Index(byte.address)] == byte.expected;
    }));
    const std::vector<Mismatch> others = OthersIn(found);
    if (!std::exchange(othersHeld_, true) && others.size() <= kMostDisagreeing)
        guard_.PutRight(others);
    return Transfer::Done;
}

Transfer PageWriter::Agree(MemoryBuffer& found, const std::vector<Mismatch>& bytes) {
    if (bytes.size() > kMostDisagreeing)
        return Transfer::Done;
    for (const Mismatch& byte : bytes) {
        if (i2c_.ReadAgreed(Short(byte.address)) == Transfer::Aborted)
            return Transfer::Aborted;
        found[Index(byte.address)] = i2c_.ReadData()[0];
    }
    return Transfer::Done;
}

std::string PageWriter::ConfirmedText() const {
    return tarnwell::ConfirmedText(confirmed_, differing_.size());
}

}  // namespace tarnwell
