// Joins the window with the port that it drives.
#include <QApplication>
#include <QCommandLineParser>

#include "core/UserFolders.h"
#include "port/LinuxSystemCalls.h"
#include "port/PortChoice.h"
#include "ui/FormMain.h"
#include "ui/IniStore.h"
#include "ui/Text.h"

namespace {

struct Arguments {
    tarnwell::PortKind port;
    tarnwell::Television television;
};

Arguments parse(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Reads, archives, edits and writes the EEPROMs of an HDTV."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption port(
        QStringLiteral("port"),
        QStringLiteral("How to reach the adapter: auto, ppdev, devport or simulated."),
        QStringLiteral("kind"), QStringLiteral("auto"));
    const QCommandLineOption noTelevision(
        QStringLiteral("no-television"),
        QStringLiteral("With the simulated port: the adapter alone, nothing on its bus."));
    parser.addOption(port);
    parser.addOption(noTelevision);
    parser.process(application);

    const auto kind = tarnwell::ParsePortKind(parser.value(port).toStdString());
    if (!kind || !parser.positionalArguments().isEmpty())
        parser.showHelp(EXIT_FAILURE);
    return {*kind, parser.isSet(noTelevision) ? tarnwell::Television::Absent
                                              : tarnwell::Television::Connected};
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tarnwell"));
    QApplication::setApplicationVersion(QStringLiteral("%1.%2.%3")
                                            .arg(TARNWELL_VERSION_MAJOR)
                                            .arg(TARNWELL_VERSION_MINOR)
                                            .arg(TARNWELL_VERSION_REVISION));
    const Arguments arguments = parse(application);

    tarnwell::LinuxSystemCalls system;
    const auto port =
        tarnwell::ChoosePort(arguments.port, arguments.television, system, tarnwell::DataFolder());
    tarnwell::IniStore store(tarnwell::IniStore::defaultFileName());
    tarnwell::LinuxPlatform platform;
    tarnwell::FormMain window({port->ThePort(), port->TheClock(), store, platform,
                               port->IsSimulated(), tarnwell::StateFolder() + "/backups"});
    window.startUp();
    window.show();
    return QApplication::exec();
}
