// Shows every page, dialog and menu of the program, for tests and for the pictures of the manual.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

namespace tarnwell {

/// Runs the program on a simulated television with factory values and hands over each page and
/// dialog once it is painted; nothing of the user's is touched. A settings page has one value
/// changed. Needs a QApplication; ends the process if a window does not come up.
///
/// The names: chroma, edges, global, iris, picture, editor (with an open edit box and pending
/// writes), editor-off, editor-warning, value-editor, port-options, i2c-bus (after a
/// look), i2c-bus-mainboard (which has none), interface-test,
/// interface-test-faults (with the longest diagnosis), about,
/// driver-path, fill-value, save-image, load-image, verify-question, secondary-question,
/// verify-failed, compare, differences-question (both with three kinds of differences), backups,
/// menu-file, menu-edit, menu-eep, menu-options, menu-port, menu-help, menu-cell, menu-grid,
/// menu-pending, go-to and find (each with what it says of a wrong text).
void WalkGallery(const std::function<void(const std::string& name, QWidget& window)>& visit);

}  // namespace tarnwell
