#include "ui/desktop/ScreenArea.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>

#include "ui/looks/Measures.h"
#include "ui/looks/ReadableStyle.h"

namespace tarnwell {

namespace {

constexpr int kFocusMargin = 2;

}  // namespace

ScreenArea::ScreenArea(QWidget& content, QList<const QWidget*> beside, QWidget* parent)
    : QScrollArea(parent), m_beside(std::move(beside)) {
    setObjectName(QStringLiteral("ScreenArea"));
    setAccessibleName(QStringLiteral("Part of the window that is seen"));
    setFrameShape(QFrame::NoFrame);
    setWidget(&content);
    content.setAutoFillBackground(false);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*old*/, QWidget* now) {
        if (now != nullptr && widget()->isAncestorOf(now))
            ensureWidgetVisible(now);
    });
    fix();
}

void ScreenArea::stretch() {
    setWidgetResizable(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    adapt();
}

void ScreenArea::fix() {
    setWidgetResizable(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    adapt();
}

QSize ScreenArea::room() const {
    int height = 0;
    for (const QWidget* widget : m_beside)
        height += widget->isHidden() ? 0 : widget->sizeHint().height();
    return roomFor(*this) - QSize(0, height);
}

QSize ScreenArea::least() const {
    return widgetResizable() ? widget()->minimumSizeHint() : widget()->size();
}

bool ScreenArea::scrolls() const {
    return least().boundedTo(room()) != least();
}

QSize ScreenArea::sizeHint() const {
    return around(widgetResizable() ? widget()->sizeHint().boundedTo(room()) : widget()->size());
}

QSize ScreenArea::around(QSize content) const {
    if (!scrolls())
        return content;
    constexpr QSize kMargins(2 * kFocusMargin, 2 * kFocusMargin);
    const QSize bars(verticalScrollBar()->sizeHint().width(),
                     horizontalScrollBar()->sizeHint().height());
    return (content + bars + kMargins).boundedTo(room());
}

void ScreenArea::adapt() {
    const bool scrolling = scrolls();
    const int margin = scrolling ? kFocusMargin : 0;
    setViewportMargins(margin, margin, margin, margin);
    setFocusPolicy(scrolling ? Qt::TabFocus : Qt::NoFocus);
    updateGeometry();
}

bool ScreenArea::event(QEvent* event) {
    const bool handled = QScrollArea::event(event);
    if (event->type() == QEvent::Paint && hasFocus()) {
        QPainter painter(this);
        drawFocusFrame(painter, rect(), palette().color(QPalette::WindowText));
    }
    return handled;
}

bool ScreenArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() &&
        (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest))
        adapt();
    return QScrollArea::eventFilter(watched, event);
}

}  // namespace tarnwell
