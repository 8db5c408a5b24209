// The port by the kernel's module ppdev.
#include "port/real/PpdevPort.h"

#include <linux/ppdev.h>
#include <sys/ioctl.h>

#include "port/system/ParallelPorts.h"

namespace tarnwell {

void PpdevPort::Take(std::chrono::nanoseconds deadline) {
    const std::string procFolder = System().ProcFolder();
    const auto name = FindParport(procFolder, BaseAddress());
    if (!name)
        return Fail(AnyParport(procFolder) ? NoPortLine(BaseAddress()) : NoPortAtAllLine());

    path_ = System().DevFolder() + "/" + *name;
    switch (device_.Claim(path_, deadline)) {
        case ParportDevice::Outcome::Claimed:
            return;
        case ParportDevice::Outcome::NoDevice:
            return Fail(path_ +
                        " is missing. Load the kernel module ppdev with \"sudo modprobe ppdev\" "
                        "or with the menu Options, DLPortIO Service.");
        case ParportDevice::Outcome::Busy:
            return FailTaken(InUseLine(path_, procFolder, path_));
        case ParportDevice::Outcome::Failed:
            break;
    }
    const int error = -device_.Error();
    Fail(ErrorLine(path_, error,
                   error == EACCES || error == EPERM
                       ? "Add your account to the group lp and log in again."
                       : "Check the port and try again."));
}

int PpdevPort::ReadRegister(std::uint16_t offset, std::uint8_t& value) {
    return device_.Transfer(offset == 0 ? PPRDATA : PPRSTATUS, value);
}

int PpdevPort::WriteData(std::uint8_t value) {
    return device_.Transfer(PPWDATA, value);
}

}  // namespace tarnwell
