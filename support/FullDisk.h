// A disk without room: files of this process cannot grow beyond a size.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace tarnwell {

class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes = 100) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit full{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit before_{};
};

}  // namespace tarnwell
