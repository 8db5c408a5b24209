// A lock on an open file that keeps a second instance of the program out.
#pragma once

#include "port/system/SystemCalls.h"

namespace tarnwell {

/// Tries until `deadline`; 0, -EWOULDBLOCK when somebody else holds the lock, or another
/// negated errno. The lock ends with the file.
[[nodiscard]] int LockUntil(SystemCalls& system, const OpenFile& file,
                            std::chrono::nanoseconds deadline);

}  // namespace tarnwell
