// The main window's commands that set up and test the adapter and load the port's driver.
#include "i2c/InterfaceTest.h"
#include "i2c/PortOptions.h"
#include "ui/FormCnP.h"
#include "ui/FormMain.h"
#include "ui/FormPortOpts.h"
#include "ui/FormTestInt.h"

namespace tarnwell {

void FormMain::showPortOptions() {
    PortOptions options(m_program.state, m_program.statusBar, m_user, m_program.i2c);
    FormPortOpts(options, this).exec();
}

void FormMain::showInterfaceTest() {
    InterfaceTest test(m_program.i2c, m_port, m_program.statusBar, m_user);
    bool passed = false;
    run([&] { passed = test.PreCheck(); });
    if (passed)
        FormTestInt(test, this).exec();
}

void FormMain::startDriverLoader() {
    guard(
        [this] { DriverLoader(m_platform, m_desktop, m_program.statusBar, m_user, *this).Run(); });
}

void FormMain::ShowFormCnP(const std::string& driverPath) {
    FormCnP(driverPath, this).exec();
}

}  // namespace tarnwell
