#include "TinyUsb.h"

namespace tarnwell {

namespace {

constexpr std::uint16_t kData = 0x378;
constexpr std::uint8_t kSdaSensed = 0x20;

constexpr int kVendor = 0x40;  // in the type of a request
constexpr int kGetDescriptor = 6;
enum Command { kEcho = 0, kGetFunctions = 1, kSetDelay = 2, kGetStatus = 3, kTransfer = 4 };
constexpr int kBegin = 1;
constexpr int kEnd = 2;
constexpr std::uint8_t kAcknowledged = 1;
constexpr std::uint8_t kNotAcknowledged = 2;

/// Plain messages, and what the kernel makes of them.
const std::vector<std::uint8_t> kFunctions{0x01, 0x00, 0xFF, 0x8E};

const std::vector<std::uint8_t> kDeviceDescriptor{18,   1,    0x10, 0x01, 0xFF, 0, 0, 8, 0x03,
                                                  0x04, 0x31, 0xC6, 0x05, 0x02, 0, 0, 0, 1};
const std::vector<std::uint8_t> kConfiguration{9, 2, 18, 0, 1, 1, 0, 0x80, 5,
                                               9, 4, 0,  0, 0, 0, 0, 0,    0};

}  // namespace

TinyUsb::TinyUsb() : television_({.pace = Pace::Real}) {
    television_.Claim(kData);
}

std::optional<std::vector<std::uint8_t>> TinyUsb::Answer(const ControlRequest& request,
                                                         std::span<const std::uint8_t> data) {
    std::vector<std::uint8_t> reply;
    const int descriptor = request.value >> 8;
    if ((request.type & kVendor) == 0) {
        if (request.request != kGetDescriptor || (descriptor != 1 && descriptor != 2))
            return std::nullopt;
        reply = descriptor == 1 ? kDeviceDescriptor : kConfiguration;
    } else if (request.length > longest_) {
        return std::nullopt;
    } else if (request.request == kEcho) {
        reply = {static_cast<std::uint8_t>(request.value),
                 static_cast<std::uint8_t>(request.value >> 8)};
    } else if (request.request == kGetFunctions) {
        reply = kFunctions;
    } else if (request.request == kGetStatus) {
        reply = {status_};
    } else if (request.request >= kTransfer && request.request <= (kTransfer | kBegin | kEnd)) {
        reply = Transfer(request, data);
    } else if (request.request != kSetDelay) {
        return std::nullopt;
    }
    reply.resize(std::min<std::size_t>(reply.size(), request.length));
    return reply;
}

std::vector<std::uint8_t> TinyUsb::Transfer(const ControlRequest& request,
                                            std::span<const std::uint8_t> data) {
    std::vector<std::uint8_t> read;
    Start();
    bool acknowledged =
        SendByte(static_cast<std::uint8_t>(request.index << 1 | static_cast<int>(request.Reads())));
    for (std::size_t i = 0; acknowledged && !request.Reads() && i < data.size(); ++i)
        acknowledged = SendByte(data[i]);
    for (int left = request.length; acknowledged && request.Reads() && left > 0; --left)
        read.push_back(ReadByte(left > 1));
    status_ = acknowledged ? kAcknowledged : kNotAcknowledged;
    if (!acknowledged || (request.request & kEnd) != 0)
        Stop();
    return read;
}

void TinyUsb::Drive(bool scl, bool sda) {
    television_.DlPortWritePortUchar(
        kData, static_cast<std::uint8_t>((scl ? 0 : 0x01) | (sda ? 0 : 0x02)));
}

bool TinyUsb::Sda() {
    return (television_.DlPortReadPortUchar(kData + 1) & kSdaSensed) != 0;
}

// Behind a byte SCL is low, so that this is a repeated start as well.
void TinyUsb::Start() {
    Drive(false, true);
    Drive(true, true);
    Drive(true, false);
    Drive(false, false);
}

void TinyUsb::Stop() {
    Drive(false, false);
    Drive(true, false);
    Drive(true, true);
}

bool TinyUsb::Clock(bool sda) {
    Drive(false, sda);
    Drive(true, sda);
    const bool seen = Sda();
    Drive(false, sda);
    return seen;
}

bool TinyUsb::SendByte(std::uint8_t byte) {
    for (int bit = 7; bit >= 0; --bit)
        Clock((byte >> bit & 1) != 0);
    return !Clock(true);
}

std::uint8_t TinyUsb::ReadByte(bool acknowledge) {
    int byte = 0;
    for (int bit = 0; bit < 8; ++bit)
        byte = byte << 1 | static_cast<int>(Clock(true));
    Clock(!acknowledge);
    return static_cast<std::uint8_t>(byte);
}

}  // namespace tarnwell
