#include "ui/widgets/CommandButton.h"

#include "ui/looks/Fitted.h"

namespace tarnwell {

CommandButton::CommandButton(const char* name, const char* caption, const char* toolTip,
                             const QRect& place, QWidget* parent)
    : QPushButton(QLatin1String(caption), parent) {
    setObjectName(QLatin1String(name));
    setAccessibleName(QLatin1String(caption));
    setToolTip(QLatin1String(toolTip));
    setGeometry(place);
    fitCaption(*this);
}

}  // namespace tarnwell
