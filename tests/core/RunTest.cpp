// The two ends of a run, the options between runs, the status line and its timer.
#include <csignal>
#include <span>

#include "support/BusCommands.h"

namespace tarnwell {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kStartup = R"(SOFTWARE\Halvdorn\Tarnwell\Startup)";
constexpr const char* kProgOpts = R"(SOFTWARE\Halvdorn\Tarnwell\ProgOpts)";
constexpr const char* kProgPort = R"(SOFTWARE\Halvdorn\Tarnwell\ProgPort)";

TEST(StartUp, TakesItsStepsInOrderAndWritesTheDefaultsOnTheFirstRun) {
    TestProgram test;
    test.registry.keys.clear();
    test.program.StartUp(test.outside);
    EXPECT_THAT(test.outside.steps, ElementsAre("file dialog", "menu checks", "layout", "colours",
                                                "port options", "release", "grid", "buttons"));
    using Values = std::map<std::string, std::string>;
    EXPECT_EQ(
        test.registry.keys[kStartup],
        (Values{{"MainTop", "144"}, {"MainLeft", "144"}, {"EditTop", "144"}, {"EditLeft", "144"}}));
    EXPECT_EQ(test.registry.keys[kProgOpts],
              (Values{{"InitDir", R"(C:\)"}, {"NumMode", "Decimal"}, {"DataWarn", "ShowWarn"}}));
    EXPECT_EQ(test.registry.keys[kProgPort],
              (Values{{"PortAddr", "888"}, {"PortOpts", "11012010"}}));
    EXPECT_EQ(test.outside.place.top, 144);
    EXPECT_EQ(test.Status(), "Welcome to Tarnwell");
    EXPECT_TRUE(test.program.state.driverLoaderItemVisible);
}

TEST(StartUp, TreatsAnUnusableMainTopAsAFirstRun) {
    for (const char* top : {"0", "", "abc", " -0 "}) {
        TestProgram test;
        test.registry.keys[kStartup]["MainTop"] = top;
        test.registry.keys[kProgPort]["PortAddr"] = "632";
        test.program.StartUp(test.outside);
        EXPECT_EQ(test.program.state.portAddress, "888") << top;
    }
}

TEST(StartUp, KeepsWhatIsStoredAndLeavesTheRestEmpty) {
    TestProgram test;
    test.registry.keys.clear();
    test.registry.keys[kStartup] = {{"MainTop", "150"}, {"MainLeft", "-30"}};
    test.registry.keys[kProgOpts] = {{"NumMode", "Octal"}};
    test.program.StartUp(test.outside);
    EXPECT_EQ(test.outside.place.left, -30);
    EXPECT_EQ(test.program.state.numberMode, NumberMode::Decimal);
    EXPECT_EQ(test.program.state.editorWarning, "");
    EXPECT_EQ(test.program.state.pinOptions, "");

    test.outside.place = {-15, -40};
    EXPECT_EQ(test.program.ShutDown(), Closing::EndProgram);
    EXPECT_EQ(test.registry.keys[kStartup]["MainTop"], "1");
    EXPECT_EQ(test.registry.keys[kStartup]["MainLeft"], "-40");
    EXPECT_EQ(test.registry.keys[kProgOpts]["DataWarn"], "");
    EXPECT_EQ(test.registry.keys.count(kProgPort), 0U) << "no key is created at the end";
}

TEST(GetOSFamily, FollowsTheVersionRecord) {
    struct Row {
        bool known;
        std::uint32_t platform, major;
        const char* family;  // empty: fatal
    };
    for (const Row& row : {Row{true, 1, 4, "Win9x"}, Row{true, 2, 4, "WinNT"},
                           Row{true, 2, 5, "Win2K"}, Row{true, 2, 6, ""}, Row{true, 2, 3, ""},
                           Row{true, 3, 5, ""}, Row{true, 0, 4, ""}, Row{false, 2, 5, ""}}) {
        TestSurroundings outside;
        ScriptedUser user;
        outside.version = {148, row.major, row.platform};
        outside.versionKnown = row.known;
        std::string family;
        try {
            const auto found = mGlobal::GetOSFamily(outside, user);
            family =
                found == OSFamily::Win9x ? "Win9x" : (found == OSFamily::WinNT ? "WinNT" : "Win2K");
        } catch (const ProgramEnd&) {
            EXPECT_THAT(user.TakeBoxes(),
                        ElementsAre("F A T A L   E R R O R|Could not determine the Computer OS!\r\n"
                                    "The program will now terminate."));
        }
        EXPECT_EQ(family, row.family);
    }
}

TEST(GetWindowsFolder, EndsTheProgramWhereThereIsNone) {
    TestSurroundings outside;
    ScriptedUser user;
    EXPECT_EQ(mGlobal::GetWindowsFolder(outside, user), "/lib/modules/test");
    outside.systemFolder = "";
    EXPECT_THROW(mGlobal::GetWindowsFolder(outside, user), ProgramEnd);
    EXPECT_THAT(user.TakeBoxes(),
                ElementsAre("F A T A L   E R R O R|Could not determine the Windows Path!\r\n"
                            "The program will now terminate."));
}

constexpr const char* kSettingsQuestion =
    "W A R N I N G|Setting values have been changed, but not archived\r\n"
    "to a disk or written to an EEProm.\r\n\r\nReally exit without saving the changes?";
constexpr const char* kBufferQuestion =
    "W A R N I N G|The memory buffer been changed,\r\nbut not archived to a disk.\r\n\r\n"
    "Really exit without archiving?";

TEST(ShutDown, AsksAtMostOneQuestionAfterSavingTheOptions) {
    struct Row {
        bool settings, buffer;
        const char* question;
    };
    for (const Row& row :
         {Row{false, false, ""}, Row{true, true, kSettingsQuestion},
          Row{true, false, kSettingsQuestion}, Row{false, true, kBufferQuestion}}) {
        for (const Answer answer : {Answer::Yes, Answer::No}) {
            TestProgram test;
            test.program.state.BufferChanged = row.buffer;
            if (row.settings)
                test.program.cells.SetMark(71, Mark::Save);
            const std::string question = row.question;
            if (!question.empty())
                test.WillAnswer({answer});
            const int flushes = test.registry.flushes;
            test.user.onBox = [&](const Box& box) {
                EXPECT_EQ(test.registry.flushes, flushes + 1);
                EXPECT_EQ(box.style, BoxStyle::YesNoExclamation);
            };
            const bool ends = question.empty() || answer == Answer::Yes;
            EXPECT_EQ(test.program.ShutDown(), ends ? Closing::EndProgram : Closing::KeepRunning);
            EXPECT_EQ(test.user.TakeBoxes(), question.empty() ? std::vector<std::string>{}
                                                              : std::vector<std::string>{question});
            EXPECT_EQ(test.registry.flushes, flushes + 1);
            EXPECT_EQ(test.program.state.BufferChanged, row.buffer);
        }
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
        EXPECT_THROW(command.run(test), int) << command.name;
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

TEST(StatusLine, ClearsItselfAndPointsFromTheWelcomeToTheAboutBox) {
    using namespace std::chrono_literals;
    TestProgram test;
    EXPECT_EQ(test.timer.running, 5000ms);
    test.program.statusBar.MsgTimerFired();
    EXPECT_EQ(test.Status(), "Please read about Tarnwell 2 in Help --> About");
    EXPECT_EQ(test.timer.running, 15000ms);
    test.program.statusBar.ShowStatus("a", 30);
    EXPECT_EQ(test.timer.running, 30000ms);
    test.program.statusBar.MsgTimerFired();
    EXPECT_EQ(test.Status(), "");
    EXPECT_EQ(test.timer.running, std::nullopt);
}

TEST(StatusLine, HoldsItsTimerBackUntilTheCommandHasEnded) {
    TestProgram test;
    test.program.statusBar.ShowStatus("old", 5);
    {
        const CommandScope command(test.program.statusBar);
        {
            const CommandScope inner(test.program.statusBar);
            test.program.statusBar.MsgTimerFired();
        }
        EXPECT_EQ(test.Status(), "old");
    }
    EXPECT_EQ(test.Status(), "");
    {
        const CommandScope command(test.program.statusBar);
        test.program.statusBar.MsgTimerFired();
        test.program.statusBar.ShowStatus("new", 5);
    }
    EXPECT_EQ(test.Status(), "new");
}

TEST(Help, SaysWhatIsMissingOrCannotBeStarted) {
    TestProgram test;
    test.program.helpCommands.HelpTopics();
    EXPECT_THAT(test.outside.started, IsEmpty());
    EXPECT_THAT(test.user.TakeBoxes(),
                ElementsAre("E R R O R|Could not start\r\n/program/help/Tarnwell.html\r\n"
                            "The file is missing."));
    test.outside.existing = {"/program/help/Tarnwell.html", "/program/help/iris.html",
                             "/program/history.txt", "/program/pemvora"};
    test.program.helpCommands.HelpTopics();
    test.program.helpCommands.ShowTopic(Topic::Iris);
    test.program.helpCommands.ReleaseHistory();
    test.program.helpCommands.StartExtraProgram();
    EXPECT_EQ(test.outside.started, test.outside.existing);
    test.outside.startsSucceed = false;
    test.program.helpCommands.ReleaseHistory();
    EXPECT_EQ(test.user.TakeBoxes().size(), 1U);
}

}  // namespace
}  // namespace tarnwell
