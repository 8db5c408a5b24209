// Watching a device: it is read over and over, and what it holds otherwise than before becomes rows
// with the time.
#pragma once

#include <set>

#include "command/Command.h"
#include "core/Calendar.h"
#include "core/user/SparedUser.h"
#include "differences/DifferenceRows.h"

namespace tarnwell {

/// A named value, or a byte with other bits, that a reading found otherwise than the one before:
/// left is before.
struct WatchedChange {
    std::string time;  ///< as Calendar::ZonedTime
    TargetDevice device;
    DifferenceRow row;
};

/// "19:52:30".
inline std::string TimeOfDay(const std::string& zonedTime) {
    return zonedTime.substr(zonedTime.find('T') + 1, 8);
}

/// Reads a short piece at a time, and writes nothing. Between two pieces the bus is left alone as
/// long as it was held, for another master of it.
class Watch final : private Command {
  public:
    Watch(const CommandContext& context, SparedUser& user, Clock& clock, const Calendar& calendar,
          const NameBook& book);

    /// Watches these bytes from now on. `held` is what they held when they were read last; if it is
    /// left out, the first reading finds that out. Changes stay, and what is ignored.
    void Begin(TargetDevice device, const std::vector<ByteRange>& ranges,
               const MemoryBuffer* held = nullptr);

    /// Reads the next piece, and after one that failed the same one. How long to wait before the
    /// next call: readings begin a second apart or more, and each failure in a row doubles the
    /// wait, up to four seconds.
    std::chrono::milliseconds Step();

    /// In the order in which they were found.
    const std::vector<WatchedChange>& Changes() const { return changes_; }

    /// Makes the changes' rows anew, by the names that there are now.
    void Refresh();

    /// Forgets the changes, and what is ignored.
    void Clear();

    /// Leaves out a byte that changes by itself, and drops its changes.
    void Ignore(int address);
    std::size_t Ignored() const { return ignored_.size(); }

    /// The device that is watched, and what it was read to hold last where it is watched.
    TargetDevice Device() const { return device_; }
    const MemoryBuffer& Held() const { return held_; }

    /// How many readings came to their end since the beginning.
    int Readings() const { return readings_; }

    /// Why the last piece could not be read, in one line; empty if it could.
    const std::string& Failure() const { return failure_; }

    /// Whether that was since the user does not want the device to be used: the end of watching.
    bool IsDeclined() const { return isDeclined_; }

  private:
    [[nodiscard]] Transfer Read(const ByteRange& piece);
    [[nodiscard]] Transfer ReadOnce(const ByteRange& piece, MemoryBuffer& image);
    void Note(const MemoryBuffer& found);
    void Add(const std::string& time, TargetDevice device, std::vector<DifferenceRow> rows);

    SparedUser& busUser_;
    Clock& clock_;
    const Calendar& calendar_;
    const NameBook& book_;
    TargetDevice device_ = TargetDevice::Primary;
    std::vector<ByteRange> pieces_;
    std::size_t next_ = 0;                  ///< of the pieces
    std::chrono::milliseconds elapsed_{0};  ///< since the reading began
    std::chrono::milliseconds failing_{0};  ///< the wait after the last failure
    int readings_ = 0;
    bool isHeldKnown_ = false;
    MemoryBuffer held_{};
    std::string failure_;
    bool isDeclined_ = false;
    std::vector<WatchedChange> changes_;
    std::set<int> ignored_;
};

}  // namespace tarnwell
