#include "cli/tools/Interruption.h"

#include <poll.h>
#include <unistd.h>

#include <array>

namespace tarnwell::cli {

namespace {

struct NotedSignals {
    StopRequest stop;
    int wakeUp = NoteSignals(stop);

    NotedSignals() {
        stop.wayOut = [] { throw Interrupted{}; };
    }
};

NotedSignals& Noted() {
    static NotedSignals noted;
    return noted;
}

}  // namespace

const StopRequest& ProcessStop() {
    return Noted().stop;
}

ssize_t ReadStandardInput(std::span<char> part) {
    std::array<pollfd, 2> waited{pollfd{STDIN_FILENO, POLLIN, 0},
                                 pollfd{Noted().wakeUp, POLLIN, 0}};
    while (poll(waited.data(), waited.size(), -1) < 0 || waited[0].revents == 0)
        ProcessStop().Obey();
    ProcessStop().Obey();
    return read(STDIN_FILENO, part.data(), part.size());
}

}  // namespace tarnwell::cli
