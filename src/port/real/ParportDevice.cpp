// One /dev/parportN of the kernel's module ppdev.
#include "port/real/ParportDevice.h"

#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>

namespace tarnwell {

ParportDevice::Outcome ParportDevice::Claim(const std::string& path,
                                            std::chrono::nanoseconds deadline) {
    Release();
    error_ = system_.ArmInterrupt(deadline);
    if (error_ < 0)
        return Outcome::Failed;
    Outcome outcome = TryClaim(path);
    while (error_ == -EINTR && system_.Now() < deadline)
        outcome = TryClaim(path);
    system_.DisarmInterrupt();
    return outcome;
}

// Opens anew each time: a claim that a signal broke off leaves the descriptor in the kernel's
// waiting list, and a second claim on it would enter it there twice.
ParportDevice::Outcome ParportDevice::TryClaim(const std::string& path) {
    error_ = system_.Open(path, O_RDWR);
    if (error_ == -ENOENT || error_ == -ENODEV || error_ == -ENXIO)
        return Outcome::NoDevice;
    if (error_ < 0)
        return error_ == -EINTR ? Outcome::Busy : Outcome::Failed;

    OpenFile file(system_, error_);
    error_ = system_.Ioctl(file.Descriptor(), PPCLAIM, nullptr);
    if (error_ >= 0) {
        file_ = std::move(file);
        claimed_ = true;
        return Outcome::Claimed;
    }
    // ENXIO: somebody has the port exclusively.
    const bool busy = error_ == -EINTR || error_ == -EBUSY || error_ == -EAGAIN || error_ == -ENXIO;
    return busy ? Outcome::Busy : Outcome::Failed;
}

int ParportDevice::Release() {
    int result = 0;
    if (std::exchange(claimed_, false))
        result =
            Uninterrupted([&] { return system_.Ioctl(file_.Descriptor(), PPRELEASE, nullptr); });
    const int closed = file_.Close();
    return result < 0 ? result : closed;
}

}  // namespace tarnwell
