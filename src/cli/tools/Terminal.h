// Questions on the terminal.
#pragma once

#include <string>

namespace tarnwell::cli {

/// Whether somebody can be asked.
bool HasTerminal();

/// Asks on standard error; true for y or yes.
bool AgreesOnTerminal(const std::string& question);

}  // namespace tarnwell::cli
