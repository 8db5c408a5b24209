#include "core/run/StopRequest.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>

namespace tarnwell {

namespace {

StopRequest* noted = nullptr;
int wakeUp = -1;

void Note(int signal) {
    const int error = errno;
    noted->Note(signal);
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wakeUp, &one, sizeof one);
    errno = error;
}

/// Unlike an ignored signal, it is none of a program's that this one starts.
void EndNothing(int /*signal*/) {}

void Handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

}  // namespace

int NoteSignals(StopRequest& request) {
    noted = &request;
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        Handle(signal, Note);
    for (const int signal : {SIGPIPE, SIGXFSZ})
        Handle(signal, EndNothing);
    return wakeUp;
}

StopRequest& NoStopRequest() {
    static StopRequest none;
    return none;
}

}  // namespace tarnwell
