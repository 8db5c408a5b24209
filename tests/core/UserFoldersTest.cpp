// The user's folders by the desktop's rule.
#include <gtest/gtest.h>

#include <cstdlib>

#include "core/UserFolders.h"

namespace tarnwell {
namespace {

TEST(UserFolders, FollowTheDesktopsRule) {
    setenv("HOME", "/h", 1);
    for (const std::string given : {"", "relative", "/given"}) {
        setenv("XDG_DATA_HOME", given.c_str(), 1);
        setenv("XDG_STATE_HOME", given.c_str(), 1);
        const bool counts = given == "/given";
        EXPECT_EQ(DataFolder(), counts ? "/given/tarnwell" : "/h/.local/share/tarnwell");
        EXPECT_EQ(StateFolder(), counts ? "/given/tarnwell" : "/h/.local/state/tarnwell");
    }
}

}  // namespace
}  // namespace tarnwell
