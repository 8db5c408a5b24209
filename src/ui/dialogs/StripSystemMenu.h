// Dialogs that close only by their own buttons and keys.
#pragma once

#include <QDialog>

namespace tarnwell::mGlobal {

/// Takes the last items, with Close, from the dialog's window menu: its close box is gone or does
/// nothing, and Alt+F4 does nothing.
void StripSystemMenu(QDialog& dialog);

}  // namespace tarnwell::mGlobal
