// How a step works the simulated television beside an emulated computer.
#pragma once

#include <functional>
#include <string>

namespace tarnwell {

/// Listens at the socket `path` for as long as the program runs, and answers each line that comes
/// with what `answer` gives for it. Ends the program where that cannot be.
void ListenForControl(const std::string& path,
                      const std::function<std::string(const std::string& line)>& answer);

}  // namespace tarnwell
