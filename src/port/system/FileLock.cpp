// A lock on an open file that keeps a second instance of the program out.
#include "port/system/FileLock.h"

#include <sys/file.h>

#include "core/files/LockAttempts.h"

namespace tarnwell {

int LockUntil(SystemCalls& system, const OpenFile& file, std::chrono::nanoseconds deadline) {
    return LockWithin([&] { return system.Lock(file.Descriptor(), LOCK_EX | LOCK_NB); },
                      [&] {
                          if (system.Now() + kLockPause > deadline)
                              return false;
                          system.Sleep(kLockPause);
                          return true;
                      });
}

}  // namespace tarnwell
