// The I2C interface: line driving, bus operations, the bus check and the EEPROM transactions.
#pragma once

#include <cstdint>
#include <map>

#include "core/ProgramState.h"
#include "i2c/AdapterDiagnosis.h"
#include "i2c/BusTiming.h"
#include "i2c/DrivenBus.h"
#include "i2c/PinMapping.h"

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

    /// Also tests that the lines are idle and that SDA follows the adapter.
    BusCheck CheckBus(Quiet quiet) override;
    [[nodiscard]] Transfer ReadBlock(std::int16_t address, std::int16_t count) override;
    [[nodiscard]] Transfer WritePage(std::int16_t address,
                                     std::span<const std::uint8_t> bytes) override;
    [[nodiscard]] Transfer Recover() override;
    using EepromBus::AbortOperation;
    void AbortOperation(std::string_view line) override;
    void GiveUp() override;
    bool IsTaken() const override { return port_.IsTaken(); }
    const std::string& Failure() const override { return port_.Failure(); }

  private:
    void Claim() override;
    void Release() override;

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
    const ProgramState& state_;
    BusTrace& trace_;
    BusTiming timing_;
    PinSetup pins_ = DecodePinOptions(kDefaultPinOptions);
    std::uint16_t baseAddress_ = 0;
    std::map<std::uint16_t, Owed> owed_;  ///< by base address
    int ackSample_ = 1;       ///< at which sample the target device acknowledged in the bus check
    bool disturbed_ = false;  ///< at a sample a line was not where it was driven or released to
};

}  // namespace tarnwell
