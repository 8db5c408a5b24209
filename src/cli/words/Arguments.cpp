#include "cli/words/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <span>

#include "i2c/PinGroups.h"

namespace tarnwell::cli {

namespace {

constexpr std::string_view kDescription = "Reads, writes and changes the EEPROMs of an HDTV.";

constexpr std::string_view kExamples =
    R"(Options may stand anywhere. FILE is an image or settings archive, NAME.bin the plain bytes,
- standard input or output.

Examples:
  tarnwell-cli read before.mot             keep an image of the primary EEPROM
  tarnwell-cli get R-YR TINT               show five values
  tarnwell-cli set R-YR.480p=7 TINT=31     change two, after a question
  tarnwell-cli --yes write before.mot      put everything back, without one
  tarnwell-cli --image=a.mot --output=b.mot set TINT=31
  tarnwell-cli --json peek 0x93B+6
  tarnwell-cli compare before.mot          what the device holds otherwise
  tarnwell-cli restore backup:2            go back to the backup before the last

Exit status: 0 done, 1 differences found, 2 wrong arguments, 3 port or bus, 4 file, 5 written but
different, 6 not confirmed, 128 and the signal's number when interrupted.)";

constexpr std::array kAddresses{"378", "278", "3BC"};

/// The arguments as they are given, one text each.
struct Words {
    std::vector<std::string> operands;
    std::string device = "primary";
    std::string address;
    std::string pins;
    std::string progress = "auto";
};

std::string Joined(const auto& words) {
    std::string text;
    for (const auto& word : words)
        text.append(text.empty() ? "" : ", ").append(word);
    return text;
}

class HelpText final : public CLI::Formatter {
  public:
    std::string make_usage(const CLI::App* app, std::string /*name*/) const override {
        const auto* const info = std::ranges::find(kCommands, app->get_name(), &CommandInfo::name);
        std::string usage = "Usage: tarnwell-cli [OPTIONS] ";
        if (info == kCommands.end())
            usage += "COMMAND";
        else
            usage.append(info->name)
                .append(info->operands.empty() ? "" : " ")
                .append(info->operands);
        return usage + "\n";
    }
};

void AddCommands(CLI::App& app, Words& words) {
    for (const CommandInfo& info : kCommands) {
        CLI::App* const command =
            app.add_subcommand(std::string(info.name), std::string(info.description));
        command->group("Commands");
        command->fallthrough();
        command->footer("Options and exit statuses: tarnwell-cli --help");
        if (!info.operands.empty())
            command->add_option("operands", words.operands)->group("");
    }
}

void AddOptions(CLI::App& app, Words& words, Arguments& arguments) {
    const auto flag = [&](const char* name, bool& value, const char* text) {
        app.add_flag(name, value, text)->disable_flag_override();
    };
    const auto option = [&](const char* name, auto& value, const char* form, const char* text) {
        return app.add_option(name, value, text)->option_text(form);
    };
    option("--device", words.device, "primary|secondary", "The EEPROM, primary if left out")
        ->check(CLI::IsMember({"primary", "secondary"}));
    option("--port", arguments.port.kind, "KIND", "auto, ppdev, devport, simulated or i2c:BUS");
    option("--address", words.address, "378|278|3BC", "The parallel port, LPT1 to LPT3");
    option("--pins", words.pins, "DIGITS", "The adapter's wiring, eight digits");
    option("--wait", arguments.waitSeconds, "SECONDS", "How long to wait for a port that is taken")
        ->check(CLI::Range(0, 1'000'000));
    option("--trace", arguments.port.traceFile, "FILE.vcd", "Write every change of SCL and SDA");
    flag("--real-time", arguments.port.realTime, "Simulated port: at a television's pace");
    flag("--no-television", arguments.port.noTelevision,
         "Simulated port: nothing on the adapter's bus");
    option("--image", arguments.image, "FILE", "get, set: work on an archive, not on the device");
    option("--output", arguments.output, "FILE", "set --image: where the changed archive goes");
    flag("--raw", arguments.raw, "With -: the 8192 bytes as they are, not an archive");
    flag("--force", arguments.force, "Replace a file that exists, use a doubtful reading");
    flag("--differences", arguments.differences, "write: only the bytes that differ, page by page");
    option("--passes", arguments.passes, "N", "Read a whole EEPROM N times and compare")
        ->check(CLI::Range(1, 100));
    flag("--yes", arguments.yes, "Write without a question");
    flag("--trust-device", arguments.trustDevice, "I2C bus: use a device that may be no 24C64");
    flag("--dry-run", arguments.dryRun, "Say what would be written, and write nothing");
    flag("--json", arguments.json, "Print one JSON object");
    flag("--quiet", arguments.quiet, "Print no report");
    option("--progress", words.progress, "auto|always|never", "A bar on standard error")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

/// Eight digits that the groups offer, with no pin for two lines.
bool IsWiring(std::string_view pins) {
    using enum PinPosition;
    if (pins.size() != kPinPositions)
        return false;
    for (std::size_t index = 0; index < kPinPositions; ++index) {
        const int digit = pins[index] - '0';
        if (digit < 0 || digit >= DigitsOffered(static_cast<PinPosition>(index)))
            return false;
    }
    return PinDigit(pins, DataOut) != PinDigit(pins, ClockOut) &&
           PinDigit(pins, DataIn) != PinDigit(pins, ClockIn);
}

void TakeOptions(const Words& words, Arguments& arguments) {
    if (words.device == "secondary")
        arguments.device = TargetDevice::Secondary;
    if (words.progress != "auto")
        arguments.progress = words.progress == "always" ? Show::Always : Show::Never;
    if (!words.address.empty()) {
        const auto* const found = std::ranges::find_if(
            kAddresses, [&](const char* a) { return EqualIgnoringCase(a, words.address); });
        if (found == kAddresses.end())
            throw WrongArgument{"--address must be one of " + Joined(kAddresses) + "."};
        arguments.portAddress =
            kPortChoices.at(static_cast<std::size_t>(found - kAddresses.begin())).addressText;
        arguments.port.address = true;
    }
    if (words.pins.empty())
        return;
    if (!IsWiring(words.pins))
        throw WrongArgument{"--pins must be eight digits as Advanced Setup keeps them, such as " +
                            std::string(kDefaultPinOptions) + ", with no pin for two lines."};
    arguments.pins = words.pins;
    arguments.port.pins = true;
}

void TakeOperands(const std::vector<std::string>& operands, Arguments& arguments) {
    const CommandInfo& info = Info(arguments.command);
    if (operands.empty() && !info.operands.empty() && !info.operands.starts_with('['))
        throw WrongArgument{std::string(info.name) + " needs " + std::string(info.operands) + "."};
    switch (arguments.command) {
        case Command::Check:
        case Command::Backups:
            return;
        case Command::Compare:
            if (operands.size() > 2)
                throw WrongArgument{"Two to compare, not " + std::to_string(operands.size()) + "."};
            arguments.sides = {operands.front(),
                               operands.size() > 1 ? operands[1] : std::string(kDeviceSide)};
            return;
        case Command::Restore:
            if (operands.empty()) {
                arguments.file = kBackupSide;
                return;
            }
            [[fallthrough]];
        case Command::Read:
        case Command::Write:
        case Command::Verify:
        case Command::Info:
            if (operands.size() > 1)
                throw WrongArgument{"One FILE, not " + std::to_string(operands.size()) + "."};
            arguments.file = operands.front();
            if (arguments.file.empty())
                throw WrongArgument{"The name of FILE is empty."};
            return;
        case Command::Get:
            for (const std::string& word : operands)
                std::ranges::copy(CellsNamed(word), std::back_inserter(arguments.cells));
            if (operands.empty())
                arguments.cells = CellsInOrder();
            return;
        case Command::Set:
            for (const std::string& word : operands)
                AddCellValue(word, arguments.cellValues);
            return;
        case Command::Peek:
            for (const std::string& word : operands)
                arguments.ranges.push_back(RangeFrom(word));
            return;
        case Command::Poke:
            for (const std::string& word : operands)
                AddByteValue(word, arguments.byteValues);
            return;
    }
}

/// What goes together and what does not.
void CheckTogether(const Arguments& arguments) {
    const Command command = arguments.command;
    const bool usesImage = command == Command::Get || command == Command::Set;
    const bool writes = command == Command::Write || command == Command::Set ||
                        command == Command::Poke || command == Command::Restore;
    const bool onlyShows = command == Command::Get || command == Command::Peek ||
                           command == Command::Info || command == Command::Backups;
    const bool changesImage = command == Command::Set && arguments.image;
    const bool streams =
        arguments.file == kStandardStream || WritesToStandardOutput(arguments) ||
        arguments.image == kStandardStream ||
        std::ranges::find(arguments.sides, kStandardStream) != arguments.sides.end();
    const auto refuseIf = [](bool wrong, const char* reason) {
        if (wrong)
            throw WrongArgument{reason};
    };
    refuseIf(arguments.image && !usesImage, "--image is for get and set.");
    refuseIf(changesImage && !arguments.output, "set --image needs --output=FILE.");
    refuseIf(arguments.output && !changesImage, "--output is for set --image.");
    refuseIf(arguments.differences && command != Command::Write, "--differences is for write.");
    refuseIf(arguments.dryRun && !writes, "--dry-run is for write, set, poke and restore.");
    refuseIf(arguments.quiet && onlyShows,
             "--quiet leaves nothing of get, peek, info and backups.");
    refuseIf(arguments.quiet && arguments.json, "--quiet and --json do not go together.");
    refuseIf(arguments.raw && !streams, "--raw is for -: name a file NAME.bin for its bytes.");
    refuseIf(WritesToStandardOutput(arguments) && arguments.json,
             "--json and a file on standard output do not go together.");
}

void CheckRest(const CLI::App& app) {
    std::vector<std::string> rest = app.remaining(true);
    std::erase(rest, "--");
    const bool hasCommand = !app.get_subcommands().empty();
    std::vector<std::string_view> commands;
    commands.reserve(kCommands.size());
    for (const CommandInfo& info : kCommands)
        commands.push_back(info.name);
    if (rest.empty()) {
        if (!hasCommand)
            throw WrongArgument{"A command is missing: " + Joined(commands) + "."};
        return;
    }
    const std::string word = "'" + rest.front() + "'";
    if (rest.front().starts_with('-'))
        throw WrongArgument{"There is no option " + word + "."};
    if (hasCommand)
        throw WrongArgument{word + " is one argument too many."};
    throw WrongArgument{"There is no command " + word + ". Did you mean " +
                        std::string(Nearest(rest.front(), commands)) + "?"};
}

/// What the parser would take from the argument behind it.
void CheckValues(std::span<const char* const> arguments) {
    for (const std::string_view argument : arguments) {
        if (argument == "--")
            return;
        if (argument.starts_with("--") && argument.ends_with('='))
            throw WrongArgument{std::string(argument) + " has no value."};
    }
}

/// What is known of the arguments whatever else is wrong with them.
WrongUse Wrong(std::string reason, const CLI::App& app, int argc, const char* const* argv) {
    const auto* const end = std::find(argv + 1, argv + argc, std::string_view("--"));
    const bool json = std::find(argv + 1, end, std::string_view("--json")) != end;
    std::optional<Command> command;
    if (const auto used = app.get_subcommands(); !used.empty())
        command =
            std::ranges::find(kCommands, used.front()->get_name(), &CommandInfo::name)->command;
    if (!reason.ends_with('.') && !reason.ends_with('?'))
        reason += '.';
    return {std::move(reason), command, json};
}

}  // namespace

bool WorksOnFiles(const Arguments& arguments) {
    const bool comparesFiles =
        arguments.command == Command::Compare &&
        std::ranges::find(arguments.sides, kDeviceSide) == arguments.sides.end();
    return arguments.command == Command::Info || arguments.command == Command::Backups ||
           comparesFiles || arguments.image;
}

bool WritesToStandardOutput(const Arguments& arguments) {
    return arguments.command == Command::Read ? arguments.file == kStandardStream
                                              : arguments.output == kStandardStream;
}

std::variant<Arguments, Text, WrongUse> ReadArguments(int argc, const char* const* argv) {
    CLI::App app{std::string(kDescription), "tarnwell-cli"};
    Arguments arguments;
    Words words;
    app.require_subcommand(0, 1);
    app.allow_extras();
    app.set_help_flag("-h,--help", "Show this help and end");
    app.set_version_flag("-v,--version", "tarnwell-cli " TARNWELL_VERSION,
                         "Show the version and end");
    app.footer(std::string(kExamples));
    app.formatter(std::make_shared<HelpText>());
    AddOptions(app, words, arguments);
    AddCommands(app, words);
    try {
        CheckValues(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
        app.parse(argc, argv);
        CheckRest(app);
        const std::string& name = app.get_subcommands().front()->get_name();
        arguments.command = std::ranges::find(kCommands, name, &CommandInfo::name)->command;
        TakeOptions(words, arguments);
        TakeOperands(words.operands, arguments);
        CheckTogether(arguments);
        return arguments;
    } catch (const CLI::CallForVersion& call) {
        return Text{call.what() + std::string("\n")};
    } catch (const CLI::Success&) {
        return Text{app.help()};
    } catch (const CLI::ParseError& error) {
        return Wrong(error.what(), app, argc, argv);
    } catch (const WrongArgument& wrong) {
        return Wrong(wrong.reason, app, argc, argv);
    }
}

}  // namespace tarnwell::cli
