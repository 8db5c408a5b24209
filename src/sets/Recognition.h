// Which set an image was read of, as far as the images of all sets tell.
#pragma once

#include "sets/SetStore.h"

namespace tarnwell {

/// Of the bytes of two images of one set at most that many differ: a twentieth.
inline constexpr std::size_t kMostDiffering = kEepromBytes / 20;

/// How many bytes of an image are not as a set's device is known to hold them.
std::size_t BytesDiffering(const MemoryBuffer& one, const MemoryBuffer& other);

struct Likeness {
    TvSet set;
    std::size_t differing;  ///< bytes
};

/// The set whose device looks like the image: at most a twentieth of the bytes differ, and from
/// every other set's at least four times as many. Nothing where that is not beyond doubt.
std::optional<Likeness> Recognise(const std::vector<TvSet>& sets, TargetDevice device,
                                  const MemoryBuffer& image);

}  // namespace tarnwell
