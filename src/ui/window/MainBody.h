// What the main window holds below its menu: of a size that is given, or as large as the user
// makes it.
#pragma once

#include <QWidget>

namespace tarnwell {

class MainBody final : public QWidget {
    Q_OBJECT
  public:
    using QWidget::QWidget;

    /// It has this size.
    void fix(QSize size);

    /// It has at least this size, and `wanted` to begin with.
    void stretch(QSize least, QSize wanted);

    QSize sizeHint() const override { return m_wanted; }
    QSize minimumSizeHint() const override { return m_least; }

    /// What it is larger than its smallest size.
    QSize growth() const { return size() - m_least; }

  Q_SIGNALS:
    void resized();

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QSize m_least;
    QSize m_wanted;
};

}  // namespace tarnwell
