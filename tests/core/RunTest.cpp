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
    EXPECT_EQ(test.registry.keys[kProgOpts], (Values{{"InitDir", R"(C:\)"},
                                                     {"NumMode", "Decimal"},
                                                     {"DataWarn", "ShowWarn"},
                                                     {"ReadTwice", "False"}}));
    EXPECT_EQ(test.registry.keys[kProgPort],
              (Values{{"PortAddr", "888"}, {"PortOpts", "11012010"}, {"I2CBus", ""}}));
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

TEST(StartUp, TakesEachOptionForWhatItIsAndShutDownKeepsIt) {
    using Values = std::map<std::string, std::string>;
    TestProgram test;
    const ProgramState& state = test.program.state;
    test.registry.keys = {
        {kStartup,
         Values{{"MainTop", "150"}, {"MainLeft", "-30"}, {"EditTop", "1"}, {"EditLeft", "2"}}},
        {kProgOpts, Values{{"InitDir", "/tv"},
                           {"NumMode", "Hex"},
                           {"DataWarn", "NoWarn"},
                           {"ReadTwice", "True"}}},
        {kProgPort,
         Values{{"PortAddr", "632"}, {"PortOpts", "21012010"}, {"I2CBus", "u|/dev/i2c-7"}}}};
    test.registry.keys[kStartup]["ComparePlace"] = "3";
    const auto stored = test.registry.keys;
    test.program.StartUp(test.outside);
    EXPECT_EQ(test.outside.place.top * 1000 + test.outside.place.left, 149970);
    EXPECT_EQ(state.editTop + state.editLeft + state.archiveFolder + state.editorWarning +
                  state.portAddress + state.pinOptions,
              "12/tvNoWarn63221012010");
    EXPECT_EQ(state.numberMode, NumberMode::Hex);
    EXPECT_EQ(state.readPasses, 2);
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
    EXPECT_EQ(state.editorWarning + state.pinOptions, "");
    test.outside.place = {0, -40};
    EXPECT_EQ(test.program.ShutDown(), Closing::EndProgram);
    EXPECT_EQ(test.registry.keys[kStartup]["MainTop"] + test.registry.keys[kStartup]["MainLeft"],
              "1-40");
    EXPECT_EQ(test.outside.place.top, 1);
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
    EXPECT_EQ(user.TakeBoxes()[4],
              "F A T A L   E R R O R|Could not determine the Computer OS!\r\n"
              "The program will now terminate.");
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
