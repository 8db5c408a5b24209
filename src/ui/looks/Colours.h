// The colours of the design.
#pragma once

#include <QColor>
#include <QPalette>

#include "settings/SettingCells.h"

namespace tarnwell::colours {

inline constexpr QColor kCell{255, 255, 192};
inline constexpr QColor kHeading{239, 219, 137};
inline constexpr QColor kBeingEdited{255, 192, 255};
inline constexpr QColor kValueText{0, 0, 192};
inline constexpr QColor kText{0, 0, 0};
inline constexpr QColor kLampOn{0, 255, 0};
inline constexpr QColor kLampOff{255, 0, 0};

/// A shade of the theme's highlight on which its ordinary text is still read.
inline QColor progressBar(const QPalette& palette) {
    constexpr double kShare = 0.35;
    const QColor base = palette.color(QPalette::Window);
    const QColor highlight = palette.color(QPalette::Highlight);
    const auto mixed = [](int from, int to) {
        return static_cast<int>(from + (to - from) * kShare);
    };
    return {mixed(base.red(), highlight.red()), mixed(base.green(), highlight.green()),
            mixed(base.blue(), highlight.blue())};
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
