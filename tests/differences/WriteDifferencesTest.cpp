// Writing only what differs: its pages, its questions, what it survives and what it says then.
#include <random>

#include "archive/ImageRecords.h"
#include "differences/DifferenceTexts.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum FaultKind;

/// A program that has read a device of random bytes, and a buffer that differs from it.
struct Session : TestProgram {
    EepromImage& primary = television.Memory(Chip::Primary);
    std::mt19937 random{1};
    EepromImage before{};

    Session() : TestProgram({.writeCycle = BusTime(20'000)}) {
        std::ranges::generate(primary, [this] { return std::uint8_t(random()); });
        program.wholeDevice.ReadEntireEep();
        before = primary;
    }
    void Change(int address) { program.buffer[static_cast<std::size_t>(address)] ^= 0x5A; }
    void Write(Answer answer = Answer::Yes) {
        user.answers = {answer};
        user.ignoresDoubts = true;
        program.writeDifferences.WriteDifferencesToEep();
        user.answers.clear();
    }
    bool IsWritten() const {
        return std::ranges::equal(primary, std::span(program.buffer).first(kEepromBytes));
    }
    std::uint64_t Cycles() const { return television.Count(WireEvent::WriteCycle); }
};

struct WriteDifferences : testing::Test, Session {};

TEST_F(WriteDifferences, AsksAndWritesEachPageOnceFromItsFirstToItsLastDifference) {
    Write();
    EXPECT_THAT(user.TakeBoxes(),
                ElementsAre("I N F O|The EEProm already holds the memory buffer."));
    EXPECT_EQ(Status(), "");
    for (const int address : {2085, 2363, 64, 95, 96})
        Change(address);
    Write(Answer::No);
    EXPECT_EQ(Status(), "EEProm Write Cancelled");
    EXPECT_EQ(primary, before);
    const Box question = user.boxes.front();
    EXPECT_THAT(user.TakeBoxes(),
                ElementsAre("V E R I F Y|Write 5 bytes to the Primary EEProm?\r\n5 bytes differ: 2 "
                            "settings, 4 other bytes in 3 places."));
    EXPECT_EQ(question.defaultButton, DefaultButton::No);
    EXPECT_THAT(question.details, StartsWith("Address 64: "));
    EXPECT_THAT(question.details, HasSubstr("\nAddress 2363 (480i CR02): "));
    EXPECT_THAT(
        question.details,
        HasSubstr("Address 2085 (Global TINT): " + std::to_string(before[2085] >> 2) + " becomes " +
                  std::to_string(program.buffer[2085] >> 2) + "\nAddress 2085: "));

    program.cells.SetMark(7, Mark::Save);
    const std::uint64_t cycles = Cycles();
    television.Record();
    Write();
    EXPECT_EQ(Status(), "EEP Verified OK; 5 Bytes Written");
    EXPECT_TRUE(IsWritten());
    EXPECT_EQ(Cycles() - cycles, 4U);
    const std::string events = ToText(television.Events());
    EXPECT_THAT(events, HasSubstr("A0+ 00+ 60+ "));
    EXPECT_TRUE(program.state.EepRead);
    EXPECT_EQ(program.cells.MarkOf(7), Mark::Save);
    Change(7);
    Write();
    EXPECT_EQ(Status(), "EEP Verified OK; 1 Byte Written");

    TestProgram fresh;
    fresh.program.writeDifferences.WriteDifferencesToEep();
    EXPECT_THAT(fresh.user.TakeBoxes(), ElementsAre("E R R O R|Must First Read the EEPROM! "));
}

TEST_F(WriteDifferences, ABackupIsLoadedAndWrittenAfterItsQuestion) {
    const MemoryBuffer read = program.buffer;
    Change(64);
    Change(2363);
    for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary})
        ASSERT_NE(program.backups.Keep(device, program.buffer), "");
    const MemoryBuffer image = *LoadOwnImage(program.backups.LastKept());
    program.buffer = read;
    const auto restore = [&](TargetDevice device, std::initializer_list<Answer> answers) {
        user.answers = answers;
        const auto all = program.backups.All();
        program.writeDifferences.Restore(*std::ranges::find(all, device, &KeptImage::device));
        return user.TakeBoxes().back();
    };
    EXPECT_THAT(restore(TargetDevice::Secondary, {Answer::No}), HasSubstr("Load it all the same?"));
    program.buffer[100] ^= 1;
    EXPECT_THAT(restore(TargetDevice::Primary, {Answer::No}), HasSubstr("Discard"));
    program.buffer[100] ^= 1;
    EXPECT_TRUE(program.buffer == read && Status() == "EEProm Image Load Canceled");
    user.onBox = [&](const Box& box) { outside.steps = {box.details}; };
    EXPECT_EQ(restore(TargetDevice::Primary, {Answer::No}),
              "V E R I F Y|Restore 2 bytes of the Primary EEProm?\r\n2 bytes differ: 1 setting, 1 "
              "other byte in 1 place.");
    EXPECT_THAT(outside.steps[0], HasSubstr("\nAddress 2363 (480i CR02): "));
    EXPECT_EQ(Status(), "EEProm Write Cancelled");
    EXPECT_EQ(program.cells.Caption(*CellAtAddress(2363)), std::to_string(image[2363]));
    EXPECT_TRUE(program.buffer == image && primary == before);
    restore(TargetDevice::Primary, {Answer::Yes});
    EXPECT_TRUE(IsWritten() && program.buffer == image);
    EXPECT_EQ(Status(), "EEP Verified OK; 2 Bytes Written");
    const MemoryBuffer kept = *LoadOwnImage(program.backups.LastKept());
    EXPECT_TRUE(std::ranges::equal(before, std::span(kept).first(kEepromBytes)));
    program.undo.Undo();
    EXPECT_THAT(Status(), HasSubstr("Undone: Load of Tarnwell-20261117-212101-Pri.mot"));

    folder.Write("backups/Tarnwell-20261118-000000-Pri.mot", std::string(kImageHeader) + "\n");
    EXPECT_THAT(restore(TargetDevice::Primary, {Answer::Yes}),
                HasSubstr("holds only part of the file."));
    EXPECT_EQ(Status(), "EEProm Image Load Cancelled");
}

TEST(WriteDifferencesAnew, KeepsWhatTheDeviceHeldWhateverTheFirstReadingSaid) {
    for (const auto& [first, count] : {std::pair(90, 1), {101, 16}, {101, 17}, {5000, 1}}) {
        Session run;
        for (int address = 100; address < 120; ++address)
            run.Change(address);
        // The last bit of each is misread, behind the bytes of the bus check.
        for (int address = first; address < first + count; ++address)
            run.television.Inject({.kind = SdaMisread,
                                   .begins = {WireEvent::Byte, 6 + std::uint64_t(address)},
                                   .accesses = 2});
        run.program.buffer[90] ^= 2;
        if (first == 5000)
            run.program.buffer[5000] ^= 1;  // seems to be there already
        const std::uint64_t cycles = run.Cycles();
        run.Write();
        const bool noisy = count > 16;
        EXPECT_EQ(run.IsWritten(), !noisy);
        EXPECT_EQ(run.primary == run.before, noisy);
        const auto kept = LoadOwnImage(run.program.backups.LastKept());
        ASSERT_EQ(kept.has_value(), !noisy);
        if (kept) {
            EXPECT_TRUE(std::ranges::equal(run.before, std::span(*kept).first(kEepromBytes)));
            EXPECT_EQ(run.Cycles() - cycles, first == 5000 ? 3U : 2U);
            continue;
        }
        EXPECT_EQ(run.user.TakeBoxes().back(),
                  "E R R O R|The lines are too noisy: 17 bytes did not read the same twice.");
        EXPECT_EQ(run.Status(), "EEProm Write Cancelled");
    }
}

TEST_F(WriteDifferences, DoesNotBelieveTwoReadingsThatLostTheDeviceAlike) {
    Change(8000);
    for (const std::uint64_t reading : {1U, 2U})
        television.Inject({.kind = LostClocks, .begins = {WireEvent::Read, reading}});
    Write();
    EXPECT_THAT(user.TakeBoxes(), ElementsAre(HasSubstr("bytes did not read the same twice.")));
    EXPECT_EQ(primary, before);
    EXPECT_EQ(program.backups.LastKept(), "");
}

TEST(WriteDifferencesAnew, SaysNothingWrongOnNoisyLines) {
    int written = 0;
    for (unsigned seed = 0; seed < 12; ++seed) {
        Session run;
        run.random.seed(seed);
        for (int change = 0; change < 9; ++change)
            run.Change(static_cast<int>(run.random() % kEepromBytes));
        std::geometric_distribution<std::uint64_t> gap(seed % 3 == 0 ? 1e-6 : 1e-5);
        constexpr std::array kKinds{SdaMisread,   SdaMisread,  SdaMisread,   SdaStuckLow,
                                    SdaStuckHigh, SclStuckLow, SclStuckHigh, LinesJoined};
        for (std::uint64_t access = gap(run.random); access < 1'500'000; access += gap(run.random))
            run.television.Inject({.kind = kKinds[run.random() % kKinds.size()],
                                   .begins = {WireEvent::Access, access + 1},
                                   .accesses = 1});
        run.Write();
        if (run.Status().starts_with("EEP Verified OK")) {
            ++written;
            EXPECT_TRUE(run.IsWritten()) << seed;
        }
        for (const KeptImage& image : run.program.backups.All()) {
            const auto kept = LoadOwnImage(image.path);
            EXPECT_TRUE(kept && std::ranges::equal(run.before, std::span(*kept).first(8192)));
        }
    }
    EXPECT_GE(written, 4) << "noise that spares nobody proves nothing";
}

TEST_F(WriteDifferences, GoesOnByteByByteBehindThePageWriteThatWrappedAndTellsWhatIsConfirmed) {
    for (const int address : {44, 45, 79, 80, 128, 159})
        Change(address);
    television.Inject({.kind = ShortPages});
    const std::uint64_t cycles = Cycles();
    Write();
    EXPECT_EQ(Status(), "EEP Verified OK; 6 Bytes Written");
    EXPECT_EQ(Cycles() - cycles, 6U) << "two pages, the bytes 64 and 80, 128 and 159";
    // Where the bus works again, the device is asked what it holds.
    for (const auto& [accesses, changed, told] :
         {std::tuple(0U, std::vector{3, 20, 80}, "EEProm: 2 of 3."),
          {30, {3, 40, 41, 80}, "EEProm: 3 of 4."}}) {
        television.ClearFaults();
        Write();
        for (const int address : changed)
            Change(address);
        television.Inject(
            {.kind = SdaStuckLow, .begins = {WireEvent::WriteCycle, 2}, .accesses = accesses});
        Write();
        EXPECT_THAT(user.TakeBoxes().back(), HasSubstr(told));
    }
}

TEST_F(WriteDifferences, ListsWhatDoesNotVerifyAfterTheSecondTry) {
    Change(2363);
    television.Inject({.kind = SdaMisread, .begins = {WireEvent::Byte, 8350}, .accesses = 2});
    const std::uint64_t cycles = Cycles();
    Write();
    EXPECT_EQ(Status(), "EEP Verified OK; 1 Byte Written");
    EXPECT_EQ(Cycles() - cycles, 1U) << "a bit that is misread is not written again";
    Change(2363);
    television.Inject({.kind = WrongWrite, .mask = 0x01});
    user.onBox = [&](const Box&) { outside.steps.push_back(Status()); };
    Write();
    EXPECT_EQ(outside.steps.back(), "ERROR: EEP and Memory Buffer Values Do Not Match!");
    EXPECT_EQ(Status(), "");
    EXPECT_THAT(user.boxes.back().details, HasSubstr("Address 2363 (480i CR02): wrote "));
    EXPECT_THAT(user.TakeBoxes().back(), EndsWith("\r\nBytes confirmed on the EEProm: 0 of 1."));
}

TEST_F(WriteDifferences, AsksBeforeADoubtfulReadingIsUsed) {
    program.ToggleReadTwice();
    const MemoryBuffer buffer = program.buffer;
    const char* const twice = "W A R N I N G|1 byte did not read the same twice. Use the second";
    for (const auto& [fill, answer, asked] :
         {std::tuple(-1, Answer::No, std::string(twice)),
          {0xFF, Answer::No, "W A R N I N G|Every byte reads as FF. Use this reading?"},
          {0x00, Answer::No, "W A R N I N G|Every byte reads as 00. Use this reading?"},
          {-1, Answer::Yes, twice}}) {
        primary = before;
        primary[2363] = 5;
        if (fill >= 0)
            primary.fill(static_cast<std::uint8_t>(fill));
        else
            television.Inject({.kind = FlippedBit,
                               .begins = {WireEvent::Read, 2},
                               .address = 2363,
                               .mask = 0x02});
        user.answers = {answer};
        program.wholeDevice.ReadEntireEep();
        const Box question = user.boxes.back();
        EXPECT_THAT(user.TakeBoxes(), ElementsAre(StartsWith(asked)));
        EXPECT_EQ(question.details, fill < 0 ? "Address 2363 (480i CR02): read 5, then 7" : "");
        EXPECT_EQ(question.defaultButton, DefaultButton::No);
        EXPECT_EQ(Status(), answer == Answer::No ? "EEProm Read Cancelled"
                                                 : "Primary EEProm Data Read Into Memory");
        EXPECT_EQ(program.buffer == buffer, answer == Answer::No);
        television.ClearFaults();
    }
    EXPECT_EQ(program.buffer[2363], 7);
    primary.fill(0);
    primary[8191] = 1;
    program.wholeDevice.ReadEntireEep();
    EXPECT_EQ(program.buffer[8191], 1);
}

}  // namespace
}  // namespace tarnwell
