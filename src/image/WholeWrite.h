// Writing a whole image to a device.
#pragma once

#include "i2c/FollowedBus.h"
#include "image/MemoryBuffer.h"

namespace tarnwell {

/// Writes all of `image` to the target device, from address 0 on, and shows the progress: byte by
/// byte on the parallel port. On a bus of the kernel each page goes in one write cycle and is read
/// back; from the first one on that did not arrive, all goes byte by byte. After Aborted,
/// BytesWritten tells how far it came, and the bus needs AbortOperation.
[[nodiscard]] Transfer WriteWhole(FollowedBus& i2c, const MemoryBuffer& image);

}  // namespace tarnwell
