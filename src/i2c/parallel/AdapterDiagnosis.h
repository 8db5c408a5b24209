// What the levels driven on an adapter and those sensed back say about its faults.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "i2c/BusTrace.h"
#include "i2c/parallel/PinMapping.h"

namespace tarnwell {

/// Both lines as they were driven and, right after that, as the input bits showed them.
struct Reading {
    LineLevels driven;
    LineLevels sensed;
};

/// Keeps the last reading of each pair of driven levels and names the fault that explains them.
class AdapterDiagnosis {
  public:
    void Clear() { readings_.clear(); }
    void Note(const Reading& reading);

    /// The most likely cause and what to change, in one line; empty when the lines do what they
    /// are told. A fault that came meanwhile contradicts older readings: those that no fault
    /// explains together with the newer ones do not count.
    std::string Text(const PinSetup& pins) const;

  private:
    std::vector<Reading> readings_;  // the newest first
};

}  // namespace tarnwell
