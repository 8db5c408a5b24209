// Rows: the program from its start until its window is painted.
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "Rows.h"
#include "support/TemporaryFolder.h"

namespace tarnwell::bench {

namespace {

using namespace std::chrono_literals;

constexpr double kStartUpBound = 0.3;
constexpr double kMemoryBound = 80e6;

double ProcessorSeconds(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) == 0)
        clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double PeakBytes(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        if (double kilobytes = 0; word == "VmHWM:" && status >> kilobytes)
            return kilobytes * 1024;
    }
    return 0;
}

pid_t Start(const TemporaryFolder& home) {
    const pid_t child = fork();
    if (child != 0)
        return child;
    setenv("XDG_CONFIG_HOME", home.Path("config").c_str(), 1);
    setenv("XDG_DATA_HOME", home.Path("data").c_str(), 1);
    execl(TARNWELL_PROGRAM, TARNWELL_PROGRAM, "--port=simulated", nullptr);
    _exit(127);
}

/// The program asks for the bus before it shows its window, works until that is painted, and then
/// waits for the user: it is painted when the processor time no longer grows.
double ProcessorSecondsUntilIdle(pid_t process, const std::string& busWasAskedFor) {
    constexpr auto kPause = 100ms;
    constexpr int kIdlePauses = 5;
    double used = 0;
    for (int idle = 0; idle < kIdlePauses; ++idle) {
        std::this_thread::sleep_for(kPause);
        const double now = ProcessorSeconds(process);
        if (!std::filesystem::exists(busWasAskedFor) || now > used + 1e-4)
            idle = 0;
        used = now;
    }
    return used;
}

}  // namespace

void AddStartUp(Table& table) {
    double processor = 1e9;
    double memory = 0;
    for (int time = 0; time < 3; ++time) {
        const TemporaryFolder home;
        const pid_t program = Start(home);
        const std::string lock = home.Path("data/tarnwell/simulated.lock");
        processor = std::min(processor, ProcessorSecondsUntilIdle(program, lock));
        memory = std::max(memory, PeakBytes(program));
        kill(program, SIGTERM);
        waitpid(program, nullptr, 0);
    }
    table.Add("start to a painted window: processor time", processor, kStartUpBound,
              "the aim, 0.3 s");
    table.Add("start to a painted window: peak resident memory", memory, kMemoryBound,
              "the aim, 80 MB", Unit::Bytes);
}

}  // namespace tarnwell::bench
