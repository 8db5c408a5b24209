// What the command line prints, at once.
#pragma once

#include <cstdio>
#include <string>

namespace tarnwell::cli {

/// False if it could not be written.
bool Print(const std::string& text, std::FILE* stream);

/// What failed, in one line whatever the names in it.
void PrintError(std::string message);

}  // namespace tarnwell::cli
