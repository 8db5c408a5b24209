// The bus that the kernel drives: the EEPROM transactions by transfers of a whole message.
#pragma once

#include <set>
#include <utility>

#include "core/ProgramState.h"
#include "i2c/kernel/DeviceLook.h"

namespace tarnwell {

/// The bus is that of the state, found again by its name at each claim.
class KernelBus final : public DrivenBus {
  public:
    KernelBus(const Wire& wire, const ProgramState& state, StatusBar& statusBar, User& user);

    /// Also asks, before the first command with a device, whether it may be used if it does not
    /// look like a 24C64; Declined where the user says no.
    BusCheck CheckBus(Quiet quiet) override;
    BusCheck CheckAnswer(Quiet quiet) override;
    [[nodiscard]] Transfer ReadBlock(std::int16_t address, std::int16_t count) override;

    /// In several write cycles where the adapter takes no message of this length.
    [[nodiscard]] Transfer WritePage(std::int16_t address,
                                     std::span<const std::uint8_t> bytes) override;
    bool TakesPages() const override { return true; }
    [[nodiscard]] Transfer Recover() override;
    using EepromBus::AbortOperation;
    void AbortOperation(std::string_view line, std::string details) override {
        ReportAborted(line, std::move(details));
    }
    void Free() override {}  // the kernel did
    void GiveUp() override { Release(); }
    bool IsTaken() const override { return IsMet() && kernel_.IsTaken(); }
    const std::string& Failure() const override { return failure_; }

  private:
    void Claim() override;
    void Release() override;

    std::uint8_t Device() const {
        return state_.targetDevice == TargetDevice::Primary ? 0x50 : 0x51;
    }

    /// Another adapter, or the same one plugged in again, has to be looked at anew.
    void Meet(const I2cBus& bus);
    void Forget();
    bool IsMet() const { return !open_.node.empty(); }
    bool IsStillThere() const;

    enum class Trust : std::uint8_t { Given, Declined, Failed };
    Trust AskForTrust();
    bool Agreed(Box question);

    /// Keeps what failed first, or that the adapter is gone; always Aborted.
    Transfer Fail(int error);

    KernelI2c& kernel_;
    const ProgramState& state_;
    KernelTransfers transfers_;
    I2cBus open_;  ///< the one met last
    std::set<std::uint8_t> trusted_;
    std::string failure_;
};

}  // namespace tarnwell
