// A box with a list whose texts may be longer than its room.
#pragma once

#include <QComboBox>

namespace tarnwell {

class ElidingBox : public QComboBox {
  public:
    ElidingBox();

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tarnwell
