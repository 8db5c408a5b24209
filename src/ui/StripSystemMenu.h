// Dialogs whose close box does nothing.
#pragma once

class QDialog;

namespace tarnwell::mGlobal {

/// Makes the close box and the close command (Alt+F4) of a dialog do nothing; it closes by its
/// own buttons and Escape alone.
void StripSystemMenu(QDialog& dialog);

}  // namespace tarnwell::mGlobal
