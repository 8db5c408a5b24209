// The images kept before the first write to a device: when, what, how many, and what if not.
#include <algorithm>

#include "support/BusCommands.h"

namespace tarnwell {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::SizeIs;

/// A program on a primary device full of 0x11, with what it keeps.
struct Session : TestProgram {
    EepromImage& primary = television.Memory(Chip::Primary);
    const std::string backups = folder.Path("backups");

    Session() : TestProgram({.writeCycle = BusTime(20'000)}) { primary.fill(0x11); }

    /// Runs it with a setting and a byte that wait to be written.
    void Run(const BusCommand& command) {
        program.buffer.fill(0x5A);
        program.cells.ShowValue(0, 0x5A);
        program.cells.SetMark(0, Mark::Save);
        program.pending.ClearPendingWrites();
        program.pending.AddPendingWrite({"5", "0", "90"});
        command.run(*this);
    }
    void Fill() { kBusCommands[2].run(*this); }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        if (std::filesystem::exists(backups))
            for (const auto& entry : std::filesystem::directory_iterator(backups))
                names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    bool Written() const { return std::ranges::count(primary, 0x11) < kEepromBytes; }
};

const std::vector<BusCommand> kWriting = [] {
    std::vector<BusCommand> writing(kBusCommands.begin(), kBusCommands.end());
    std::erase_if(writing, [](const BusCommand& command) { return !command.writes; });
    return writing;
}();

TEST(ImageBackups, HoldEachReadThatDiffersFromTheOneBeforeItsWrite) {
    for (const BusCommand& command : kWriting) {
        Session run;
        run.program.wholeDevice.ReadEntireEep();
        const MemoryBuffer read = run.program.buffer;
        std::size_t kept = 0;
        for (const char* time : {"20261117-212101", "20261117-212102"}) {
            run.outside.timestamp = time;
            run.Run(command);
            EXPECT_TRUE(run.Status().starts_with("EEP Verified OK")) << command.name;
            EXPECT_TRUE(run.Written()) << command.name;
            EXPECT_THAT(run.Names(), SizeIs(++kept)) << command.name;
            for (int times = 0; times < 2; ++times)
                run.program.wholeDevice.ReadEntireEep();
        }

        Session later;
        later.user.files = {run.backups + "/" + run.Names().front()};
        later.program.imageArchive.LoadImage();
        EXPECT_EQ(later.Status(), "Record Checksums OK; EEP Image Loaded into Buffer");
        EXPECT_TRUE(std::equal(read.begin(), read.end() - 1, later.program.buffer.begin()));
        later.Run(command);
        EXPECT_TRUE(later.Written() && later.Names().empty()) << "nothing was read";
    }
}

TEST(ImageBackups, AreKeptForEachDeviceUnderNamesOfTheirOwn) {
    Session run;
    run.folder.Write("backups/Tarnwell-20261117-212101-Pri.mot", "other run");
    run.program.wholeDevice.ReadEntireEep();
    run.Fill();
    run.WillAnswer({Answer::Ok});
    run.program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    run.Fill();
    EXPECT_THAT(run.Names(), SizeIs(2)) << "the secondary device was not read";
    run.program.wholeDevice.ReadEntireEep();
    run.Fill();
    EXPECT_THAT(run.Names(), ElementsAre("Tarnwell-20261117-212101-Pri-2.mot",
                                         "Tarnwell-20261117-212101-Pri.mot",
                                         "Tarnwell-20261117-212101-Sec.mot"));
    std::string listed;
    for (const KeptImage& kept : run.program.backups.All())
        listed += std::string(Word(kept.device)) + std::to_string(kept.number) + " ";
    EXPECT_THAT(listed, ::testing::AnyOf("Pri2 Pri1 Sec1 ", "Pri2 Sec1 Pri1 "));
    const MemoryBuffer read = run.program.buffer;
    EXPECT_EQ(run.program.backups.PathOf(TargetDevice::Secondary, read),
              run.backups + "/Tarnwell-20261117-212101-Sec.mot");
    EXPECT_EQ(run.program.backups.PathOf(TargetDevice::Primary, read), "");
    EXPECT_EQ(run.folder.Read("backups/Tarnwell-20261117-212101-Pri.mot"), "other run");
}

TEST(ImageBackups, AreTheNewestTwentyAndTheOldestOfEachDevice) {
    Session run;
    run.folder.Write("backups/Tarnwell-20250101-120000-Pri.mot", "");
    for (int day = 10; day < 31; ++day)
        run.folder.Write("backups/Tarnwell-202610" + std::to_string(day) + "-120000-Sec.mot", "");
    for (const char* other : {"Tarnwell-first.mot", "tv.mot", "Tarnwell-20251010-120000-Pri.bin"})
        run.folder.Write("backups/" + std::string(other), "");
    run.outside.timestamp = "20000101-000000";  // a clock without its battery
    run.program.wholeDevice.ReadEntireEep();
    run.Fill();
    const auto names = run.Names();
    EXPECT_THAT(names, SizeIs(20 + 2 + 3));
    EXPECT_THAT(
        names, IsSupersetOf({"Tarnwell-20000101-000000-Pri.mot", "tv.mot",
                             "Tarnwell-20250101-120000-Pri.mot", "Tarnwell-20261010-120000-Sec.mot",
                             "Tarnwell-20261012-120000-Sec.mot", "Tarnwell-first.mot",
                             "Tarnwell-20251010-120000-Pri.bin"}));
}

TEST(ImageBackups, ThatFailAreAskedAboutOnceBeforeTheFirstByte) {
    for (const BusCommand& command : kWriting) {
        Session run;
        run.folder.Write("backups", "no folder");
        run.program.wholeDevice.ReadEntireEep();
        const EepromImage before = run.primary;
        std::deque<Answer> answers{Answer::No, Answer::Yes};
        run.user.onBox = [&](const Box& box) {
            if (box.style != BoxStyle::YesNoExclamation)
                return;
            EXPECT_EQ(run.primary, before) << command.name;
            EXPECT_THAT(box.text, HasSubstr("\r\n" + run.backups + "\r\n")) << command.name;
            EXPECT_EQ(box.defaultButton, DefaultButton::No) << command.name;
            ASSERT_FALSE(answers.empty()) << command.name;
            run.user.answers.push_front(answers.front());
            answers.pop_front();
        };
        run.Run(command);
        EXPECT_EQ(run.Status(), "EEProm Write Cancelled") << command.name;
        EXPECT_EQ(run.primary, before) << command.name;
        for (int times = 0; times < 2; ++times) {
            run.Run(command);
            EXPECT_TRUE(run.Status().starts_with("EEP Verified OK")) << command.name;
            EXPECT_TRUE(answers.empty() && run.Written()) << command.name;
        }
    }
}

}  // namespace
}  // namespace tarnwell
