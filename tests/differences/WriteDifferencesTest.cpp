// Writing only what differs: its pages, its questions, what it survives and what it says then.
#include <random>

#include "differences/DifferenceCount.h"
#include "support/FakeI2c.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using enum FaultKind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(DifferencesText, CountsBytesSettingsAndPlaces) {
    struct Row {
        std::map<int, int> bits;  ///< that differ, by address
        const char* text;
    };
    const Row rows[] = {
        {{}, "No differences"},
        {{{2363, 1}}, "1 byte differs: 1 setting"},
        {{{5, 1}, {6, 1}, {7, 1}}, "3 bytes differ: 3 bytes in 1 place"},
        {{{2085, 0x05}, {2228, 0x0F}}, "2 bytes differ: 1 setting, 2 other bytes in 2 places"},
        {{{2228, 0x10}, {8190, 1}, {8191, 1}},
         "3 bytes differ: 1 setting, 2 other bytes in 1 place"},
    };
    for (const Row& row : rows) {
        MemoryBuffer left{};
        for (const auto& [address, bits] : row.bits)
            left[static_cast<std::size_t>(address)] = static_cast<std::uint8_t>(bits);
        EXPECT_EQ(DifferencesText(CountDifferences(TargetDevice::Primary, left, {})), row.text);
    }
    MemoryBuffer left{};
    left[2363] = 1;
    EXPECT_EQ(DifferencesText(CountDifferences(TargetDevice::Secondary, left, {})),
              "1 byte differs: 1 byte in 1 place");
}

/// A program that has read a device of random bytes, and a buffer that differs from it.
struct Session : FakeKernel, TestProgram {
    EepromImage& primary = television.Memory(Chip::Primary);
    std::mt19937 random{1};
    EepromImage before{};

    explicit Session(bool overKernel = false)
        : TestProgram({.writeCycle = BusTime(20'000)}, kernel) {
        for (std::uint8_t& byte : primary)
            byte = static_cast<std::uint8_t>(random());
        system.devices.at(0x50).memory.assign(primary.begin(), primary.end());
        program.state.i2cBus = overKernel ? "Test adapter|" : "";
        program.wholeDevice.ReadEntireEep();
        before = primary;
    }
    void Change(int address) { program.buffer[static_cast<std::size_t>(address)] ^= 0x5A; }
    void Write(Answer answer = Answer::Yes) {
        user.answers = {answer};
        program.writeDifferences.WriteDifferencesToEep();
        user.answers.clear();
    }
    bool IsOverKernel() const { return !program.state.i2cBus.empty(); }
    const FakeEeprom& OfKernel() const { return system.devices.at(0x50); }
    std::span<const std::uint8_t> Held() const {
        return IsOverKernel() ? std::span<const std::uint8_t>(OfKernel().memory) : primary;
    }
    bool IsWritten() const {
        return std::ranges::equal(Held(), std::span(program.buffer).first(kEepromBytes));
    }
    int PagesThatDiffer() const {
        int pages = 0;
        for (std::size_t page = 0; page < kEepromBytes; page += kPageBytes)
            pages += std::ranges::equal(Held().subspan(page, kPageBytes),
                                        std::span(program.buffer).subspan(page, kPageBytes))
                         ? 0
                         : 1;
        return pages;
    }
    std::uint64_t Cycles() const {
        return IsOverKernel() ? OfKernel().cycles : television.Count(WireEvent::WriteCycle);
    }
};

TEST(WriteDifferences, AsksAndWritesEachPageOnceFromItsFirstToItsLastDifference) {
    Session run;
    run.Write();
    EXPECT_THAT(run.user.TakeBoxes(),
                ElementsAre("I N F O|The EEProm already holds the memory buffer."));
    EXPECT_EQ(run.Status(), "");
    for (const int address : {2085, 2363, 64, 95, 96})
        run.Change(address);
    run.Write(Answer::No);
    EXPECT_EQ(run.Status(), "EEProm Write Cancelled");
    EXPECT_EQ(run.primary, run.before);
    const Box question = run.user.boxes.front();
    EXPECT_THAT(run.user.TakeBoxes(),
                ElementsAre("V E R I F Y|Write 5 bytes to the Primary EEProm?\r\n5 bytes differ: 2 "
                            "settings, 4 other bytes in 3 places."));
    EXPECT_EQ(question.defaultButton, DefaultButton::No);
    EXPECT_THAT(question.details, ::testing::StartsWith("Address 64: "));
    EXPECT_THAT(question.details, HasSubstr("\nAddress 2363 (480i CR02): "));
    EXPECT_THAT(question.details,
                HasSubstr("Address 2085 (Global TINT): " + std::to_string(run.before[2085] >> 2) +
                          " becomes " + std::to_string(run.program.buffer[2085] >> 2) +
                          "\nAddress 2085: "));

    run.program.cells.SetMark(7, Mark::Save);
    const std::uint64_t cycles = run.Cycles();
    run.television.Record();
    run.Write();
    EXPECT_EQ(run.Status(), "EEP Verified OK; 5 Bytes Written");
    EXPECT_TRUE(run.IsWritten());
    EXPECT_EQ(run.Cycles() - cycles, 4U);
    const std::string events = ToText(run.television.Events());
    EXPECT_THAT(events, HasSubstr("A0+ 00+ 60+ "));
    EXPECT_TRUE(run.program.state.EepRead);
    EXPECT_EQ(run.program.cells.MarkOf(7), Mark::Save);
    run.Change(7);
    run.Write();
    EXPECT_EQ(run.Status(), "EEP Verified OK; 1 Byte Written");

    TestProgram fresh;
    fresh.program.writeDifferences.WriteDifferencesToEep();
    EXPECT_THAT(fresh.user.TakeBoxes(), ElementsAre("E R R O R|Must First Read the EEPROM! "));
}

TEST(WriteDifferences, LeavesBufferAndDeviceEqualWhateverTheyHeldOnBothBuses) {
    for (const bool overKernel : {false, true}) {
        Session run(overKernel);
        for (int round = 0; round < 12; ++round) {
            const int changes = 1 << run.random() % 14;
            for (int change = 0; change < changes; ++change)
                run.program.buffer[run.random() % kEepromBytes] =
                    static_cast<std::uint8_t>(run.random());
            const auto pages = static_cast<std::uint64_t>(run.PagesThatDiffer());
            const std::uint64_t cycles = run.Cycles();
            run.Write();
            ASSERT_TRUE(run.IsWritten()) << round;
            ASSERT_EQ(run.Cycles() - cycles, pages) << round;
        }
    }
}

TEST(WriteDifferences, TellsWhatIsConfirmedWhenABusWorksAgain) {
    Session run;
    for (const int address : {3, 40, 41, 80})
        run.Change(address);
    run.television.Inject(
        {.kind = SdaStuckLow, .begins = {WireEvent::WriteCycle, 2}, .accesses = 30});
    run.Write();
    EXPECT_THAT(run.user.TakeBoxes().back(),
                ::testing::EndsWith("\r\nBytes confirmed on the EEProm: 3 of 4."));
}

TEST(WriteDifferences, GoesOnByteByByteBehindThePageWriteThatWrapped) {
    Session run;
    for (const int address : {44, 45, 79, 80, 128, 159})
        run.Change(address);
    run.television.Inject({.kind = ShortPages});
    const std::uint64_t cycles = run.Cycles();
    run.Write();
    EXPECT_EQ(run.Status(), "EEP Verified OK; 6 Bytes Written");
    EXPECT_EQ(run.Cycles() - cycles, 6U) << "two pages, the bytes 64 and 80, 128 and 159";
    for (const int address : {3, 20, 80})
        run.Change(address);
    run.television.ClearFaults();
    run.television.Inject({.kind = SdaStuckLow, .begins = {WireEvent::WriteCycle, 2}});
    run.Write();
    EXPECT_THAT(run.user.TakeBoxes().back(), HasSubstr("confirmed on the EEProm: 2 of 3."));
}

TEST(WriteDifferences, ListsWhatDoesNotVerifyAfterTheSecondTry) {
    Session run;
    run.Change(2363);
    run.television.Inject({.kind = WrongWrite, .mask = 0x01});
    run.user.onBox = [&](const Box&) { run.outside.steps.push_back(run.Status()); };
    run.Write();
    EXPECT_EQ(run.outside.steps.back(), "ERROR: EEP and Memory Buffer Values Do Not Match!");
    EXPECT_EQ(run.Status(), "");
    EXPECT_EQ(run.user.beeps, 1);
    EXPECT_THAT(run.user.boxes.back().details, HasSubstr("Address 2363 (480i CR02): wrote "));
    EXPECT_THAT(run.user.TakeBoxes().back(),
                ::testing::EndsWith("\r\nBytes confirmed on the EEProm: 0 of 1."));
}

TEST(DeviceReader, AsksBeforeADoubtfulReadingIsUsed) {
    Session run;
    for (const char* times : {"Twice", "Once", "Twice"}) {
        run.program.ToggleReadTwice();
        EXPECT_EQ(run.Status(), std::string("Whole EEProms Are Read ") + times);
    }
    const MemoryBuffer buffer = run.program.buffer;
    const auto read = [&](std::initializer_list<Answer> answers) {
        run.user.answers = answers;
        run.program.wholeDevice.ReadEntireEep();
        return run.user.TakeBoxes();
    };
    run.primary[2363] = 5;
    const Fault flips{
        .kind = FlippedBit, .begins = {WireEvent::Read, 2}, .address = 2363, .mask = 0x02};
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        run.television.ClearFaults();
        run.television.Inject(flips);
        run.user.onBox = [&](const Box& box) {
            EXPECT_EQ(box.details, "Address 2363 (480i CR02): read 5, then 7");
            EXPECT_EQ(box.defaultButton, DefaultButton::No);
        };
        EXPECT_THAT(read({answer}), ElementsAre("W A R N I N G|1 byte did not read the same twice. "
                                                "Use the second reading?"));
        EXPECT_EQ(run.Status(), answer == Answer::No ? "EEProm Read Cancelled"
                                                     : "Primary EEProm Data Read Into Memory");
        EXPECT_EQ(run.program.buffer == buffer, answer == Answer::No);
    }
    EXPECT_EQ(run.program.buffer[2363], 7);
    run.television.ClearFaults();
    run.user.onBox = {};
    for (const auto& [value, name] : {std::pair{0xFF, "FF"}, {0x00, "00"}}) {
        run.primary.fill(static_cast<std::uint8_t>(value));
        EXPECT_THAT(read({Answer::No}),
                    ElementsAre(std::string("W A R N I N G|Every byte reads as ") + name +
                                ". Use this reading?"));
        EXPECT_EQ(run.Status(), "EEProm Read Cancelled");
        run.primary[8191] = 1;
        EXPECT_THAT(read({}), ::testing::IsEmpty());
    }
}

}  // namespace
}  // namespace tarnwell
