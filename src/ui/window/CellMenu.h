// The menu of a value cell.
#pragma once

#include <QPoint>
#include <QWidget>
#include <functional>

#include "program/Program.h"

namespace tarnwell {

/// What starts the menu's commands.
struct CellMenuStarts {
    std::function<void()> edit;
    std::function<void(const std::function<void()>&)> run;
};

/// Shows the menu at a place on the screen; it belongs to `window` and goes when it is closed.
void popUpCellMenu(QWidget& window, Program& program, int cell, const QPoint& place,
                   const CellMenuStarts& starts);

}  // namespace tarnwell
