// All bytes of two images as a picture, 128 in a row, and what its marks mean.
#pragma once

#include <QWidget>

#include "image/MemoryBuffer.h"
#include "names/NameBook.h"

namespace tarnwell {

/// What the picture tells of a byte: each has a shape of its own, besides its colour.
enum class ByteKind {
    Equal,             ///< empty
    ErasedEqual,       ///< FF on both sides: a dot
    EqualSetting,      ///< a bar
    Different,         ///< a block
    DifferentSetting,  ///< a block with a hole
};

/// A frame stands around the current byte, which arrow keys, Home and End move; Enter, Space or a
/// click wants it shown.
class DifferenceMap final : public QWidget {
    Q_OBJECT
  public:
    explicit DifferenceMap(QWidget* parent = nullptr);

    /// `names` outlive the picture.
    void show(const MemoryBuffer& left, const MemoryBuffer& right, const NameBook& names,
              TargetDevice device, NumberMode mode);
    void clear();
    int current() const { return m_current; }
    void setCurrent(int address);

    /// Where a byte is in the picture.
    QRectF cellOf(int address) const;

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
    int side() const;
    QPointF origin() const;
    int addressAt(const QPoint& point) const;
    QString textOf(int address) const;
    ByteKind kindOf(int address) const;

    MemoryBuffer m_left{};
    MemoryBuffer m_right{};
    const NameBook* m_names = nullptr;
    TargetDevice m_device = TargetDevice::Primary;
    NumberMode m_mode = NumberMode::Decimal;
    bool m_empty = true;
    int m_current = 0;
};

/// The marks of the picture beside their names.
class DifferenceLegend final : public QWidget {
  public:
    explicit DifferenceLegend(QWidget* parent = nullptr);
};

}  // namespace tarnwell
