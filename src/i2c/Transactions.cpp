// The two EEPROM transactions: block read and single-byte write.
#include <optional>

#include "i2c/mI2Ccode.h"

namespace tarnwell {

namespace {

constexpr std::uint8_t kPrimarySelect = 0xA0;
constexpr std::uint8_t kSecondarySelect = 0xA2;
constexpr std::uint8_t kReadBit = 0x01;

/// A 24C64 finishes its write cycle within 10 ms (data sheet, t_WR).
constexpr BusTime kWriteCycleBound = std::chrono::milliseconds(50);

}  // namespace

std::uint8_t mI2Ccode::SelectByte() const {
    return state_.targetDevice == TargetDevice::Primary ? kPrimarySelect : kSecondarySelect;
}

Transfer mI2Ccode::WaitForAck() {
    for (int sample = 0; sample < kAckSamples && !BusFailed(); ++sample) {
        if (ReadAck() == AckBit::Acknowledged)
            return BusFailed() ? Transfer::Aborted : Transfer::Done;
    }
    return Transfer::Aborted;
}

Transfer mI2Ccode::SendAddressed(std::uint8_t select, std::int16_t address) {
    const int low = address & 0xFF;
    const int high = (address - low) / 256 & 0xFF;
    SendStart();
    for (const int byte : {int{select}, high, low}) {
        SendByte(static_cast<std::uint8_t>(byte));
        if (WaitForAck() == Transfer::Aborted)
            return Transfer::Aborted;
    }
    return Transfer::Done;
}

Transfer mI2Ccode::ReadBlock(std::int16_t address, std::int16_t count) {
    std::optional<DeviceProgress> progress;
    if (count == kEepromBytes)
        progress.emplace(statusBar_, user_, clock_);
    const std::uint8_t select = SelectByte();
    if (SendAddressed(select, address) == Transfer::Aborted)
        return Transfer::Aborted;
    SendStart();
    SendByte(select | kReadBit);
    if (WaitForAck() == Transfer::Aborted)
        return Transfer::Aborted;

    const int last = count - 1;
    for (int index = 0; index <= last; ++index) {
        readData_[static_cast<std::size_t>(index)] = ReadByte();
        if (index == last)
            SendStop();
        else
            SendAck();
        if (BusFailed())
            return Transfer::Aborted;
        if (progress && index != last)
            progress->Show(index + 1);
    }
    return ExpectIdleBus();
}

Transfer mI2Ccode::ExpectIdleBus() {
    timing_.WaitUntilFree();
    return LinesAreIdle() && !PortFailed() ? Transfer::Done : Transfer::Aborted;
}

Transfer mI2Ccode::WriteByte(std::int16_t address, std::uint8_t value) {
    const std::uint8_t select = SelectByte();
    if (SendAddressed(select, address) == Transfer::Aborted)
        return Transfer::Aborted;
    SendByte(value);
    if (WaitForAck() == Transfer::Aborted)
        return Transfer::Aborted;
    SendStop();
    return PollUntilWritten(select);
}

Transfer mI2Ccode::PollUntilWritten(std::uint8_t select) {
    const BusTime bound = clock_.Now() + kWriteCycleBound;
    // The processor may leave the program for longer than that within a poll.
    for (bool last = false; !last && !BusFailed();) {
        last = clock_.Now() >= bound;
        SendStart();
        SendByte(select);
        if (ReadAck() == AckBit::Acknowledged)
            return BusFailed() ? Transfer::Aborted : Transfer::Done;
    }
    return Transfer::Aborted;
}

}  // namespace tarnwell
