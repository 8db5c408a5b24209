#include "cli/tools/Output.h"

#include <algorithm>

namespace tarnwell::cli {

bool Print(const std::string& text, std::FILE* stream) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
           std::fflush(stream) == 0;
}

void PrintError(std::string message) {
    std::ranges::replace_if(
        message, [](char letter) { return static_cast<unsigned char>(letter) < ' '; }, '?');
    Print("tarnwell-cli: " + message + "\n", stderr);
}

}  // namespace tarnwell::cli
