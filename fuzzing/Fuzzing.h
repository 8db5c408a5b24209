// What the fuzz targets share: their entry, their checks, and files with the input as content.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

/// Ends the run as a finding if `condition` does not hold.
#define REQUIRE(condition)                                                                \
    do {                                                                                  \
        if (!(condition)) {                                                               \
            std::fprintf(stderr, "%s:%d: %s is false\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                 \
        }                                                                                 \
    } while (false)

namespace tarnwell::fuzzing {

/// One target's work on one input; each target defines it.
void Run(std::string_view input);

/// A file in memory, of this process alone, whose name differs from that of every other; gone
/// with the object.
class InputFile {
  public:
    explicit InputFile(std::string_view content) : path_(NewPath()) {
        std::ofstream(path_, std::ios::binary) << content;
    }
    ~InputFile() { std::remove(path_.c_str()); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    const std::string& Path() const { return path_; }

  private:
    static std::string NewPath() {
        static std::uint64_t count = 0;
        return "/dev/shm/tarnwell-fuzz-" + std::to_string(getpid()) + "-" + std::to_string(++count);
    }
    std::string path_;
};

}  // namespace tarnwell::fuzzing
