// An instance of the program on the stores in a folder, and processes to run it in.
#pragma once

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <new>

#include "port/simulated/PersistentTelevision.h"
#include "port/system/LinuxSystemCalls.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"

namespace tarnwell {

struct Instance {
    std::string folder;
    LinuxSystemCalls system{};
    PersistentTelevision television{system, folder + "tarnwell"};
    QuietProgram quiet{television, television, folder + "backups"};
    Program& program = quiet.program;
};

/// Runs `work` in a new process, which ends with success when it returns.
template <typename Work>
pid_t Fork(Work work) {
    const pid_t process = fork();
    if (process != 0)
        return process;
    work();
    _exit(EXIT_SUCCESS);
}

/// The end of the process as waitpid tells it, after `signal` if one is given.
inline int End(pid_t process, int signal = 0) {
    int status = -1;
    kill(process, signal);
    waitpid(process, &status, 0);
    return status;
}

/// A number that this process and its later children share.
inline std::atomic<int>& SharedNumber() {
    void* const page = mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return *new (page) std::atomic<int>(0);
}

}  // namespace tarnwell
