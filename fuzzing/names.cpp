// Files of names: what is read fits, clashes with nothing, and what is written is read again as it
// was, with all that was not understood.
#include "Fuzzing.h"
#include "names/NameBook.h"

namespace tarnwell::fuzzing {

namespace {

bool SameNames(const NameList& one, const NameList& other) {
    return std::ranges::equal(one, other, [](const Named& a, const Named& b) { return *a == *b; });
}

void Use(const NamesFile& file) {
    NameIndex index;
    std::array<std::uint8_t, kEepromBytes> image{};
    for (const Named& named : file.names) {
        std::string key;
        REQUIRE(FaultOf(*named, key).empty() && index.Clash(*named, key).empty());
        index.Add(named);
        REQUIRE(index.Find(named->name) == named);
        PutValue(image, *named, named->highest);
    }
    for (const Named& named : file.names)
        REQUIRE(ValueIn(image, *named) == named->highest);
}

}  // namespace

void Run(std::string_view input) {
    const NamesFile file = NamesIn(input, "names.json");
    REQUIRE(file.usable == Usable::Yes || (file.names.empty() && file.faults.size() == 1));
    Use(file);
    const std::string text = TextOf(file);
    const NamesFile again = NamesIn(text, "names.json");
    REQUIRE(again.usable == Usable::Yes && SameNames(again.names, file.names));
    REQUIRE(again.kept == file.kept && again.unknown == file.unknown && TextOf(again) == text);
    const NameMerge merge = MergeOf(file.names, again.names);
    REQUIRE(merge.added.empty() && merge.conflicts.empty());
}

}  // namespace tarnwell::fuzzing
