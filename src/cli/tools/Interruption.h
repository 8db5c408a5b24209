// The end of a command by a signal.
#pragma once

#include <sys/types.h>

#include <span>

#include "core/run/StopRequest.h"

namespace tarnwell::cli {

/// Thrown where a signal ends the command.
struct Interrupted {};

/// The request that the signals of this process are noted in, from the first call on. Who obeys it
/// throws Interrupted.
const StopRequest& ProcessStop();

/// read() from standard input, where a signal does not have to wait.
ssize_t ReadStandardInput(std::span<char> part);

}  // namespace tarnwell::cli
