// The one bus of the two that the commands work on; it remembers what went over it, and finds what
// a write that went wrong has changed elsewhere.
#pragma once

#include <optional>

#include "i2c/KnownContents.h"
#include "i2c/Mismatch.h"

namespace tarnwell {

/// A byte that a command wrote to, or that its writes changed elsewhere.
struct WrittenByte {
    int address;
    std::optional<std::uint8_t> before;   ///< what it was known to hold
    std::optional<std::uint8_t> written;  ///< nothing where nobody wrote to it
    std::optional<std::uint8_t> now;      ///< what it is known to hold

    bool operator==(const WrittenByte&) const = default;
};

/// How the writes of a command ended.
enum class WriteEnd : std::uint8_t {
    Verified,
    NotVerified,  ///< read back, and not all as it was written
    Interrupted,  ///< by the user or the end of the program
    Failed,       ///< some of it was not written or not read back
};

/// What a command wrote.
struct DeviceWrite {
    TargetDevice device;
    int count;                       ///< of the bytes that were written to
    std::vector<WrittenByte> bytes;  ///< but those that held all the time what was written
    WriteEnd end;
};

/// Is told what commands write.
class WriteWitness {
  public:
    virtual ~WriteWitness() = default;
    virtual void Wrote(const DeviceWrite& write) = 0;
};

class FollowedBus final : public EepromBus {
  public:
    FollowedBus(EepromBus& parallelPort, EepromBus& kernel, const ProgramState& state)
        : parallelPort_(parallelPort), kernel_(kernel), state_(state) {}

    /// What the devices were last known to hold.
    const KnownContents& Known() const { return known_; }

    /// Another bus was chosen, at which there may be other devices. None may be claimed.
    void Changed() { known_.Forget(); }

    /// Another device may be there in the place of one. None may be claimed.
    void Changed(TargetDevice device) { known_.Forget(device); }

    /// Who is told of the writes from now on.
    void Tell(WriteWitness& witness) { witness_ = &witness; }

    /// Tells the witness what this claim wrote, unless that was told: before the user is. An
    /// aborted operation and the end of the claim do the same.
    void EndWrite();

    /// For a command whose writes did not verify: reads the whole target device, if that was not
    /// done since its last write, and finds the strays.
    void FindStrays();

    /// For a command whose write was aborted: frees the bus and reads the whole target device in
    /// short pieces, each as often as a disturbed line may need, which finds the strays as well.
    /// Nothing if the device cannot be read.
    std::optional<EepromArray> ReadAfterAbort();

    /// The bytes of the target device that hold neither what they were known to hold before the
    /// first write of this claim nor what was written to them, as they were found last.
    const std::vector<Mismatch>& Strays() const { return strays_; }

    BusCheck CheckBus(Quiet quiet) override { return Bus().CheckBus(quiet); }
    BusCheck CheckAnswer(Quiet quiet) override { return Bus().CheckAnswer(quiet); }
    [[nodiscard]] Transfer ReadBlock(std::int16_t address, std::int16_t count) override;
    [[nodiscard]] Transfer WritePage(std::int16_t address,
                                     std::span<const std::uint8_t> bytes) override;
    const EepromArray& ReadData() const override { return Bus().ReadData(); }
    int BytesRead() const override { return Bus().BytesRead(); }
    bool TakesPages() const override { return Bus().TakesPages(); }

    /// A byte that is written once more counts once.
    int BytesWritten() const override { return Bus().BytesWritten() - again_; }
    bool IsStopped() const override { return Bus().IsStopped(); }
    DeviceProgress TrackProgress() override { return Bus().TrackProgress(); }
    [[nodiscard]] Transfer Recover() override { return Bus().Recover(); }

    /// After a write the strays are in the box's details.
    using EepromBus::AbortOperation;
    void AbortOperation(std::string_view line, std::string details) override;
    void Free() override { Bus().Free(); }
    void GiveUp() override;
    bool IsTaken() const override { return Bus().IsTaken(); }
    const std::string& Failure() const override { return Bus().Failure(); }

  private:
    void Claim() override;
    void Release() override {
        EndWrite();
        Bus().Release();
    }
    void Watch();
    [[nodiscard]] Transfer ReadPatiently(int address, int count);
    bool ReadInPieces(EepromArray& image);
    std::vector<Mismatch> LookForStrays() const;
    std::vector<WrittenByte> BytesOfWrite() const;
    WriteEnd EndOfWrite() const;

    EepromBus& Bus() const { return state_.BusInUse().kernel ? kernel_ : parallelPort_; }

    EepromBus& parallelPort_;
    EepromBus& kernel_;
    const ProgramState& state_;
    KnownContents known_;

    /// Of a byte since the first write of the claim; a write that is under way may leave either.
    struct Expected {
        std::optional<std::uint8_t> held;
        std::optional<std::uint8_t> written;
        std::optional<std::uint8_t> before{};
        bool readBack = false;
    };
    int again_ = 0;                   ///< bytes that were written before, since the claim
    std::vector<Expected> expected_;  ///< by address; empty before the first write
    std::vector<Mismatch> strays_;
    enum class Look : std::uint8_t { Due, Done, Failed };
    Look look_ = Look::Due;  ///< at the whole device, since the last write

    WriteWitness* witness_ = nullptr;
    bool isTold_ = true;  ///< all that was written
    std::optional<WriteEnd> brokenOff_;
};

}  // namespace tarnwell
