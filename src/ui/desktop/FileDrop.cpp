#include "ui/desktop/FileDrop.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <utility>

#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

/// Empty for anything but one file.
QString fileIn(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    const QString path = urls.size() == 1 ? urls.constFirst().toLocalFile() : QString();
    return QFileInfo(path).isFile() ? path : QString();
}

bool isDrag(const QEvent& event) {
    return event.type() == QEvent::DragEnter || event.type() == QEvent::DragMove ||
           event.type() == QEvent::Drop;
}

}  // namespace

FileDrop::FileDrop(QWidget& window, std::function<void(const std::string&)> open)
    : m_open(std::move(open)) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
    connect(
        this, &FileDrop::dropped, this, [this](const QString& path) { m_open(pathFromQt(path)); },
        Qt::QueuedConnection);
}

bool FileDrop::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (!isDrag(*event))
        return false;
    auto& drag = static_cast<QDropEvent&>(*event);
    const QString path = fileIn(*drag.mimeData());
    const bool taken = !path.isEmpty() && QApplication::activeModalWidget() == nullptr;
    drag.setDropAction(Qt::CopyAction);
    drag.setAccepted(taken);
    if (taken && drag.type() == QEvent::Drop)
        Q_EMIT dropped(path);
    return true;
}

}  // namespace tarnwell

#include "moc_FileDrop.cpp"
