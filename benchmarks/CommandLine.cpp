// Rows: the program without a window, from the start of its process to the end.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "Rows.h"
#include "i2c/parallel/mI2Ccode.h"
#include "support/TemporaryFolder.h"

namespace tarnwell::bench {

namespace {

struct Run {
    double seconds;
    double processorSeconds;
};

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Run RunCommand(const TemporaryFolder& home, std::initializer_list<const char*> words) {
    std::vector<const char*> arguments{TARNWELL_CLI, "--port=simulated", "--force"};
    arguments.insert(arguments.end(), words);
    arguments.push_back(nullptr);
    Run run{};
    run.seconds = SecondsOf([&] {
        const pid_t child = fork();
        if (child == 0) {
            for (const char* const folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"})
                setenv(folder, home.Path().c_str(), 1);
            dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
            execv(TARNWELL_CLI, const_cast<char* const*>(arguments.data()));
            _exit(127);
        }
        rusage used{};
        wait4(child, nullptr, 0, &used);
        run.processorSeconds = Seconds(used.ru_utime) + Seconds(used.ru_stime);
    });
    return run;
}

/// Each figure's best of several runs.
Run BestRun(int times, const TemporaryFolder& home, std::initializer_list<const char*> words) {
    Run best = RunCommand(home, words);
    for (int time = 1; time < times; ++time) {
        const Run run = RunCommand(home, words);
        best.seconds = std::min(best.seconds, run.seconds);
        best.processorSeconds = std::min(best.processorSeconds, run.processorSeconds);
    }
    return best;
}

}  // namespace

void AddCommandLine(Table& table) {
    const TemporaryFolder home;
    const std::string image = home.Path("image.mot");
    const Run read = BestRun(5, home, {"read", image.c_str()});
    const Run info = BestRun(20, home, {"info", image.c_str()});
    table.Add("tarnwell-cli info, start to exit: processor time", info.processorSeconds, 0.01,
              "the aim, 10 ms");
    table.Add("tarnwell-cli info, start to exit", info.seconds, 0.01, "the aim, 10 ms");
    table.Add("tarnwell-cli read, simulated: processor time", read.processorSeconds, 0.1,
              "the aim, 0.1 s");
    // Each access of this television takes 1 us, of which each period of SCL has one too many.
    constexpr double kPeriod = 11e-6;
    table.Add("tarnwell-cli read, start to exit, real time (best of 3)",
              BestRun(3, home, {"--real-time", "read", image.c_str()}).seconds,
              kEepromBytes * 9 * kPeriod, "what its bus allows, computed");
}

}  // namespace tarnwell::bench
