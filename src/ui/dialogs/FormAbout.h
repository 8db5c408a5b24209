// The about box.
#pragma once

#include <QDialog>

namespace tarnwell {

class FormAbout final : public QDialog {
  public:
    explicit FormAbout(QWidget* parent);
};

}  // namespace tarnwell
