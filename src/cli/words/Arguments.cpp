#include "cli/words/Arguments.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "cli/words/OperandKinds.h"
#include "core/Words.h"
#include "core/files/UserFolders.h"
#include "i2c/parallel/PinGroups.h"
#include "sets/SetStore.h"

namespace tarnwell::cli {

namespace {

constexpr std::array<std::string_view, 3> kAddresses{"378", "278", "3BC"};

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

/// Year, month and day, or the first of these; empty will do.
bool IsDate(std::string_view text) {
    constexpr std::string_view kForm = "0000-00-00";
    return (text.empty() || text.size() == 4 || text.size() == 7 || text.size() == kForm.size()) &&
           std::ranges::equal(text, kForm.substr(0, text.size()), [](char letter, char form) {
               return form == '-' ? letter == '-' : letter >= '0' && letter <= '9';
           });
}

void TakeOptions(const GivenWords& words, Arguments& arguments) {
    if (words.device == DeviceWord(TargetDevice::Secondary))
        arguments.device = TargetDevice::Secondary;
    if (words.progress != "auto")
        arguments.progress = words.progress == "always" ? Show::Always : Show::Never;
    if (!words.setting.empty())
        arguments.logNames = NamesMeant(arguments.book, words.setting);
    if (!IsDate(arguments.since))
        throw WrongArgument{"--since must be a date such as 2026-11-24."};
    if (!words.address.empty()) {
        const auto* const found = std::ranges::find_if(
            kAddresses, [&](auto address) { return EqualIgnoringCase(address, words.address); });
        if (found == kAddresses.end())
            throw WrongArgument{"--address must be one of 378, 278, 3BC."};
        arguments.portAddress =
            kPortChoices.at(static_cast<std::size_t>(found - kAddresses.begin())).address;
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

bool HasSide(const Arguments& arguments, std::string_view side) {
    return std::ranges::find(arguments.sides, side) != arguments.sides.end();
}

/// What goes together and what does not.
void CheckTogether(const Arguments& arguments) {
    const CommandRow& command = *arguments.command;
    const bool changesImage = command.Has(kWrites) && arguments.image;
    const bool streams = arguments.file == kStandardStream || WritesToStandardOutput(arguments) ||
                         arguments.image == kStandardStream || HasSide(arguments, kStandardStream);
    const auto refuseIf = [](bool wrong, std::string_view reason) {
        if (wrong)
            throw WrongArgument{std::string(reason)};
    };
    refuseIf(arguments.image && !command.Has(kTakesImage), kImageIsFor);
    refuseIf(changesImage && !arguments.output, "set --image needs --output=FILE.");
    refuseIf(arguments.output && !changesImage, kOutputIsFor);
    refuseIf(arguments.differences && !command.Has(kTakesDifferences), kDifferencesIsFor);
    refuseIf(arguments.dryRun && !command.Has(kWrites), kDryRunIsFor);
    refuseIf(arguments.quiet && command.Has(kOnlyShows), kQuietLeaves);
    refuseIf(arguments.count > 0 && !command.Has(kStreams), kCountIsFor);
    const bool takesSet = command.onDevice != nullptr || command.Has(kIsOfSet);
    const bool hasSet = !arguments.setName.empty();
    const bool filters = !arguments.logNames.empty() || !arguments.since.empty();
    refuseIf(hasSet && !takesSet, kSetIsFor);
    refuseIf(arguments.newSet && !hasSet, "--new-set needs --set=NAME.");
    refuseIf(command.Has(kNeedsSet) && !hasSet, "log and take-back need --set=NAME.");
    refuseIf(filters && !command.Has(kFilters), kFiltersAreFor);
    refuseIf(arguments.alsoNewer && arguments.events.empty(), "--also-newer is for take-back.");
    refuseIf(arguments.quiet && arguments.json, "--quiet and --json do not go together.");
    refuseIf(arguments.raw && !streams, "--raw is for -: name a file NAME.bin for its bytes.");
    refuseIf(WritesToStandardOutput(arguments) && arguments.json,
             "--json and a file on standard output do not go together.");
}

}  // namespace

bool WorksOnFiles(const Arguments& arguments) {
    const bool comparesFiles = !arguments.sides.empty() && !HasSide(arguments, kDeviceSide);
    return arguments.command->onDevice == nullptr || comparesFiles || arguments.image;
}

bool WritesToStandardOutput(const Arguments& arguments) {
    const bool saves = arguments.command != nullptr && arguments.command->Has(kSaves);
    return saves ? arguments.file == kStandardStream : arguments.output == kStandardStream;
}

NameBook OpenNames(const Arguments& arguments) {
    NameBook book;
    book.Open(NameLayer::User, DataFolder() + "/" + std::string(kNamesFile));
    const std::string& file = arguments.namesFile;
    if (!file.empty()) {
        std::error_code unreachable;
        if (!std::filesystem::exists(file, unreachable))
            throw UnusableFile{file + " does not exist."};
        book.Open(NameLayer::Opened, file);
        if (const NamesFile& opened = *book.File(NameLayer::Opened); opened.usable == Usable::No)
            throw UnusableFile{file + ": " + opened.faults.front()};
    }
    const auto set = arguments.setName.empty()
                         ? std::nullopt
                         : SetStore(StateFolder() + "/sets").Find(arguments.setName);
    if (set)
        book.Open(NameLayer::Set, set->folder + "/" + std::string(kNamesFile));
    return book;
}

void TakeWords(const GivenWords& words, Arguments& arguments) {
    arguments.book = OpenNames(arguments);
    TakeOptions(words, arguments);
    const CommandRow& command = *arguments.command;
    if (words.operands.empty() && !command.takes.MayBeLeftOut())
        throw WrongArgument{std::string(command.name) + " needs " +
                            std::string(command.takes.form) + "."};
    if (command.takes.take != nullptr)
        command.takes.take(words.operands, arguments);
    CheckTogether(arguments);
}

}  // namespace tarnwell::cli
