// The bus as the commands see it, whatever drives it: the transactions with an EEPROM on it.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "i2c/DeviceProgress.h"

namespace tarnwell {

/// Bytes of a page, which a 24C64 writes in one write cycle (data sheet, page write).
inline constexpr int kPageBytes = 32;

/// One device's bytes and a spare slot.
using EepromArray = std::array<std::uint8_t, kEepromBytes + 1>;

/// Bytes of a whole reading that another one may contradict on lines that are fit for writing.
inline constexpr std::size_t kMostDisagreeing = 16;

enum class Quiet : std::uint8_t { No, Yes };

enum class BusCheck : std::uint8_t {
    Ok = 0,
    BusActivity = 25,      ///< a line was not high before anything was driven
    HardwareProblem = 50,  ///< SDA stayed high while driven low
    NobodyAnswered = 75,   ///< the target device did not acknowledge, quiet call
    NoAcknowledge = 100,   ///< the target device did not acknowledge
    Declined = 125,        ///< the user does not want the target device to be used
};

/// How a transaction ended; after Aborted the bus needs AbortOperation.
enum class Transfer : std::uint8_t { Done, Aborted };

/// Claim the bus (BusClaim) before any operation.
class EepromBus {
  public:
    EepromBus() = default;
    virtual ~EepromBus() = default;
    EepromBus(const EepromBus&) = delete;
    EepromBus& operator=(const EepromBus&) = delete;

    /// Tests that the bus works and that the target device answers. Tells the user of any failure
    /// but NobodyAnswered, with its probable cause.
    virtual BusCheck CheckBus(Quiet quiet) = 0;

    /// The same without asking what the device is, for a command that only looks for a fault.
    virtual BusCheck CheckAnswer(Quiet quiet) { return CheckBus(quiet); }

    /// Reads `count` (1 to 8192) bytes from `address` (0 to 8191) of the target device into
    /// ReadData from index 0. A read of a whole device shows its progress, and at its end the
    /// device is asked whether it still answers: one that fell silent gives 0xFF.
    [[nodiscard]] virtual Transfer ReadBlock(std::int16_t address, std::int16_t count) = 0;

    /// Reads the byte at `address` until two readings in a row agree, at most eight times; it is
    /// ReadData()[0] then.
    [[nodiscard]] Transfer ReadAgreed(std::int16_t address);

    /// Writes one byte at `address` (0 to 8191) of the target device and returns when the device
    /// has finished its write cycle.
    [[nodiscard]] Transfer WriteByte(std::int16_t address, std::uint8_t value) {
        return WritePage(address, {&value, 1});
    }

    /// Writes 1 to 32 bytes from `address` on, all of one page, in one write cycle, and returns
    /// when that is over. The device stores none of them before the stop that ends the last one.
    [[nodiscard]] virtual Transfer WritePage(std::int16_t address,
                                             std::span<const std::uint8_t> bytes) = 0;

    /// Whether a whole image goes by pages. The adapter's wire keeps the edges it was tried with.
    virtual bool TakesPages() const { return false; }

    /// The bytes of the last block read.
    virtual const EepromArray& ReadData() const = 0;

    /// How many bytes the last block read has got, also if it was cut short.
    virtual int BytesRead() const = 0;

    /// How many bytes the command that runs has written so far.
    virtual int BytesWritten() const = 0;

    /// Whether the user stopped the command that runs: its transaction was aborted, or it is to
    /// end as if it had been.
    virtual bool IsStopped() const = 0;

    /// For a command that works through a whole device by itself.
    virtual DeviceProgress TrackProgress() = 0;

    /// Frees the bus after an aborted transaction; Done if the target device answers on it again.
    [[nodiscard]] virtual Transfer Recover() = 0;

    /// Leaves the bus free after a transaction that was aborted, for a command that goes on.
    virtual void Free() = 0;

    /// Ends a command whose transaction was aborted, or that was stopped: frees the bus and tells
    /// the user.
    void AbortOperation() { AbortOperation({}, {}); }

    /// The same, and tells one more line and the box's details, if they are not empty.
    virtual void AbortOperation(std::string_view line, std::string details) = 0;

    /// For the end of the program in a command: frees the bus, if it is not free, and gives it
    /// back.
    virtual void GiveUp() = 0;

    /// Whether the last claim failed because another program has the bus.
    virtual bool IsTaken() const = 0;

    /// One line that says what failed on this side of the bus since the last claim and what to do
    /// about it; empty when nothing did.
    virtual const std::string& Failure() const = 0;

  private:
    friend class BusClaim;
    friend class FollowedBus;
    virtual void Claim() = 0;
    virtual void Release() = 0;
};

/// Holds the bus for this program from a command's bus check to the command's end.
class BusClaim {
  public:
    explicit BusClaim(EepromBus& bus) : bus_(bus) { bus_.Claim(); }
    ~BusClaim() { bus_.Release(); }
    BusClaim(const BusClaim&) = delete;
    BusClaim& operator=(const BusClaim&) = delete;

  private:
    EepromBus& bus_;
};

}  // namespace tarnwell
