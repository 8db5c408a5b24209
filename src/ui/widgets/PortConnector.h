// A drawing of the port's 25-pin connector with the pins that the signals use.
#pragma once

#include <QWidget>
#include <array>
#include <optional>

#include "i2c/parallel/PortOptions.h"

namespace tarnwell {

/// The computer's socket, seen from outside: pin 1 is at the top right.
class PortConnector final : public QWidget {
    Q_OBJECT
  public:
    explicit PortConnector(QWidget* parent);

    /// Shows the pins that are selected now.
    void follow(const PortOptions& options);

    /// The pin that `position` has in the drawing, or nothing.
    std::optional<int> pinOf(PinPosition position) const;

    /// The middle of `pin`, 1 to 25, in pixels: pin 1 is on the right, as one looks at a computer.
    QPointF pinCentre(int pin) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    static constexpr std::size_t kSignals = 4;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int pitch() const;
    QRectF shell() const;
    QString legend(std::size_t signal) const;
    QColor colourOfPin(int pin) const;
    void paintShell(QPainter& painter) const;
    void paintPins(QPainter& painter) const;
    void paintLegend(QPainter& painter) const;

    std::array<std::optional<int>, kSignals> m_pins;
};

}  // namespace tarnwell
