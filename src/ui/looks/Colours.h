// The colours of the design.
#pragma once

#include <QColor>
#include <QPalette>

#include "settings/SettingCells.h"

namespace tarnwell::colours {

inline constexpr QColor kCell{255, 255, 192};
inline constexpr QColor kHeading{239, 219, 137};
inline constexpr QColor kSelected{153, 204, 255};
inline constexpr QColor kBeingEdited{255, 192, 255};
inline constexpr QColor kValueText{0, 0, 192};
inline constexpr QColor kOwnName{128, 0, 96};
inline constexpr QColor kText{0, 0, 0};
inline constexpr QColor kLampOn{0, 255, 0};
inline constexpr QColor kLampOff{255, 0, 0};

/// `share` of the way from one colour to the other.
inline QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto part = [share](int first, int last) {
        return static_cast<int>(first + (last - first) * share);
    };
    return {part(from.red(), to.red()), part(from.green(), to.green()),
            part(from.blue(), to.blue())};
}

/// A shade of the theme's highlight on which its ordinary text is still read.
inline QColor progressBar(const QPalette& palette) {
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::Highlight), 0.35);
}

/// Of what is not known, beside a value.
inline constexpr QColor kUnknown{110, 110, 110};

/// The text of a value that is none, and still is read.
inline QColor paler(const QColor& text) {
    return mixed(kCell, text, 0.6);
}

/// A text on `background` that does not count.
inline QColor dimmed(const QColor& text, const QColor& background) {
    return mixed(background, text, 0.3);
}

constexpr QColor of(CellColour colour) {
    switch (colour) {
        case CellColour::Editing:
            return kBeingEdited;
        case CellColour::Changed:
            return kHeading;
        case CellColour::Normal:
            break;
    }
    return kCell;
}

}  // namespace tarnwell::colours
