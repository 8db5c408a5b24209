// Brings a device to an image by writing only where the two differ.
#pragma once

#include <string>
#include <vector>

#include "image/Mismatch.h"

namespace tarnwell {

/// Each page in which something differs is written once, from its first to its last differing
/// byte; what the whole device then reads otherwise is written once more, byte by byte.
///
/// A device whose pages are shorter than 32 bytes would wrap: the first write across 16 bytes is
/// read back before the next one, and if it did not arrive, all that follows goes byte by byte.
class DifferenceWriter {
  public:
    DifferenceWriter(EepromBus& i2c, StatusBar& statusBar) : i2c_(i2c), statusBar_(statusBar) {}

    /// Writes and verifies. `present` is what the target device was just read to hold, after the
    /// bus check. After Aborted the bus needs AbortOperation.
    [[nodiscard]] Transfer Write(const MemoryBuffer& present, const MemoryBuffer& wanted);

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

    [[nodiscard]] Transfer WriteAndVerify();
    [[nodiscard]] Transfer WritePages();
    [[nodiscard]] Transfer WritePage(const PageBytes& bytes);
    [[nodiscard]] Transfer ProvePageWrite(const PageBytes& bytes);
    [[nodiscard]] Transfer WriteBytes(const std::vector<Mismatch>& bytes);
    [[nodiscard]] Transfer Verify();
    void ConfirmAfterAbort();
    void NoteRead();

    EepromBus& i2c_;
    StatusBar& statusBar_;
    MemoryBuffer wanted_{};
    std::vector<Mismatch> differing_;  ///< at first
    std::vector<Mismatch> left_;
    int confirmed_ = 0;

    enum class PageWrites : std::uint8_t { Unproven, Proven, Unfit };
    PageWrites pageWrites_ = PageWrites::Unproven;
};

}  // namespace tarnwell
