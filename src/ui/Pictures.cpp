#include "ui/Pictures.h"

#include <QIcon>

#include "ui/Measures.h"

namespace tarnwell {

QLabel* pictureLabel(const char* resource, int side, QWidget* parent) {
    auto* label = new QLabel(parent);
    const QIcon picture{QLatin1String(resource)};
    label->setPixmap(
        picture.pixmap(QSize(scaled(side), scaled(side)), parent->devicePixelRatioF()));
    label->setAlignment(Qt::AlignCenter);
    return label;
}

}  // namespace tarnwell
