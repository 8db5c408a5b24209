// Whoever follows what happens on the bus lines.
#pragma once

#include <cstdint>

namespace tarnwell {

enum class BusLine : std::uint8_t { Scl, Sda };
enum class Level : std::uint8_t { Low, High };

struct LineLevels {
    Level scl = Level::High;
    Level sda = Level::High;

    bool operator==(const LineLevels&) const = default;
};

/// Told of each access right after it, whether or not it reached the wire. By itself it follows
/// nothing.
class BusTrace {
  public:
    virtual ~BusTrace() = default;

    /// `line` was driven to `level`; an open line that is released may stay low all the same.
    virtual void Driven(BusLine /*line*/, Level /*level*/) {}

    /// Both lines were seen at once, at the levels that the pin options make of the port's bits.
    virtual void Sensed(Level /*scl*/, Level /*sda*/) {}

    /// The port was given back: for a while nobody drives the bus.
    virtual void Released() {}
};

/// The one that follows nothing.
inline BusTrace& NoBusTrace() {
    static BusTrace none;
    return none;
}

}  // namespace tarnwell
