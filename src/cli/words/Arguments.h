// The arguments of the command line, read and checked before anything happens.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/words/CommandRow.h"
#include "cli/words/Operands.h"
#include "core/ProgramState.h"
#include "i2c/PortRequest.h"
#include "sets/TvSet.h"

namespace tarnwell::cli {

enum class Show : std::uint8_t { Auto, Always, Never };

struct Arguments {
    const CommandRow* command = nullptr;

    std::string file;                ///< of read, write, verify, info and restore
    std::vector<std::string> sides;  ///< of compare, two
    NameList names;                  ///< of get
    NamedNumbers values;             ///< of set
    std::vector<ByteRange> ranges;   ///< of peek and watch
    int count = 0;                   ///< of the changes that end watch, none if 0
    ByteValues byteValues;           ///< of poke

    TargetDevice device = TargetDevice::Primary;
    PortRequest port;
    std::optional<std::uint16_t> portAddress;  ///< the base address
    std::optional<std::string> pins;
    int waitSeconds = 0;

    std::optional<std::string> image;
    std::optional<std::string> output;
    bool raw = false;
    bool force = false;
    bool differences = false;
    std::optional<int> passes;  ///< how often a whole device is read

    std::string setName;  ///< as it was given
    bool newSet = false;
    std::optional<TvSet> set;  ///< the one of that name, once it was looked up
    std::vector<int> events;   ///< of take-back
    NameList logNames;         ///< of log, all if empty
    std::string since;         ///< of log, the beginning of a time as Calendar::ZonedTime
    bool alsoNewer = false;

    NameBook book;          ///< what the words may name
    std::string namesFile;  ///< whose names are opened beside the user's

    bool yes = false;
    bool trustDevice = false;
    bool dryRun = false;

    bool json = false;
    bool quiet = false;
    Show progress = Show::Auto;
};

/// `-` stands for standard input or output.
inline constexpr std::string_view kStandardStream = "-";

/// Whether the command needs no device.
bool WorksOnFiles(const Arguments& arguments);

/// Whether it is the file that goes there, and not the report.
bool WritesToStandardOutput(const Arguments& arguments);

/// What --help and --version ask for.
struct Text {
    std::string text;
};

/// Why the arguments are wrong, and what of them counts all the same.
struct WrongUse {
    std::string reason;
    const CommandRow* command;
    bool json;
    bool isFile = false;  ///< it is a file that cannot be used
};

std::variant<Arguments, Text, WrongUse> ReadArguments(std::span<const char* const> words,
                                                      std::span<const CommandRow> commands);

/// The arguments as they are given, one text each.
struct GivenWords {
    std::vector<std::string> operands;
    std::string device;
    std::string address;
    std::string pins;
    std::string progress;
    std::string setting;
};

/// The names of the user, and of the set and the file that the arguments name. Throws UnusableFile.
NameBook OpenNames(const Arguments& arguments);

/// Takes what the words say, and throws WrongArgument where they make no sense or do not go
/// together, or UnusableFile.
void TakeWords(const GivenWords& words, Arguments& arguments);

}  // namespace tarnwell::cli
