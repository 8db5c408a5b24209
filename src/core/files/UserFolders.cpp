#include "core/files/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace tarnwell {

namespace {

std::string Folder(const char* variable, const char* belowHome) {
    // A relative path is to be ignored.
    const char* const given = std::getenv(variable);
    return given && *given == '/' ? given : HomeFolder() + belowHome;
}

}  // namespace

std::string HomeFolder() {
    if (const char* const home = std::getenv("HOME"); home && *home)
        return home;
    const passwd* const account = getpwuid(getuid());
    return account ? account->pw_dir : ".";
}

std::string ConfigFolder() {
    return Folder("XDG_CONFIG_HOME", "/.config") + "/Halvdorn";
}

std::string DataFolder() {
    return Folder("XDG_DATA_HOME", "/.local/share") + "/tarnwell";
}

std::string StateFolder() {
    return Folder("XDG_STATE_HOME", "/.local/state") + "/tarnwell";
}

}  // namespace tarnwell
