#include "core/AtomicFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <functional>

#include "support/TemporaryFolder.h"

namespace tarnwell {
namespace {

/// As on a full disk: no file of this process grows beyond `bytes`.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

  private:
    rlimit before_{};
    void (*handler_)(int);
};

bool Save(const std::string& name, std::string_view content) {
    AtomicFile file(name);
    file.Write(content.substr(0, 3));
    file.Write(content.substr(3));
    return file.Commit();
}

TEST(AtomicFile, ReplacesContentAndKeepsPermissions) {
    const TemporaryFolder folder;
    const std::string name = folder.Path("file");
    ASSERT_TRUE(Save(name, "first"));
    chmod(name.c_str(), 0640);
    ASSERT_TRUE(Save(name, "second one"));

    EXPECT_EQ(folder.Read("file"), "second one");
    EXPECT_FALSE(std::filesystem::exists(name + ".part"));
    struct stat status {};
    stat(name.c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST(AtomicFile, FullDiskLeavesTheOldFileAndThePart) {
    const TemporaryFolder folder;
    folder.Write("file", "old");
    {
        const FileSizeLimit limit(100);
        EXPECT_FALSE(Save(folder.Path("file"), std::string(200, 'x')));
    }
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(folder.Read("file.part"), std::string(100, 'x'));
}

TEST(AtomicFile, ObstaclesFailAndUncommittedChangesNothing) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.Path("name"));
    std::filesystem::create_directories(folder.Path("other.part"));
    folder.Write("other", "old");
    EXPECT_FALSE(Save(folder.Path("name"), "text"));
    EXPECT_FALSE(Save(folder.Path("other"), "text"));
    EXPECT_FALSE(Save(folder.Path("missing/file"), "text"));
    EXPECT_FALSE(Save("/proc/file", "text"));

    folder.Write("kept", "old");
    AtomicFile(folder.Path("kept")).Write("new");
    EXPECT_EQ(folder.Read("kept"), "old");
    EXPECT_EQ(folder.Read("other"), "old");
}

}  // namespace
}  // namespace tarnwell
