// Why a bus check failed, as far as the lines tell.
#pragma once

#include <string>

#include "i2c/parallel/BusFreeing.h"

namespace tarnwell {

/// Each cause is one line; empty where the port itself failed. Only a line that is free is driven.
class FaultCauses {
  public:
    FaultCauses(PortLines& lines, BusFreeing& freeing, Clock& clock)
        : lines_(lines), freeing_(freeing), clock_(clock) {}

    /// Of lines that were low before anything was driven. A device that our own last command left
    /// in the middle of a byte is freed, which the line tells.
    std::string OfActivity();

    /// Of lines that do not do what they are told; empty if they do.
    std::string OfAdapter();

    /// Of a device that does not answer.
    std::string OfSilence();

  private:
    bool Move(const LineLevels& before);

    PortLines& lines_;
    BusFreeing& freeing_;
    Clock& clock_;
};

}  // namespace tarnwell
