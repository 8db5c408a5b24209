// The main window's commands that set up, test and load what reaches the adapter.
#include "ui/FormMain.h"

namespace tarnwell {

void FormMain::showPortOptions() {}

void FormMain::showInterfaceTest() {}

void FormMain::startDriverLoader() {}

}  // namespace tarnwell
