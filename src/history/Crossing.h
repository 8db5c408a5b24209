// Going to the other side of a step, and what that means for a device that was written meanwhile.
#pragma once

#include "history/Change.h"
#include "i2c/KnownContents.h"

namespace tarnwell {

/// One step of undo or, once it was taken back, of redo.
struct KeptStep {
    StepName name;
    Change change;         ///< to its other side
    std::uint32_t writes;  ///< KnownContents::Writes() when it was made or last crossed
    std::uint32_t asides;  ///< how many asides had come then
};

/// As it is when a step is crossed.
struct CrossingContext {
    const ProgramState& state;
    const KnownContents& known;
    std::uint32_t asides;
};

/// What the other side of the step looks like from `now`. It is exactly what it was, unless since
/// then a write or save changed something, which stays, or a byte was written: such a byte, as it
/// is over there, counts as the user's edit. Nothing if the queue had no room for these.
std::optional<Snapshot> OtherSide(const KeptStep& step, const Snapshot& now,
                                  const CrossingContext& context);

}  // namespace tarnwell
