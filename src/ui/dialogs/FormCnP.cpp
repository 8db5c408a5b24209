#include "ui/dialogs/FormCnP.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kWidestPath = 9000;

}  // namespace

FormCnP::FormCnP(const std::string& driverPath, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("formCnP"));
    setWindowTitle(QStringLiteral("Cut-N-Paste Window"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(scaled(240), scaled(240), scaled(240), scaled(180));
    layout->setSpacing(scaled(180));

    m_path.setObjectName(QStringLiteral("txtCnP"));
    m_path.setAccessibleName(QStringLiteral("Full pathname of driver"));
    m_path.setReadOnly(true);
    m_path.setText(pathToQt(driverPath));
    const int room = m_path.fontMetrics().horizontalAdvance(m_path.text()) + scaled(240);
    m_path.setMinimumWidth(qMin(room, scaled(kWidestPath)));
    m_path.installEventFilter(this);
    layout->addWidget(&m_path);

    const auto addLabel = [layout](const char* name, const QString& text) {
        auto* label = new QLabel(text);
        label->setObjectName(QLatin1String(name));
        label->setAlignment(Qt::AlignCenter);
        layout->addWidget(label);
    };
    addLabel("lblInstr", QStringLiteral("Cut-and-Paste the driver path above to the\n"
                                        "'LoadDrv' Window, 'Full pathname of driver' text box."));
    addLabel("lblTail", QStringLiteral("Close this window to return to Tarnwell"));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    m_path.selectAll();
}

/// A press has placed the cursor by the time of the release.
bool FormCnP::eventFilter(QObject* watched, QEvent* event) {
    const bool handled = QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonRelease)
        m_path.selectAll();
    return handled;
}

}  // namespace tarnwell
