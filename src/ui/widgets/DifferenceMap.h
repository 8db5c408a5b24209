// All bytes of two images as a picture, 128 in a row.
#pragma once

#include <QWidget>

#include "image/MemoryBuffer.h"

namespace tarnwell {

/// A byte that differs is a block, with a hole if it holds a named setting; of equal bytes, a named
/// setting is a bar, FF a dot, and all others are empty. A frame stands around the current byte,
/// which arrow keys, Home and End move; Enter, Space or a click wants it shown.
class DifferenceMap final : public QWidget {
    Q_OBJECT
  public:
    explicit DifferenceMap(QWidget* parent = nullptr);

    void show(const MemoryBuffer& left, const MemoryBuffer& right, TargetDevice device,
              NumberMode mode);
    void clear();
    int current() const { return m_current; }
    void setCurrent(int address);

    /// Pixels of a byte; the picture is in the middle.
    double side() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void wanted(int address);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QRectF cellOf(int address) const;
    QPointF origin() const;
    int addressAt(const QPoint& point) const;
    QString textOf(int address) const;
    void paintByte(QPainter& painter, int address) const;

    MemoryBuffer m_left{};
    MemoryBuffer m_right{};
    TargetDevice m_device = TargetDevice::Primary;
    NumberMode m_mode = NumberMode::Decimal;
    bool m_empty = true;
    int m_current = 0;
};

}  // namespace tarnwell
