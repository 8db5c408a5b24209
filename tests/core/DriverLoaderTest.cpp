// The driver loader shortcut: paths, a loader that does not start, a folder that is not known.
#include "core/DriverLoader.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;

TEST(DriverLoader, PathsFollowTheSystemOfTheirFolder) {
    EXPECT_EQ(DriverPath("C:\\WINNT"), "C:\\WINNT\\system32\\drivers\\dlportio.sys");
    EXPECT_EQ(LoaderPath("D:\\Tools\\Tarnwell"), "D:\\Tools\\Tarnwell\\LOADDRV.EXE");
    EXPECT_EQ(DriverPath("/lib/modules/6.1.0"), "/lib/modules/6.1.0/kernel/drivers/char/ppdev.ko");
    EXPECT_EQ(LoaderPath("/usr/libexec/tarnwell"), "/usr/libexec/tarnwell/loaddrv");
}

class ThisComputer final : public Platform, public Programs, public DriverPathWindow {
  public:
    std::string systemFolder = "/lib/modules/6.1.0";
    std::string modulePath;
    bool loaderExists = true;
    bool loaderStarts = true;
    std::vector<std::string> events;

    bool GetVersionExA(OsVersionInfo&) override { return true; }
    int SHGetFolderPathA(int, PathBuffer& path) override {
        std::ranges::copy(systemFolder, path.begin());
        return systemFolder.empty() ? 1 : 0;
    }
    std::string ProgramFolder() const override { return "/program"; }
    bool Exists(const std::string&) const override { return loaderExists; }
    bool OpenInViewer(const std::string&) override { return false; }
    bool Start(const std::string& path) override {
        events.push_back("start " + path);
        return loaderStarts;
    }
    std::string KernelModulePath(const std::string& module) const override {
        return module == "ppdev" ? modulePath : std::string();
    }
    void ShowFormCnP(const std::string& path) override { events.push_back("show " + path); }
};

class DriverLoaderTest : public testing::Test {
  protected:
    void Run() { DriverLoader(computer_, computer_, statusBar_, user_, computer_).Run(); }

    ProgramState state_;
    TestSurroundings outside_;
    ManualTimer timer_;
    ScriptedUser user_;
    StatusBar statusBar_{state_, outside_, timer_};
    ThisComputer computer_;
};

TEST_F(DriverLoaderTest, StartsTheLoaderThenShowsTheModulesPath) {
    const std::string composed = "/lib/modules/6.1.0/kernel/drivers/char/ppdev.ko";
    const std::string named = "/lib/modules/6.1.0/updates/ppdev.ko.xz";
    for (const auto& [module, shown] :
         {std::pair{named, named}, {"", composed}, {"(builtin)", composed}}) {
        computer_.modulePath = module;
        computer_.events.clear();
        Run();
        EXPECT_THAT(computer_.events, ElementsAre("start /program/loaddrv", "show " + shown));
    }
    EXPECT_TRUE(user_.boxes.empty());
}

TEST_F(DriverLoaderTest, ALoaderThatDoesNotStartIsSaidBeforeThePathIsShown) {
    for (const bool exists : {false, true}) {
        computer_.loaderExists = exists;
        computer_.loaderStarts = false;
        computer_.events.clear();
        user_.onBox = [this](const Box&) { computer_.events.emplace_back("box"); };
        Run();
        EXPECT_EQ(computer_.events.back(), "show /lib/modules/6.1.0/kernel/drivers/char/ppdev.ko");
        EXPECT_EQ(computer_.events[computer_.events.size() - 2], "box");
        ASSERT_EQ(user_.boxes.size(), 1);
        EXPECT_EQ(user_.boxes[0].title, "E R R O R");
        EXPECT_NE(user_.boxes[0].text.find("/program/loaddrv"), std::string::npos);
        user_.boxes.clear();
    }
}

TEST_F(DriverLoaderTest, AnUnknownSystemFolderEndsTheProgram) {
    computer_.systemFolder.clear();
    EXPECT_THROW(Run(), ProgramEnd);
    EXPECT_THAT(user_.TakeBoxes(),
                ElementsAre("F A T A L   E R R O R|Could not determine the Windows Path!\r\n"
                            "The program will now terminate."));
    EXPECT_THAT(computer_.events, ElementsAre("start /program/loaddrv"));
}

}  // namespace
}  // namespace tarnwell
