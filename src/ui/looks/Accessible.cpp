#include "ui/looks/Accessible.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QKeyEvent>

namespace tarnwell {

namespace {

constexpr const char* kRole = "accessibleRole";

class RoleInterface final : public QAccessibleWidget {
  public:
    RoleInterface(QWidget* of, QAccessible::Role role) : QAccessibleWidget(of, role) {}

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (role() == QAccessible::Button)
            names.prepend(pressAction());
        return names;
    }

    void doAction(const QString& action) override {
        if (action != pressAction())
            return QAccessibleWidget::doAction(action);
        QCoreApplication::postEvent(widget(),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier));
    }
};

QAccessibleInterface* make(const QString& /*className*/, QObject* object) {
    const QVariant role = object->property(kRole);
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr || !role.isValid())
        return nullptr;
    return new RoleInterface(widget, static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    static bool installed = false;
    if (!std::exchange(installed, true))
        QAccessible::installFactory(make);
    widget.setProperty(kRole, static_cast<int>(role));
}

}  // namespace tarnwell
