// The two ends of a run, the options between runs, the status line and its timer, and the shortcut
// to the driver loader.
#include <csignal>
#include <span>

#include "core/run/DriverLoader.h"
#include "support/BusCommands.h"

namespace tarnwell {
namespace {

constexpr const char* kStartup = R"(SOFTWARE\Halvdorn\Tarnwell\Startup)";
constexpr const char* kProgOpts = R"(SOFTWARE\Halvdorn\Tarnwell\ProgOpts)";
constexpr const char* kProgPort = R"(SOFTWARE\Halvdorn\Tarnwell\ProgPort)";

TEST(StartUp, TakesItsStepsInOrderAndWritesTheDefaultsOnTheFirstRun) {
    TestProgram test;
    for (const char* top : {"0", "abc", " -0 ", ""}) {  // each of them is a first run, too
        test.registry.keys.clear();
        if (*top != '\0')
            test.registry.keys = {{kStartup, {{"MainTop", top}}},
                                  {kProgPort, {{"PortAddr", "632"}}}};
        test.outside.steps.clear();
        test.program.StartUp(test.outside);
        EXPECT_EQ(test.program.state.portAddress, 888) << top;
    }
    EXPECT_THAT(test.outside.steps, ElementsAre("file dialog", "menu checks", "layout", "colours",
                                                "port options", "release", "grid", "buttons"));
    std::string stored;
    for (const auto& [key, values] : test.registry.keys)
        for (const auto& [name, value] : values)
            stored.append(key.substr(key.rfind('\\') + 1) + " " + name + "=" + value + ", ");
    EXPECT_EQ(stored,
              "ProgOpts DataWarn=ShowWarn, ProgOpts InitDir=C:\\, ProgOpts NumMode=Decimal, "
              "ProgOpts ReadTwice=False, ProgPort I2CBus=, ProgPort PortAddr=888, "
              "ProgPort PortOpts=11012010, Startup EditLeft=144, Startup EditTop=144, "
              "Startup MainLeft=144, Startup MainTop=144, ");
    EXPECT_EQ(test.outside.Place().top, 144);
    EXPECT_EQ(test.Status(), "Welcome to Tarnwell");
    EXPECT_TRUE(test.program.state.driverLoaderItemVisible);
}

TEST(StartUp, TakesEachOptionForWhatItIsAndShutDownKeepsIt) {
    TestProgram test;
    const ProgramState& state = test.program.state;
    const decltype(test.registry.keys) stored{
        {kStartup,
         {{"MainTop", "150"},
          {"MainLeft", "-30"},
          {"EditTop", "1"},
          {"EditLeft", "2"},
          {"EditorSize", "4"},
          {"ComparePlace", "3"}}},
        {kProgOpts,
         {{"InitDir", "/tv"},
          {"NumMode", "Hex"},
          {"DataWarn", "NoWarn"},
          {"ReadTwice", "True"},
          {"TextColumn", "True"},
          {"RecentImages", "/b\n/a"},
          {"RecentSettings", "/c"}}},
        {kProgPort, {{"PortAddr", "632"}, {"PortOpts", "21012010"}, {"I2CBus", "u|/dev/i2c-7"}}}};
    test.registry.keys = stored;
    test.program.StartUp(test.outside);
    EXPECT_EQ(test.outside.Place().top * 1000 + test.outside.Place().left, 149970);
    EXPECT_EQ(state.editTop + state.editLeft + state.archiveFolder + state.editorWarning +
                  state.pinOptions,
              "12/tvNoWarn21012010");
    EXPECT_THAT(state.recentImages.Paths(), ElementsAre("/b", "/a"));
    EXPECT_THAT(state.recentSettings.Paths(), ElementsAre("/c"));
    EXPECT_EQ(state.portAddress, 632);
    EXPECT_EQ(state.bus, (ChosenBus{I2cBus{"u", "/dev/i2c-7"}}));
    EXPECT_EQ(state.numberMode, NumberMode::Hex);
    EXPECT_EQ(state.readPasses, 2);
    EXPECT_TRUE(state.textColumn);
    for (auto& [key, values] : test.registry.keys)
        for (auto& [name, value] : values)
            value.clear();
    EXPECT_EQ(test.program.ShutDown(), Closing::EndProgram);
    EXPECT_EQ(test.registry.keys, stored);

    test.registry.keys[kProgOpts] = {{"NumMode", "Octal"}, {"ReadTwice", "Twice"}};
    test.registry.keys.erase(kProgPort);
    test.program.StartUp(test.outside);
    EXPECT_EQ(state.numberMode, NumberMode::Decimal);
    EXPECT_EQ(state.readPasses, 1);
    EXPECT_EQ(state.editorWarning + state.pinOptions + PortAddressText(state.portAddress), "");
    test.registry.keys[kProgOpts]["RecentImages"] = "/gone";
    test.outside.Place({0, -40});
    EXPECT_EQ(test.program.ShutDown(), Closing::EndProgram);
    EXPECT_EQ(test.registry.keys[kStartup]["MainTop"] + test.registry.keys[kStartup]["MainLeft"],
              "1-40");
    EXPECT_EQ(test.outside.Place().top, 1);
    EXPECT_EQ(test.registry.keys[kProgOpts]["RecentImages"], "");
    EXPECT_EQ(test.registry.keys.count(kProgPort), 0U) << "no key is created at the end";
}

TEST(GetOSFamily, FollowsTheVersionRecord) {
    using enum OSFamily;
    TestSurroundings outside;
    ScriptedUser user;
    const auto find = [&](std::uint32_t platform, std::uint32_t major) {
        outside.version = {148, major, platform};
        return mGlobal::GetOSFamily(outside, user);
    };
    EXPECT_TRUE(find(1, 4) == Win9x && find(2, 4) == WinNT && find(2, 5) == Win2K);
    for (const auto& [platform, major] : {std::pair(2U, 6U), {2U, 3U}, {3U, 5U}, {0U, 4U}})
        EXPECT_THROW(find(platform, major), ProgramEnd) << platform << major;
    outside.versionKnown = false;
    EXPECT_THROW(find(2, 5), ProgramEnd);
    EXPECT_EQ(user.boxes[4].style, BoxStyle::Critical);
    EXPECT_THAT(user.TakeBoxes()[4], StartsWith("F A T A L   E R R O R|Could not determine the C"));
}

TEST(ShutDown, AsksAtMostOneQuestionAfterSavingTheOptions) {
    for (int kind = 0; kind < 8; ++kind) {
        const bool yes = (kind & 1) != 0, settings = (kind & 2) != 0, buffer = (kind & 4) != 0;
        TestProgram test;
        test.program.state.BufferChanged = buffer;
        if (settings)
            test.program.cells.SetMark(71, Mark::Save);
        if (settings || buffer)
            test.WillAnswer({yes ? Answer::Yes : Answer::No});
        const int flushes = test.registry.flushes;
        std::string asked;
        test.user.onBox = [&](const Box& box) {
            EXPECT_EQ(test.registry.flushes, flushes + 1);
            EXPECT_EQ(box.style, BoxStyle::YesNoExclamation);
            asked += box.text.substr(0, 17);
        };
        EXPECT_EQ(test.program.ShutDown() == Closing::EndProgram, yes || !(settings || buffer));
        EXPECT_EQ(asked, settings ? "Setting values ha" : buffer ? "The memory buffer" : "");
        EXPECT_EQ(test.registry.flushes, flushes + 1);
        EXPECT_EQ(test.program.state.BufferChanged, buffer);
    }
}

TEST(Abandon, FreesTheBusAtTheNextByteOfACommandAndSavesTheOptions) {
    for (const BusCommand& command : std::span(kBusCommands).first(4)) {
        TestProgram test;
        const int flushes = test.registry.flushes;
        test.stop.wayOut = [&] {
            test.program.Abandon("ended");
            throw test.stop.Signal();
        };
        test.stop.Note(SIGTERM);
        testing::internal::CaptureStderr();
        EXPECT_THROW(command.Run(test), int) << command.name;
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  command.writes ? "tarnwell: ended; 1 byte was written to the primary EEPROM and "
                                   "not verified.\n"
                                 : "tarnwell: ended.\n");
        EXPECT_EQ(test.television.Count(WireEvent::WriteCycle), command.writes ? 1U : 0U);
        EXPECT_TRUE(test.television.Scl() && test.television.Sda());
        EXPECT_EQ(test.television.DlPortReadPortUchar(0x378), 0xFF) << "the port is given back";
        EXPECT_EQ(test.registry.flushes, flushes + 1);
    }
}

TEST(StatusLine, ClearsItselfAndPointsFromTheWelcomeToTheAboutBoxOnceNoCommandRuns) {
    using namespace std::chrono_literals;
    TestProgram test;
    StatusBar& bar = test.program.statusBar;
    EXPECT_EQ(test.timer.running, 5000ms);
    bar.MsgTimerFired();
    EXPECT_EQ(test.Status(), "Please read about Tarnwell 2 in Help --> About");
    EXPECT_EQ(test.timer.running, 15000ms);
    for (const char* shown : {"", "new"}) {
        bar.ShowStatus("old", 30);
        EXPECT_EQ(test.timer.running, 30000ms);
        std::optional<CommandScope> command(bar);
        std::make_unique<CommandScope>(bar).reset();
        bar.MsgTimerFired();
        std::make_unique<CommandScope>(bar).reset();
        EXPECT_EQ(test.Status(), "old");
        if (*shown != '\0')
            bar.ShowStatus(shown, 5);
        command.reset();
        EXPECT_EQ(test.Status(), shown);
    }
    bar.MsgTimerFired();
    EXPECT_EQ(test.timer.running, std::nullopt);
}

TEST(DriverLoaderTest, StartsTheLoaderThenShowsWhereTheDriverIsOrWouldBe) {
    TestProgram t;
    const auto run = [&](Platform& platform) {
        const std::string path =
            DriverLoader(platform, t.outside, t.program.statusBar, t.user).Run();
        auto shown = t.user.TakeBoxes();
        shown.push_back(path);
        return shown;
    };
    LinuxPlatform linux;
    EXPECT_THAT(run(linux),
                ElementsAre(HasSubstr("/program/loaddrv"),
                            MatchesRegex("/lib/modules/[^/]*/kernel/drivers/char/ppdev.ko")));
    t.outside.systemFolder = R"(C:\WINNT)";
    const std::string composed = R"(C:\WINNT\system32\drivers\dlportio.sys)";
    const std::string loader = R"(/program\LOADDRV.EXE)";
    EXPECT_THAT(run(t.outside), ElementsAre(HasSubstr(loader), composed));
    t.outside.existing = {loader};
    for (const std::string module : {"/lib/modules/test/updates/ppdev.ko.xz", "", "(builtin)"}) {
        t.outside.modulePath = module;
        EXPECT_THAT(run(t.outside), ElementsAre(module.ends_with(".xz") ? module : composed));
    }
    EXPECT_EQ(t.outside.started, std::vector(3, loader));
    t.outside.startsSucceed = false;
    EXPECT_THAT(run(t.outside), ElementsAre(StartsWith("E R R O R|"), composed));
    t.outside.systemFolder.clear();
    EXPECT_THROW(run(t.outside), ProgramEnd);
    EXPECT_THAT(t.user.TakeBoxes().back(), HasSubstr("Could not determine the Windows Path!"));
}

}  // namespace
}  // namespace tarnwell
