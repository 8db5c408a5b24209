#include "core/AtomicFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "support/TemporaryFolder.h"

namespace tarnwell {
namespace {

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
    std::filesystem::permissions(name, std::filesystem::perms(0640));
    ASSERT_TRUE(Save(name, "second one"));

    EXPECT_EQ(folder.Read("file"), "second one");
    EXPECT_FALSE(std::filesystem::exists(name + ".part"));
    EXPECT_EQ(std::filesystem::status(name).permissions(), std::filesystem::perms(0640));
}

TEST(AtomicFile, FullDiskLeavesTheOldFileAndThePart) {
    const TemporaryFolder folder;
    folder.Write("file", "old");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full{100, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_FALSE(Save(folder.Path("file"), std::string(200, 'x')));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(folder.Read("file.part"), std::string(100, 'x'));
}

TEST(AtomicFile, ObstaclesFailAndUncommittedChangesNothing) {
    const TemporaryFolder folder;
    folder.Write("name/file", "");
    folder.Write("other", "old");
    folder.Write("other.part/file", "");
    for (const char* name : {"name", "other", "missing/file"})
        EXPECT_FALSE(Save(folder.Path(name), "text")) << name;
    EXPECT_EQ(folder.Read("other"), "old");
    AtomicFile(folder.Path("name/file")).Write("new");
    EXPECT_EQ(folder.Read("name/file"), "");
}

}  // namespace
}  // namespace tarnwell
