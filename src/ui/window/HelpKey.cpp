#include "ui/window/HelpKey.h"

#include <QCoreApplication>
#include <QDialog>
#include <QKeyEvent>
#include <array>
#include <utility>

#include "core/Pages.h"

namespace tarnwell {

namespace {

struct Row {
    const char* name;  ///< objectName or class
    Topic topic;
};

constexpr std::array kRows{
    Row{"formEdit", Topic::ValueEditor},
    Row{"formCompare", Topic::Compare},
    Row{"formBackups", Topic::Backups},
    Row{"formPortOpts", Topic::AdvancedSetup},
    Row{"formI2CBus", Topic::I2cBuses},
    Row{"formTestInt", Topic::InterfaceTest},
    Row{"formSets", Topic::Sets},
    Row{"formHistory", Topic::Sets},
    Row{"formWarning", Topic::DataEditor},
    Row{"formName", Topic::Names},
    Row{"formNames", Topic::Names},
    Row{"formGoTo", Topic::Finding},
    Row{"formFind", Topic::Finding},
    Row{"formAbout", Topic::About},
    Row{"formCnP", Topic::PortAccess},
    Row{"QMessageBox", Topic::Messages},
    Row{"QInputDialog", Topic::WholeDevice},
    Row{"QFileDialog", Topic::Archives},
    Row{"QMenuBar", Topic::Menus},
    Row{"mnuCell", Topic::ValueEditor},
    Row{"Frame1", Topic::PendingWrites},
    Row{"cmdWriteData", Topic::PendingWrites},
};

/// Asks on behalf of the dialog that it stands over.
bool isPartOfADialog(const QWidget& widget) {
    return widget.inherits("QInputDialog") &&
           qobject_cast<const QDialog*>(widget.parentWidget()) != nullptr;
}

}  // namespace

Topic helpTopicOf(const QWidget& widget, Page page) {
    for (const QWidget* around = &widget; around != nullptr; around = around->parentWidget()) {
        if (isPartOfADialog(*around))
            continue;
        for (const Row& row : kRows) {
            if (around->objectName() == QLatin1String(row.name) || around->inherits(row.name))
                return row.topic;
        }
    }
    return Info(page).topic;
}

HelpKey::HelpKey(const ProgramState& state, std::function<void(Topic)> showTopic)
    : m_state(state), m_showTopic(std::move(showTopic)) {
    qApp->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (!key.matches(QKeySequence::HelpContents))
        return false;
    if (!key.isAutoRepeat())
        m_showTopic(helpTopicOf(static_cast<const QWidget&>(*watched), m_state.page));
    return true;
}

}  // namespace tarnwell
