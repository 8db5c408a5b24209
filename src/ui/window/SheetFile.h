// The settings sheet as a file: PDF or HTML, by its name.
#pragma once

#include "sets/Sheet.h"

namespace tarnwell {

/// False if it could not be written.
[[nodiscard]] bool saveSheet(const std::string& path, const SheetFacts& facts);

}  // namespace tarnwell
