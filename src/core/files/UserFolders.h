// The folders of the program in the user's home, by the XDG base directories.
#pragma once

#include <string>

namespace tarnwell {

/// $HOME, or the account's home where that is not set.
std::string HomeFolder();

/// For the options: `Halvdorn` below $XDG_CONFIG_HOME or ~/.config.
std::string ConfigFolder();

/// For the program's data: `tarnwell` below $XDG_DATA_HOME or ~/.local/share.
std::string DataFolder();

/// For what is kept between runs: `tarnwell` below $XDG_STATE_HOME or ~/.local/state.
std::string StateFolder();

}  // namespace tarnwell
