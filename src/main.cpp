// Joins the window with the port that it drives.
#include <QApplication>
#include <QTimer>

#include "core/OptionsFile.h"
#include "core/UserFolders.h"
#include "port/OpenedPort.h"
#include "port/system/LinuxSystemCalls.h"
#include "ui/desktop/CommandLine.h"
#include "ui/window/FormMain.h"

namespace {

using namespace tarnwell;

void nameApplication() {
    QApplication::setApplicationName(QStringLiteral("tarnwell"));
    QApplication::setApplicationVersion(QStringLiteral("%1.%2.%3")
                                            .arg(TARNWELL_VERSION_MAJOR)
                                            .arg(TARNWELL_VERSION_MINOR)
                                            .arg(TARNWELL_VERSION_REVISION));
    QApplication::setDesktopFileName(QStringLiteral("tarnwell"));
}

OpenedPort openPort(const CommandLine& line, SystemCalls& system) {
    auto opened = OpenPort(line.port, system, DataFolder());
    if (const auto* const refusal = std::get_if<PortRefusal>(&opened))
        refusal->wrongArgument ? refuseArgument(refusal->reason) : refuse(refusal->reason);
    return std::get<OpenedPort>(std::move(opened));
}

}  // namespace

int main(int argc, char** argv) {
    nameApplication();
    const CommandLine line = readCommandLine(argc, argv);
    LinuxSystemCalls system;
    const OpenedPort opened = openPort(line, system);

    QApplication application(argc, argv);
    OptionsFile store(OptionsPath());
    LinuxPlatform platform;
    FormMain window({opened.TheWire(), store, platform, opened.port->IsSimulated(),
                     StateFolder() + "/backups"});
    window.startUp();
    window.show();
    if (line.imageFile)
        QTimer::singleShot(0, &window, [&] { window.openImage(*line.imageFile); });
    return QApplication::exec();
}
