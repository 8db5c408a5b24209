// The images kept before the first write to a device: when, what, how many, and what if not.
#include <algorithm>

#include "archive/ImageRecords.h"
#include "support/BusCommands.h"

namespace tarnwell {
namespace {

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
        program.pending.AddPendingWrite({5, {0}, {90}});
        command.Run(*this);
    }
    void Fill() { kBusCommands[2].Run(*this); }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(backups, none))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    bool Written() const { return std::ranges::count(primary, 0x11) < kEepromBytes; }
};

struct ImageBackups : testing::Test, Session {};

TEST(ImageBackupsOfEachCommand, HoldEachReadThatDiffersFromTheOneBeforeItsWrite) {
    for (const BusCommand& command : kBusCommands) {
        if (!command.writes || IsDifferences(command))
            continue;
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

        const auto first = LoadOwnImage(run.backups + "/" + run.Names().front());
        EXPECT_TRUE(first && std::equal(read.begin(), read.end() - 1, first->begin()));
        Session later;
        later.Run(command);
        EXPECT_TRUE(later.Written() && later.Names().empty()) << "nothing was read";
    }
}

TEST_F(ImageBackups, OfAWholeWriteAreReadTwice) {
    television.Inject(
        {.kind = FaultKind::SdaMisread, .begins = {WireEvent::Byte, 6 + 77}, .accesses = 2});
    program.wholeDevice.ReadEntireEep();
    EXPECT_EQ(program.buffer[77], 0x10);
    Fill();
    const auto misread = LoadOwnImage(program.backups.LastKept());
    ASSERT_TRUE(misread);
    EXPECT_EQ(std::ranges::count(*misread, 0x11), kEepromBytes);

    program.wholeDevice.ReadEntireEep();  // and then another television is connected
    primary.fill(0x22);
    Fill();
    EXPECT_THAT(Names(), SizeIs(3));
    EXPECT_EQ(std::ranges::count(*LoadOwnImage(program.backups.LastKept()), 0x22), kEepromBytes);
}

TEST_F(ImageBackups, AreKeptForEachDeviceUnderNamesOfTheirOwn) {
    folder.Write("backups/Tarnwell-20261117-212101-Pri.mot", "other run");
    program.wholeDevice.ReadEntireEep();
    Fill();
    WillAnswer({Answer::Ok});
    program.wholeDevice.SelectEeprom(TargetDevice::Secondary);
    Fill();
    EXPECT_THAT(Names(), SizeIs(2)) << "the secondary device was not read";
    program.wholeDevice.ReadEntireEep();
    Fill();
    EXPECT_THAT(Names(), ElementsAre("Tarnwell-20261117-212101-Pri-2.mot",
                                     "Tarnwell-20261117-212101-Pri.mot",
                                     "Tarnwell-20261117-212101-Sec.mot"));
    std::string listed;
    for (const KeptImage& kept : program.backups.All())
        listed += std::string(Word(kept.device)) + std::to_string(kept.number) + " ";
    EXPECT_THAT(listed, AnyOf("Pri2 Pri1 Sec1 ", "Pri2 Sec1 Pri1 "));
    const MemoryBuffer read = program.buffer;
    EXPECT_EQ(program.backups.PathOf(TargetDevice::Secondary, read),
              backups + "/Tarnwell-20261117-212101-Sec.mot");
    EXPECT_EQ(program.backups.PathOf(TargetDevice::Primary, read), "");
    EXPECT_EQ(folder.Read("backups/Tarnwell-20261117-212101-Pri.mot"), "other run");
}

TEST_F(ImageBackups, AreTheNewestTwentyAndTheOldestOfEachDevice) {
    folder.Write("backups/Tarnwell-20250101-120000-Pri.mot", "");
    for (int day = 10; day < 31; ++day)
        folder.Write("backups/Tarnwell-202610" + std::to_string(day) + "-120000-Sec.mot", "");
    for (const char* other : {"Tarnwell-first.mot", "tv.mot", "Tarnwell-20251010-120000-Pri.bin"})
        folder.Write("backups/" + std::string(other), "");
    outside.timestamp = "20000101-000000";  // a clock without its battery
    program.wholeDevice.ReadEntireEep();
    Fill();
    const auto names = Names();
    EXPECT_THAT(names, SizeIs(20 + 2 + 3));
    EXPECT_THAT(
        names, IsSupersetOf({"Tarnwell-20000101-000000-Pri.mot", "tv.mot",
                             "Tarnwell-20250101-120000-Pri.mot", "Tarnwell-20261010-120000-Sec.mot",
                             "Tarnwell-20261012-120000-Sec.mot", "Tarnwell-first.mot",
                             "Tarnwell-20251010-120000-Pri.bin"}));
}

TEST(ImageBackupsOfEachCommand, ThatFailAreAskedAboutOnceBeforeTheFirstByte) {
    for (const BusCommand& command : kBusCommands) {
        if (!command.writes || IsDifferences(command))
            continue;
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
