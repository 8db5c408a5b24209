// The arguments of the command line, read and checked before anything happens.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/words/Operands.h"
#include "core/ProgramState.h"
#include "i2c/PortRequest.h"

namespace tarnwell::cli {

enum class Command : std::uint8_t {
    Check,
    Read,
    Write,
    Verify,
    Info,
    Get,
    Set,
    Peek,
    Poke,
    Compare,
    Backups,
    Restore
};

struct CommandInfo {
    Command command;
    std::string_view name;
    std::string_view operands;
    std::string_view description;
};

inline constexpr std::array kCommands{
    CommandInfo{Command::Check, "check", "",
                "Say which EEPROMs answer; where the bus fails, find the cause."},
    CommandInfo{Command::Read, "read", "FILE", "Read the whole EEPROM into a file."},
    CommandInfo{Command::Write, "write", "FILE",
                "Write an image, or the values of a settings archive, and verify."},
    CommandInfo{Command::Verify, "verify", "FILE", "Compare the EEPROM with a file."},
    CommandInfo{Command::Info, "info", "FILE", "Say what a file is and what it holds."},
    CommandInfo{Command::Get, "get", "[NAME[.FORMAT]...]",
                "Show settings, all of them without a name."},
    CommandInfo{Command::Set, "set", "NAME[.FORMAT]=VALUE...", "Change settings and verify."},
    CommandInfo{Command::Peek, "peek", "ADDRESS[-ADDRESS|+COUNT]...", "Show bytes."},
    CommandInfo{Command::Poke, "poke", "ADDRESS=VALUE...", "Write bytes and verify."},
    CommandInfo{Command::Compare, "compare", "A [B]",
                "Compare two of FILE, device, backup and backup:N; B is the device if left out."},
    CommandInfo{Command::Backups, "backups", "", "List the images that were kept, newest first."},
    CommandInfo{Command::Restore, "restore", "[backup:N|FILE]",
                "Write what differs from a backup, the newest if left out, and verify."},
};

constexpr const CommandInfo& Info(Command command) {
    return kCommands[static_cast<std::size_t>(command)];
}

enum class Show : std::uint8_t { Auto, Always, Never };

struct Arguments {
    Command command = Command::Check;

    std::string file;                ///< of read, write, verify, info and restore
    std::vector<std::string> sides;  ///< of compare, two
    std::vector<int> cells;          ///< of get
    CellValues cellValues;           ///< of set
    std::vector<ByteRange> ranges;   ///< of peek
    ByteValues byteValues;           ///< of poke

    TargetDevice device = TargetDevice::Primary;
    PortRequest port;
    std::optional<std::string> portAddress;  ///< as the program state has it
    std::optional<std::string> pins;
    int waitSeconds = 0;

    std::optional<std::string> image;
    std::optional<std::string> output;
    bool raw = false;
    bool force = false;
    bool differences = false;
    std::optional<int> passes;  ///< how often a whole device is read

    bool yes = false;
    bool trustDevice = false;
    bool dryRun = false;

    bool json = false;
    bool quiet = false;
    Show progress = Show::Auto;
};

/// `-` stands for standard input or output.
inline constexpr std::string_view kStandardStream = "-";

/// What stands for the device, and for the newest backup; `backup:2` is the one before.
inline constexpr std::string_view kDeviceSide = "device";
inline constexpr std::string_view kBackupSide = "backup";

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
    std::optional<Command> command;
    bool json;
};

std::variant<Arguments, Text, WrongUse> ReadArguments(int argc, const char* const* argv);

}  // namespace tarnwell::cli
