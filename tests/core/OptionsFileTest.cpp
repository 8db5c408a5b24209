#include "core/OptionsFile.h"

#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "core/files/SmallFile.h"
#include "support/TemporaryFolder.h"

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
        Write(text);
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
    refusals = {EWOULDBLOCK, EBADF, EWOULDBLOCK, EWOULDBLOCK};
    Write("/b");
    EXPECT_EQ(refusals.size(), 1U) << "tries again while it is taken, and only then";
    refusals.assign(150, EWOULDBLOCK);
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
