#include "ui/dialogs/StripSystemMenu.h"

#include <QEvent>

namespace tarnwell {

namespace {

/// QDialog::done() keeps its own close event from every filter that was there before.
class CloseRefusal final : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Close)
            return QObject::eventFilter(watched, event);
        event->ignore();
        return true;
    }
};

}  // namespace

void mGlobal::StripSystemMenu(QDialog& dialog) {
    dialog.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    dialog.installEventFilter(new CloseRefusal(&dialog));
}

}  // namespace tarnwell
