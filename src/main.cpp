// Joins the window with the port that it drives.
#include <QApplication>
#include <QTimer>

#include "core/OptionsFile.h"
#include "core/UserFolders.h"
#include "port/PortChoice.h"
#include "port/VcdTrace.h"
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

std::unique_ptr<ChosenPort> choosePort(const CommandLine& line, SystemCalls& system) {
    const auto kind = ParsePortKind(line.portKind);
    if (!kind)
        refuseArgument("There is no port '" + line.portKind + "'.");
    const bool real = *kind == PortKind::Ppdev || *kind == PortKind::DevPort;
    if (real && (line.noTelevision || line.realTime))
        refuseArgument("--no-television and --real-time need the simulated port.");
    return ChoosePort(*kind,
                      {.television = line.noTelevision ? Television::Absent : Television::Connected,
                       .pace = line.realTime ? Pace::Real : Pace::Virtual},
                      system, DataFolder());
}

std::unique_ptr<VcdTrace> openTrace(const CommandLine& line, ChosenPort& port) {
    if (!line.traceFile)
        return nullptr;
    auto made = VcdTrace::Create(*line.traceFile, port.ThePort(), port.TheClock());
    if (const auto* const reason = std::get_if<std::string>(&made))
        refuse(*reason);
    std::unique_ptr<VcdTrace> trace = std::get<std::unique_ptr<VcdTrace>>(std::move(made));
    return trace;
}

}  // namespace

int main(int argc, char** argv) {
    nameApplication();
    const CommandLine line = readCommandLine(argc, argv);
    LinuxSystemCalls system;
    const auto port = choosePort(line, system);
    const auto trace = openTrace(line, *port);

    QApplication application(argc, argv);
    OptionsFile store(OptionsPath());
    LinuxPlatform platform;
    const Wire wire{port->ThePort(), port->TheClock(), trace ? *trace : NoBusTrace()};
    FormMain window({wire, store, platform, port->IsSimulated(), StateFolder() + "/backups"});
    window.startUp();
    window.show();
    if (line.imageFile)
        QTimer::singleShot(0, &window, [&] { window.openImage(*line.imageFile); });
    return QApplication::exec();
}
