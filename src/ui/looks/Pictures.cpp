#include "ui/looks/Pictures.h"

#include <QIcon>

#include "ui/looks/Measures.h"

namespace tarnwell {

QLabel* pictureLabel(const char* resource, const char* name, int side, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setAccessibleName(QLatin1String(name));
    const QIcon picture{QLatin1String(resource)};
    label->setPixmap(
        picture.pixmap(QSize(scaled(side), scaled(side)), parent->devicePixelRatioF()));
    label->setAlignment(Qt::AlignCenter);
    return label;
}

}  // namespace tarnwell
