#include "settings/LiveValue.h"

#include "command/WriteTexts.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

/// What is turned through faster than that is not meant; four writes a second are the most.
constexpr std::chrono::milliseconds kStanding{250};

constexpr Message kAskLive{"Write each step to the EEProm at once?", "V E R I F Y",
                           BoxStyle::YesNoExclamation};

std::int16_t PlaceOf(int cell) {
    return static_cast<std::int16_t>(Cell(cell).address);
}

}  // namespace

bool LiveValue::Begin(int value, Timer& timer) {
    if (!claim_) {
        claim_.emplace(i2c_);
        if (!MayBegin()) {
            claim_.reset();
            return false;
        }
    }
    timer_ = &timer;
    Turn(value);
    return true;
}

bool LiveValue::MayBegin() {
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return false;
    isAgreed_ = isAgreed_ ? writeGuard_.Fits(WriteKind::Live)
                          : writeGuard_.Wants(WriteKind::Live, Box(kAskLive).WithDefaultNo());
    if (!isAgreed_ || !writeGuard_.MayWrite())
        return false;
    if (i2c_.ReadAgreed(PlaceOf(cell_)) == Transfer::Aborted) {
        i2c_.AbortOperation();
        return false;
    }
    first_ = held_ = i2c_.ReadData()[0];
    return true;
}

void LiveValue::Pause() {
    if (timer_ != nullptr)
        timer_->Stop();
    timer_ = nullptr;
}

void LiveValue::Turn(int value) {
    if (timer_ == nullptr)
        return;
    wanted_ = value;
    timer_->Start(kStanding);
}

void LiveValue::Due() {
    if (timer_ == nullptr)
        return;
    timer_->Stop();
    if (wanted_)
        static_cast<void>(Write(*wanted_));
}

bool LiveValue::Holds(int value) const {
    return claim_ && ValueIn(held_, cell_) == value;
}

bool LiveValue::Write(int value) {
    timer_->Stop();
    return Holds(value) || WriteByte(WithValue(held_, cell_, static_cast<std::uint8_t>(value)));
}

bool LiveValue::WriteByte(std::uint8_t byte) {
    Transfer transfer = i2c_.WriteByte(PlaceOf(cell_), byte);
    if (transfer == Transfer::Done)
        transfer = i2c_.ReadBlock(PlaceOf(cell_), 1);
    if (transfer == Transfer::Aborted) {
        i2c_.AbortOperation();
        End();
        return false;
    }
    held_ = i2c_.ReadData()[0];
    if (held_ == byte)
        return true;
    TellNotVerified("ERROR: EEProm and Settings Values Do Not Match!", kSettingsNotVerified,
                    {{PlaceOf(cell_), byte, held_}});
    End();
    return false;
}

void LiveValue::TakeBack() {
    if (claim_ && held_ != first_)
        static_cast<void>(WriteByte(first_));
}

void LiveValue::End() {
    Pause();
    wanted_.reset();
    claim_.reset();
}

}  // namespace tarnwell
