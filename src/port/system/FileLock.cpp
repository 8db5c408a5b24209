// A lock on an open file that keeps a second instance of the program out.
#include "port/system/FileLock.h"

#include <sys/file.h>

namespace tarnwell {

int LockUntil(SystemCalls& system, const OpenFile& file, std::chrono::nanoseconds deadline) {
    constexpr std::chrono::milliseconds kPause{10};
    for (;;) {
        const int result = system.Lock(file.Descriptor(), LOCK_EX | LOCK_NB);
        if (result != -EWOULDBLOCK && result != -EINTR)
            return result;
        if (system.Now() + kPause > deadline)
            return -EWOULDBLOCK;
        system.Sleep(kPause);
    }
}

}  // namespace tarnwell
