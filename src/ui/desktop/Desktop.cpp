#include "ui/desktop/Desktop.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

constexpr int kModinfoTimeout = 2000;  // ms

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

bool Desktop::OpenInViewer(const std::string& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(pathToQt(path)));
}

bool Desktop::Start(const std::string& path) {
    return QProcess::startDetached(pathToQt(path), {});
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

QtTimer::QtTimer() {
    m_timer.setObjectName(QStringLiteral("MsgTimer"));
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);  // a coarse one is up to 5 % off
}

}  // namespace tarnwell
