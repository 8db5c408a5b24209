// Files that are replaced as a whole or not at all, the file of the options, and the folders that
// the user's files lie in.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "core/files/AtomicFile.h"
#include "core/files/SmallFile.h"
#include "core/files/UserFolders.h"
#include "core/options/OptionsFile.h"
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
    return static_cast<int>(syscall(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}

/// What the next locks are answered with, in the place of the C library's.
static std::vector<int> refusals;
extern "C" int flock(int descriptor, int operation) noexcept {
    EXPECT_EQ(operation, LOCK_EX | LOCK_NB);
    if (refusals.empty())
        return static_cast<int>(syscall(SYS_flock, descriptor, operation));
    errno = refusals.back();
    refusals.pop_back();
    return -1;
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

TEST_F(AtomicFileTest, TakesAwayWhatAKilledProgramLeftAMinuteAgo) {
    const auto now = fs::file_time_type::clock::now();
    AtomicFile unfinished(folder.Path("other"));
    for (const auto& [name, age] : {std::pair(".tarnwell-0123abcd", 61),
                                    {".tarnwell-0123abce", 55},
                                    {".tarnwell-0123abcg", 61},
                                    {".tarnwell-0123abcde", 61}}) {
        folder.Write(name, "");
        fs::last_write_time(folder.Path(name), now - std::chrono::seconds(age));
    }
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        if (fs::file_size(entry) == 0 && entry.last_write_time() > now - std::chrono::seconds(9))
            fs::last_write_time(entry, now - std::chrono::hours(1));
    ASSERT_TRUE(Save(folder.Path("file"), "new one"));
    EXPECT_EQ(FilesLeft(), 5) << "of six";
    EXPECT_FALSE(fs::exists(folder.Path(".tarnwell-0123abcd")));
    EXPECT_TRUE(unfinished.Commit());
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

constexpr std::string_view kKey = R"(SOFTWARE\Halvdorn\Tarnwell\ProgOpts)";

/// A file of the tests' own, and what is read from it and written to it.
struct OptionsFileTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.Path("new/Tarnwell.ini");

    std::string Read(const std::string& content) const {
        folder.Write("new/Tarnwell.ini", content);
        errno = EINTR;  // of another call
        return OptionsFile(path).QueryRegValue(kKey, "InitDir");
    }
    void Write(const std::string& text) const {
        OptionsFile store(path);
        store.SetRegValue(kKey, "InitDir", "lost where there is no key");
        store.CreateRegKey(kKey);
        store.SetRegValue(kKey, "InitDir", text);
        store.Flush();
    }
};

TEST_F(OptionsFileTest, WritesTheEscapesOfOlderVersionsAndReadsThem) {
    const std::pair<std::string, const char*> rows[] = {
        {"", ""},
        {R"(C:\)", R"(C:\\)"},
        {"/a, b; \"c\" % \xC3\xBC\xE4", "\"/a, b; \\\"c\\\" % \xC3\xBC\xE4\""},
        {"=@Variant(x", "\"=@Variant(x\""},
        {"@Variant(x)", "@@Variant(x)"},
        {"\n\x1B"
         "5\x1Fg\t ",
         R"("\n\x1b\x35\x1fg\t ")"},
    };
    for (const auto& [text, value] : rows) {
        calls.clear();
        Write(text);
        EXPECT_EQ(calls, "fsync rename fsync ");
        EXPECT_EQ(folder.Read("new/Tarnwell.ini"),
                  std::string("[ProgOpts]\nInitDir=") + value + "\n");
        EXPECT_EQ(OptionsFile(path).QueryRegValue(kKey, "InitDir"), text);
        EXPECT_EQ(OptionsFile(path).QueryRegValue(kKey, "NumMode"), "");
    }
}

TEST_F(OptionsFileTest, ReadsWhatWasEditedByHandAsTexts) {
    const std::pair<std::string, std::string_view> rows[] = {
        {"/home/u/a,b", "/home/u/a,b"},
        {" \t/a;b \t; a comment", "/a;b"},
        {R"(C:\Users\)", R"(C:\Users\)"},
        {R"("/a;b" ; "c")", "/a;b"},
        {R"("/open)", "/open"},
        {R"(\x40Variant(\0\0\0\x41))", {"@Variant(\0\0\0A)", 14}},
        {R"(\xe4\xbz\x20AC\101\x)",
         "\xC3\xA4\vz\xE2\x82\xAC"
         "A\\x"},
        {R"(\x7f\x80\x7ff\x800\x95d3)", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xE9\x97\x93"},
        {"@DateTime(\\0)", {"@DateTime(\0)", 12}},
        {"@String(/a b)", "/a b"},
    };
    for (const auto& [value, text] : rows)
        EXPECT_EQ(Read("\xEF\xBB\xBF;\r\n[ProgOpts]\r\nInitDir=x\r\nInitDir =" + value + "\r\n"),
                  text);
}

TEST_F(OptionsFileTest, KeepsWhatItDoesNotKnowAndWhatAnotherInstanceSavedMeanwhile) {
    folder.Write("new/Tarnwell.ini.lock/file", "");
    folder.Write("new/Tarnwell.ini", "top=@Variant(\\0)\n[Z]\ny=1, 2\n[ProgOpts]\nNumMode=Hex\n");
    OptionsFile first(path);
    OptionsFile(path, OptionsFile::Access::Read).Flush();
    refusals = {EWOULDBLOCK, EWOULDBLOCK, EBADF, EWOULDBLOCK, EWOULDBLOCK};
    Write("/b");
    EXPECT_EQ(refusals.size(), 1U) << "tries again while it is taken, and only then";
    refusals.assign(151, EWOULDBLOCK);  // the last one is of the new file
    Write("/b");
    EXPECT_EQ(refusals.size(), 50U) << "a second, then all the same";
    refusals.clear();
    first.SetRegValue(kKey, "NumMode", "Decimal");
    first.Flush();
    EXPECT_EQ(
        folder.Read("new/Tarnwell.ini"),
        "[General]\ntop=@Variant(\\0)\n\n[ProgOpts]\nInitDir=/b\nNumMode=Decimal\n\n[Z]\ny=1, 2\n");
}

TEST_F(OptionsFileTest, NamesAFileThatItCannotUseAndLeavesItAlone) {
    const std::string group = "[ProgOpts]\nInitDir=x\n";
    EXPECT_EQ(Read(std::string(kSmallFileBytes - group.size(), '\n') + group), "x");
    for (const std::string& damage :
         {group + "[ProgOpts\n", group + "\x01\xFF no line\n",
          group + std::string(kSmallFileBytes + 1 - group.size(), ' ')}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(Read(damage), "");
        EXPECT_THAT(testing::internal::GetCapturedStderr(),
                    testing::MatchesRegex("tarnwell: " + path + " is [^\n]*\n"));
        Write("/a");
        EXPECT_EQ(folder.Read("new/Tarnwell.ini"), damage);
    }
    std::filesystem::remove(path);
    mkfifo(path.c_str(), 0600);
    Write("/a");
    EXPECT_TRUE(std::filesystem::is_fifo(path));
}

}  // namespace
}  // namespace tarnwell
