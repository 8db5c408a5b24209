// Joins the window with the port that it drives.
#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "core/files/UserFolders.h"
#include "core/options/Options.h"
#include "core/options/OptionsFile.h"
#include "core/run/StopRequest.h"
#include "port/OpenedPort.h"
#include "port/system/LinuxSystemCalls.h"
#include "ui/desktop/CommandLine.h"
#include "ui/desktop/DisplayNeeded.h"
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

OpenedPort openPort(PortRequest request, mRegistry& options, SystemCalls& system) {
    request.chosen = BusOfOptions(options);
    auto opened = OpenPort(request, system, DataFolder());
    if (const auto* const refusal = std::get_if<PortRefusal>(&opened))
        refusal->wrongArgument ? refuseArgument(refusal->reason) : refuse(refusal->reason);
    return std::get<OpenedPort>(std::move(opened));
}

/// The program while its window may be shown.
Program* shown = nullptr;

/// Qt leaves the process, whatever it does at the moment, when the display has ended.
void endWithoutDisplay() {
    if (shown != nullptr)
        shown->Abandon("the display has ended");
}

void endBySignal(int signal) {
    shown->Abandon(std::string("stopped by SIG") + sigabbrev_np(signal));
    std::_Exit(128 + signal);
}

}  // namespace

int main(int argc, char** argv) {
    static StopRequest stop;  // a signal may come until the very end
    const int signals = NoteSignals(stop);
    nameApplication();
    const CommandLine line = readCommandLine(argc, argv);
    LinuxSystemCalls system;
    OptionsFile store(OptionsPath());
    const OpenedPort opened = openPort(line.port, store, system);

    std::optional<QApplication> application;
    {
        const DisplayNeeded needed;
        application.emplace(argc, argv);
    }
    LinuxPlatform platform;
    FormMain window({opened.TheWire(stop), store, platform, opened.port->IsSimulated(),
                     StateFolder() + "/backups", DataFolder() + "/names.json", opened.bus});
    window.startUp();
    shown = &window.program();
    std::atexit(endWithoutDisplay);
    stop.wayOut = [&] { endBySignal(stop.Signal()); };
    const QSocketNotifier notifier(signals, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&] { stop.Obey(); });
    window.show();
    QTimer::singleShot(0, &window, [&] {
        window.tellMissingI2cBus();
        window.tellNameFaults();
        if (line.archiveFile)
            window.openArchive(*line.archiveFile);
    });
    const int status = QApplication::exec();
    shown = nullptr;
    return status;
}
