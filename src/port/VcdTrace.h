// Writes what happens on the bus lines as a value change dump (VCD, IEEE 1364).
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "i2c/BusTrace.h"
#include "i2c/Port.h"

namespace tarnwell {

/// Two wires, SCL and SDA, in units of 100 ns from the first change on.
///
/// What was driven and seen tells when the wires changed, except for SDA while it is released: a
/// device may hold or pull it, which shows when it is seen next. Until then its level is undecided,
/// and so is the order of what follows; a line that nobody looks at counts as high. A device
/// changes SDA at the fall of SCL. Changes that would share a unit follow each other in the next.
///
/// What cannot be written ends the trace with one line on standard error, and nothing else.
class VcdTrace final : public BusTrace {
  public:
    /// Makes the file `path`, or replaces an empty one or a VCD; otherwise
    /// gives one line that says what is wrong. `port` and `clock` are those that the bus is driven
    /// by.
    static std::variant<std::unique_ptr<VcdTrace>, std::string> Create(const std::string& path,
                                                                       Port& port, Clock& clock);
    ~VcdTrace() override;
    VcdTrace(const VcdTrace&) = delete;
    VcdTrace& operator=(const VcdTrace&) = delete;

    void Driven(BusLine line, Level level) override;
    void Sensed(Level scl, Level sda) override;

    /// Writes everything so far to the file, which is complete then.
    void Released() override;

  private:
    using LineLevels = std::array<std::optional<Level>, 2>;

    VcdTrace(std::string path, int descriptor, Port& port, Clock& clock);

    void DriveScl(Level level, BusTime now);
    void DriveSda(Level level, BusTime now);
    void DecideSda(Level level);
    void Change(BusLine line, Level level, BusTime time);
    void AddTime(BusTime time);
    void Write();

    std::string path_;
    int descriptor_;
    Port& port_;
    Clock& clock_;
    LineLevels driven_;
    LineLevels wire_;                     ///< as written
    std::optional<BusTime> sdaReleased_;  ///< since when SDA is undecided
    std::optional<BusTime> sclRise_;      ///< SCL's rise meanwhile, which waits for that
    std::optional<BusTime> origin_;
    std::int64_t lastTick_ = -1;
    std::string unwritten_;
};

}  // namespace tarnwell
