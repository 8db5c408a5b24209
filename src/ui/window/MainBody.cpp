#include "ui/window/MainBody.h"

namespace tarnwell {

void MainBody::fix(QSize size) {
    m_least = m_wanted = size;
    setFixedSize(size);
}

void MainBody::stretch(QSize least, QSize wanted) {
    m_least = least;
    m_wanted = wanted.expandedTo(least);
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    setMinimumSize(least);
}

void MainBody::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Q_EMIT resized();
}

}  // namespace tarnwell

#include "moc_MainBody.cpp"
