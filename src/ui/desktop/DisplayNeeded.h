// A program that needs a display, started without one.
#pragma once

#include <QtGlobal>

namespace tarnwell {

/// While it lives, what Qt ends the program for is that no display can be opened: the process then
/// ends as for a wrong argument, with one line on standard error.
class DisplayNeeded {
  public:
    DisplayNeeded();
    ~DisplayNeeded();
    DisplayNeeded(const DisplayNeeded&) = delete;
    DisplayNeeded& operator=(const DisplayNeeded&) = delete;
};

}  // namespace tarnwell
