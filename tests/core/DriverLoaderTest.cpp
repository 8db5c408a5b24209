// The driver loader shortcut: paths, a loader that does not start, a folder that is not known.
#include "core/DriverLoader.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;

struct Shortcut final : TestProgram, DriverPathWindow {
    std::vector<std::string> shown;  ///< the boxes before the path, then the path

    std::vector<std::string> Run() {
        DriverLoader(outside, outside, program.statusBar, user, *this).Run();
        return std::exchange(shown, {});
    }
    void ShowFormCnP(const std::string& path) override {
        shown = user.TakeBoxes();
        shown.push_back(path);
    }
};

TEST(DriverLoaderTest, StartsTheLoaderThenShowsWhereTheModuleIsOrWouldBe) {
    Shortcut t;
    const std::string composed = "/lib/modules/test/kernel/drivers/char/ppdev.ko";
    EXPECT_THAT(t.Run(), ElementsAre(testing::HasSubstr("/program/loaddrv"), composed));
    t.outside.existing = {"/program/loaddrv"};
    for (const std::string module : {"/lib/modules/test/updates/ppdev.ko.xz", "", "(builtin)"}) {
        t.outside.modulePath = module;
        EXPECT_THAT(t.Run(), ElementsAre(module.ends_with(".xz") ? module : composed));
    }
    EXPECT_EQ(t.outside.started, std::vector<std::string>(3, "/program/loaddrv"));
    t.outside.startsSucceed = false;
    EXPECT_THAT(t.Run(), ElementsAre(testing::StartsWith("E R R O R|"), composed));
    t.outside.systemFolder.clear();
    EXPECT_THROW(t.Run(), ProgramEnd);
    EXPECT_EQ(DriverPath("C:\\WINNT"), "C:\\WINNT\\system32\\drivers\\dlportio.sys");
    EXPECT_EQ(LoaderPath("D:\\Tools\\Tarnwell"), "D:\\Tools\\Tarnwell\\LOADDRV.EXE");
}

}  // namespace
}  // namespace tarnwell
