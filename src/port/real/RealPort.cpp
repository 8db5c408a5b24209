// What the ports of the operating system have in common: one claim, and failures that stay.
#include "port/real/RealPort.h"

#include "port/system/ParallelPorts.h"

namespace tarnwell {

namespace {

constexpr std::uint8_t kNoValue = 0xFF;
constexpr std::uint16_t kStatusOffset = 1;

}  // namespace

void RealPort::Claim(std::uint16_t baseAddress) {
    Release();
    failure_.clear();
    taken_ = false;
    baseAddress_ = baseAddress;
    usable_ = true;
    if (!IsPortAddress(baseAddress))
        return Fail(NoPortLine(baseAddress));
    Take(system_.Now() + kClaimPatience);
    if (!usable_)
        GiveBack();
}

void RealPort::Release() {
    usable_ = false;
    const int result = GiveBack();
    if (result < 0)
        FailAccess(result);
}

std::uint8_t RealPort::DlPortReadPortUchar(std::uint16_t address) {
    const auto offset = static_cast<std::uint16_t>(address - baseAddress_);
    if (!usable_ || offset > kStatusOffset)
        return kNoValue;
    std::uint8_t value = kNoValue;
    const int result = Uninterrupted([&] { return ReadRegister(offset, value); });
    if (result >= 0)
        return value;
    FailAccess(result);
    return kNoValue;
}

void RealPort::DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) {
    if (!usable_ || address != baseAddress_)
        return;
    const int result = Uninterrupted([&] { return WriteData(value); });
    if (result < 0)
        FailAccess(result);
}

void RealPort::Fail(const std::string& line) {
    usable_ = false;
    if (failure_.empty())
        failure_ = line;
}

void RealPort::FailTaken(const std::string& line) {
    taken_ = true;
    Fail(line);
}

void RealPort::FailAccess(int error) {
    const bool gone = error == -ENODEV || error == -EIO || error == -ENXIO;
    Fail(ErrorLine(Path(), -error,
                   gone ? "Plug the port in again and repeat the command."
                        : "Check the port and repeat the command."));
}

}  // namespace tarnwell
