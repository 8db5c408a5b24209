#include "ui/StripSystemMenu.h"

#include <QDialog>
#include <QEvent>

namespace tarnwell::mGlobal {

namespace {

/// QDialog closes itself by hiding, so a close event is one of the window manager's.
class CloseBlocker final : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::Close)
            return false;
        event->ignore();
        return true;
    }
};

}  // namespace

void StripSystemMenu(QDialog& dialog) {
    dialog.setWindowFlag(Qt::WindowCloseButtonHint, false);
    dialog.installEventFilter(new CloseBlocker(&dialog));
}

}  // namespace tarnwell::mGlobal
