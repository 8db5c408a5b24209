// The EEPROM transactions: block read and page write.
#include <optional>

#include "i2c/parallel/mI2Ccode.h"

namespace tarnwell {

namespace {

constexpr std::uint8_t kReadBit = 0x01;

}  // namespace

Transfer mI2Ccode::SendBits(std::uint8_t value) {
    for (std::uint8_t mask = 0x80; mask != 0 && !BusFailed(); mask >>= 1)
        SendBit(value & mask);
    return BusFailed() ? Transfer::Aborted : Transfer::Done;
}

// A device that lost a clock acknowledges one clock later than it did in the bus check, and has
// taken another byte than the one sent.
Transfer mI2Ccode::WaitForAck() {
    for (int sample = 1; sample <= kAckSamples && !BusFailed(); ++sample) {
        if (ReadAck() == AckBit::Acknowledged)
            return BusFailed() || sample != ackSample_ ? Transfer::Aborted : Transfer::Done;
    }
    return Transfer::Aborted;
}

Transfer mI2Ccode::Send(std::uint8_t value) {
    return SendBits(value) == Transfer::Done ? WaitForAck() : Transfer::Aborted;
}

Transfer mI2Ccode::SendAddressed(std::uint8_t select, std::int16_t address) {
    const int low = address & 0xFF;
    const int high = (address - low) / 256 & 0xFF;
    SendStart();
    for (const int byte : {int{select}, high, low}) {
        if (Send(static_cast<std::uint8_t>(byte)) == Transfer::Aborted)
            return Transfer::Aborted;
    }
    return Transfer::Done;
}

Transfer mI2Ccode::ReadBlock(std::int16_t address, std::int16_t count) {
    const bool wholeDevice = count == kEepromBytes;
    bytesRead_ = 0;
    std::optional<DeviceProgress> progress;
    if (wholeDevice)
        progress.emplace(statusBar_, user_, clock_, stopped_);
    const std::uint8_t select = SelectByte();
    if (SendAddressed(select, address) == Transfer::Aborted)
        return Transfer::Aborted;
    SendStart();
    if (Send(select | kReadBit) == Transfer::Aborted)
        return Transfer::Aborted;
    if (ReadBytes(count, progress ? &*progress : nullptr) == Transfer::Aborted)
        return Transfer::Aborted;
    return wholeDevice ? ExpectAnswer() : Transfer::Done;
}

Transfer mI2Ccode::ReadBytes(std::int16_t count, DeviceProgress* progress) {
    const int last = count - 1;
    for (int index = 0; index <= last; ++index) {
        readData_[static_cast<std::size_t>(index)] = ReadByte();
        const bool cutShort = stopped_ && progress != nullptr && index != last;
        if (index == last || cutShort)
            SendStop();
        else
            SendAck();
        if (BusFailed() || cutShort)
            return Transfer::Aborted;
        ++bytesRead_;
        stop_.Obey();
        if (progress != nullptr && index != last)
            progress->Show(index + 1);
    }
    return ExpectIdleBus();
}

Transfer mI2Ccode::ExpectIdleBus() {
    lines_.WaitUntilFree();
    return lines_.AreIdle() && !BusFailed() ? Transfer::Done : Transfer::Aborted;
}

Transfer mI2Ccode::ExpectAnswer() {
    return ProbeDevice() != 0 ? ExpectIdleBus() : Transfer::Aborted;
}

Transfer mI2Ccode::WritePage(std::int16_t address, std::span<const std::uint8_t> bytes) {
    const std::uint8_t select = SelectByte();
    if (SendAddressed(select, address) == Transfer::Aborted)
        return Transfer::Aborted;
    for (const std::uint8_t byte : bytes) {
        if (Send(byte) == Transfer::Aborted)
            return Transfer::Aborted;
    }
    SendStop();
    if (PollUntilWritten(select) == Transfer::Aborted)
        return Transfer::Aborted;
    bytesWritten_ += static_cast<int>(bytes.size());
    stop_.Obey();
    return Transfer::Done;
}

Transfer mI2Ccode::PollUntilWritten(std::uint8_t select) {
    const BusTime bound = clock_.Now() + kWriteCycleBound;
    // The processor may leave the program for longer than that within a poll.
    for (bool last = false; !last;) {
        last = clock_.Now() >= bound;
        SendStart();
        if (SendBits(select) == Transfer::Aborted)
            return Transfer::Aborted;
        if (ReadAck() == AckBit::Acknowledged)
            return BusFailed() ? Transfer::Aborted : Transfer::Done;
    }
    return Transfer::Aborted;
}

}  // namespace tarnwell
