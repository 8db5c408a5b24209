#include "i2c/kernel/KernelTransfers.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "i2c/DrivenBus.h"

namespace tarnwell {

namespace {

/// Before a message that lost the bus is sent again.
constexpr BusTime kPause = std::chrono::milliseconds(1);

/// A device refuses within milliseconds. The kernel waits for SCL to rise, ten times or so, each a
/// tenth of a second or longer, and calls it a refusal then.
constexpr BusTime kLongestRefusal = std::chrono::milliseconds(400);

constexpr std::size_t kAddressBytes = 2;

/// Reserved for future purposes (UM10204, 3.1.12): nothing answers to it.
constexpr std::uint8_t kNobody = 0x7F;

/// Below this, halving a read that an adapter cannot do gains nothing.
constexpr std::size_t kShortestPiece = 16;

std::array<std::uint8_t, kAddressBytes> AddressBytes(unsigned address) {
    return {static_cast<std::uint8_t>(address >> 8), static_cast<std::uint8_t>(address)};
}

/// The kernel refuses what an adapter cannot do before anything is sent.
bool IsRefusal(int error) {
    return error == -EOPNOTSUPP || error == -EINVAL || error == -EMSGSIZE;
}

bool IsOthersTurn(int error) {
    return error == -EAGAIN || error == -EBUSY || error == -EINTR;
}

/// Drivers and firmwares find out in its midst that a transfer takes too long, does not fit, or
/// brings fewer bytes than asked for; each has another word for it.
bool MayBeTooLong(int error) {
    return error != 0 && error != -ENXIO && error != kClockHeld && !IsOthersTurn(error) &&
           !IsGone(error);
}

/// The length to try behind one that failed; 0 if there is none.
std::size_t Shorter(std::size_t length) {
    if (length <= kShortestPiece)
        return length > 1 ? 1 : 0;
    return std::max(length / 2, kShortestPiece);
}

}  // namespace

bool IsNoAcknowledge(int error) {
    return error == -ENXIO || error == -EREMOTEIO || error == -EIO;
}

bool IsGone(int error) {
    return error == -ENODEV || error == -ESHUTDOWN || error == -EBADF || error == -ENOENT;
}

int KernelTransfers::SendOnce(std::span<const I2cMessage> messages) {
    const BusTime begin = kernel_.Now();
    const int error = kernel_.Transfer(messages);
    const bool refused = error == -ENXIO || error == -EREMOTEIO;
    return refused && kernel_.Now() - begin > kLongestRefusal ? kClockHeld : error;
}

// A device that another master, or the part of a message that was sent, has set writing is silent
// for a while.
int KernelTransfers::Send(std::span<const I2cMessage> messages) {
    const BusTime bound = kernel_.Now() + kWriteCycleBound;
    int error = SendOnce(messages);
    for (bool again = IsOthersTurn(error); again && kernel_.Now() < bound;
         again = IsOthersTurn(error) || IsNoAcknowledge(error)) {
        kernel_.WaitUntil(kernel_.Now() + kPause);
        error = SendOnce(messages);
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

int KernelTransfers::ReadCurrent(std::uint8_t device, std::uint8_t& byte) {
    const I2cMessage message{device, I2cDirection::Read, {&byte, 1}};
    return Send({&message, 1});
}

int KernelTransfers::LookAtSda() {
    const int error = ReadCurrent(kNobody);
    if (error == 0)
        return kSdaHeld;
    return IsGone(error) || error == kClockHeld ? error : 0;
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
    for (std::size_t limit = limits_.read; limit > 0; limit = Shorter(done)) {
        done = std::min(bytes.size(), limit);
        error = SendAddressed(device, addressBytes, bytes.first(done));
        if (error == 0)
            limits_.read = limit;
        if (!MayBeTooLong(error))
            break;
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

// What an adapter sent of a message that it broke off may be stored: the same bytes at their
// places.
int KernelTransfers::Write(std::uint8_t device, unsigned address,
                           std::span<const std::uint8_t> bytes, std::size_t& done) {
    std::array<std::uint8_t, kAddressBytes + kPageBytes> data{};
    std::ranges::copy(AddressBytes(address), data.begin());
    int error = 0;
    for (std::size_t limit = limits_.write; limit > 0; limit = done / 2) {
        done = std::min(bytes.size(), limit);
        std::ranges::copy(bytes.first(done), data.begin() + kAddressBytes);
        const I2cMessage message{device, I2cDirection::Write,
                                 std::span(data).first(kAddressBytes + done)};
        error = Send({&message, 1});
        if (error == 0)
            limits_.write = limit;
        if (!IsRefusal(error) &&
            !(MayBeTooLong(error) && done > 1 && WaitUntilWritten(device) == 0))
            break;
    }
    return error == 0 ? WaitUntilWritten(device) : error;
}

// Some adapters call it another failure that a device does not acknowledge. One that refuses is
// writing; where nothing was refused, SDA may be held low, which acknowledges everything.
int KernelTransfers::WaitUntilWritten(std::uint8_t device) {
    const BusTime bound = kernel_.Now() + kWriteCycleBound;
    int error = 0;
    bool refused = false;
    // The processor may leave the program for longer than that within a poll.
    for (bool last = false; !last;) {
        last = kernel_.Now() >= bound;
        std::uint8_t byte = 0;
        error = ReadCurrent(device, byte);
        if (error == 0)
            return refused || byte != 0 ? 0 : LookAtSda();
        if (IsGone(error) || error == kClockHeld)
            return error;
        refused = true;
    }
    return IsNoAcknowledge(error) ? -EALREADY : error;
}

}  // namespace tarnwell
