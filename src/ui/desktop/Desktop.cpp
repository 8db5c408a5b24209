#include "ui/desktop/Desktop.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>
#include <utility>

#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kModinfoTimeout = 2000;  // ms

/// After how long an opener that ends has opened the file, in ms: where nothing opens it it says so
/// in less, and some viewers keep it until they are closed.
constexpr int kOpenerTimeout = 5000;

/// The locale's time format; where its short form leaves the seconds out, they stand behind what
/// separates the minutes from the hours.
QString timeFormatWithSeconds(const QLocale& locale) {
    QString format = locale.timeFormat(QLocale::ShortFormat);
    if (!format.contains(QLatin1Char('s')))
        format.replace(QRegularExpression(QStringLiteral("([^\\w'])(mm?)")),
                       QStringLiteral("\\1\\2\\1ss"));
    return format;
}

}  // namespace

std::string Desktop::ProgramFolder() const {
    return pathFromQt(QCoreApplication::applicationDirPath());
}

bool Desktop::Exists(const std::string& path) const {
    return QFileInfo::exists(pathToQt(path));
}

/// QDesktopServices starts the same opener, but does not tell that it found no program.
void Desktop::OpenInViewer(const std::string& path, std::function<void()> failed) {
    const QUrl url = QUrl::fromLocalFile(pathToQt(path));
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty()) {
        if (!QDesktopServices::openUrl(url))
            failed();
        return;
    }
    auto* process = new QProcess(&m_openers);
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setChildProcessModifier([] { setsid(); });  // its viewer outlives this program
    const auto end = [=](bool opened) {
        process->deleteLater();
        if (!opened)
            failed();
    };
    QObject::connect(process, &QProcess::errorOccurred, process, [=](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end(false);
    });
    QObject::connect(process, &QProcess::finished, process,
                     [=, started = QDeadlineTimer(kOpenerTimeout)](int code, auto status) {
                         end(started.hasExpired() || (status == QProcess::NormalExit && code == 0));
                     });
    process->start(opener, {url.toString(QUrl::FullyEncoded)});
}

Desktop::~Desktop() {
    for (auto* process : m_openers.findChildren<QProcess*>()) {
        process->disconnect();
        process->kill();
        process->waitForFinished();
    }
}

bool Desktop::Start(const std::string& path) {
    return QProcess::startDetached(pathToQt(path), {});
}

bool Desktop::MoveToTrash(const std::string& path) {
    return QFile::moveToTrash(pathToQt(path));
}

std::string Desktop::KernelModulePath(const std::string& module) const {
    const QString name = QStringLiteral("modinfo");
    QString program = QStandardPaths::findExecutable(name);
    if (program.isEmpty())  // not on an ordinary account's search path
        program = QStandardPaths::findExecutable(
            name, {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
    if (program.isEmpty())
        return {};
    QProcess modinfo;
    modinfo.start(program, {QStringLiteral("-n"), toQt(module)});
    if (!modinfo.waitForFinished(kModinfoTimeout) || modinfo.exitCode() != 0)
        return {};
    return pathFromQt(QString::fromLocal8Bit(modinfo.readAllStandardOutput()).trimmed());
}

std::string Desktop::ShortDate() const {
    return fromQt(QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
}

std::string Desktop::TimeWithSeconds() const {
    const QLocale locale;
    return fromQt(locale.toString(QTime::currentTime(), timeFormatWithSeconds(locale)));
}

std::string Desktop::Timestamp() const {
    return fromQt(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

std::string Desktop::ZonedTime() const {
    const QDateTime now = QDateTime::currentDateTime();
    return fromQt(now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate));
}

QtTimer::QtTimer() {
    m_timer.setObjectName(QStringLiteral("MsgTimer"));
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);  // a coarse one is up to 5 % off
}

}  // namespace tarnwell
