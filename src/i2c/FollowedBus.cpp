#include "i2c/FollowedBus.h"

#include <algorithm>
#include <utility>

namespace tarnwell {

namespace {

/// Short enough to be read whole on lines that are disturbed every hundredth of a second.
constexpr int kPiece = 64;
constexpr int kMostAttempts = 4;

}  // namespace

void FollowedBus::Claim() {
    expected_.clear();
    strays_.clear();
    again_ = 0;
    brokenOff_.reset();
    Bus().Claim();
}

Transfer FollowedBus::ReadBlock(std::int16_t address, std::int16_t count) {
    if (Bus().ReadBlock(address, count) == Transfer::Aborted)
        return Transfer::Aborted;
    for (int index = 0; index < count; ++index) {
        const int place = address + index;
        known_.Holds(state_.targetDevice, place, Bus().ReadData()[static_cast<std::size_t>(index)]);
        if (!expected_.empty())
            expected_[static_cast<std::size_t>(place)].readBack = true;
    }
    if (count == kEepromBytes)
        look_ = Look::Done;
    return Transfer::Done;
}

Transfer FollowedBus::WritePage(std::int16_t address, std::span<const std::uint8_t> bytes) {
    Watch();
    const auto expected = std::span(expected_).subspan(static_cast<std::size_t>(address));
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        known_.Writing(state_.targetDevice, address + static_cast<int>(index));
        again_ += expected[index].written ? 1 : 0;
        expected[index].written = bytes[index];
        expected[index].readBack = false;
    }
    if (Bus().WritePage(address, bytes) == Transfer::Aborted)
        return Transfer::Aborted;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        known_.Holds(state_.targetDevice, address + static_cast<int>(index), bytes[index]);
        expected[index].held = bytes[index];
    }
    return Transfer::Done;
}

void FollowedBus::Watch() {
    look_ = Look::Due;
    isTold_ = false;
    for (int address = 0; expected_.size() < kEepromBytes; ++address) {
        const auto held = known_.Value(state_.targetDevice, address);
        expected_.push_back({.held = held, .written = std::nullopt, .before = held});
    }
}

std::vector<Mismatch> FollowedBus::LookForStrays() const {
    std::vector<Mismatch> strays;
    for (std::size_t index = 0; index < expected_.size(); ++index) {
        const auto& [held, written, before, readBack] = expected_[index];
        const int address = static_cast<int>(index);
        const auto found = known_.Value(state_.targetDevice, address);
        if (found && held && found != held && found != written)
            strays.push_back({address, written.value_or(*held), *found});
    }
    return strays;
}

Transfer FollowedBus::ReadPatiently(int address, int count) {
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        if (ReadBlock(static_cast<std::int16_t>(address), static_cast<std::int16_t>(count)) ==
            Transfer::Done)
            return Transfer::Done;
        if (Recover() == Transfer::Aborted)
            break;
    }
    return Transfer::Aborted;
}

bool FollowedBus::ReadInPieces(EepromArray& image) {
    if (Recover() == Transfer::Aborted)
        return false;
    for (int address = 0; address < kEepromBytes; address += kPiece) {
        if (ReadPatiently(address, kPiece) == Transfer::Aborted)
            return false;
        std::copy_n(ReadData().begin(), kPiece, image.begin() + address);
    }
    return true;
}

std::optional<EepromArray> FollowedBus::ReadAfterAbort() {
    EepromArray image{};
    look_ = ReadInPieces(image) ? Look::Done : Look::Failed;
    FindStrays();
    return look_ == Look::Done ? std::optional(image) : std::nullopt;
}

// What one reading says may be a disturbance of that reading.
void FollowedBus::FindStrays() {
    if (expected_.empty() || look_ == Look::Failed)
        return;
    if (look_ == Look::Due && ReadBlock(0, kEepromBytes) == Transfer::Aborted) {
        static_cast<void>(ReadAfterAbort());
        Free();
        return;
    }
    strays_ = LookForStrays();
    if (strays_.size() > kMostDisagreeing)
        return;
    for (const Mismatch& stray : strays_) {
        for (int reading = 0; reading < 2; ++reading)
            static_cast<void>(ReadPatiently(stray.address, 1));
    }
    strays_ = LookForStrays();
}

void FollowedBus::AbortOperation(std::string_view line, std::string details) {
    if (!expected_.empty() && look_ == Look::Due)
        static_cast<void>(ReadAfterAbort());
    brokenOff_ = Bus().IsStopped() ? WriteEnd::Interrupted : WriteEnd::Failed;
    EndWrite();
    Bus().AbortOperation(line, details + StraysText(strays_, state_.numberMode));
}

void FollowedBus::GiveUp() {
    Bus().GiveUp();
    brokenOff_ = WriteEnd::Interrupted;
    EndWrite();
}

std::vector<WrittenByte> FollowedBus::BytesOfWrite() const {
    std::vector<WrittenByte> bytes;
    for (std::size_t index = 0; index < expected_.size(); ++index) {
        const Expected& byte = expected_[index];
        const auto address = static_cast<int>(index);
        const auto now = known_.Value(state_.targetDevice, address);
        const bool isStray =
            std::ranges::find(strays_, address, &Mismatch::address) != strays_.end();
        if (isStray || (byte.written && (byte.before != byte.written || now != byte.written)))
            bytes.push_back({address, byte.before, byte.written, now});
    }
    return bytes;
}

WriteEnd FollowedBus::EndOfWrite() const {
    WriteEnd end = WriteEnd::Verified;
    for (std::size_t index = 0; index < expected_.size(); ++index) {
        const Expected& byte = expected_[index];
        if (!byte.written)
            continue;
        if (!byte.readBack)
            return WriteEnd::Failed;
        if (known_.Value(state_.targetDevice, static_cast<int>(index)) != byte.written)
            end = WriteEnd::NotVerified;
    }
    return end;
}

void FollowedBus::EndWrite() {
    if (std::exchange(isTold_, true) || witness_ == nullptr)
        return;
    const auto count = std::ranges::count_if(
        expected_, [](const Expected& byte) { return byte.written.has_value(); });
    witness_->Wrote({state_.targetDevice, static_cast<int>(count), BytesOfWrite(),
                     brokenOff_.value_or(EndOfWrite())});
}

}  // namespace tarnwell
