// The words of the command line, told apart by CLI11, which only this file knows.
#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/words/Arguments.h"
#include "core/Words.h"

namespace tarnwell::cli {

namespace {

using Commands = std::span<const CommandRow>;

constexpr std::string_view kDescription = "Reads, writes and changes the EEPROMs of an HDTV.";

constexpr std::string_view kExamples =
    R"(Options may stand anywhere. FILE is an image or settings archive, NAME.bin the plain bytes,
NAME.hex Intel HEX, - standard input or output.

Examples:
  tarnwell-cli read before.mot             keep an image of the primary EEPROM
  tarnwell-cli get R-YR TINT               show five values
  tarnwell-cli set R-YR.480p=7 TINT=31     change two, after a question
  tarnwell-cli --yes write before.mot      put everything back, without one
  tarnwell-cli --image=a.mot --output=b.mot set TINT=31
  tarnwell-cli --json peek 0x93B+6
  tarnwell-cli compare before.mot          what the device holds otherwise
  tarnwell-cli restore backup:2            go back to the backup before the last
  tarnwell-cli --set=Kitchen log           what was changed on a set, and when

Exit status: 0 done, 1 differences found, 2 wrong arguments, 3 port or bus, 4 file, 5 written but
different, 6 not confirmed, 128 and the signal's number when interrupted.)";

const CommandRow* RowNamed(Commands commands, std::string_view name) {
    const auto found = std::ranges::find(commands, name, &CommandRow::name);
    return found == commands.end() ? nullptr : &*found;
}

class HelpText final : public CLI::Formatter {
  public:
    explicit HelpText(Commands commands) : commands_(commands) {}

    std::string make_usage(const CLI::App* app, std::string /*name*/) const override {
        const CommandRow* const row = RowNamed(commands_, app->get_name());
        std::string usage = "Usage: tarnwell-cli [OPTIONS] ";
        usage += row == nullptr ? "COMMAND" : row->name;
        if (row != nullptr && !row->takes.form.empty())
            usage.append(" ").append(row->takes.form);
        return usage + "\n";
    }

  private:
    Commands commands_;
};

/// The names that a command takes, as far as the files that were named have them.
std::string NamesTaken(const CommandRow& row, const Arguments& arguments) {
    try {
        return row.takes.names(OpenNames(arguments));
    } catch (const UnusableFile&) {
        return row.takes.names(OpenNames({}));
    }
}

void AddCommands(CLI::App& app, GivenWords& words, const Arguments& arguments, Commands commands) {
    for (const CommandRow& row : commands) {
        CLI::App* const command =
            app.add_subcommand(std::string(row.name), std::string(row.description));
        command->group("Commands");
        command->fallthrough();
        command->footer("Options and exit statuses: tarnwell-cli --help");
        if (row.takes.names != nullptr)
            command->footer(
                [&row, &arguments] { return "Names:" + NamesTaken(row, arguments) + "\n"; });
        if (row.takes.take != nullptr)
            command->add_option("operands", words.operands)->group("");
    }
}

void AddOptions(CLI::App& app, GivenWords& words, Arguments& arguments) {
    const auto flag = [&](const char* name, bool& value, const char* text) {
        app.add_flag(name, value, text)->disable_flag_override();
    };
    const auto option = [&](const char* name, auto& value, const char* form, const char* text) {
        return app.add_option(name, value, text)->option_text(form);
    };
    const auto choice = [&](const char* name, std::string& value,
                            const std::vector<std::string>& values, const char* text) {
        value = values.front();
        option(name, value, CLI::detail::join(values, "|").c_str(), text)
            ->check(CLI::IsMember(values));
    };
    choice("--device", words.device,
           {std::string(DeviceWord(TargetDevice::Primary)),
            std::string(DeviceWord(TargetDevice::Secondary))},
           "The EEPROM, primary if left out");
    option("--port", arguments.port.kind, "KIND", "auto, ppdev, devport, simulated or i2c:BUS");
    option("--address", words.address, "378|278|3BC", "The parallel port, LPT1 to LPT3");
    option("--pins", words.pins, "DIGITS", "The adapter's wiring, eight digits");
    option("--wait", arguments.waitSeconds, "SECONDS", "How long to wait for a port that is taken")
        ->check(CLI::Range(0, 1'000'000));
    option("--trace", arguments.port.traceFile, "FILE.vcd", "Write every change of SCL and SDA");
    flag("--real-time", arguments.port.realTime, "Simulated port: at a television's pace");
    flag("--no-television", arguments.port.noTelevision,
         "Simulated port: nothing on the adapter's bus");
    option("--image", arguments.image, "FILE",
           "get, set, sheet: work on an archive, not on the device");
    option("--output", arguments.output, "FILE", "set --image: where the changed archive goes");
    flag("--raw", arguments.raw, "With -: the 8192 bytes as they are, not an archive");
    flag("--force", arguments.force,
         "Replace a file that exists, use a doubtful reading, write what does not fit");
    flag("--differences", arguments.differences, "write: only the bytes that differ, page by page");
    option("--set", arguments.setName, "NAME", "The set whose record is kept of this");
    flag("--new-set", arguments.newSet, "With --set: make it if there is none of that name");
    option("--names", arguments.namesFile, "FILE", "Names of your own, beside names.json");
    option("--setting", words.setting, "NAME", "log: only what changed this setting");
    option("--since", arguments.since, "DATE", "log: only from 2026-11-24 on");
    flag("--also-newer", arguments.alsoNewer, "take-back: also what was written again since");
    option("--passes", arguments.passes, "N", "Read a whole EEPROM N times and compare")
        ->check(CLI::Range(1, 100));
    option("--count", arguments.count, "N", "watch: end after N changes")
        ->check(CLI::Range(1, 1'000'000));
    flag("--yes", arguments.yes, "Write without a question");
    flag("--trust-device", arguments.trustDevice, "I2C bus: use a device that may be no 24C64");
    flag("--dry-run", arguments.dryRun, "Say what would be written, and write nothing");
    flag("--json", arguments.json, "Print one JSON object, watch: one a line");
    flag("--quiet", arguments.quiet, "Print no report");
    choice("--progress", words.progress, {"auto", "always", "never"}, "A bar on standard error");
}

/// The command that is meant by a word that is none.
std::string_view Meant(std::string_view word, Commands commands) {
    std::vector<std::string_view> names;
    for (const CommandRow& row : commands) {
        if (EqualIgnoringCase(row.alsoCalled, word))
            return row.name;
        names.push_back(row.name);
    }
    return Nearest(word, names);
}

void CheckRest(const CLI::App& app, Commands commands) {
    std::vector<std::string> rest = app.remaining(true);
    std::erase(rest, "--");
    const bool hasCommand = !app.get_subcommands().empty();
    if (rest.empty() && hasCommand)
        return;
    if (rest.empty()) {
        std::string names;
        for (const CommandRow& row : commands)
            names.append(names.empty() ? "" : ", ").append(row.name);
        throw WrongArgument{"A command is missing: " + names + "."};
    }
    const std::string word = "'" + rest.front() + "'";
    if (rest.front().starts_with('-'))
        throw WrongArgument{"There is no option " + word + "."};
    if (hasCommand)
        throw WrongArgument{word + " is one argument too many."};
    throw WrongArgument{"There is no command " + word + ". Did you mean " +
                        std::string(Meant(rest.front(), commands)) + "?"};
}

/// What the parser would take from the argument behind it.
void CheckValues(std::span<const char* const> words) {
    for (const std::string_view word : words) {
        if (word == "--")
            return;
        if (word.starts_with("--") && word.ends_with('='))
            throw WrongArgument{std::string(word) + " has no value."};
    }
}

const CommandRow* RowOf(const CLI::App& app, Commands commands) {
    const auto used = app.get_subcommands();
    return used.empty() ? nullptr : RowNamed(commands, used.front()->get_name());
}

}  // namespace

std::variant<Arguments, Text, WrongUse> ReadArguments(std::span<const char* const> words,
                                                      Commands commands) {
    CLI::App app{std::string(kDescription), "tarnwell-cli"};
    Arguments arguments;
    GivenWords given;
    app.require_subcommand(0, 1);
    app.allow_extras();
    app.set_help_flag("-h,--help", "Show this help and end");
    app.set_version_flag("-v,--version", "tarnwell-cli " TARNWELL_VERSION,
                         "Show the version and end");
    app.footer(std::string(kExamples));
    app.formatter(std::make_shared<HelpText>(commands));
    AddOptions(app, given, arguments);
    AddCommands(app, given, arguments, commands);
    // What is known of the arguments whatever else is wrong with them.
    const auto wrong = [&](std::string reason, bool isFile = false) {
        const auto end = std::ranges::find(words, std::string_view("--"));
        const bool json = std::find(words.begin(), end, std::string_view("--json")) != end;
        if (!reason.ends_with('.') && !reason.ends_with('?'))
            reason += '.';
        return WrongUse{std::move(reason), RowOf(app, commands), json, isFile};
    };
    try {
        CheckValues(words.subspan(1));
        app.parse(static_cast<int>(words.size()), words.data());
        CheckRest(app, commands);
        arguments.command = RowOf(app, commands);
        TakeWords(given, arguments);
        return arguments;
    } catch (const CLI::CallForVersion& call) {
        return Text{call.what() + std::string("\n")};
    } catch (const CLI::Success&) {
        return Text{app.help()};
    } catch (const CLI::ParseError& error) {
        return wrong(error.what());
    } catch (const WrongArgument& argument) {
        return wrong(argument.reason);
    } catch (const UnusableFile& file) {
        return wrong(file.reason, true);
    }
}

}  // namespace tarnwell::cli
