#include "ui/widgets/PortConnector.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "ui/looks/Accessible.h"
#include "ui/looks/Measures.h"

namespace tarnwell {

namespace {

struct Signal {
    PinPosition position;
    const char* name;
    QColor colour;  ///< light enough for black digits, told apart by the colour-blind (Okabe, Ito)
};

const std::array<Signal, PortConnector::kSignals> kSignalTable{{
    {PinPosition::DataOut, "SDA out", QColor(86, 180, 233)},
    {PinPosition::ClockOut, "SCL out", QColor(230, 159, 0)},
    {PinPosition::DataIn, "SDA in", QColor(0, 190, 140)},
    {PinPosition::ClockIn, "SCL in", QColor(240, 228, 66)},
}};

constexpr int kPinCount = 25;
constexpr int kPinsInTopRow = 13;
constexpr double kPinDiameter = 0.84;  // of the pitch
constexpr double kShellMargin = 0.45;  // of the pitch, around the pins

}  // namespace

PortConnector::PortConnector(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("PortConnector"));
    setAccessibleRole(*this, QAccessible::Graphic);
    setAccessibleName(QStringLiteral("Pins of the 25-pin connector"));
    setToolTip(QStringLiteral(" The computer's connector, seen from outside "));
}

void PortConnector::follow(const PortOptions& options) {
    QStringList lines;
    for (std::size_t signal = 0; signal < kSignals; ++signal) {
        const PinPosition position = kSignalTable[signal].position;
        const std::optional<int> index = options.Selected(position);
        m_pins[signal].reset();
        if (index)
            m_pins[signal] = Group(position).options[static_cast<std::size_t>(*index)].pin;
        lines.append(legend(signal));
    }
    setAccessibleDescription(lines.join(QStringLiteral(", ")));
    update();
}

std::optional<int> PortConnector::pinOf(PinPosition position) const {
    for (std::size_t signal = 0; signal < kSignals; ++signal) {
        if (kSignalTable[signal].position == position)
            return m_pins[signal];
    }
    return std::nullopt;
}

QString PortConnector::legend(std::size_t signal) const {
    const std::optional<int> pin = m_pins[signal];
    return QStringLiteral("%1: %2").arg(
        QLatin1String(kSignalTable[signal].name),
        pin ? QStringLiteral("pin %1").arg(*pin) : QStringLiteral("no pin"));
}

QColor PortConnector::colourOfPin(int pin) const {
    const auto signal = std::ranges::find(m_pins, std::optional<int>(pin));
    return signal == m_pins.end()
               ? QColor(Qt::transparent)
               : kSignalTable[static_cast<std::size_t>(signal - m_pins.begin())].colour;
}

int PortConnector::pitch() const {
    return qMax(fontMetrics().horizontalAdvance(QStringLiteral("00")) + scaled(90),
                fontMetrics().height() + scaled(60));
}

QRectF PortConnector::shell() const {
    const double side = pitch();
    return {1, 1, side * (kPinsInTopRow + 2 * kShellMargin), side * (2 + 2 * kShellMargin)};
}

QPointF PortConnector::pinCentre(int pin) const {
    const bool top = pin <= kPinsInTopRow;
    const double fromRight = top ? pin - 0.5 : pin - kPinsInTopRow;
    const QRectF room = shell();
    return {room.right() - pitch() * (fromRight + kShellMargin),
            room.top() + pitch() * ((top ? 0.5 : 1.5) + kShellMargin)};
}

QSize PortConnector::sizeHint() const {
    int text = 0;
    for (const Signal& signal : kSignalTable)
        text = qMax(text, fontMetrics().horizontalAdvance(QLatin1String(signal.name) +
                                                          QStringLiteral(": no pin")));
    const int lines = static_cast<int>(kSignals) * fontMetrics().height();
    const QRectF room = shell();
    return {static_cast<int>(std::ceil(room.right())) + 2 * pitch() + text,
            qMax(static_cast<int>(std::ceil(room.bottom())), lines) + 2};
}

void PortConnector::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintShell(painter);
    paintPins(painter);
    paintLegend(painter);
}

void PortConnector::paintShell(QPainter& painter) const {
    const QRectF room = shell();
    const double slant = pitch() * 0.4;
    const double radius = pitch() * 0.6;
    QPolygonF corners;
    corners << room.topLeft() << room.topRight() << QPointF(room.right() - slant, room.bottom())
            << QPointF(room.left() + slant, room.bottom());
    QPainterPath path;
    for (int corner = 0; corner < 4; ++corner) {
        const QPointF here = corners[corner];
        const QLineF in(here, corners[(corner + 3) % 4]);
        const QLineF out(here, corners[(corner + 1) % 4]);
        const QPointF before = in.pointAt(radius / in.length());
        corner == 0 ? path.moveTo(before) : path.lineTo(before);
        path.quadTo(here, out.pointAt(radius / out.length()));
    }
    path.closeSubpath();
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1.5));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawPath(path);
}

void PortConnector::paintPins(QPainter& painter) const {
    const double diameter = pitch() * kPinDiameter;
    const QColor text = palette().color(QPalette::Text);
    for (int pin = 1; pin <= kPinCount; ++pin) {
        QRectF circle(0, 0, diameter, diameter);
        circle.moveCenter(pinCentre(pin));
        const QColor colour = colourOfPin(pin);
        const bool used = colour.alpha() != 0;
        painter.setPen(QPen(text, used ? 1.5 : 0.5));
        painter.setBrush(colour);
        painter.drawEllipse(circle);
        painter.setPen(used ? QColor(Qt::black) : text);
        painter.drawText(circle, Qt::AlignCenter, QString::number(pin));
    }
}

void PortConnector::paintLegend(QPainter& painter) const {
    const int line = fontMetrics().height();
    const int left = static_cast<int>(std::ceil(shell().right())) + pitch() / 2;
    const int top = (height() - static_cast<int>(kSignals) * line) / 2;
    for (std::size_t signal = 0; signal < kSignals; ++signal) {
        const int y = top + static_cast<int>(signal) * line;
        const int side = line * 2 / 3;
        painter.setPen(palette().color(QPalette::WindowText));
        painter.setBrush(kSignalTable[signal].colour);
        painter.drawEllipse(QRectF(left, y + (line - side) / 2.0, side, side));
        painter.drawText(QRect(left + line, y, width() - left - line, line),
                         Qt::AlignLeft | Qt::AlignVCenter, legend(signal));
    }
}

}  // namespace tarnwell

#include "moc_PortConnector.cpp"
