// The pages' tabs tell how many values wait to be written.
#pragma once

#include <QTabWidget>

#include "program/Program.h"
#include "settings/CellTexts.h"
#include "ui/looks/Text.h"

namespace tarnwell {

/// In the tab's tooltip, which a screen reader says as its description.
inline void showWaiting(QTabWidget& tabs, const Program& program, Page page) {
    tabs.setTabToolTip(static_cast<int>(page), toQt(WaitingText(program.WaitingOn(page))));
}

}  // namespace tarnwell
