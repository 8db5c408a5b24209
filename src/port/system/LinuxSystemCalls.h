// The system calls of the running kernel.
#pragma once

#include <ctime>
#include <optional>

#include "port/system/SystemCalls.h"

namespace tarnwell {

class LinuxSystemCalls : public SystemCalls {
  public:
    LinuxSystemCalls();
    ~LinuxSystemCalls() override;
    LinuxSystemCalls(const LinuxSystemCalls&) = delete;
    LinuxSystemCalls& operator=(const LinuxSystemCalls&) = delete;

    int Open(const std::string& path, int flags) override;
    int Close(int descriptor) override;
    int Ioctl(int descriptor, unsigned long request, void* argument) override;
    int ReadByte(int descriptor, std::uint8_t& value, std::int64_t offset) override;
    int WriteByte(int descriptor, std::uint8_t value, std::int64_t offset) override;
    int Lock(int descriptor, int operation) override;
    std::chrono::nanoseconds Now() override;
    void Sleep(std::chrono::nanoseconds duration) override;
    int ArmInterrupt(std::chrono::nanoseconds time) override;
    void DisarmInterrupt() override;
    std::string ProcFolder() const override { return "/proc"; }
    std::string DevFolder() const override { return "/dev"; }
    std::string SysFolder() const override { return "/sys"; }

  private:
    std::optional<timer_t> timer_;
};

}  // namespace tarnwell
