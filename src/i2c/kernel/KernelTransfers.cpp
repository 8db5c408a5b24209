#include "i2c/kernel/KernelTransfers.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "i2c/DrivenBus.h"

namespace tarnwell {

namespace {

/// Before a message that lost the bus is sent again.
constexpr BusTime kPause = std::chrono::milliseconds(1);

constexpr std::size_t kAddressBytes = 2;

/// What adapters of today take in one message, the longest first.
constexpr std::array<std::size_t, 17> kLengths{8192, 4096, 2048, 1024, 512, 256, 255, 252, 128,
                                               64,   32,   16,   8,    4,   3,   2,   1};

std::array<std::uint8_t, kAddressBytes> AddressBytes(unsigned address) {
    return {static_cast<std::uint8_t>(address >> 8), static_cast<std::uint8_t>(address)};
}

/// The kernel refuses what an adapter cannot do before anything is sent.
bool IsRefusal(int error) {
    return error == -EOPNOTSUPP || error == -EINVAL || error == -EMSGSIZE;
}

/// Longer reads fail with some adapters: their drivers give a transfer too little time, or a buffer
/// that is too small, and find that out in its midst.
constexpr std::size_t kSurelyShort = 255;

bool MayHaveBeenTooLong(int error, std::size_t length) {
    return length > kSurelyShort && (error == -ETIMEDOUT || error == -EIO || error == -EPROTO);
}

bool IsOthersTurn(int error) {
    return error == -EAGAIN || error == -EBUSY || error == -EINTR;
}

/// The next shorter length of a message; 0 if there is none.
std::size_t Shorter(std::size_t length) {
    const auto* const shorter =
        std::ranges::find_if(kLengths, [&](std::size_t other) { return other < length; });
    return shorter == kLengths.end() ? 0 : *shorter;
}

}  // namespace

bool IsNoAcknowledge(int error) {
    return error == -ENXIO || error == -EREMOTEIO || error == -EIO;
}

bool IsGone(int error) {
    return error == -ENODEV || error == -ESHUTDOWN || error == -EBADF || error == -ENOENT;
}

// A device that another master, or the part of a message that was sent, has set writing is silent
// for a while.
int KernelTransfers::Send(std::span<const I2cMessage> messages) {
    const BusTime bound = kernel_.Now() + kWriteCycleBound;
    int error = kernel_.Transfer(messages);
    for (bool again = IsOthersTurn(error); again && kernel_.Now() < bound;
         again = IsOthersTurn(error) || IsNoAcknowledge(error)) {
        kernel_.WaitUntil(kernel_.Now() + kPause);
        error = kernel_.Transfer(messages);
    }
    return error;
}

int KernelTransfers::SendAddressed(std::uint8_t device, std::span<std::uint8_t> address,
                                   std::span<std::uint8_t> bytes) {
    const std::array messages{I2cMessage{device, I2cDirection::Write, address},
                              I2cMessage{device, I2cDirection::Read, bytes}};
    if (limits_.combines.value_or(true))
        return Send(messages);
    const int error = Send(std::span(messages).first(1));
    return error == 0 ? Send(std::span(messages).last(1)) : error;
}

int KernelTransfers::ReadCurrent(std::uint8_t device) {
    std::uint8_t byte = 0;
    const I2cMessage message{device, I2cDirection::Read, {&byte, 1}};
    return Send({&message, 1});
}

// An address of one byte is no data for any device, should the adapter send a stop behind it.
int KernelTransfers::FindWhetherItCombines(std::uint8_t device, bool& combines) {
    int error = 0;
    if (!limits_.combines) {
        std::uint8_t byte = 0;
        error = ReadByShortAddress(device, 0, {&byte, 1});
        if (error == 0 || IsRefusal(error))
            limits_.combines = error == 0;
    }
    combines = limits_.combines.value_or(false);
    return IsRefusal(error) ? 0 : error;
}

// Only a length that is taken in the end becomes the limit: what fails at any length fails for
// another reason.
int KernelTransfers::Read(std::uint8_t device, unsigned address, std::span<std::uint8_t> bytes,
                          std::size_t& done) {
    auto addressBytes = AddressBytes(address);
    int error = 0;
    for (std::size_t limit = limits_.read; limit > 0;) {
        done = std::min(bytes.size(), limit);
        error = SendAddressed(device, addressBytes, bytes.first(done));
        if (error == 0)
            limits_.read = limit;
        if (!IsRefusal(error) && !MayHaveBeenTooLong(error, done))
            break;
        limit = IsRefusal(error) ? Shorter(done) : kSurelyShort;
    }
    return error;
}

int KernelTransfers::ReadAll(std::uint8_t device, unsigned address, std::span<std::uint8_t> bytes) {
    int error = 0;
    for (std::size_t done = 0; error == 0 && !bytes.empty(); bytes = bytes.subspan(done)) {
        error = Read(device, address, bytes, done);
        stop_.Obey();
        address += static_cast<unsigned>(done);
    }
    return error;
}

int KernelTransfers::ReadByShortAddress(std::uint8_t device, std::uint8_t address,
                                        std::span<std::uint8_t> bytes) {
    return SendAddressed(device, {&address, 1}, bytes);
}

int KernelTransfers::Write(std::uint8_t device, unsigned address,
                           std::span<const std::uint8_t> bytes, std::size_t& done) {
    std::array<std::uint8_t, kAddressBytes + kPageBytes> data{};
    std::ranges::copy(AddressBytes(address), data.begin());
    int error = 0;
    for (std::size_t limit = limits_.write; limit > kAddressBytes;
         limit = Shorter(kAddressBytes + done)) {
        done = std::min(bytes.size(), limit - kAddressBytes);
        std::ranges::copy(bytes.first(done), data.begin() + kAddressBytes);
        const I2cMessage message{device, I2cDirection::Write,
                                 std::span(data).first(kAddressBytes + done)};
        error = Send({&message, 1});
        if (error == 0)
            limits_.write = limit;
        if (!IsRefusal(error))
            break;
    }
    return error == 0 ? WaitUntilWritten(device) : error;
}

// Some adapters call it another failure that a device does not acknowledge.
int KernelTransfers::WaitUntilWritten(std::uint8_t device) {
    const BusTime bound = kernel_.Now() + kWriteCycleBound;
    int error = 0;
    // The processor may leave the program for longer than that within a poll.
    for (bool last = false; !last;) {
        last = kernel_.Now() >= bound;
        error = ReadCurrent(device);
        if (error == 0 || IsGone(error))
            return error;
    }
    return IsNoAcknowledge(error) ? -EALREADY : error;
}

}  // namespace tarnwell
