#include "core/options/Options.h"

#include <array>

#include "core/user/Number.h"

namespace tarnwell {

namespace {

constexpr std::string_view kStartup = R"(SOFTWARE\Halvdorn\Tarnwell\Startup)";
constexpr std::string_view kProgOpts = R"(SOFTWARE\Halvdorn\Tarnwell\ProgOpts)";
constexpr std::string_view kProgPort = R"(SOFTWARE\Halvdorn\Tarnwell\ProgPort)";

/// What the options stand for.
struct Options {
    ProgramState& state;
    WindowPlace& window;
};

enum class Stored : std::uint8_t { Always, OnceSet };

struct Option {
    std::string_view key;
    std::string_view name;
    std::string_view defaultValue;
    std::string (*text)(const ProgramState& state, const WindowPlace& window);
    void (*take)(const Options& options, const std::string& text);
    Stored stored = Stored::Always;
};

/// One that is kept as its text.
template <std::string ProgramState::*kMember>
constexpr Option Kept(std::string_view key, std::string_view name, std::string_view defaultValue,
                      Stored stored = Stored::Always) {
    return {key,
            name,
            defaultValue,
            [](const ProgramState& state, const WindowPlace&) { return state.*kMember; },
            [](const Options& options, const std::string& text) { options.state.*kMember = text; },
            stored};
}

template <int WindowPlace::*kMember>
constexpr Option Edge(std::string_view name) {
    return {kStartup, name, kFirstPlace,
            [](const ProgramState&, const WindowPlace& window) {
                return std::to_string(window.*kMember);
            },
            [](const Options& options, const std::string& text) {
                options.window.*kMember = DecimalValue(text);
            }};
}

template <RecentFiles ProgramState::*kMember>
constexpr Option Recent(std::string_view name) {
    return {kProgOpts,
            name,
            "",
            [](const ProgramState& state, const WindowPlace&) { return (state.*kMember).Text(); },
            [](const Options& options, const std::string& text) {
                options.state.*kMember = RecentFiles::FromText(text);
            },
            Stored::OnceSet};
}

constexpr Option kMainTop = Edge<&WindowPlace::top>("MainTop");

constexpr Option kI2cBus{
    kProgPort, "I2CBus", "",
    [](const ProgramState& state, const WindowPlace&) { return TextOf(state.bus); },
    [](const Options& options, const std::string& text) {
        options.state.bus = ChosenBusFrom(text);
    }};

constexpr std::array kOptions{
    kMainTop,
    Edge<&WindowPlace::left>("MainLeft"),
    Kept<&ProgramState::editTop>(kStartup, "EditTop", kFirstPlace),
    Kept<&ProgramState::editLeft>(kStartup, "EditLeft", kFirstPlace),
    Kept<&ProgramState::editorSize>(kStartup, "EditorSize", "", Stored::OnceSet),
    Kept<&ProgramState::comparePlace>(kStartup, "ComparePlace", "", Stored::OnceSet),
    Kept<&ProgramState::historySize>(kStartup, "HistorySize", "", Stored::OnceSet),
    Kept<&ProgramState::archiveFolder>(kProgOpts, "InitDir", R"(C:\)"),
    Option{kProgOpts, "NumMode", "Decimal",
           [](const ProgramState& state, const WindowPlace&) {
               return std::string(Word(state.numberMode));
           },
           [](const Options& options, const std::string& text) {
               options.state.numberMode = NumberModeFromWord(text);
           }},
    Kept<&ProgramState::editorWarning>(kProgOpts, "DataWarn", "ShowWarn"),
    Option{kProgOpts, "ReadTwice", "False",
           [](const ProgramState& state, const WindowPlace&) {
               return std::string(SwitchWord(state.readPasses > 1));
           },
           [](const Options& options, const std::string& text) {
               options.state.readPasses = text == SwitchWord(true) ? 2 : 1;
           }},
    Option{kProgOpts, "TextColumn", "",
           [](const ProgramState& state, const WindowPlace&) {
               return std::string(state.textColumn ? SwitchWord(true) : "");
           },
           [](const Options& options, const std::string& text) {
               options.state.textColumn = text == SwitchWord(true);
           },
           Stored::OnceSet},
    Recent<&ProgramState::recentImages>("RecentImages"),
    Recent<&ProgramState::recentSettings>("RecentSettings"),
    Kept<&ProgramState::set>(kProgOpts, "Set", "", Stored::OnceSet),
    Option{kProgPort, "PortAddr", "888",
           [](const ProgramState& state, const WindowPlace&) {
               return PortAddressText(state.portAddress);
           },
           [](const Options& options, const std::string& text) {
               options.state.portAddress = PortAddressValue(text);
           }},
    Kept<&ProgramState::pinOptions>(kProgPort, "PortOpts", "11012010"),
    kI2cBus,
};

std::string Query(mRegistry& registry, const Option& option) {
    return registry.QueryRegValue(option.key, option.name);
}

void WriteDefaults(mRegistry& registry) {
    for (const std::string_view key : {kStartup, kProgOpts, kProgPort}) {
        registry.CreateRegKey(key);
        for (const Option& option : kOptions) {
            if (option.key == key && option.stored == Stored::Always)
                registry.SetRegValue(key, option.name, option.defaultValue);
        }
    }
    registry.Flush();
}

}  // namespace

ChosenBus BusOfOptions(mRegistry& registry) {
    return ChosenBusFrom(Query(registry, kI2cBus));
}

void LoadOptions(mRegistry& registry, ProgramState& state, PlacedWindow& window) {
    const bool firstRun = LeadingNumber(Query(registry, kMainTop)) == 0;
    if (firstRun)
        WriteDefaults(registry);
    WindowPlace place{};
    for (const Option& option : kOptions)
        option.take({state, place}, Query(registry, option));
    window.Place(place);
}

void SaveOptions(mRegistry& registry, const ProgramState& state, PlacedWindow& window) {
    WindowPlace place = window.Place();
    if (place.top <= 0) {
        place.top = 1;
        window.Place(place);
    }
    for (const Option& option : kOptions) {
        const std::string text = option.text(state, place);
        if (option.stored == Stored::Always || text != Query(registry, option))
            registry.SetRegValue(option.key, option.name, text);
    }
    registry.Flush();
}

}  // namespace tarnwell
