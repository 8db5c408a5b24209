// What a screen reader is told of the program's own widgets.
#pragma once

#include <QAccessible>
#include <QWidget>

namespace tarnwell {

/// Gives a widget that Qt does not know a role; one with the role of a button is pressed by a
/// screen reader as if its Space key were. To be called before the widget is shown.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

}  // namespace tarnwell
