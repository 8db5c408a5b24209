// The date and the time of day as the user's system writes them.
#pragma once

#include <string>

namespace tarnwell {

class Calendar {
  public:
    virtual ~Calendar() = default;

    /// Today in the short date form.
    virtual std::string ShortDate() const = 0;

    /// Now in the time form with seconds.
    virtual std::string TimeWithSeconds() const = 0;

    /// Date and time in a form that sorts by time, whatever the system's: 20261124-195230.
    virtual std::string Timestamp() const = 0;

    /// The same with its offset from UTC, as ISO 8601 has it: 2026-11-24T19:52:30+01:00.
    virtual std::string ZonedTime() const = 0;
};

}  // namespace tarnwell
