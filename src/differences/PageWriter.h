// Brings a device to an image by writing only where the two differ.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command/WriteGuard.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// What becomes of a byte that was not written and then reads otherwise than wanted.
enum class Others : std::uint8_t {
    AsWanted,   ///< it is written, too
    AsTheyAre,  ///< what is wanted of it is only what was read, perhaps wrongly: it is told
};

/// Each page in which something differs is written once, from its first to its last differing
/// byte; what the whole device then reads otherwise, twice, is written once more, byte by byte. On
/// other pages such a byte was misread before: what was kept of the device is put right.
///
/// A device whose pages are shorter than 32 bytes would wrap: the first write across 16 bytes is
/// read back before the next one, and if it did not arrive, all that follows goes byte by byte.
class PageWriter {
  public:
    PageWriter(FollowedBus& i2c, StatusBar& statusBar, WriteGuard& guard)
        : i2c_(i2c), statusBar_(statusBar), guard_(guard) {}

    /// Writes and verifies. `present` is what the target device was just read to hold, after the
    /// bus check, and where it is not as wanted, read again. After Aborted the bus needs
    /// AbortOperation.
    [[nodiscard]] Transfer Write(const MemoryBuffer& present, const MemoryBuffer& wanted,
                                 Others others);

    /// All that the device was read to hold since its first byte was written; nothing where it
    /// could not be read after Aborted.
    const std::optional<MemoryBuffer>& Held() const { return held_; }

    /// What the device holds otherwise than wanted, after Done.
    const std::vector<Mismatch>& Left() const { return left_; }

    /// How many of the bytes that differed were read back as wanted. After Aborted the device was
    /// asked once more if the bus allowed it.
    int Confirmed() const { return confirmed_; }

    /// The same in words: "Bytes confirmed on the EEProm: 12 of 40."
    std::string ConfirmedText() const;

  private:
    /// Differing bytes of one page, in order.
    using PageBytes = std::vector<Mismatch>;

    [[nodiscard]] Transfer WriteAndVerify(Others others);
    std::vector<Mismatch> ToWriteAgain(Others others) const;
    [[nodiscard]] Transfer WritePages();
    [[nodiscard]] Transfer WritePage(const PageBytes& bytes);
    [[nodiscard]] Transfer ProvePageWrite(const PageBytes& bytes);
    [[nodiscard]] Transfer WriteBytes(const std::vector<Mismatch>& bytes);
    [[nodiscard]] Transfer Verify();
    void ConfirmAfterAbort();

    /// Takes `found` for what the device holds, once bytes that are not as wanted were read again.
    [[nodiscard]] Transfer Note(MemoryBuffer found);
    [[nodiscard]] Transfer Agree(MemoryBuffer& found, const std::vector<Mismatch>& bytes);
    bool IsOnWrittenPage(const Mismatch& byte) const;

    /// What is not as wanted on pages that were not written: it was misread, now or before.
    std::vector<Mismatch> OthersIn(const MemoryBuffer& found) const;

    FollowedBus& i2c_;
    StatusBar& statusBar_;
    WriteGuard& guard_;
    MemoryBuffer present_{};
    MemoryBuffer wanted_{};
    std::vector<Mismatch> differing_;  ///< at first
    std::vector<Mismatch> left_;
    std::optional<MemoryBuffer> held_;
    int confirmed_ = 0;
    bool othersHeld_ = false;  ///< whether the other pages were held against what was kept

    enum class PageWrites : std::uint8_t { Unproven, Proven, Unfit };
    PageWrites pageWrites_ = PageWrites::Unproven;
};

}  // namespace tarnwell
