// The I2C interface: the bus operations, the bus check and the EEPROM transactions.
#pragma once

#include <cstdint>

#include "core/ProgramState.h"
#include "i2c/DrivenBus.h"
#include "i2c/parallel/FaultCauses.h"

namespace tarnwell {

/// Samples of the acknowledge bit after which a device counts as silent.
inline constexpr int kAckSamples = 5;

enum class AckBit : std::int16_t { Acknowledged = 0, NotAcknowledged = -1 };

/// The bus that the program drives by the parallel port, every edge of it, as its only master.
class mI2Ccode final  // NOLINT(readability-identifier-naming): the module's handed-down name
    : public DrivenBus {
  public:
    mI2Ccode(const Wire& wire, const ProgramState& state, StatusBar& statusBar, User& user);

    /// Decodes the program state's pin options for all further operations.
    void ApplyPortOptions();
    const PinSetup& Pins() const { return lines_.Pins(); }

    /// Drive a line: 0 is low, 1 or more is high, a negative level changes nothing.
    void SetSCL(std::int16_t level) { lines_.Drive(BusLine::Scl, level); }
    void SetSDA(std::int16_t level) { lines_.Drive(BusLine::Sda, level); }

    /// Both lines by one read of the status register, raw: a set bit is a high line.
    LineLevels SenseLevels() { return lines_.Levels(); }

    /// A release that the port does not take is made up for by the next bus check.
    void ReleaseBus();

    /// Also the repeated start. SCL is low and SDA released afterwards. A transaction ends if SDA
    /// is seen low before, or high after it was pulled low: then no start has formed.
    void SendStart();
    void SendStop();
    void SendAck();

    /// Eight bits, the most significant first; the caller reads the acknowledge. What is seen of
    /// each bit within its clock ends a transaction if it is not what was sent.
    void SendByte(std::uint8_t value);
    AckBit ReadAck();
    std::uint8_t ReadByte();

    /// Also tests that the lines are idle and that SDA follows the adapter.
    BusCheck CheckBus(Quiet quiet) override;
    [[nodiscard]] Transfer ReadBlock(std::int16_t address, std::int16_t count) override;
    [[nodiscard]] Transfer WritePage(std::int16_t address,
                                     std::span<const std::uint8_t> bytes) override;
    [[nodiscard]] Transfer Recover() override;
    using EepromBus::AbortOperation;
    void AbortOperation(std::string_view line, std::string details) override;
    void Free() override { freeing_.Free(); }
    void GiveUp() override;
    bool IsTaken() const override { return port_.IsTaken(); }
    const std::string& Failure() const override { return port_.Failure(); }

  private:
    void Claim() override;
    void Release() override;

    std::uint8_t SelectByte() const;
    BusCheck ProbeBus();

    /// The sample, from 1 on, at which the target device acknowledges its address; 0 if it is
    /// silent.
    int ProbeDevice();

    void SendBit(std::int16_t level);
    [[nodiscard]] Transfer SendBits(std::uint8_t value);
    [[nodiscard]] Transfer Send(std::uint8_t value);
    [[nodiscard]] Transfer WaitForAck();
    [[nodiscard]] Transfer SendAddressed(std::uint8_t select, std::int16_t address);
    [[nodiscard]] Transfer ReadBytes(std::int16_t count, DeviceProgress* progress);
    [[nodiscard]] Transfer PollUntilWritten(std::uint8_t select);
    [[nodiscard]] Transfer ExpectIdleBus();
    [[nodiscard]] Transfer ExpectAnswer();
    bool BusFailed() const { return lines_.Amiss() || lines_.PortFailed(); }

    Port& port_;
    const ProgramState& state_;
    PortLines lines_;
    BusFreeing freeing_;
    FaultCauses causes_;
    int ackSample_ = 1;  ///< at which sample the target device acknowledged in the bus check
};

}  // namespace tarnwell
