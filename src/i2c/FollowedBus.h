// A bus that remembers what went over it.
#pragma once

#include "i2c/EepromBus.h"
#include "i2c/KnownContents.h"

namespace tarnwell {

class FollowedBus final : public EepromBus {
  public:
    FollowedBus(EepromBus& bus, const ProgramState& state) : bus_(bus), state_(state) {}

    /// What the devices were last known to hold.
    const KnownContents& Known() const { return known_; }

    BusCheck CheckBus(Quiet quiet) override { return bus_.CheckBus(quiet); }
    [[nodiscard]] Transfer ReadBlock(std::int16_t address, std::int16_t count) override;
    [[nodiscard]] Transfer WritePage(std::int16_t address,
                                     std::span<const std::uint8_t> bytes) override;
    const EepromArray& ReadData() const override { return bus_.ReadData(); }
    int BytesRead() const override { return bus_.BytesRead(); }
    int BytesWritten() const override { return bus_.BytesWritten(); }
    DeviceProgress TrackProgress() override { return bus_.TrackProgress(); }
    [[nodiscard]] Transfer Recover() override { return bus_.Recover(); }
    using EepromBus::AbortOperation;
    void AbortOperation(std::string_view line) override { bus_.AbortOperation(line); }
    void GiveUp() override { bus_.GiveUp(); }
    bool IsTaken() const override { return bus_.IsTaken(); }
    const std::string& Failure() const override { return bus_.Failure(); }

  private:
    void Claim() override { bus_.Claim(); }
    void Release() override { bus_.Release(); }

    EepromBus& bus_;
    const ProgramState& state_;
    KnownContents known_;
};

}  // namespace tarnwell
