// A button of the main window that starts a command.
#pragma once

#include <QPushButton>

namespace tarnwell {

class CommandButton final : public QPushButton {
    Q_OBJECT
  public:
    CommandButton(const char* name, const char* caption, const char* toolTip, const QRect& place,
                  QWidget* parent);
};

}  // namespace tarnwell
