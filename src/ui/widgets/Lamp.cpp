#include "ui/widgets/Lamp.h"

#include <QPainter>

#include "ui/looks/Accessible.h"

namespace tarnwell {

Lamp::Lamp(QWidget* parent) : QWidget(parent) {
    setAccessibleRole(*this, QAccessible::Graphic);
    setObjectName(QStringLiteral("EditorLamp"));
}

void Lamp::setColour(const QColor& colour) {
    m_colour = colour;
    update();
}

void Lamp::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_colour);
    painter.setPen(palette().color(QPalette::WindowText));
    const int side = qMin(width(), height()) - 2;
    painter.drawEllipse(QRect((width() - side) / 2, (height() - side) / 2, side, side));
}

}  // namespace tarnwell
