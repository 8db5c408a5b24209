// What a failed transfer is told by.
#pragma once

#include "i2c/KernelI2c.h"

namespace tarnwell {

/// What happened and what to do, in one line. `error` is a negated errno.
std::string FailureLine(const I2cBus& bus, int error);

}  // namespace tarnwell
