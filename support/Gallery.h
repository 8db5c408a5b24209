// Shows every page, dialog and menu of the program, for tests and for the pictures of the manual.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

namespace tarnwell {

/// Runs the program on a simulated television with factory values and hands over each page and
/// dialog once it is painted; nothing of the user's is touched. A settings page has one value
/// changed. Needs a QApplication; ends the process if a window does not come up. Their names are
/// those in tests/ui/transcript.txt.
void WalkGallery(const std::function<void(const std::string& name, QWidget& window)>& visit);

}  // namespace tarnwell
