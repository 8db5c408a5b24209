// The one bus of the two that the commands work on; it remembers what went over it.
#pragma once

#include "i2c/EepromBus.h"
#include "i2c/KnownContents.h"

namespace tarnwell {

class FollowedBus final : public EepromBus {
  public:
    FollowedBus(EepromBus& parallelPort, EepromBus& kernel, const ProgramState& state)
        : parallelPort_(parallelPort), kernel_(kernel), state_(state) {}

    /// What the devices were last known to hold.
    const KnownContents& Known() const { return known_; }

    /// Another bus was chosen, at which there may be other devices. None may be claimed.
    void Changed() { known_.Forget(); }

    BusCheck CheckBus(Quiet quiet) override { return Bus().CheckBus(quiet); }
    BusCheck CheckAnswer(Quiet quiet) override { return Bus().CheckAnswer(quiet); }
    [[nodiscard]] Transfer ReadBlock(std::int16_t address, std::int16_t count) override;
    [[nodiscard]] Transfer WritePage(std::int16_t address,
                                     std::span<const std::uint8_t> bytes) override;
    const EepromArray& ReadData() const override { return Bus().ReadData(); }
    int BytesRead() const override { return Bus().BytesRead(); }
    int BytesWritten() const override { return Bus().BytesWritten(); }
    DeviceProgress TrackProgress() override { return Bus().TrackProgress(); }
    [[nodiscard]] Transfer Recover() override { return Bus().Recover(); }
    using EepromBus::AbortOperation;
    void AbortOperation(std::string_view line) override { Bus().AbortOperation(line); }
    void GiveUp() override { Bus().GiveUp(); }
    bool IsTaken() const override { return Bus().IsTaken(); }
    const std::string& Failure() const override { return Bus().Failure(); }

  private:
    void Claim() override { Bus().Claim(); }
    void Release() override { Bus().Release(); }

    EepromBus& Bus() const { return state_.I2cBusInUse().empty() ? parallelPort_ : kernel_; }

    EepromBus& parallelPort_;
    EepromBus& kernel_;
    const ProgramState& state_;
    KnownContents known_;
};

}  // namespace tarnwell
