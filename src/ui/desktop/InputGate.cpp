#include "ui/desktop/InputGate.h"

#include <QCoreApplication>
#include <QEvent>

namespace tarnwell {

namespace {

constexpr qint64 kPaintingInterval = 100;  // ms

bool isInput(QEvent::Type type) {
    switch (type) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::TabletMove:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::NativeGesture:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::Close:
            return true;
        default:
            return false;
    }
}

}  // namespace

void InputGate::keepPainting() {
    if (m_shut && m_sinceEvents.elapsed() < kPaintingInterval)
        return;
    if (!m_shut)
        qApp->installEventFilter(this);
    m_shut = true;
    Q_EMIT painting();
    QCoreApplication::processEvents();
    m_sinceEvents.start();
}

void InputGate::open() {
    if (!m_shut)
        return;
    QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
    m_shut = false;
}

bool InputGate::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (!isInput(event->type()))
        return false;
    event->setAccepted(event->type() != QEvent::Close);
    return true;
}

}  // namespace tarnwell
