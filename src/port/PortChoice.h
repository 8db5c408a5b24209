// Which port the program drives: asked for by --port, or found.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "i2c/Port.h"
#include "port/simulated/SimulatedTelevision.h"
#include "port/system/SystemCalls.h"

namespace tarnwell {

enum class PortKind { Auto, Ppdev, DevPort, Simulated };

/// `auto`, `ppdev`, `devport` or `simulated`; nothing for any other word.
std::optional<PortKind> ParsePortKind(std::string_view word);

/// A port with the clock that belongs to it.
class ChosenPort {
  public:
    virtual ~ChosenPort() = default;
    virtual Port& ThePort() = 0;
    virtual Clock& TheClock() = 0;
    virtual bool IsSimulated() const = 0;
};

/// Auto is ppdev if the kernel lists a parallel port, else /dev/port if it can be opened and
/// /proc/ioports shows a parallel port at one of the three addresses, else the simulation.
/// `simulation` and `dataFolder` matter to the simulation only.
/// `system` must outlive the result.
std::unique_ptr<ChosenPort> ChoosePort(PortKind kind, const Simulation& simulation,
                                       SystemCalls& system, const std::string& dataFolder);

}  // namespace tarnwell
