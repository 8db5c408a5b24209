// The driver loader shortcut: paths, a loader that does not start, a folder that is not known.
#include "core/DriverLoader.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;

struct Shortcut final : TestProgram, DriverPathWindow {
    std::vector<std::string> shown;  ///< the boxes before the path, then the path

    std::vector<std::string> Run(Platform& platform) {
        DriverLoader(platform, outside, program.statusBar, user, *this).Run();
        return std::exchange(shown, {});
    }
    void ShowFormCnP(const std::string& path) override {
        shown = user.TakeBoxes();
        shown.push_back(path);
    }
};

TEST(DriverLoaderTest, StartsTheLoaderThenShowsWhereTheDriverIsOrWouldBe) {
    using testing::HasSubstr;
    Shortcut t;
    LinuxPlatform linux;
    EXPECT_THAT(t.Run(linux), ElementsAre(HasSubstr("/program/loaddrv"),
                                          testing::MatchesRegex("/lib/modules/[^/]*/kernel/drivers/"
                                                                "char/ppdev.ko")));
    t.outside.systemFolder = R"(C:\WINNT)";
    const std::string composed = R"(C:\WINNT\system32\drivers\dlportio.sys)";
    EXPECT_THAT(t.Run(t.outside), ElementsAre(HasSubstr(R"(/program\LOADDRV.EXE)"), composed));
    t.outside.existing = {R"(/program\LOADDRV.EXE)"};
    for (const std::string module : {"/lib/modules/test/updates/ppdev.ko.xz", "", "(builtin)"}) {
        t.outside.modulePath = module;
        EXPECT_THAT(t.Run(t.outside), ElementsAre(module.ends_with(".xz") ? module : composed));
    }
    EXPECT_EQ(t.outside.started, std::vector<std::string>(3, t.outside.existing[0]));
    t.outside.startsSucceed = false;
    EXPECT_THAT(t.Run(t.outside), ElementsAre(testing::StartsWith("E R R O R|"), composed));
    t.outside.systemFolder.clear();
    EXPECT_THROW(t.Run(t.outside), ProgramEnd);
    EXPECT_EQ(t.user.TakeBoxes().back(),
              "F A T A L   E R R O R|Could not determine the Windows Path!\r\n"
              "The program will now terminate.");
}

}  // namespace
}  // namespace tarnwell
