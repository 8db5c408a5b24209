#include "ui/desktop/InputGate.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

namespace tarnwell {

namespace {

constexpr qint64 kPaintingInterval = 100;  // ms
constexpr qint64 kEscapeInterval = 2000;   // ms

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

void InputGate::setStopButton(QAbstractButton& button) {
    m_stopButton = &button;
    // A screen reader presses it past the gate.
    connect(&button, &QAbstractButton::clicked, this, [this] { m_stopWanted = m_shut; });
}

bool InputGate::keepPainting() {
    if (m_shut && m_sinceEvents.elapsed() < kPaintingInterval)
        return !m_stopWanted;
    if (!m_shut)
        qApp->installEventFilter(this);
    m_shut = true;
    Q_EMIT painting();
    QCoreApplication::processEvents();
    m_sinceEvents.start();
    return !m_stopWanted;
}

void InputGate::open() {
    if (!m_shut)
        return;
    QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
    m_shut = false;
    m_stopWanted = false;
    m_sinceEscape.invalidate();
    if (m_stopButton != nullptr)
        m_stopButton->setDown(false);
}

void InputGate::noteEscape(const QKeyEvent& event) {
    if (event.key() != Qt::Key_Escape || event.isAutoRepeat())
        return;
    if (m_sinceEscape.isValid() && m_sinceEscape.elapsed() <= kEscapeInterval)
        m_stopWanted = true;
    m_sinceEscape.start();
}

// The mouse speaks to the window first; another one may lie above the button.
void InputGate::noteMouse(const QObject* watched, const QMouseEvent& event) {
    if (m_stopButton == nullptr || !m_stopButton->isVisible() ||
        (watched != m_stopButton->window()->windowHandle() && watched != m_stopButton))
        return;
    const QPoint place = m_stopButton->mapFromGlobal(event.globalPosition().toPoint());
    const bool hit = event.button() == Qt::LeftButton && m_stopButton->rect().contains(place);
    if (event.type() == QEvent::MouseButtonRelease)
        m_stopWanted = m_stopWanted || (hit && m_stopButton->isDown());
    m_stopButton->setDown(hit && event.type() == QEvent::MouseButtonPress);
}

bool InputGate::eventFilter(QObject* watched, QEvent* event) {
    if (!isInput(event->type()))
        return false;
    if (event->type() == QEvent::KeyPress)
        noteEscape(static_cast<const QKeyEvent&>(*event));
    else if (event->type() == QEvent::MouseButtonPress ||
             event->type() == QEvent::MouseButtonRelease)
        noteMouse(watched, static_cast<const QMouseEvent&>(*event));
    event->setAccepted(event->type() != QEvent::Close);
    return true;
}

}  // namespace tarnwell

#include "moc_InputGate.cpp"
