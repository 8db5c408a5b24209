// The port by whichever way the kernel offers for it.
#include "port/real/AutoPort.h"

#include "port/system/ParallelPorts.h"

namespace tarnwell {

AutoPort::AutoPort(SystemCalls& system)
    : system_(system), ppdev_(system), devPort_(system, PokedAddresses::Listed) {}

void AutoPort::Claim(std::uint16_t baseAddress) {
    Release();
    active_ = &ppdev_;
    if (IsPortAddress(baseAddress) && !FindParport(system_.ProcFolder(), baseAddress) &&
        DevPort::MayServe(system_, baseAddress))
        active_ = &devPort_;
    active_->Claim(baseAddress);
}

}  // namespace tarnwell
