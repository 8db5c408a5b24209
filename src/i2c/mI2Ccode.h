// The I2C interface: line driving, bus operations, the bus check and the EEPROM transactions.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <span>

#include "core/ProgramState.h"
#include "core/StatusBar.h"
#include "core/StopRequest.h"
#include "core/User.h"
#include "i2c/AdapterDiagnosis.h"
#include "i2c/BusTiming.h"
#include "i2c/BusTrace.h"
#include "i2c/DeviceProgress.h"
#include "i2c/PinMapping.h"
#include "i2c/Port.h"

namespace tarnwell {

/// Bytes of one 24C64.
inline constexpr int kEepromBytes = 8192;

/// Bytes of a page, which a 24C64 writes in one write cycle (data sheet, page write).
inline constexpr int kPageBytes = 32;

/// Samples of the acknowledge bit after which a device counts as silent.
inline constexpr int kAckSamples = 5;

/// One device's bytes and a spare slot.
using EepromArray = std::array<std::uint8_t, kEepromBytes + 1>;

enum class AckBit : std::int16_t { Acknowledged = 0, NotAcknowledged = -1 };

enum class Quiet : std::uint8_t { No, Yes };

enum class BusCheck : std::uint8_t {
    Ok = 0,
    BusActivity = 25,      ///< a line was not high before anything was driven
    HardwareProblem = 50,  ///< SDA stayed high while driven low
    NobodyAnswered = 75,   ///< the target device did not acknowledge, quiet call
    NoAcknowledge = 100,   ///< the target device did not acknowledge
};

/// How a transaction ended; after Aborted the bus needs AbortOperation.
enum class Transfer : std::uint8_t { Done, Aborted };

/// What the bus is driven by, and who follows it.
struct Wire {
    Port& port;
    Clock& clock;
    BusTrace& trace = NoBusTrace();
    const StopRequest& stop = NoStopRequest();
};

/// The program as the only master on the bus. Claim the bus (BusClaim) before any operation.
class mI2Ccode {  // NOLINT(readability-identifier-naming): the module's handed-down name
  public:
    mI2Ccode(const Wire& wire, const ProgramState& state, StatusBar& statusBar, User& user);

    /// Decodes the program state's pin options for all further operations.
    void ApplyPortOptions();
    const PinSetup& Pins() const { return pins_; }

    /// Drive a line: 0 is low, 1 or more is high, a negative level changes nothing.
    void SetSCL(std::int16_t level);
    void SetSDA(std::int16_t level);

    /// One read of the status register.
    std::uint8_t Sense();

    /// Both lines by the same read, raw: a set bit is a high line.
    LineLevels SenseLevels();

    /// A release that the port does not take is made up for when it next answers at this address.
    void ReleaseBus();

    /// Also the repeated start. SCL is low and SDA released afterwards.
    void SendStart();
    void SendStop();
    void SendAck();

    /// Eight bits, the most significant first; the caller reads the acknowledge. What is seen of
    /// each bit within its clock ends a transaction if it is not what was sent.
    void SendByte(std::uint8_t value);
    AckBit ReadAck();
    std::uint8_t ReadByte();

    /// Tests that the lines are idle, that SDA follows the adapter and that the target device
    /// answers. Tells the user of any failure but NobodyAnswered, with its probable cause.
    BusCheck CheckBus(Quiet quiet);

    /// Reads `count` (1 to 8192) bytes from `address` (0 to 8191) of the target device into
    /// ReadData from index 0. A read of a whole device shows its progress, and at its end the
    /// device is asked whether it still answers: one that fell silent gives 0xFF.
    [[nodiscard]] Transfer ReadBlock(std::int16_t address, std::int16_t count);

    /// Writes one byte at `address` (0 to 8191) of the target device and returns when the device
    /// has finished its write cycle.
    [[nodiscard]] Transfer WriteByte(std::int16_t address, std::uint8_t value);

    /// Writes 1 to 32 bytes from `address` on, all of one page, in one write cycle, and returns
    /// when that is over. The device stores none of them before the stop that ends the last one.
    [[nodiscard]] Transfer WritePage(std::int16_t address, std::span<const std::uint8_t> bytes);

    /// Reads the byte at `address` until two readings in a row agree; it is ReadData()[0] then.
    [[nodiscard]] Transfer ReadAgreed(std::int16_t address);

    /// The bytes of the last block read.
    const EepromArray& ReadData() const { return readData_; }

    /// For a command that works through a whole device by itself.
    DeviceProgress TrackProgress() { return {statusBar_, user_, clock_}; }

    /// Ends a command whose transaction was aborted: frees the bus and tells the user.
    void AbortOperation();

    /// How many bytes the last block read has got, also if it was cut short.
    int BytesRead() const { return bytesRead_; }

    /// How many bytes the command that runs has written so far.
    int BytesWritten() const { return bytesWritten_; }

    /// For the end of the program in a command: frees the bus, if it is not free, and gives the
    /// port back.
    void GiveUp();

  private:
    friend class BusClaim;
    void Claim();
    void Release();

    void Drive(BusLine line, std::int16_t level);
    std::uint8_t TimedRead(std::uint16_t address);
    Level SclLevel(std::uint8_t status) const;
    Level SdaLevel(std::uint8_t status) const;
    std::uint8_t SelectByte() const;

    BusCheck ProbeBus();

    /// The sample, from 1 on, at which the target device acknowledges its address; 0 if it is
    /// silent.
    int ProbeDevice();
    void FreeBus();
    void LeaveFree();
    void Report(const Message& message, std::string_view cause);

    /// What the lines say of the cause of a bus check's outcome, in one line; empty where the port
    /// itself failed. Only a line that is free is driven.
    std::string ExplainActivity();
    std::string ExplainAdapter();
    std::string ExplainSilence();

    /// What the bus at a base address still has to get because the port failed meanwhile.
    enum class Owed : std::uint8_t { Release, FreeBus };
    void Owe(Owed owed);
    void MakeUp();

    void SendBit(std::int16_t level);
    [[nodiscard]] Transfer SendBits(std::uint8_t value);
    [[nodiscard]] Transfer Send(std::uint8_t value);
    [[nodiscard]] Transfer WaitForAck();
    [[nodiscard]] Transfer SendAddressed(std::uint8_t select, std::int16_t address);
    [[nodiscard]] Transfer ReadBytes(std::int16_t count, DeviceProgress* progress);
    [[nodiscard]] Transfer PollUntilWritten(std::uint8_t select);
    [[nodiscard]] Transfer ExpectIdleBus();
    [[nodiscard]] Transfer ExpectAnswer();
    std::uint8_t Sample();
    void SampleSent(Level sent);
    bool LinesAreIdle() { return SenseLevels() == LineLevels{}; }
    bool PortFailed() const { return !port_.Failure().empty(); }
    bool BusFailed() const { return disturbed_ || PortFailed(); }

    Port& port_;
    Clock& clock_;
    const ProgramState& state_;
    StatusBar& statusBar_;
    User& user_;
    BusTrace& trace_;
    const StopRequest& stop_;
    BusTiming timing_;
    PinSetup pins_ = DecodePinOptions(kDefaultPinOptions);
    EepromArray readData_{};
    std::uint16_t baseAddress_ = 0;
    std::map<std::uint16_t, Owed> owed_;  ///< by base address
    int ackSample_ = 1;       ///< at which sample the target device acknowledged in the bus check
    int bytesRead_ = 0;       ///< of the last block
    int bytesWritten_ = 0;    ///< since the claim
    bool disturbed_ = false;  ///< at a sample a line was not where it was driven or released to
};

/// Holds the port for this program from a command's bus check to the command's end.
class BusClaim {
  public:
    explicit BusClaim(mI2Ccode& i2c) : i2c_(i2c) { i2c_.Claim(); }
    ~BusClaim() { i2c_.Release(); }
    BusClaim(const BusClaim&) = delete;
    BusClaim& operator=(const BusClaim&) = delete;

  private:
    mI2Ccode& i2c_;
};

}  // namespace tarnwell
