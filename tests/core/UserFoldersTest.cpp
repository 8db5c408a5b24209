// The user's folders by the desktop's rule.
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "core/files/UserFolders.h"

namespace tarnwell {
namespace {

TEST(UserFolders, FollowTheDesktopsRule) {
    const std::string account = getpwuid(getuid())->pw_dir;
    for (const char* const home : {"/h", "", static_cast<const char*>(nullptr)}) {
        for (const std::string given : {"", "relative", "/given"}) {
            home ? setenv("HOME", home, 1) : unsetenv("HOME");
            for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
                setenv(variable, given.c_str(), 1);
            const auto in = [&](const std::string& below) {
                return given == "/given" ? given : (home && *home ? home : account) + below;
            };
            EXPECT_EQ(ConfigFolder(), in("/.config") + "/Halvdorn");
            EXPECT_EQ(DataFolder(), in("/.local/share") + "/tarnwell");
            EXPECT_EQ(StateFolder(), in("/.local/state") + "/tarnwell");
        }
    }
}

}  // namespace
}  // namespace tarnwell
