// The about box.
#pragma once

#include <QDialog>

namespace tarnwell {

class FormAbout final : public QDialog {
    Q_OBJECT
  public:
    explicit FormAbout(QWidget* parent);
};

}  // namespace tarnwell
