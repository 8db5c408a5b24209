#include "ui/widgets/ElidingBox.h"

#include <QAbstractItemView>
#include <QStylePainter>

namespace tarnwell {

namespace {

/// What there is room for at least.
constexpr int kLetters = 20;

}  // namespace

ElidingBox::ElidingBox() {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kLetters);
    setIconSize({0, 0});  // there is none
    view()->setTextElideMode(Qt::ElideMiddle);
}

void ElidingBox::paintEvent(QPaintEvent* event) {
    if (currentIndex() < 0)
        return QComboBox::paintEvent(event);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect room =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText =
        fontMetrics().elidedText(option.currentText, Qt::ElideMiddle, room.width() - 4);
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace tarnwell
