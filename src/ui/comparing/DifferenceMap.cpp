#include "ui/comparing/DifferenceMap.h"

#include <QGridLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "core/user/Number.h"
#include "i2c/Mismatch.h"
#include "settings/Catalog.h"
#include "ui/looks/Accessible.h"
#include "ui/looks/Measures.h"
#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kColumns = 128;
constexpr int kRows = kEepromBytes / kColumns;
constexpr int kFrame = 4;     // pixels around the picture, where the focus is shown
constexpr int kSide = 60;     // of a byte, twips
constexpr int kSmallest = 2;  // pixels of a byte

constexpr QColor kDifferentOnLight(192, 0, 0);
constexpr QColor kDifferentOnDark(255, 112, 112);

void paintMark(QPainter& painter, const QPalette& palette, const QRectF& cell, ByteKind kind) {
    const QColor base = palette.color(QPalette::Base);
    const QColor different = base.lightness() < 128 ? kDifferentOnDark : kDifferentOnLight;
    const double third = cell.width() / 3;
    const QRectF middle = cell.adjusted(third, third, -third, -third);
    switch (kind) {
        case ByteKind::Equal:
            return;
        case ByteKind::ErasedEqual:
            return painter.fillRect(middle, palette.color(QPalette::Text));
        case ByteKind::EqualSetting:
            return painter.fillRect(cell.adjusted(0, third, 0, -third),
                                    palette.color(QPalette::Highlight));
        case ByteKind::Different:
            return painter.fillRect(cell, different);
        case ByteKind::DifferentSetting:
            painter.fillRect(cell, different);
            return painter.fillRect(middle, base);
    }
}

/// A mark as large as a letter.
class LegendMark final : public QWidget {
  public:
    explicit LegendMark(ByteKind kind) : m_kind(kind) {
        const int side = fontMetrics().ascent() / 3 * 3;
        setFixedSize(side + 2, side + 2);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().color(QPalette::Base));
        paintMark(painter, palette(), rect().adjusted(1, 1, -1, -1), m_kind);
    }

  private:
    ByteKind m_kind;
};

}  // namespace

DifferenceMap::DifferenceMap(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("mapDifferences"));
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleRole(*this, QAccessible::Graphic);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    clear();
}

void DifferenceMap::show(const MemoryBuffer& left, const MemoryBuffer& right, const NameBook& names,
                         TargetDevice device, NumberMode mode) {
    m_left = left;
    m_right = right;
    m_names = &names;
    m_device = device;
    m_mode = mode;
    m_empty = false;
    setCurrent(m_current);
}

void DifferenceMap::clear() {
    m_empty = true;
    setCurrent(0);
}

void DifferenceMap::setCurrent(int address) {
    m_current = std::clamp(address, 0, kEepromBytes - 1);
    setAccessibleName(QStringLiteral("Picture of the bytes"));
    setAccessibleDescription(m_empty ? QString() : textOf(m_current));
    update();
}

QSize DifferenceMap::sizeHint() const {
    return QSize(kColumns, kRows) * std::max(kSmallest, scaled(kSide)) +
           QSize(2 * kFrame, 2 * kFrame);
}

QSize DifferenceMap::minimumSizeHint() const {
    return QSize(kColumns, kRows) * kSmallest + QSize(2 * kFrame, 2 * kFrame);
}

int DifferenceMap::side() const {
    return std::max(kSmallest,
                    std::min((width() - 2 * kFrame) / kColumns, (height() - 2 * kFrame) / kRows));
}

QPointF DifferenceMap::origin() const {
    return {(width() - kColumns * side()) / 2.0, (height() - kRows * side()) / 2.0};
}

QRectF DifferenceMap::cellOf(int address) const {
    const QPoint place(address % kColumns, address / kColumns);
    return {origin() + QPointF(place) * side(), QSizeF(side(), side())};
}

int DifferenceMap::addressAt(const QPoint& point) const {
    const QPointF place = (point - origin()) / side();
    if (place.x() < 0 || place.y() < 0 || place.x() >= kColumns || place.y() >= kRows)
        return -1;
    return static_cast<int>(place.y()) * kColumns + static_cast<int>(place.x());
}

QString DifferenceMap::textOf(int address) const {
    const auto number = [&](const MemoryBuffer& image) {
        return toQt(NumberText(image[static_cast<std::size_t>(address)], m_mode));
    };
    const bool equal = number(m_left) == number(m_right);
    const QString place = toQt(AddressText(address, m_mode, m_names->TitlesOn(m_device)));
    return equal ? QStringLiteral("%1: %2 on both sides").arg(place, number(m_left))
                 : QStringLiteral("%1: %2 left, %3 right")
                       .arg(place, number(m_left), number(m_right));
}

ByteKind DifferenceMap::kindOf(int address) const {
    const auto index = static_cast<std::size_t>(address);
    const bool named = !m_names->At(m_device, address).empty();
    if (m_left[index] != m_right[index])
        return named ? ByteKind::DifferentSetting : ByteKind::Different;
    if (named)
        return ByteKind::EqualSetting;
    return m_left[index] == 0xFF ? ByteKind::ErasedEqual : ByteKind::Equal;
}

void DifferenceMap::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRectF picture(origin(), QSizeF(kColumns, kRows) * side());
    painter.fillRect(picture, palette().color(QPalette::Base));
    if (!m_empty) {
        for (int address = 0; address < kEepromBytes; ++address)
            paintMark(painter, palette(), cellOf(address), kindOf(address));
    }
    painter.setPen(QPen(palette().color(QPalette::WindowText), hasFocus() ? 3 : 1));
    painter.drawRect(picture.adjusted(-2, -2, 2, 2));
    if (!m_empty)
        painter.drawRect(cellOf(m_current).adjusted(-2, -2, 2, 2));
}

bool DifferenceMap::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const int address = addressAt(help.pos());
    QToolTip::showText(help.globalPos(), m_empty || address < 0 ? QString() : textOf(address),
                       this);
    return true;
}

void DifferenceMap::mousePressEvent(QMouseEvent* event) {
    const int address = addressAt(event->position().toPoint());
    if (m_empty || address < 0)
        return;
    setCurrent(address);
    Q_EMIT wanted(address);
}

void DifferenceMap::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Left:
            return setCurrent(m_current - 1);
        case Qt::Key_Right:
            return setCurrent(m_current + 1);
        case Qt::Key_Up:
            return setCurrent(m_current < kColumns ? m_current : m_current - kColumns);
        case Qt::Key_Down:
            return setCurrent(m_current + kColumns < kEepromBytes ? m_current + kColumns
                                                                  : m_current);
        case Qt::Key_Home:
            return setCurrent(0);
        case Qt::Key_End:
            return setCurrent(kEepromBytes - 1);
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            Q_EMIT wanted(m_current);
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

DifferenceLegend::DifferenceLegend(QWidget* parent) : QWidget(parent) {
    constexpr int kOneLine = 120;  // letters that the screen has room for
    const bool wide = kOneLine * fontMetrics().averageCharWidth() < screen()->size().width();
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins({});
    int place = 0;
    for (const auto& [kind, name] : {std::pair(ByteKind::Different, "Different"),
                                     {ByteKind::DifferentSetting, "Different setting"},
                                     {ByteKind::EqualSetting, "Setting"},
                                     {ByteKind::ErasedEqual, "FF"}}) {
        const int row = wide ? 0 : place % 2;
        const int column = wide ? place : place / 2;
        layout->addWidget(new LegendMark(kind), row, 2 * column);
        layout->addWidget(new QLabel(QLatin1String(name)), row, 2 * column + 1);
        ++place;
    }
    layout->setColumnStretch(2 * place, 1);
}

}  // namespace tarnwell

#include "moc_DifferenceMap.cpp"
