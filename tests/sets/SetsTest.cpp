// The records of sets: their folders, their histories, what goes into which, and what is lost when
// a program is killed.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "sets/Replay.h"
#include "support/TestProgram.h"

/// Calls on the disk in the place of the C library's: the process dies at the next of them when
/// none is left, behind half of a write.
static int callsLeft = -1;
static void (*lastWill)() = [] {};
static bool IsLast() {
    if (callsLeft < 0 || callsLeft-- > 0)
        return false;
    lastWill();
    return true;
}
extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    const bool last = IsLast();
    const auto written = syscall(SYS_write, descriptor, bytes, last ? count / 2 : count);
    return last ? _exit(1), 0 : written;
}
#define DYING(result, name, parameters, call) \
    extern "C" result name parameters {       \
        if (IsLast())                         \
            _exit(1);                         \
        return static_cast<result>(call);     \
    }
static iovec Part(const void* bytes, std::size_t count) {
    return {const_cast<void*>(bytes), count};
}
DYING(int, open, (const char* path, int flags, ...), openat(AT_FDCWD, path, flags, 0600))
DYING(ssize_t, pread, (int file, void* bytes, std::size_t count, off_t at),
      preadv(file, &static_cast<const iovec&>(Part(bytes, count)), 1, at))
DYING(ssize_t, pwrite, (int file, const void* bytes, std::size_t count, off_t at),
      pwritev(file, &static_cast<const iovec&>(Part(bytes, count)), 1, at))
DYING(int, rename, (const char* from, const char* to) noexcept,
      renameat(AT_FDCWD, from, AT_FDCWD, to))
DYING(int, flock, (int file, int operation) noexcept, syscall(SYS_flock, file, operation))
DYING(int, ftruncate, (int file, off_t size) noexcept, syscall(SYS_ftruncate, file, size))
DYING(int, fsync, (int file), syscall(SYS_fsync, file))

namespace tarnwell {
namespace {

namespace fs = std::filesystem;

/// A bench with sets to choose from; whatever does not fit is written all the same.
struct Bench : TestProgram {
    EepromImage& primary = television.Memory(Chip::Primary);

    explicit Bench(const std::string& set = {}) : TestProgram({.writeCycle = BusTime(0)}) {
        user.ignoresDoubts = true;
        if (!set.empty())
            program.ChooseSet(program.sets.Create(set));
    }
    SetHistory History(const std::string& set) const {
        return ReadHistory(folder.Path("sets/" + set + "/history.jsonl"));
    }
    void Read() { program.wholeDevice.ReadEntireEep(); }
    void WriteByte(int address, int value) {
        program.pending.AddPendingWrite({address, {0}, {static_cast<std::uint8_t>(value)}});
        WillAnswer({Answer::Yes});
        program.pending.WritePending();
        program.pending.ClearPendingWrites();
    }
    void Choose(const std::string& set) { program.ChooseSet(program.sets.Find(set)); }
};

std::string Kinds(const SetHistory& history) {
    std::string kinds;
    for (const HistoryEvent& event : history.events)
        kinds += (event.kind == EventKind::Read ? "read " : event.command + " ") +
                 std::to_string(event.bytes.size()) + ", ";
    return kinds;
}

TEST(SetFolders, KeepWhatOthersWroteAndNameWhatIsDamaged) {
    const TemporaryFolder folder;
    const SetStore store(folder.Path("sets"));
    const auto made = store.Create("../TV: 1");
    ASSERT_TRUE(made && store.Create("b"));
    EXPECT_EQ(made->folder, folder.Path("sets/-.-TV- 1"));
    folder.Write("sets/-.-TV- 1/set.json",
                 R"({"format":1,"name":"A","owner":"me","lastRead":{"primary":"2026"},)"
                 R"("unknown":{"secondary":[3,9000]}})");
    for (const char* damaged :
         {"", "{", R"({"format":2,"name":"x"})", R"({"format":1,"name":3})"}) {
        folder.Write("sets/c/set.json", damaged);
        EXPECT_THAT(store.All().damaged, ElementsAre(folder.Path("sets/c/set.json"))) << damaged;
    }
    folder.Write("sets/d/other", "");
    auto set = store.Find("a");
    ASSERT_TRUE(set && store.All().sets.size() == 2);
    EXPECT_THAT(set->unknown[1], ElementsAre(3));
    set->notes = "two\nlines";
    ASSERT_TRUE(SetStore::SaveTexts(*set));
    EXPECT_EQ(store.Find("A")->notes, "two\nlines");
    EXPECT_EQ(store.Find("A")->lastRead[0], "2026");
    EXPECT_THAT(folder.Read("sets/-.-TV- 1/set.json"), HasSubstr(R"("owner": "me")"));
    set->folder = folder.Path("sets/c");
    EXPECT_FALSE(SetStore::SaveTexts(*set)) << "a newer program's";
    EXPECT_EQ(DayText("2026-03-12T", "2026-11"), "12 March");
    EXPECT_EQ(DayText("2025-12-01T", "2026-11"), "1 December 2025");
}

TEST(SetHistories, HaveALineForEachEventAndSkipWhatIsNone) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("h");
    HistoryEvent event{.number = 3,
                       .time = "2026-11-17T21:21:01+01:00",
                       .kind = EventKind::Restore,
                       .command = "restore",
                       .image = "\xFF.mot",
                       .device = TargetDevice::Primary,
                       .port = "LPT1",
                       .version = "2",
                       .end = WriteEnd::Interrupted,
                       .written = 2,
                       .crc = {},
                       .bytes = {{2363, 6, 9, std::nullopt}, {8191, std::nullopt, 0, 255}}};
    folder.Write("h", JsonOf(event, NameBook().NamesOn(TargetDevice::Primary)) + "\n{\"time\":");
    ASSERT_TRUE(AppendLine(path, JsonOf(event)));
    SetHistory history = ReadHistory(path);
    EXPECT_EQ(history.skipped, 1);
    event.image = "\xEF\xBF\xBD.mot";
    ASSERT_THAT(history.events, SizeIs(2));
    EXPECT_EQ(history.events.back(), event);
    EXPECT_THAT(folder.Read("h"),
                HasSubstr(R"("setting":"CR02.480i","from":6,"to":9,"held":null)"));
    for (const auto& [from, to] : {std::pair("8191", "8192"),
                                   {"255", "256"},
                                   {"255", "\"\""},
                                   {"restore\",\"c", "x\",\"c"},
                                   {"written", "wrote"}}) {
        std::string line = JsonOf(event);
        line.replace(line.rfind(from), std::string_view(from).size(), to);
        EXPECT_FALSE(EventOf(line)) << line;
    }
    const FullDisk full(static_cast<rlim_t>(fs::file_size(path) + 9));
    EXPECT_FALSE(AppendLine(path, JsonOf(event)));
    EXPECT_EQ(ReadHistory(path).skipped, 1) << "no part is left";
}

TEST(SetHistories, HoldEachLineOfProgramsThatAppendAtOnce) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("h");
    for (int writer = 0; writer < 4; ++writer) {
        if (fork() != 0)
            continue;
        for (int line = 0; line < 40; ++line)
            if (!AppendLine(path, JsonOf({.command = std::string(3000, 'a' + char(writer))})))
                _exit(1);
        _exit(0);
    }
    for (int status = 0; wait(&status) > 0;)
        EXPECT_EQ(status, 0);
    EXPECT_THAT(ReadHistory(path).events, SizeIs(160));
    EXPECT_EQ(ReadHistory(path).skipped, 0);
}

TEST(SetRecords, HoldAllWholeLinesWhereverTheProgramIsKilled) {
    int kills = 0;
    for (bool killed = true; killed; ++kills) {
        Bench bench("Kitchen");
        bench.Read();
        bench.WriteByte(5, 90);
        const auto before = bench.History("Kitchen").events;
        bench.primary[7] ^= 1;
        static auto* const held = static_cast<std::uint8_t*>(
            mmap(nullptr, 1, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
        static const std::uint8_t* byte = nullptr;
        byte = &bench.primary[5];
        lastWill = [] { *held = *byte; };
        if (fork() == 0) {
            callsLeft = kills;
            bench.Read();
            bench.WriteByte(5, 91);
            lastWill();
            _exit(0);
        }
        int status = 0;
        wait(&status);
        bench.primary[5] = *held;
        killed = status != 0;
        bench.Choose("Kitchen");
        bench.Read();
        bench.WriteByte(5, 92);
        const SetHistory history = bench.History("Kitchen");
        ASSERT_GE(history.events.size(), before.size() + 2) << kills;
        EXPECT_TRUE(std::equal(before.begin(), before.end(), history.events.begin())) << kills;
        EXPECT_LE(history.skipped, killed ? 1 : 0) << kills;
        const auto bytes = ImageOf(
            BytesBefore(*bench.program.record.Chosen(), TargetDevice::Primary, history, 99));
        EXPECT_TRUE(bytes && std::equal(bench.primary.begin(), bench.primary.end(), bytes->begin()))
            << kills;
    }
    EXPECT_GT(kills, 30);
}

TEST(SetRecords, TellOnceWhatCannotBeRecordedAndThenDoWithout) {
    Bench bench("Kitchen");
    bench.user.ignoresDoubts = false;
    fs::create_directory(bench.folder.Path("sets/Kitchen/history.jsonl"));
    bench.program.pending.AddPendingWrite({5, {0}, {90}});
    bench.WillAnswer({Answer::Yes, Answer::No, Answer::Yes, Answer::Yes, Answer::Yes});
    bench.program.pending.WritePending();
    EXPECT_EQ(bench.Status(), "EEProm Write Cancelled");
    EXPECT_THAT(bench.user.boxes.back().text, HasSubstr("sets/Kitchen/history.jsonl\r\n\r\nWrite"));
    bench.program.pending.WritePending();
    EXPECT_EQ(bench.primary[5], 90);
    bench.WriteByte(5, 91);
    EXPECT_THAT(bench.user.boxes, SizeIs(5)) << "not asked again";

    Bench late("Kitchen");
    late.user.onBox = [&](const Box& box) {
        if (box.style == BoxStyle::YesNoQuestion)
            static_cast<void>(CanAppend(late.folder.Path("sets/Kitchen/history.jsonl")));
    };
    late.program.pending.AddPendingWrite({5, {0}, {90}});
    late.WillAnswer({Answer::Yes});
    const FullDisk full(1);
    late.program.pending.WritePending();
    EXPECT_THAT(late.user.boxes.back().text, StartsWith("The write could not be put into"));
}

TEST(SetRecords, TellHowEachWriteEnded) {
    Bench bench("Kitchen");
    const auto last = [&] { return bench.History("Kitchen").events.back(); };
    bench.Read();
    EXPECT_THAT(last().image, StartsWith("Tarnwell-"));
    bench.primary[8] = 1;
    bench.Read();
    bench.Read();
    EXPECT_EQ(Kinds(bench.History("Kitchen")), "read 0, read 1, ");
    bench.WriteByte(2363, 77);
    EXPECT_EQ(last().end, WriteEnd::Verified);
    EXPECT_EQ(last().command, "Write Pending to EEP");
    EXPECT_EQ(last().written, 1);
    bench.television.Inject({.kind = FaultKind::LostWrite});
    bench.WriteByte(2363, 78);
    EXPECT_EQ(last().end, WriteEnd::NotVerified);
    EXPECT_THAT(last().bytes, ElementsAre(EventByte{2363, 77, 78, 77}));
    bench.television.ClearFaults();
    bench.user.onBox = [&](const Box&) {
        bench.television.Inject(
            {.kind = FaultKind::DeviceSilent, .begins = {WireEvent::WriteCycle, 0}});
    };
    bench.WriteByte(9, 1);
    EXPECT_EQ(last().end, WriteEnd::Failed);
    EXPECT_EQ(last().bytes.back().held, std::nullopt);
}

TEST(Recognition, NamesOnlyASetThatNoOtherComesNear) {
    const TemporaryFolder folder;
    const SetStore store(folder.Path("sets"));
    for (const auto& [name, bytes] : {std::pair("a", 0), {"b", 500}, {"c", 4000}}) {
        MemoryBuffer image{};
        std::fill_n(image.begin(), bytes, 1);
        ASSERT_TRUE(PutReadyImage(*store.Create(name), TargetDevice::Primary, image));
    }
    for (const auto& [bytes, name] : {std::pair(0, "a"),
                                      {100, "a"},
                                      {101, ""},
                                      {400, "b"},
                                      {666, "b"},
                                      {667, ""},
                                      {3591, "c"},
                                      {3590, ""}}) {
        MemoryBuffer image{};
        std::fill_n(image.begin(), bytes, 1);
        const auto found = Recognise(store.All().sets, TargetDevice::Primary, image);
        EXPECT_EQ(found ? found->set.name : "", name) << bytes;
        EXPECT_FALSE(Recognise(store.All().sets, TargetDevice::Secondary, image));
    }
}

TEST(SetRecords, HoldNothingOfAnotherSetOnTheBench) {
    Bench bench("Kitchen");
    const EepromImage kitchen = bench.primary;
    bench.Read();
    bench.WriteByte(5, 90);
    bench.primary.fill(0x33);
    bench.program.ChooseSet(bench.program.sets.Create("Workshop"));
    bench.WriteByte(6, 1);
    EXPECT_THAT(bench.History("Workshop").events.back().bytes,
                ElementsAre(EventByte{6, std::nullopt, 1, 1}))
        << "what the other one held is not its own";
    bench.Read();
    bench.primary = kitchen;
    bench.Read();
    EXPECT_EQ(Kinds(bench.History("Workshop")), "Write Pending to EEP 1, read 0, ");
    EXPECT_EQ(bench.program.record.LooksLike(TargetDevice::Primary)->set.name, "Kitchen");

    bench.user.ignoresDoubts = false;
    bench.program.pending.AddPendingWrite({7, {0}, {1}});
    bench.WillAnswer({Answer::No});
    bench.program.pending.WritePending();
    EXPECT_THAT(bench.user.boxes.back().text,
                StartsWith("The set on the bench looks like Kitchen, not like Workshop.\r\n"));
    bench.Choose("Kitchen");
    EXPECT_EQ(Kinds(bench.History("Kitchen")), "read 0, Write Pending to EEP 1, read 1, ");
    bench.WriteByte(7, 2);
    EXPECT_EQ(bench.History("Kitchen").events.back().bytes.front().from, kitchen[7]);

    bench.Choose("Workshop");
    bench.primary.fill(0x77);
    bench.Read();
    bench.program.pending.AddPendingWrite({7, {0}, {1}});
    bench.WillAnswer({Answer::No});
    bench.program.pending.WritePending();
    EXPECT_THAT(bench.user.boxes.back().text, StartsWith("The set on the bench does not look like "
                                                         "Workshop: 8,192 of 8,192 bytes differ."));
}

TEST(SetRecords, ReplayToWhatTheDeviceHoldsInAWalkOnTwoSets) {
    Bench bench;
    std::mt19937 random{20261126};
    const auto draw = [&](int choices) {
        return static_cast<int>(random() % static_cast<unsigned>(choices));
    };
    std::array<EepromImage, 2> images{};
    for (auto& byte : images[1])
        byte = static_cast<std::uint8_t>(draw(256));
    const std::array<std::string, 2> names{"A", "B"};
    for (const std::string& name : names)
        ASSERT_TRUE(bench.program.sets.Create(name));
    std::size_t on = 0;
    const auto bring = [&](std::size_t set) {
        images[on] = std::exchange(bench.primary, images[set]);
        on = set;
        bench.Choose(names[set]);
    };
    bench.primary = images[0];
    bring(0);
    int known = 0;
    for (int step = 0; step < 60; ++step) {
        bench.user.answers.assign(9, Answer::Yes);
        const SetHistory history = bench.History(names[on]);
        switch (step % 12 == 5 ? 0 : draw(6)) {
            case 0:
                bring(1 - on);
                break;
            case 1:
                bench.primary[static_cast<std::size_t>(draw(64))] ^= 1;
                bench.Read();
                break;
            case 2:
                bench.television.Inject(
                    {.kind = draw(2) == 0 ? FaultKind::LostWrite : FaultKind::WrongWrite});
                bench.WriteByte(draw(64), draw(256));
                break;
            case 3:
                bench.user.onBox = [&](const Box&) {
                    bench.television.Inject(
                        {.kind = FaultKind::DeviceSilent, .begins = {WireEvent::WriteCycle, 0}});
                };
                bench.WriteByte(draw(64), draw(256));
                bench.user.onBox = {};
                break;
            case 4: {
                const auto kept = bench.program.backups.All();
                if (!kept.empty())
                    bench.program.writeDifferences.Restore(kept[random() % kept.size()]);
                break;
            }
            default:
                if (history.events.empty())
                    break;
                const int event = history.events[random() % history.events.size()].number;
                bench.program.writeDifferences.TakeBack([&](MemoryBuffer held) {
                    for (const auto& [address, value] :
                         TakeBackOf(history, TargetDevice::Primary, {{event}}, Newer(draw(2)))
                             .values)
                        held[static_cast<std::size_t>(address)] = value;
                    return held;
                });
        }
        bench.television.ClearFaults();
        const auto bytes = BytesBefore(*bench.program.record.Chosen(), TargetDevice::Primary,
                                       bench.History(names[on]), 9999);
        for (std::size_t address = 0; address < kEepromBytes; ++address)
            ASSERT_TRUE(!bytes[address] || bytes[address] == bench.primary[address])
                << step << " " << address;
        known += ImageOf(bytes) ? 1 : 0;
    }
    EXPECT_GT(known, 30);
    EXPECT_GT(bench.History("A").events.size(), 15U);
}

}  // namespace
}  // namespace tarnwell
