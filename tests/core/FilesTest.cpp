// Files that are replaced as a whole or not at all, and the folders that the user's files lie in.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "core/files/AtomicFile.h"
#include "core/files/UserFolders.h"
#include "support/FullDisk.h"
#include "support/TemporaryFolder.h"

/// The calls on the disk in their order, in the place of the C library's.
static std::string calls;
static int refusal = 0;  ///< of the next fsync behind a rename
extern "C" int fsync(int descriptor) {
    const int error = calls.ends_with("rename ") ? std::exchange(refusal, 0) : 0;
    calls += "fsync ";
    errno = error;
    return error != 0 ? -1 : static_cast<int>(syscall(SYS_fsync, descriptor));
}
extern "C" int rename(const char* from, const char* to) noexcept {
    calls += "rename ";
    return static_cast<int>(syscall(SYS_rename, from, to));
}

namespace tarnwell {
namespace {

namespace fs = std::filesystem;

bool Save(const std::string& name, std::string_view content) {
    errno = EEXIST;  // of another call
    AtomicFile file(name);
    file.Write(content.substr(0, 3));
    file.Write(content.substr(3));
    return file.Commit();
}

class AtomicFileTest : public testing::Test {
  protected:
    auto FilesLeft() const {
        return std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator());
    }

    const TemporaryFolder folder;
};

TEST_F(AtomicFileTest, ReplacesContentAndKeepsPermissionsAndLinks) {
    const std::string longest(255, 'n');
    fs::create_symlink(longest, folder.Path("link"));
    fs::create_symlink(folder.Path("link"), folder.Path("file"));
    ASSERT_TRUE(Save(folder.Path("file"), "once"));
    fs::permissions(folder.Path(longest), fs::perms(0640));
    calls.clear();
    ASSERT_TRUE(Save(folder.Path("file"), "second one"));
    EXPECT_EQ(calls, "fsync rename fsync ");

    EXPECT_TRUE(fs::is_symlink(folder.Path("file")) && fs::is_symlink(folder.Path("link")));
    EXPECT_EQ(folder.Read(longest), "second one");
    EXPECT_EQ(fs::status(folder.Path(longest)).permissions(), fs::perms(0640));
    EXPECT_EQ(FilesLeft(), 3);
    for (const auto& [error, saved] : {std::pair(EINVAL, true), {ENOTSUP, true}, {EIO, false}}) {
        refusal = error;
        EXPECT_EQ(Save(folder.Path("file"), "third"), saved) << "the folder's state on the disk";
    }
}

TEST_F(AtomicFileTest, FullDiskLeavesTheOldFileAlone) {
    folder.Write("file", "old");
    {
        const FullDisk full;
        EXPECT_FALSE(Save(folder.Path("file"), std::string(200, 'x')));
    }
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(FilesLeft(), 1);
}

TEST_F(AtomicFileTest, ObstaclesFailAndUncommittedChangesNothing) {
    folder.Write("name/file", "old");
    mkfifo(folder.Path("pipe").c_str(), 0600);
    fs::create_symlink("pipe", folder.Path("toPipe"));
    fs::create_symlink("circle", folder.Path("circle"));
    for (const char* name : {"name", "name/", "missing/file", "name/file/x", "pipe", "toPipe",
                             "circle", "../../dev/full"})
        EXPECT_FALSE(Save(folder.Path(name), "text")) << name;
    AtomicFile(folder.Path("name/file")).Write("new");
    EXPECT_EQ(folder.Read("name/file"), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path("name")), {}), 1);
    EXPECT_EQ(FilesLeft(), 4);
}

TEST_F(AtomicFileTest, WriteProtectedFilesAreRefusedToWhoeverMayNotWriteThem) {
    folder.Write("file", "old");
    fs::permissions(folder.Path("file"), fs::perms(0444));
    fs::permissions(folder.Path(), fs::perms(0777));
    constexpr uid_t kNobody = 65534;
    const uid_t self = geteuid();
    const bool other = seteuid(kNobody) == 0;
    EXPECT_FALSE(Save(folder.Path("file"), "new"));
    EXPECT_TRUE(!other || seteuid(self) == 0);
    EXPECT_EQ(folder.Read("file"), "old");
}

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
