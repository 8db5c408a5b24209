// The safety net under the commands that write: what was read of a device is kept before the next
// write to it, and read a second time where the command reads the device anyway.
#pragma once

#include <array>
#include <deque>
#include <optional>
#include <string>

#include "i2c/FollowedBus.h"

namespace tarnwell {

/// What a command is about to write to the target device.
enum class WriteKind : std::uint8_t {
    Image,        ///< the whole memory buffer
    Fill,         ///< one value everywhere
    Differences,  ///< what the device does not hold of the memory buffer
    Settings,     ///< the values that wait on the settings pages
    Pending,      ///< the data editor's queue
    Selected,     ///< given bytes, whatever the memory buffer holds
    Restore,      ///< what the device does not hold of a kept image, which the buffer holds
    TakeBack,     ///< what bytes held before earlier writes
    GoBack,       ///< what the whole device held at an earlier time
    Live,         ///< one setting, each value that it comes to while it is edited
};

class BackupStore {
  public:
    virtual ~BackupStore() = default;

    /// The whole device was read, or what was read of it was put right.
    virtual void WasRead(TargetDevice device, const EepromArray& image) = 0;

    /// A write is about to begin: makes sure that it can be put on the disk what it did. The path
    /// of what cannot be written, or empty.
    [[nodiscard]] virtual std::string BeginWrite(TargetDevice device, WriteKind kind) = 0;

    /// A write has ended. The path of what could not be written of it, or empty.
    [[nodiscard]] virtual std::string Wrote(const DeviceWrite& write) = 0;

    /// Puts a device's image on the disk, beside those kept before; its path, empty if that failed.
    [[nodiscard]] virtual std::string Keep(TargetDevice device, const EepromArray& image) = 0;

    /// Puts a kept image right; false if that failed.
    [[nodiscard]] virtual bool Replace(const std::string& path, const EepromArray& image) = 0;

    /// The image of a device that was kept last, if there is one.
    virtual std::optional<EepromArray> Newest(TargetDevice device) const = 0;

    /// Where the images are kept.
    virtual const std::string& Folder() const = 0;
};

/// Knows the whole program's state, of which a write is judged.
class WriteAdvisor {
  public:
    virtual ~WriteAdvisor() = default;

    /// Adds a line for each thing that does not fit, with the bytes concerned in the details.
    /// `coming` is what the device will hold where that is known; else what the kind writes counts.
    virtual void AddDoubts(WriteKind kind, const EepromArray* coming, Box& box) const = 0;

    /// Adds where the write goes, how much it is, and in the details what becomes of each byte.
    virtual void Describe(WriteKind kind, Box& question) const = 0;
};

/// How it went to read a second time.
enum class SecondReading : std::uint8_t {
    Agreed,
    TooNoisy,  ///< the user was told
    Aborted,   ///< the bus needs AbortOperation
};

class WriteGuard final : private WriteWitness {
  public:
    WriteGuard(const ProgramState& state, StatusBar& statusBar, User& user, FollowedBus& bus,
               BackupStore& store);

    /// Who is asked about each write from now on; without one nothing is said about it.
    void Ask(const WriteAdvisor& advisor) { advisor_ = &advisor; }

    /// Whether what is to be written fits, or the user wants to write it all the same; if not, the
    /// status line says so.
    [[nodiscard]] bool Fits(WriteKind kind, const EepromArray* coming = nullptr);

    /// The question by which that is asked, without its last line; without a text where all fits.
    Box Doubts(WriteKind kind, const EepromArray* coming) const;

    /// The same as Fits, and whether the user answers `question` with Yes.
    [[nodiscard]] bool Wants(WriteKind kind, const Box& question,
                             const EepromArray* coming = nullptr);

    /// The question with what it is about.
    Box Described(WriteKind kind, Box question) const;

    /// What was last read of the whole device in this run.
    const std::optional<EepromArray>& LastRead(TargetDevice device) const {
        return devices_[static_cast<std::size_t>(device)].lastRead;
    }

    /// The whole target device was read. Kept is each image that differs from the one before.
    void DeviceRead(const EepromArray& image);

    /// Reads a second time the pages in which the device, just read to hold `present`, is not as
    /// `wanted`, and the whole device if a few bytes elsewhere are not as they were read. Bytes
    /// that do not read the same twice are read on until two readings agree; `present` and what
    /// will be kept are put right. More of them than kMostDisagreeing are too many for a write.
    [[nodiscard]] SecondReading ReadAgain(EepromArray& present, const EepromArray& wanted);

    /// The same of the whole device, if its last reading has yet to be kept; one that is another
    /// device meanwhile is kept beside it.
    [[nodiscard]] SecondReading ReadAllAgain();

    /// The same for a command that writes only a few bytes of a device that it has just read: a
    /// kept image that nearly equals the reading is as good as a second one.
    [[nodiscard]] SecondReading HoldAgainstNewest();

    /// Call before the first byte of a command that writes to the target device. Asks only if
    /// there is something to keep and that fails; false, with a status line, if the user then
    /// does not want to write.
    [[nodiscard]] bool MayWrite();

    /// The same where what was read is kept already.
    [[nodiscard]] bool MayRecord();

    /// Whether all writes of this run could be recorded.
    bool RecordsAll() const { return unrecorded_.empty(); }

    /// What could not be written of a record.
    const std::string& Unrecorded() const { return unrecorded_; }

    /// Keeps what was read of a device and forgets it: another one may be in its place.
    void Leave(TargetDevice device);

    /// A byte that was not written reads, twice, otherwise than before the write: puts what was
    /// kept right. Tells the user if that fails.
    void PutRight(const std::vector<Mismatch>& misread);

  private:
    struct Device {
        std::optional<EepromArray> lastRead;
        std::deque<EepromArray> unkept;  ///< in the order in which they were read
        std::string path;                ///< of lastRead, once it is kept
    };
    void Wrote(const DeviceWrite& write) override;
    bool WantsNoBackup();
    bool WantsNoRecord(const std::string& path);
    bool KeepUnkept(TargetDevice which);
    [[nodiscard]] SecondReading ReadWhole();
    /// Reads the last byte of each `step` by itself: two readings that were thrown out of the
    /// device at nearly the same place agree from there on, and both are wrong. How many samples
    /// are not as in `image`, those that are known to disagree left out; nothing if the bus needs
    /// AbortOperation.
    [[nodiscard]] std::optional<std::size_t> WrongSamples(const EepromArray& image, int step,
                                                          const std::vector<Mismatch>& disagreeing);
    /// Settles what two readings of the whole device disagree about, if samples agree with both.
    [[nodiscard]] SecondReading SettleWhole(EepromArray& image,
                                            const std::vector<Mismatch>& disagreeing);
    SecondReading TellTooNoisy(std::size_t bytes);
    [[nodiscard]] SecondReading Settle(EepromArray& image,
                                       const std::vector<Mismatch>& disagreeing);
    Device& Target() { return devices_[static_cast<std::size_t>(state_.targetDevice)]; }

    const ProgramState& state_;
    StatusBar& statusBar_;
    User& user_;
    FollowedBus& bus_;
    BackupStore& store_;
    const WriteAdvisor* advisor_ = nullptr;
    std::array<Device, 2> devices_;
    WriteKind kind_ = WriteKind::Selected;  ///< judged last
    std::string unrecorded_;
};

}  // namespace tarnwell
