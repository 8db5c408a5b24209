// A button of the main window that starts a command.
#pragma once

#include <QPushButton>

namespace tarnwell {

class CommandButton final : public QPushButton {
  public:
    struct Texts {
        const char* name;
        const char* caption;
        const char* toolTip;
        const char* key;  ///< Alt with it presses the button, as the tooltip says below its text
    };
    CommandButton(const Texts& texts, const QRect& place, QWidget* parent);
};

}  // namespace tarnwell
