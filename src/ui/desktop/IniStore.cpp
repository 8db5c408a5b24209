#include "ui/desktop/IniStore.h"

#include <QFile>
#include <QLockFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <chrono>

#include "ui/looks/Text.h"

namespace tarnwell {

namespace {

QString groupOf(std::string_view keyPath) {
    return toQt(keyPath.substr(keyPath.rfind('\\') + 1));
}

/// QSettings reads such keys, but writes them as others or so that it cannot read the file.
bool hasEmptyPart(const QString& key) {
    return key.startsWith(QLatin1Char('/')) || key.endsWith(QLatin1Char('/')) ||
           key.contains(QLatin1String("//"));
}

bool isDamaged(const QSettings& settings) {
    const QStringList keys = settings.allKeys();
    return settings.status() == QSettings::FormatError || std::ranges::any_of(keys, hasEmptyPart);
}

/// While it reads, QSettings makes any object that a value asks for, such as a picture. The options
/// are texts: a file that asks for more counts as damaged before QSettings meets it.
const QString& withoutObjects(const QString& fileName) {
    static const QRegularExpression object(QStringLiteral("[=,][\\s\"]*@Variant\\("));
    QFile file(fileName);
    if (file.open(QIODevice::ReadOnly) && QString::fromLatin1(file.readAll()).contains(object))
        file.remove();
    return fileName;
}

}  // namespace

IniStore::IniStore(const QString& fileName)
    : m_settings(withoutObjects(fileName), QSettings::IniFormat) {
    removeDeadLock();
    m_settings.setFallbacksEnabled(false);
    if (isDamaged(m_settings))
        m_settings.clear();
}

QString IniStore::defaultFileName() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Halvdorn/Tarnwell.ini");
}

bool IniStore::CreateRegKey(std::string_view keyPath) {
    m_created.append(groupOf(keyPath));
    return true;
}

bool IniStore::exists(const QString& group) const {
    return m_created.contains(group) || m_settings.childGroups().contains(group);
}

void IniStore::SetRegValue(std::string_view keyPath, std::string_view name,
                           std::string_view value) {
    const QString group = groupOf(keyPath);
    if (exists(group))
        m_settings.setValue(group + QLatin1Char('/') + toQt(name), toQt(value));
}

std::string IniStore::QueryRegValue(std::string_view keyPath, std::string_view name) {
    return fromQt(m_settings.value(groupOf(keyPath) + QLatin1Char('/') + toQt(name)).toString());
}

void IniStore::Flush() {
    removeDeadLock();
    m_settings.sync();
}

void IniStore::removeDeadLock() const {
    using namespace std::chrono_literals;
    QLockFile lock(m_settings.fileName() + QStringLiteral(".lock"));
    lock.setStaleLockTime(1s);
    if (lock.tryLock(2s))
        lock.unlock();
}

}  // namespace tarnwell
