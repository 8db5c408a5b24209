// The pages' tabs tell how many values wait to be written.
#pragma once

#include <QTabWidget>

#include "core/Pages.h"
#include "program/Program.h"
#include "settings/CellTexts.h"
#include "ui/looks/Text.h"

namespace tarnwell {

/// Behind the tab's caption, and in its tooltip, which a screen reader says as its description.
inline void showWaiting(QTabWidget& tabs, const Program& program, Page page) {
    const bool isMarked = page == Page::Editor && program.state.GridChanged;
    const int waiting = program.DrawnAsWaiting(page);
    QString caption = toQt(isMarked ? kChangedEditorCaption : Info(page).caption);
    if (waiting > 0)
        caption += QStringLiteral(" %1").arg(waiting);
    tabs.setTabText(static_cast<int>(page), caption);
    tabs.setTabToolTip(static_cast<int>(page), toQt(WaitingText(waiting)));
}

}  // namespace tarnwell
