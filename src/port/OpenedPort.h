// The port that a command line asks for, opened with its trace.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include "i2c/DrivenBus.h"
#include "i2c/PortRequest.h"
#include "port/PortChoice.h"
#include "port/VcdTrace.h"

namespace tarnwell {

struct OpenedPort {
    std::unique_ptr<ChosenPort> port;
    std::unique_ptr<VcdTrace> trace;

    Wire TheWire(const StopRequest& stop = NoStopRequest()) const {
        return {port->ThePort(), port->TheClock(), TheTrace(), stop};
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
