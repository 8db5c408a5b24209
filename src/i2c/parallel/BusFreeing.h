// Brings the bus to rest: lines that are let go, devices that are clocked out of a byte.
#pragma once

#include <map>

#include "i2c/parallel/PortLines.h"

namespace tarnwell {

/// Lines that are low for a reason that is not ours are not moved.
class BusFreeing {
  public:
    explicit BusFreeing(PortLines& lines) : lines_(lines) {}

    /// Clocks a device out of its byte until both lines were seen high for the nine clocks of one,
    /// so that no single misread sample ends it. Nothing is stored by it: each stop has a start
    /// in front of it. Drives nothing while SCL is seen low. A port that fails owes it to its base
    /// address.
    void Free();

    /// Frees a bus that was driven, unless it is at rest.
    void LeaveFree();

    /// Before a bus check: what is owed here, or else lets go of a line that the port's own
    /// register holds low, whoever left it so.
    void MakeUp();

    /// From now on it may be our own command that leaves a device in the middle of a byte.
    void NoteUse() { places_[lines_.BaseAddress()].used = true; }

    /// Frees an SDA that stayed low behind our own last command; whether it is free now.
    bool FreeWhatWasLeft();

  private:
    struct Place {
        bool used = false;
        bool owed = false;
    };

    bool TryToFree();
    void Drive(BusLine line, Level level);
    LineLevels Clock();

    PortLines& lines_;
    std::map<std::uint16_t, Place> places_;  ///< by base address
};

}  // namespace tarnwell
