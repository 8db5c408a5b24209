#include "ui/widgets/CommandButton.h"

#include "ui/looks/Fitted.h"

namespace tarnwell {

CommandButton::CommandButton(const Texts& texts, const QRect& place, QWidget* parent)
    : QPushButton(QLatin1String(texts.caption), parent) {
    setObjectName(QLatin1String(texts.name));
    setAccessibleName(QLatin1String(texts.caption));
    const QString key = QStringLiteral("Alt+") + QLatin1String(texts.key);
    setShortcut(QKeySequence(key));
    setToolTip(QLatin1String(texts.toolTip) + QLatin1Char('\n') + key);
    setGeometry(place);
    fitCaption(*this);
}

}  // namespace tarnwell
