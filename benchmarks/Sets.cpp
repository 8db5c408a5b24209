// Rows: the records of sets.
#include "Rows.h"
#include "names/Destination.h"
#include "sets/HistoryFile.h"
#include "sets/Recognition.h"
#include "support/TemporaryFolder.h"

namespace tarnwell::bench {

namespace {

constexpr int kSetTimes = 10;
constexpr int kSets = 200;
constexpr int kEvents = 10'000;
constexpr int kNames = 10'000;

/// A search by name, by byte and by a part of a text.
void AddNames(Table& table, const TemporaryFolder& folder) {
    const NamesFile file = ManyNames(folder.Path("names.json"));
    NameBook book;
    if (!WriteNames(file))
        std::fprintf(stderr, "no names could be written\n");
    const double open = BestOf(kSetTimes, [&] { book.Open(NameLayer::User, file.path); });
    const Destinations from{book, TargetDevice::Primary, NumberMode::Decimal};
    const double search = BestOf(kSetTimes, [&] {
        if (!book.Find("name.9999") || !from.From("does 9999") ||
            book.At(TargetDevice::Secondary, 3001).empty())
            std::fprintf(stderr, "a name was not found\n");
    });
    table.Add("10,000 names: open and search", open + search, 100e-3, "100 ms");
}

std::string EventLine() {
    HistoryEvent event{.time = "2026-11-24T19:52:30+01:00",
                       .kind = EventKind::Write,
                       .command = "Write Settings to EEP",
                       .port = "LPT1",
                       .version = "2.4.1",
                       .written = 3};
    for (const int address : {2085, 2363, 2364})
        event.bytes.push_back({address, 6, 9, 9});
    return JsonOf(event);
}

}  // namespace

std::string LongHistory() {
    std::string lines;
    for (int number = 0; number < kEvents; ++number)
        lines += EventLine() + "\n";
    return lines;
}

NamesFile ManyNames(const std::string& path) {
    NamesFile file{.path = path};
    for (int number = 0; number < kNames; ++number) {
        NamedValue named{.name = "Name." + std::to_string(number)};
        named.device = number < kNames / 2 ? TargetDevice::Secondary : TargetDevice::Primary;
        named.address = 3000 + number % (kNames / 2);
        named.text = "what it does, " + std::to_string(number);
        file.names.push_back(std::make_shared<const NamedValue>(named));
    }
    return file;
}

void AddSets(Table& table) {
    const TemporaryFolder folder;
    const SetStore store(folder.Path("sets"));
    MemoryBuffer image{};
    for (int number = 0; number < kSets; ++number) {
        std::fill_n(image.begin() + number * 40, 40, 1);
        const auto set = store.Create("Set " + std::to_string(number));
        if (!set || !PutReadyImage(*set, TargetDevice::Primary, image))
            std::fprintf(stderr, "no set could be made\n");
    }
    const double recognise = LeastProcessorSeconds(
        kSetTimes, [&] { Recognise(store.All().sets, TargetDevice::Primary, image); });
    table.Add("recognising a set among 200, processor", recognise, 20e-3, "20 ms");

    const std::string path = folder.Path("history.jsonl");
    const double append =
        BestOf(kSetTimes, [&] { static_cast<void>(AppendLine(path, EventLine())); });
    folder.Write("history.jsonl", LongHistory());
    table.Add("history of 10,000 events: open", BestOf(kSetTimes, [&] { ReadHistory(path); }),
              200e-3, "200 ms");
    table.Add("event of a write, safe on the disk", append, 5e-3, "5 ms");
    AddNames(table, folder);
}

}  // namespace tarnwell::bench
