#include "ui/desktop/CommandLine.h"

#include <unistd.h>

#include <QCommandLineParser>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>

namespace tarnwell {

namespace {

constexpr int kWrongUse = 2;

/// Options that QApplication takes out of the arguments, with one or two dashes.
struct QtOption {
    std::string_view name;
    int values;
};
constexpr std::array kQtOptions{
    QtOption{"display", 1},       QtOption{"dograb", 0},       QtOption{"fontengine", 1},
    QtOption{"geometry", 1},      QtOption{"icon", 1},         QtOption{"name", 1},
    QtOption{"nograb", 0},        QtOption{"platform", 1},     QtOption{"platformpluginpath", 1},
    QtOption{"platformtheme", 1}, QtOption{"plugin", 1},       QtOption{"qwindowgeometry", 1},
    QtOption{"qwindowicon", 1},   QtOption{"qwindowtitle", 1}, QtOption{"reverse", 0},
    QtOption{"session", 1},       QtOption{"style", 1},        QtOption{"stylesheet", 1},
    QtOption{"title", 1},         QtOption{"visual", 1},       QtOption{"widgetcount", 0},
};

/// How many arguments from `argument` on belong to Qt.
int qtArguments(std::string_view argument) {
    if (!argument.starts_with('-'))
        return 0;
    argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
    if (argument.starts_with("style=") || argument.starts_with("stylesheet="))
        return 1;
    const auto* const option = std::ranges::find(kQtOptions, argument, &QtOption::name);
    return option == kQtOptions.end() ? 0 : 1 + option->values;
}

/// Latin-1 keeps the bytes of every argument, whatever the encoding of file names.
QString toText(std::string_view bytes) {
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string toBytes(const QString& text) {
    return text.toLatin1().toStdString();
}

QStringList ownArguments(int argc, char** argv) {
    QStringList own{QStringLiteral("tarnwell")};
    bool onlyFiles = false;
    for (int index = 1; index < argc; ++index) {
        const std::string_view argument = argv[index];
        onlyFiles = onlyFiles || argument == "--";
        const int skipped = onlyFiles ? 0 : qtArguments(argument);
        if (skipped == 0)
            own.append(toText(argument));
        else
            index += skipped - 1;
    }
    return own;
}

struct Options {
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Show this help and end.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                               QStringLiteral("Show the version and end.")};
    QCommandLineOption port{
        QStringLiteral("port"),
        QStringLiteral("How to reach the adapter: auto, ppdev, devport, simulated or i2c:BUS."),
        QStringLiteral("kind")};
    QCommandLineOption noTelevision{
        QStringLiteral("no-television"),
        QStringLiteral("With the simulated port: the adapter alone, nothing on its bus.")};
    QCommandLineOption realTime{
        QStringLiteral("real-time"),
        QStringLiteral("With the simulated port: take the time that a real television takes.")};
    QCommandLineOption trace{
        QStringLiteral("trace"),
        QStringLiteral("Write every change of SCL and SDA to FILE.vcd, for PulseView or sigrok."),
        QStringLiteral("FILE.vcd")};
};

[[noreturn]] void show(int argc, char** argv, const QCommandLineParser& parser,
                       const Options& options) {
    // The help text asks for one.
    const QCoreApplication application(argc, argv);
    const QString text =
        parser.isSet(options.help)
            ? parser.helpText()
            : QStringLiteral("tarnwell %1\n").arg(QCoreApplication::applicationVersion());
    std::fputs(qPrintable(text), stdout);
    std::exit(std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE);
}

std::string readableFile(const std::string& name) {
    if (access(name.c_str(), R_OK) != 0)
        refuse(name + ": " + std::strerror(errno) + ".");
    std::error_code error;
    if (!std::filesystem::is_regular_file(name, error))
        refuse(name + ": this is no regular file.");
    return std::filesystem::absolute(name, error).string();
}

}  // namespace

CommandLine readCommandLine(int argc, char** argv) {
    const Options options;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Reads, archives, edits and writes the EEPROMs of an HDTV."));
    parser.addOptions({options.help, options.version, options.port, options.noTelevision,
                       options.realTime, options.trace});
    parser.addPositionalArgument(
        QStringLiteral("FILE.mot"),
        QStringLiteral("An archive to start with, of an image or of settings."),
        QStringLiteral("[FILE.mot]"));
    if (!parser.parse(ownArguments(argc, argv)))
        refuseArgument(toBytes(parser.errorText()));
    if (parser.isSet(options.help) || parser.isSet(options.version))
        show(argc, argv, parser, options);

    const QStringList files = parser.positionalArguments();
    if (files.size() > 1)
        refuseArgument("One FILE at most.");
    CommandLine line{.port = {.kind = {},
                              .noTelevision = parser.isSet(options.noTelevision),
                              .realTime = parser.isSet(options.realTime),
                              .traceFile = {}},
                     .archiveFile = {}};
    if (parser.isSet(options.port))
        line.port.kind = toBytes(parser.value(options.port));
    if (parser.isSet(options.trace))
        line.port.traceFile = toBytes(parser.value(options.trace));
    if (line.port.traceFile == "")
        refuseArgument("Missing value after '--trace'.");
    if (!files.isEmpty())
        line.archiveFile = readableFile(toBytes(files.first()));
    return line;
}

void refuse(const std::string& reason) {
    std::string line = "tarnwell: " + reason;
    std::ranges::replace(line, '\n', '?');
    std::fprintf(stderr, "%s\n", line.c_str());
    std::exit(kWrongUse);
}

void refuseArgument(const std::string& reason) {
    refuse(reason + " Try 'tarnwell --help'.");
}

}  // namespace tarnwell
