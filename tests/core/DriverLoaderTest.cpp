// The driver loader shortcut: paths, a loader that does not start, a folder that is not known.
#include "core/DriverLoader.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using testing::ElementsAre;

class DriverLoaderTest : public testing::Test, private DriverPathWindow {
  protected:
    std::vector<std::string> Run() {
        shown_.clear();
        DriverLoader(t_.outside, t_.outside, t_.program.statusBar, t_.user, *this).Run();
        return shown_;
    }

    TestProgram t_;

  private:
    void ShowFormCnP(const std::string& path) override {
        shown_ = t_.user.TakeBoxes();
        shown_.push_back(path);
    }

    std::vector<std::string> shown_;
};

TEST_F(DriverLoaderTest, PathsFollowTheSystemOfTheirFolder) {
    EXPECT_EQ(DriverPath("C:\\WINNT"), "C:\\WINNT\\system32\\drivers\\dlportio.sys");
    EXPECT_EQ(LoaderPath("D:\\Tools\\Tarnwell"), "D:\\Tools\\Tarnwell\\LOADDRV.EXE");
}

TEST_F(DriverLoaderTest, StartsTheLoaderThenShowsWhereTheModuleIsOrWouldBe) {
    const std::string composed = "/lib/modules/test/kernel/drivers/char/ppdev.ko";
    const std::string named = "/lib/modules/test/updates/ppdev.ko.xz";
    t_.outside.existing = {"/program/loaddrv"};
    for (const auto& [module, shown] :
         {std::pair{named, named}, {"", composed}, {"(builtin)", composed}}) {
        t_.outside.modulePath = module;
        EXPECT_THAT(Run(), ElementsAre(shown));
    }
    EXPECT_EQ(t_.outside.started, std::vector<std::string>(3, "/program/loaddrv"));

    t_.outside.startsSucceed = false;
    EXPECT_THAT(Run(), ElementsAre(testing::StartsWith("E R R O R|"), composed));
    t_.outside.startsSucceed = true;
    t_.outside.existing.clear();
    EXPECT_THAT(Run(), ElementsAre(testing::HasSubstr("/program/loaddrv"), composed));
}

TEST_F(DriverLoaderTest, AnUnknownSystemFolderEndsTheProgram) {
    t_.outside.systemFolder.clear();
    t_.outside.existing = {"/program/loaddrv"};
    EXPECT_THROW(Run(), ProgramEnd);
    EXPECT_EQ(t_.user.boxes.size(), 1);
}

}  // namespace
}  // namespace tarnwell
