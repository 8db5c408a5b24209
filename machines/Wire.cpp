// Loaded into the emulator (LD_PRELOAD), gives its parallel port the simulated television: it
// answers the requests of ppdev, which the emulator makes of whatever file it is given.
#include <dlfcn.h>
#include <linux/ioctl.h>
#include <linux/ppdev.h>

#include <array>
#include <cstdarg>
#include <cstdlib>
#include <map>
#include <mutex>
#include <sstream>

#include "Control.h"
#include "port/simulated/SimulatedTelevision.h"

namespace tarnwell {

namespace {

constexpr std::uint16_t kData = 0x378;
constexpr std::uint16_t kStatus = kData + 1;

/// The cable has the lines inverted as well, where the kernel's i2c-parport looks for them with the
/// wiring of its type 3.
constexpr std::uint8_t kSclSensed = 0x10;
constexpr std::uint8_t kSdaSensed = 0x20;
constexpr std::uint8_t kSclInverted = 0x08;
constexpr std::uint8_t kSdaInverted = 0x40;

const std::map<std::string, FaultKind> kFaults{
    {"SclStuckLow", FaultKind::SclStuckLow},
    {"SdaStuckLow", FaultKind::SdaStuckLow},
    {"LinesJoined", FaultKind::LinesJoined},
};
const std::map<std::string, WireEvent> kEvents{{"Byte", WireEvent::Byte},
                                               {"WriteCycle", WireEvent::WriteCycle}};

class WireOfPort {
  public:
    WireOfPort() : television_({.pace = Pace::Real}) {
        television_.Claim(kData);
        if (const char* const path = std::getenv("TARNWELL_WIRE"))
            ListenForControl(path, [this](const std::string& line) { return Control(line); });
    }

    int Answer(unsigned long request, std::uint8_t& value) {
        const std::lock_guard lock(mutex_);
        if (request == PPWDATA)
            television_.DlPortWritePortUchar(kData, value);
        else if (request == PPRDATA)
            value = television_.DlPortReadPortUchar(kData);
        else if (request == PPRSTATUS)
            value = Status();
        else if (request == PPWCONTROL)
            control_ = value;
        else if (request == PPRCONTROL)
            value = control_;
        return 0;
    }

  private:
    std::uint8_t Status() {
        const std::uint8_t sensed = television_.DlPortReadPortUchar(kStatus);
        const int high = ((sensed & kSclSensed) != 0 ? kSclInverted : 0) |
                         ((sensed & kSdaSensed) != 0 ? kSdaInverted : 0);
        return static_cast<std::uint8_t>(sensed & ~high);
    }

    /// "image primary", "count EVENT", "fault KIND [EVENT COUNT]", "clear", "power".
    std::string Control(const std::string& line) {
        const std::lock_guard lock(mutex_);
        std::istringstream words(line);
        std::string verb;
        std::string name;
        words >> verb >> name;
        if (verb == "image") {
            const auto& image =
                television_.Memory(name == "primary" ? Chip::Primary : Chip::Secondary);
            return {image.begin(), image.end()};
        }
        if (verb == "count")
            return std::to_string(television_.Count(kEvents.at(name)));
        if (verb == "fault" && kFaults.contains(name)) {
            Fault fault{.kind = kFaults.at(name)};
            if (std::string event; words >> event >> fault.begins.count)
                fault.begins.event = kEvents.at(event);
            television_.Inject(fault);
        } else if (verb == "clear") {
            television_.ClearFaults();
        } else if (verb == "power") {
            television_.PowerCycle();
        } else {
            return "what is " + line + "?";
        }
        return {};
    }

    std::mutex mutex_;
    SimulatedTelevision television_;
    std::uint8_t control_ = 0;
};

WireOfPort& TheWire() {
    static WireOfPort wire;
    return wire;
}

}  // namespace

}  // namespace tarnwell

extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (_IOC_TYPE(request) == PP_IOCTL) {
        std::uint8_t none = 0;
        const bool hasByte = _IOC_SIZE(request) == 1;
        return tarnwell::TheWire().Answer(request,
                                          hasByte ? *static_cast<std::uint8_t*>(argument) : none);
    }
    using Ioctl = int (*)(int, unsigned long, void*);
    static const auto next = reinterpret_cast<Ioctl>(dlsym(RTLD_NEXT, "ioctl"));
    return next(descriptor, request, argument);
}
