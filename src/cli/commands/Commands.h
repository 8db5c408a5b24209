// The commands, a row each. Each ends its report.
#pragma once

#include <algorithm>
#include <array>

#include "cli/words/OperandKinds.h"

namespace tarnwell::cli {

OnDevice Check, Read, Write, Verify, Get, Set, Peek, WatchBytes, Poke, CompareWithDevice, Restore,
    TakeBackEvents, WriteSheet;
OnFiles DescribeFile, GetFromFile, SetInFile, CompareFiles, ListBackups, ListSets, ShowLog,
    WriteSheetOfFile;

inline constexpr std::array<CommandRow, 17> kCommands{{
    {"check", kNothing, "Say which EEPROMs answer; where the bus fails, find the cause.", Check},
    {"read", kFile, "Read the whole EEPROM into a file.", Read, nullptr, kSaves},
    {"write", kFile, "Write an image, or the values of a settings archive, and verify.", Write,
     nullptr, kWrites | kTakesDifferences},
    {"verify", kFile, "Compare the EEPROM with a file.", Verify},
    {"info", kFile, "Say what a file is and what it holds.", nullptr, DescribeFile, kOnlyShows},
    {"get", kSettings, "Show settings, all of them without a name.", Get, GetFromFile,
     kTakesImage | kOnlyShows},
    {"set", kSettingValues, "Change settings and verify.", Set, SetInFile, kTakesImage | kWrites},
    {"peek", kRanges, "Show bytes.", Peek, nullptr, kOnlyShows},
    {"watch", kRangesOrAll, "Say what changes, all of the EEPROM without a range, until Ctrl-C.",
     WatchBytes, nullptr, kOnlyShows | kStreams},
    {"poke", kByteValues, "Write bytes and verify.", Poke, nullptr, kWrites},
    {"compare", kSides,
     "Compare two of FILE, device, backup and backup:N; B is the device if left out.",
     CompareWithDevice, CompareFiles, kNoTraits, "diff"},
    {"backups", kNothing, "List the images that were kept, newest first.", nullptr, ListBackups,
     kOnlyShows | kIsOfSet},
    {"restore", kBackupOrFile,
     "Write what differs from a backup, the newest if left out, and verify.", Restore, nullptr,
     kWrites},
    {"sets", kNothing, "List the sets that records are kept of.", nullptr, ListSets, kOnlyShows},
    {"log", kNothing, "Show what was written to a set, newest first.", nullptr, ShowLog,
     kOnlyShows | kIsOfSet | kNeedsSet | kFilters},
    {"take-back", kEvents, "Write what bytes held before events of the log, and verify.",
     TakeBackEvents, nullptr, kWrites | kNeedsSet},
    {"sheet", kFile, "Put all settings on a page of HTML, to be printed.", WriteSheet,
     WriteSheetOfFile, kTakesImage | kSaves},
}};

/// Whether a text names the commands with a trait and no other.
consteval bool Names(std::string_view text, Traits trait) {
    return std::ranges::all_of(kCommands, [=](const CommandRow& row) {
        const std::size_t end = text.find(row.name) + row.name.size();
        const bool isNamed = end >= row.name.size() && end < text.size() &&
                             text[end - row.name.size() - 1] == ' ' &&
                             std::string_view(" ,.").find(text[end]) != std::string_view::npos;
        return isNamed == row.Has(trait);
    });
}
static_assert(Names(kImageIsFor, kTakesImage) && Names(kDifferencesIsFor, kTakesDifferences) &&
              Names(kDryRunIsFor, kWrites) && Names(kQuietLeaves, kOnlyShows) &&
              Names(kCountIsFor, kStreams));

}  // namespace tarnwell::cli
