// One 24C64 on a two-wire bus, as the data sheet describes it.
#include "port/simulated/Eeprom24C64.h"

#include <bit>
#include <utility>

namespace tarnwell {

namespace {

constexpr std::uint16_t kAddressMask = kEepromSize - 1;

}  // namespace

void Eeprom24C64::OnStart(BusTime now) {
    StandBy();
    if (faults_.silent || now < busyUntil_)
        return;
    phase_ = Phase::Receive;
    expected_ = Expected::Select;
    bits_ = 0;
    loaded_ = 0;
}

bool Eeprom24C64::StoresAtStop() const {
    // The stop's own rising edge of SCL counts as one bit.
    return phase_ == Phase::Receive && bits_ == 1 && loaded_ != 0;
}

void Eeprom24C64::OnStop(BusTime readyAt) {
    if (StoresAtStop()) {
        StorePage();
        busyUntil_ = readyAt;
    }
    StandBy();
}

void Eeprom24C64::OnRisingEdge(bool sda) {
    losesClock_ = faults_.lostClocks != 0;
    if (losesClock_)
        --faults_.lostClocks;
    else if (phase_ == Phase::Receive) {
        shift_ = static_cast<std::uint8_t>(shift_ << 1 | static_cast<int>(sda));
        ++bits_;
    } else if (phase_ == Phase::AwaitAcknowledge) {
        acknowledged_ = !sda;
    }
}

void Eeprom24C64::OnFallingEdge() {
    if (std::exchange(losesClock_, false))
        return;
    switch (phase_) {
        case Phase::StandBy:
            return;
        case Phase::Receive:
            if (bits_ == kBitsInByte)
                TakeByte() ? OfferAcknowledge() : StandBy();
            return;
        case Phase::Acknowledge:
            return FinishAcknowledge();
        case Phase::Send:
            return SendBit();
        case Phase::AwaitAcknowledge:
            return acknowledged_ ? BeginSending() : StandBy();
    }
}

void Eeprom24C64::StandBy() {
    phase_ = Phase::StandBy;
    pullsSdaLow_ = false;
}

bool Eeprom24C64::TakeByte() {
    switch (expected_) {
        case Expected::Select:
            reading_ = (shift_ & kReadBit) != 0;
            expected_ = Expected::AddressHigh;
            return (shift_ & ~kReadBit) == selectByte_;
        case Expected::AddressHigh:
            address_ = static_cast<std::uint16_t>((shift_ << kBitsInByte | (address_ & 0xFF)) &
                                                  kAddressMask);
            expected_ = Expected::AddressLow;
            return true;
        case Expected::AddressLow:
            address_ = static_cast<std::uint16_t>((address_ & ~0xFF) | shift_);
            expected_ = Expected::Data;
            return true;
        case Expected::Data:
            LoadIntoPage();
            return true;
    }
    return false;
}

void Eeprom24C64::LoadIntoPage() {
    const unsigned size = faults_.pageSize;
    const unsigned place = address_ % size;
    page_[place] = shift_;
    loaded_ |= 1U << place;
    address_ = static_cast<std::uint16_t>(address_ - place + (place + 1) % size);
}

void Eeprom24C64::StorePage() {
    if (faults_.losesWrites || (faults_.losesPages && std::popcount(loaded_) > 1))
        return;
    const std::size_t pageStart = address_ - address_ % faults_.pageSize;
    for (std::size_t i = 0; i < faults_.pageSize; ++i) {
        if (loaded_ >> i & 1)
            memory_[pageStart + i] = page_[i] ^ faults_.wrongBits;
    }
}

void Eeprom24C64::OfferAcknowledge() {
    phase_ = Phase::Acknowledge;
    skippedSamples_ = faults_.lateSamples;
    pullsSdaLow_ = skippedSamples_ == 0;
}

void Eeprom24C64::FinishAcknowledge() {
    if (skippedSamples_ != 0) {
        --skippedSamples_;
        pullsSdaLow_ = skippedSamples_ == 0;
        return;
    }
    pullsSdaLow_ = false;
    if (reading_)
        return BeginSending();
    phase_ = Phase::Receive;
    bits_ = 0;
}

void Eeprom24C64::BeginSending() {
    phase_ = Phase::Send;
    shift_ = memory_[address_];
    if (address_ == faults_.flippedAddress)
        shift_ ^= faults_.flippedBits;
    bits_ = 0;
    pullsSdaLow_ = (shift_ & 0x80) == 0;
}

void Eeprom24C64::SendBit() {
    ++bits_;
    shift_ = static_cast<std::uint8_t>(shift_ << 1);
    pullsSdaLow_ = bits_ < kBitsInByte && (shift_ & 0x80) == 0;
    if (bits_ < kBitsInByte)
        return;
    address_ = (address_ + 1) & kAddressMask;
    phase_ = Phase::AwaitAcknowledge;
    acknowledged_ = false;
}

}  // namespace tarnwell
