// The port by /dev/port, for a kernel without the module ppdev.
#include "port/real/DevPort.h"

#include <fcntl.h>

#include "port/system/FileLock.h"
#include "port/system/ParallelPorts.h"

namespace tarnwell {

namespace {

int OpenPort(SystemCalls& system, const std::string& path) {
    return Uninterrupted([&] { return system.Open(path, O_RDWR); });
}

}  // namespace

bool DevPort::MayServe(SystemCalls& system, std::uint16_t baseAddress) {
    return IoPortsListParport(system.ProcFolder(), baseAddress) &&
           OpenFile(system, OpenPort(system, system.DevFolder() + "/port")).IsOpen();
}

void DevPort::Take(std::chrono::nanoseconds deadline) {
    const std::string procFolder = System().ProcFolder();
    if (addresses_ == PokedAddresses::Listed && !IoPortsListParport(procFolder, BaseAddress()))
        return Fail(NoPortLine(BaseAddress()));

    const int opened = OpenPort(System(), Path());
    if (opened < 0)
        return Fail(ErrorLine(Path(), -opened,
                              "Load the kernel module ppdev with \"sudo modprobe ppdev\" and start "
                              "without --port=devport, or run the program as root."));
    file_ = OpenFile(System(), opened);

    const int locked = LockUntil(System(), file_, deadline);
    if (locked == -EWOULDBLOCK)
        return FailTaken(InUseLine(Path(), procFolder, Path()));
    if (locked < 0)
        return Fail(ErrorLine(Path(), -locked, "Check the port and try again."));

    const auto parport = FindParport(procFolder, BaseAddress());
    if (!parport)
        return;
    const std::string device = System().DevFolder() + "/" + *parport;
    if (parport_.Claim(device, deadline) == ParportDevice::Outcome::Busy)
        FailTaken(InUseLine(device, procFolder, device));
}

int DevPort::GiveBack() {
    const int released = parport_.Release();
    const int closed = file_.Close();
    return released < 0 ? released : closed;
}

int DevPort::ReadRegister(std::uint16_t offset, std::uint8_t& value) {
    return System().ReadByte(file_.Descriptor(), value, BaseAddress() + offset);
}

int DevPort::WriteData(std::uint8_t value) {
    return System().WriteByte(file_.Descriptor(), value, BaseAddress());
}

}  // namespace tarnwell
