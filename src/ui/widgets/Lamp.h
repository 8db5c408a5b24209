// A round lamp of one colour.
#pragma once

#include <QWidget>

namespace tarnwell {

class Lamp final : public QWidget {
  public:
    explicit Lamp(QWidget* parent);
    void setColour(const QColor& colour);
    QColor colour() const { return m_colour; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor m_colour;
};

}  // namespace tarnwell
