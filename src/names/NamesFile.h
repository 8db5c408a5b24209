// Files of names: read as far as they are right, written whole or not at all.
#pragma once

#include "names/NameIndex.h"

namespace tarnwell {

/// Whether a file may be written again with other names.
enum class Usable : std::uint8_t {
    Yes,
    No,  ///< no file of names, one of a newer program, or it cannot be read: it is left as it is
};

struct NamesFile {
    std::string path{};
    Usable usable = Usable::Yes;
    NameList names{};                   ///< by place
    std::vector<std::string> faults{};  ///< "line 12, names[3].bits: ...", a sentence each
    std::vector<std::string> kept{};    ///< entries that are wrong, as JSON: they stay in the file
    std::string unknown{};              ///< what else stands in the file, as JSON; or empty
};

/// Reads a file of names; one that does not exist has none.
NamesFile ReadNames(const std::string& path);

/// The same of a text that stands in the file `path`.
NamesFile NamesIn(std::string_view text, const std::string& path);

/// A line a name, by place.
std::string TextOf(const NamesFile& file);

/// Replaces the file, and makes its folder; false if that failed or the file is not usable.
[[nodiscard]] bool WriteNames(const NamesFile& file);

/// Why a name cannot stand among the names of a file, in one sentence; empty if it can. `key` gets
/// what is wrong, as the file calls it.
std::string FaultIn(const NameList& names, const NamedValue& named, std::string& key);

/// Two names of one place, or two places or descriptions of one name.
struct NameConflict {
    Named mine;
    Named theirs;

    bool operator==(const NameConflict&) const = default;
};

/// What reading one file's names into another's comes to.
struct NameMerge {
    NameList added{};  ///< those that clash with none
    std::vector<NameConflict> conflicts{};
};
NameMerge MergeOf(const NameList& mine, const NameList& theirs);

/// Of names that are in conflict which ones stay.
enum class Keep : std::uint8_t { Mine, Theirs };
NameList Merged(const NameList& mine, const NameMerge& merge, Keep keep);

}  // namespace tarnwell
