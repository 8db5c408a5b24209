#include "core/Options.h"

#include <algorithm>
#include <array>

#include "core/Number.h"

namespace tarnwell {

namespace {

constexpr std::string_view kStartup = R"(SOFTWARE\Halvdorn\Tarnwell\Startup)";
constexpr std::string_view kProgOpts = R"(SOFTWARE\Halvdorn\Tarnwell\ProgOpts)";
constexpr std::string_view kProgPort = R"(SOFTWARE\Halvdorn\Tarnwell\ProgPort)";

struct Option {
    std::string_view key;
    std::string_view name;
    std::string_view defaultValue;
};

constexpr Option kMainTop{kStartup, "MainTop", "144"};
constexpr Option kMainLeft{kStartup, "MainLeft", "144"};
constexpr Option kEditTop{kStartup, "EditTop", "144"};
constexpr Option kEditLeft{kStartup, "EditLeft", "144"};
constexpr Option kComparePlace{kStartup, "ComparePlace", ""};
constexpr Option kInitDir{kProgOpts, "InitDir", R"(C:\)"};
constexpr Option kNumMode{kProgOpts, "NumMode", "Decimal"};
constexpr Option kDataWarn{kProgOpts, "DataWarn", "ShowWarn"};
constexpr Option kReadTwice{kProgOpts, "ReadTwice", "False"};
constexpr Option kPortAddr{kProgPort, "PortAddr", "888"};
constexpr Option kPortOpts{kProgPort, "PortOpts", "11012010"};
constexpr Option kI2cBus{kProgPort, "I2CBus", ""};

constexpr std::array kOptions{kMainTop,  kMainLeft,  kEditTop,  kEditLeft, kInitDir, kNumMode,
                              kDataWarn, kReadTwice, kPortAddr, kPortOpts, kI2cBus};

std::string Query(mRegistry& registry, const Option& option) {
    return registry.QueryRegValue(option.key, option.name);
}

void Set(mRegistry& registry, const Option& option, std::string_view value) {
    registry.SetRegValue(option.key, option.name, value);
}

void WriteDefaults(mRegistry& registry) {
    std::string_view created;
    for (const Option& option : kOptions) {
        if (option.key != created)
            registry.CreateRegKey(option.key);
        created = option.key;
        Set(registry, option, option.defaultValue);
    }
    registry.Flush();
}

}  // namespace

std::string ChosenI2cBus(mRegistry& registry) {
    return Query(registry, kI2cBus);
}

void LoadOptions(mRegistry& registry, ProgramState& state, PlacedWindow& window) {
    const bool firstRun = LeadingNumber(Query(registry, kMainTop)) == 0;
    if (firstRun)
        WriteDefaults(registry);

    const int top = DecimalValue(Query(registry, kMainTop));
    const int left = DecimalValue(Query(registry, kMainLeft));
    window.Place({top, left});
    state.editTop = Query(registry, kEditTop);
    state.editLeft = Query(registry, kEditLeft);
    state.comparePlace = Query(registry, kComparePlace);
    state.archiveFolder = Query(registry, kInitDir);
    state.numberMode = NumberModeFromWord(Query(registry, kNumMode));
    state.editorWarning = Query(registry, kDataWarn);
    state.readPasses = Query(registry, kReadTwice) == ReadTwiceWord(2) ? 2 : 1;
    state.portAddress = Query(registry, kPortAddr);
    state.pinOptions = Query(registry, kPortOpts);
    state.i2cBus = ChosenI2cBus(registry);
}

void SaveOptions(mRegistry& registry, const ProgramState& state, PlacedWindow& window) {
    WindowPlace place = window.Place();
    if (place.top <= 0) {
        place.top = 1;
        window.Place(place);
    }
    Set(registry, kMainTop, std::to_string(place.top));
    Set(registry, kMainLeft, std::to_string(place.left));
    Set(registry, kEditTop, state.editTop);
    Set(registry, kEditLeft, state.editLeft);
    if (!state.comparePlace.empty())
        Set(registry, kComparePlace, state.comparePlace);
    Set(registry, kInitDir, state.archiveFolder);
    Set(registry, kNumMode, Word(state.numberMode));
    Set(registry, kDataWarn, state.editorWarning);
    Set(registry, kReadTwice, ReadTwiceWord(state.readPasses));
    Set(registry, kPortAddr, state.portAddress);
    Set(registry, kPortOpts, state.pinOptions);
    Set(registry, kI2cBus, state.i2cBus);
    registry.Flush();
}

}  // namespace tarnwell
