// One /dev/parportN of the kernel's module ppdev.
#pragma once

#include <string>

#include "port/system/SystemCalls.h"

namespace tarnwell {

/// Claimed together with its other users, such as a printer: who has it makes others wait.
class ParportDevice {
  public:
    enum class Outcome { Claimed, NoDevice, Busy, Failed };

    explicit ParportDevice(SystemCalls& system) : system_(system) {}
    ~ParportDevice() { Release(); }
    ParportDevice(const ParportDevice&) = delete;
    ParportDevice& operator=(const ParportDevice&) = delete;

    /// Opens and claims the device; Busy when that is not had until `deadline`.
    [[nodiscard]] Outcome Claim(const std::string& path, std::chrono::nanoseconds deadline);

    /// The negated errno behind an outcome other than Claimed.
    int Error() const { return error_; }

    /// 0 or the first negated errno; harmless when nothing is claimed.
    int Release();

    /// One of the PP requests on the claimed device, with its byte; 0 or a negated errno.
    int Transfer(unsigned long request, std::uint8_t& value) {
        return system_.Ioctl(file_.Descriptor(), request, &value);
    }

  private:
    Outcome TryClaim(const std::string& path);

    SystemCalls& system_;
    OpenFile file_;
    bool claimed_ = false;
    int error_ = 0;
};

}  // namespace tarnwell
