// The values that many commands share for one run, and the words by which the user meets them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/ChosenBus.h"
#include "core/RecentFiles.h"

namespace tarnwell {

enum class NumberMode : std::uint8_t { Decimal, Hex };
enum class TargetDevice : std::uint8_t { Primary, Secondary };
enum class SizeMode : std::uint8_t { Small, Big };
enum class EditorSwitch : std::uint8_t { Off, On };
enum class Page : std::uint8_t { Chroma, Edges, Global, Iris, Picture, Editor };

/// One record for the whole run, owned by the main window.
///
/// Options that the user may have edited by hand are kept as the texts that the store holds, so
/// that saving them changes nothing that the program did not change.
struct ProgramState {
    NumberMode numberMode = NumberMode::Decimal;
    TargetDevice targetDevice = TargetDevice::Primary;
    EditorSwitch editor = EditorSwitch::Off;
    SizeMode sizeMode = SizeMode::Small;
    Page page = Page::Chroma;

    std::uint16_t portAddress = 0;  ///< the parallel port's base address: 888, 632 or 956
    std::string pinOptions;         ///< eight digits, decoded by DecodePinOptions
    ChosenBus bus;
    std::optional<ChosenBus> busOfRun;  ///< from the command line, until another is chosen
    std::string editorWarning;          ///< "ShowWarn" or "NoWarn"
    std::string editTop;                ///< the value editor's place, twips
    std::string editLeft;
    std::string editorSize;     ///< of a big window's content, "WIDTH HEIGHT" in pixels, or empty
    bool textColumn = false;    ///< beside the grid's numbers
    std::string comparePlace;   ///< "LEFT TOP WIDTH HEIGHT" in pixels, or empty
    std::string historySize;    ///< "WIDTH HEIGHT" in pixels, or empty
    std::string archiveFolder;  ///< where the file dialogs open
    RecentFiles recentImages;
    RecentFiles recentSettings;
    std::string set;     ///< the name of the one whose record is kept; empty for none
    int readPasses = 1;  ///< how often a whole device is read before the reading counts

    bool simulated = false;  ///< the parallel port is that of a simulated television

    bool BufferChanged = false;
    bool EepRead = false;
    bool GridChanged = false;

    bool fillItemVisible = false;
    bool driverLoaderItemVisible = false;

    const ChosenBus& BusInUse() const { return busOfRun ? *busOfRun : bus; }
};

inline constexpr std::string_view kShowWarning = "ShowWarn";
inline constexpr std::string_view kNoWarning = "NoWarn";

constexpr std::string_view Word(NumberMode mode) {
    return mode == NumberMode::Decimal ? "Decimal" : "Hex";
}

constexpr std::string_view Word(TargetDevice device) {
    return device == TargetDevice::Primary ? "Pri" : "Sec";
}

constexpr std::string_view Word(EditorSwitch editor) {
    return editor == EditorSwitch::On ? "ON" : "OFF";
}

/// A switch among the options, as a word.
constexpr std::string_view SwitchWord(bool on) {
    return on ? "True" : "False";
}

/// The mode that a stored word names; "Decimal" for any word but the two.
constexpr NumberMode NumberModeFromWord(std::string_view word) {
    return word == Word(NumberMode::Hex) ? NumberMode::Hex : NumberMode::Decimal;
}

}  // namespace tarnwell
