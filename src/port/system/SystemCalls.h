// The one seam between the ports and the operating system.
#pragma once

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace tarnwell {

/// Results are those of the system calls, except that a failure gives the negated errno.
class SystemCalls {
  public:
    virtual ~SystemCalls() = default;

    virtual int Open(const std::string& path, int flags) = 0;
    virtual int Close(int descriptor) = 0;
    virtual int Ioctl(int descriptor, unsigned long request, void* argument) = 0;
    virtual int ReadByte(int descriptor, std::uint8_t& value, std::int64_t offset) = 0;
    virtual int WriteByte(int descriptor, std::uint8_t value, std::int64_t offset) = 0;
    virtual int Lock(int descriptor, int operation) = 0;

    /// A time that only goes forward.
    virtual std::chrono::nanoseconds Now() = 0;
    virtual void Sleep(std::chrono::nanoseconds duration) = 0;

    /// Makes calls of this thread that block at `time` or later end with EINTR, until disarmed.
    virtual int ArmInterrupt(std::chrono::nanoseconds time) = 0;
    virtual void DisarmInterrupt() = 0;

    /// Without a slash at the end.
    virtual std::string ProcFolder() const = 0;
    virtual std::string DevFolder() const = 0;
    virtual std::string SysFolder() const = 0;
};

/// Makes the call again for as long as a signal breaks it off.
template <typename Call>
int Uninterrupted(Call call) {
    int result = call();
    while (result == -EINTR)
        result = call();
    return result;
}

/// An open file, closed at the end of its life at the latest.
class OpenFile {
  public:
    OpenFile() = default;
    OpenFile(SystemCalls& system, int descriptor) : system_(&system), descriptor_(descriptor) {}
    OpenFile(OpenFile&& other) noexcept { Swap(other); }
    OpenFile& operator=(OpenFile&& other) noexcept {
        Swap(other);
        return *this;
    }
    ~OpenFile() { Close(); }

    bool IsOpen() const { return descriptor_ >= 0; }
    int Descriptor() const { return descriptor_; }

    /// 0, or the negated errno of the close. Harmless when nothing is open.
    int Close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 ? 0 : system_->Close(descriptor);
    }

  private:
    void Swap(OpenFile& other) noexcept {
        std::swap(system_, other.system_);
        std::swap(descriptor_, other.descriptor_);
    }

    SystemCalls* system_ = nullptr;
    int descriptor_ = -1;
};

}  // namespace tarnwell
