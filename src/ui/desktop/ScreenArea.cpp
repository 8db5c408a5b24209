#include "ui/desktop/ScreenArea.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>

#include "ui/looks/Measures.h"
#include "ui/looks/ReadableStyle.h"

namespace tarnwell {

namespace {

constexpr int kFocusMargin = 2;

}  // namespace

ScreenArea::ScreenArea(QWidget& content, const QWidget& beside, QWidget* parent)
    : QScrollArea(parent), m_beside(beside) {
    setObjectName(QStringLiteral("ScreenArea"));
    setAccessibleName(QStringLiteral("Part of the window that is seen"));
    setFrameShape(QFrame::NoFrame);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setWidget(&content);
    content.setAutoFillBackground(false);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*old*/, QWidget* now) {
        if (now != nullptr && widget()->isAncestorOf(now))
            ensureWidgetVisible(now);
    });
    adapt();
}

QSize ScreenArea::room() const {
    return screen()->availableGeometry().size() - kWindowFrame -
           QSize(0, m_beside.sizeHint().height());
}

bool ScreenArea::scrolls() const {
    return widget()->size().boundedTo(room()) != widget()->size();
}

QSize ScreenArea::sizeHint() const {
    const QSize content = widget()->size();
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
    if (watched == widget() && event->type() == QEvent::Resize)
        adapt();
    return QScrollArea::eventFilter(watched, event);
}

}  // namespace tarnwell
