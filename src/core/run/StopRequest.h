// The request to end the program at once, as a signal brings it.
#pragma once

#include <atomic>
#include <functional>

namespace tarnwell {

/// Whoever works for long asks after each step that leaves nothing half done.
class StopRequest {
  public:
    /// The first signal counts. Also from a signal's handler.
    void Note(int signal) noexcept {
        int none = 0;
        signal_.compare_exchange_strong(none, signal);
    }

    /// The signal that asked; 0 while none has.
    int Signal() const noexcept { return signal_; }

    /// Takes the way out if the program is to end.
    void Obey() const {
        if (Signal() != 0 && wayOut)
            wayOut();
    }

    /// Ends the program and does not return.
    std::function<void()> wayOut;

  private:
    std::atomic<int> signal_{0};
    static_assert(std::atomic<int>::is_always_lock_free);
};

/// From now on SIGHUP, SIGINT and SIGTERM are noted in `request`, which must outlive the process's
/// signals; one that is ignored already, as by nohup, stays so. SIGPIPE and SIGXFSZ end nothing:
/// the write that failed tells. Gives a descriptor that can be read from once there is a request.
int NoteSignals(StopRequest& request);

/// For a program that no signal reaches.
StopRequest& NoStopRequest();

}  // namespace tarnwell
