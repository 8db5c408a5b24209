#include <gmock/gmock.h>

#include "archive/ImageRecords.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

/// A set that was read; one of its settings was edited and waits, and one byte is pending.
struct Bench : TestProgram {
    Bench() : TestProgram({.writeCycle = BusTime(0)}) {
        program.wholeDevice.ReadEntireEep();
        Wait(0, 7);
        program.pending.AddPendingWrite({16, {0}, {90}});
        user.onBox = [this](const Box& box) {
            const bool isDoubt = box.text.ends_with(kAllTheSame);
            (isDoubt ? doubts : questions).push_back(box);
            EXPECT_TRUE(!isDoubt || box.defaultButton == DefaultButton::No);
        };
    }
    void Wait(int cell, std::uint8_t value) {
        program.cells.ShowValue(cell, value);
        program.cells.SetMark(cell, Mark::Save);
    }
    void Load(const std::string& records, const std::string& name = "half.mot") {
        user.answers = {Answer::Yes};
        folder.Write(name, std::string(kImageHeader) + "\r\n" + records);
        program.imageArchive.LoadImageFile(folder.Path(name));
        doubts.clear(), questions.clear();
    }
    /// The rows of an archive of the buffer, which then holds what the device does.
    void WriteRows() {
        folder.Write("a.mot", ArchiveText(ImageRecords(program.buffer)));
        std::ranges::copy(television.Memory(Chip::Primary), program.buffer.begin());
        program.compare.Choose(Side::Left, Source::Primary);
        program.compare.ChooseFile(Side::Right, Source::ImageArchive, folder.Path("a.mot"));
        program.compare.Write(program.compare.Rows());
    }
    std::vector<Box> doubts, questions;
};

struct Doubt {
    std::string_view what;   ///< of what is said, one line
    std::string_view where;  ///< by the first letters of the commands below
    void (*prepare)(Bench&) = [](Bench&) {};
};
constexpr std::string_view kOutOfRange = "1 value lies outside its setting's range: 480i G-YR";
constexpr std::string_view kOther =
    "The memory buffer was read from the Secondary EEProm; the target is the Primary.";

const Doubt kDoubts[] = {
    {"The memory buffer holds no image: nothing was read or loaded.", "i",
     [](Bench& bench) { bench.program.origin = {}; }},
    {kOther, "id", [](Bench& bench) { bench.program.origin.device = TargetDevice::Secondary; }},
    {kOther, "id",
     [](Bench& bench) { bench.Load("S9030000FC\r\n", "Tarnwell-20261124-195230-Sec.mot"); }},
    {"The memory buffer holds only part of the file half.mot: bytes 18 to 8191 are not from it.",
     "id", [](Bench& bench) { bench.Load("S10400113BAF\r\nS10400053BBB\r\n"); }},
    {"1 value on the settings pages is not in the memory buffer and will not be written.", "id"},
    {"1 pending write is not in the memory buffer and will not be written.", "id"},
    {kOutOfRange, "idr", [](Bench& bench) { PutValue(bench.program.buffer, 4, 16); }},
    {kOutOfRange, "s", [](Bench& bench) { bench.Wait(4, 16); }},
    {kOutOfRange, "p",
     [](Bench& bench) {
         bench.program.pending.AddPendingWrite({Cell(4).address, {0}, {16}});
     }},
    {"This device was not read in this run: no backup of it is kept.", "if",
     [](Bench& bench) { bench.program.state.targetDevice = TargetDevice::Secondary; }},
    {"It does not look like this set: 1,025 of 8,192 bytes differ from what was last read of it.",
     "i",
     [](Bench& bench) {
         for (std::size_t address = 3000; address < 4024; ++address)
             bench.program.buffer[address] ^= 1;
     }},
};

TEST(WriteAdvice, SaysWhatDoesNotFitAndWritesNothingAfterEnter) {
    using Command = void (*)(Bench&);
    const std::pair<char, Command> commands[] = {
        {'i', [](Bench& bench) { bench.program.wholeDevice.WriteEntireEep(); }},
        {'d', [](Bench& bench) { bench.program.writeDifferences.WriteDifferencesToEep(); }},
        {'r', [](Bench& bench) { bench.WriteRows(); }},
        {'f', [](Bench& bench) { bench.program.wholeDevice.FillEntireEep(); }},
        {'s', [](Bench& bench) { bench.program.settings.WriteSettingsToEep(); }},
        {'p', [](Bench& bench) { bench.program.pending.WritePending(); }}};
    for (const auto& [what, where, prepare] : kDoubts) {
        for (const auto& [letter, run] : commands) {
            const bool applies = where.find(letter) != std::string_view::npos;
            if (letter == 'f' && !applies)
                continue;  // is not asked about
            Bench bench;
            bench.program.buffer[5000] ^= 1;
            prepare(bench);
            bench.user.answers = {Answer::No};
            bench.user.texts = {"5"};
            run(bench);
            std::string said;
            for (const Box& box : bench.doubts)
                said += box.text;
            EXPECT_EQ(said.find(what) != std::string::npos, applies) << what << "|" << said;
            EXPECT_EQ(bench.television.Count(WireEvent::WriteCycle), 0U) << what;
            EXPECT_TRUE(!applies || bench.Status() == "EEProm Write Cancelled");
        }
    }
}

TEST(WriteAdvice, ListsWhatIsGoingToHappen) {
    Bench bench;
    bench.television.Memory(Chip::Primary)[2363] = 3;
    for (const bool isRead : {true, false}) {
        isRead ? bench.program.wholeDevice.ReadEntireEep() : bench.program.bus.Changed();
        bench.Wait(0, 7);
        bench.questions.clear();
        bench.user.answers = {Answer::No};
        bench.program.settings.WriteSettingsToEep();
        EXPECT_EQ(bench.questions.at(0).details, std::string("Address 2363 (480i CR02): ") +
                                                     (isRead ? "3" : "not read") + " becomes 7");
    }
    EXPECT_THAT(bench.questions.at(0).text, EndsWith("Primary EEProm on LPT1: 1 setting"));
}

TEST(WriteAdvice, TheBufferTellsWhereItComesFrom) {
    Bench bench;
    Program& program = bench.program;
    const auto text = [&] {
        return program.origin.ShortText(program.buffer) + "|" + program.origin.Text(program.buffer);
    };
    EXPECT_EQ(text(), "Primary EEPROM|Read from the primary EEPROM, 9:21:01 PM");
    program.settings.MergeSettingsWithBuffer();
    EXPECT_EQ(text(),
              "Primary EEPROM, 1 changed|Read from the primary EEPROM, 9:21:01 PM; 1 byte changed "
              "since: settings merged");
    bench.Load("S10400113BAF\r\nS9030000FC\r\n", "tv.mot");
    EXPECT_EQ(text(), "tv.mot|tv.mot, whole");
    program.undo.Undo();
    EXPECT_THAT(text(), HasSubstr("Primary EEPROM, 1 changed|"));
    EXPECT_EQ(BufferOrigin().Text(MemoryBuffer{}), "Nothing read or loaded");
}

}  // namespace
}  // namespace tarnwell
