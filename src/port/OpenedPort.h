// The port that a command line asks for, opened with its trace.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include "i2c/DrivenBus.h"
#include "i2c/PortRequest.h"
#include "port/PortChoice.h"
#include "port/VcdTrace.h"
#include "port/real/LinuxI2c.h"

namespace tarnwell {

struct OpenedPort {
    std::unique_ptr<ChosenPort> port;
    std::unique_ptr<VcdTrace> trace;
    std::unique_ptr<LinuxI2c> kernel;
    std::optional<ChosenBus> bus;  ///< of the command line

    Wire TheWire(const StopRequest& stop = NoStopRequest()) const {
        return {port->ThePort(), port->TheClock(), TheTrace(), stop, *kernel};
    }
    BusTrace& TheTrace() const {
        if (trace)
            return *trace;
        return NoBusTrace();
    }
};

std::variant<OpenedPort, PortRefusal> OpenPort(const PortRequest& request, SystemCalls& system,
                                               const std::string& dataFolder);

}  // namespace tarnwell
