// Waiting for a lock that another instance of the program holds.
#pragma once

#include <cerrno>
#include <chrono>

namespace tarnwell {

/// Between two attempts.
inline constexpr std::chrono::milliseconds kLockPause{10};

/// `attempt` tries to lock and gives 0 or a negated errno; `pause` returns after kLockPause, or
/// false at once when no more time is left. The last errno, 0 when the lock is held.
template <typename Attempt, typename Pause>
[[nodiscard]] int LockWithin(Attempt attempt, Pause pause) {
    for (;;) {
        const int result = attempt();
        if (result != -EWOULDBLOCK && result != -EINTR)
            return result;
        if (!pause())
            return -EWOULDBLOCK;
    }
}

}  // namespace tarnwell
