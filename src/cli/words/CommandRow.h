// A command of the command line, as a row of their table tells it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {
class NameBook;
}

namespace tarnwell::cli {

class Device;
struct Arguments;
struct Report;

/// What stands behind a command's name.
struct OperandKind {
    std::string_view form{};  ///< as help shows it, in brackets if it may be left out
    void (*take)(const std::vector<std::string>& operands, Arguments& arguments) = nullptr;
    std::string (*names)(const NameBook& book) =
        nullptr;  ///< the words that mean something, in lines

    constexpr bool MayBeLeftOut() const { return form.empty() || form.starts_with('['); }
};

using OnDevice = void(const Arguments& arguments, Device& device, Report& report);
using OnFiles = void(const Arguments& arguments, Report& report);

/// What a command does with some of the options.
enum Traits : unsigned {
    kNoTraits = 0,
    kTakesImage = 1,  ///< --image instead of the device
    kTakesDifferences = 2,
    kWrites = 4,      ///< takes --dry-run
    kSaves = 8,       ///< its FILE is one that it makes
    kOnlyShows = 16,  ///< nothing is left of it with --quiet
    kIsOfSet = 32,    ///< needs no device, but may be of a set
    kNeedsSet = 64,
    kFilters = 128,  ///< takes --setting and --since
    kStreams = 256,  ///< says what it finds at once, until --count
};

struct CommandRow {
    std::string_view name;
    OperandKind takes;
    std::string_view description;
    OnDevice* onDevice;          ///< none where no device is ever needed
    OnFiles* onFiles = nullptr;  ///< none where one always is
    unsigned traits = kNoTraits;
    std::string_view alsoCalled{};  ///< by other programs

    constexpr bool Has(Traits trait) const { return (traits & trait) != 0; }
};

// What is said where an option does not go with a command.
inline constexpr std::string_view kImageIsFor = "--image is for get, set and sheet.";
inline constexpr std::string_view kOutputIsFor = "--output is for set --image.";
inline constexpr std::string_view kDifferencesIsFor = "--differences is for write.";
inline constexpr std::string_view kDryRunIsFor =
    "--dry-run is for write, set, poke, restore and take-back.";
inline constexpr std::string_view kQuietLeaves =
    "--quiet leaves nothing of get, peek, watch, info, backups, sets and log.";
inline constexpr std::string_view kFiltersAreFor = "--setting and --since are for log.";
inline constexpr std::string_view kCountIsFor = "--count is for watch.";
inline constexpr std::string_view kSetIsFor =
    "--set is for commands that work on a device, and for backups and log.";

}  // namespace tarnwell::cli
