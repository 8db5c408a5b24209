// Texts between the program and Qt.
#pragma once

#include <QFile>
#include <QString>
#include <string>
#include <string_view>

namespace tarnwell {

inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) {
    return text.toStdString();
}

/// A box's text, whose lines Qt separates by line feeds alone.
inline QString linesToQt(std::string_view text) {
    return toQt(text).remove(QLatin1Char('\r'));
}

inline QString pathToQt(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

inline std::string pathFromQt(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

/// The text as a line of its own.
inline QString capitalized(const QString& text) {
    return text.left(1).toUpper() + text.mid(1);
}

/// Enables a menu's item or a button; while it is not, its tooltip says why.
template <typename Item>
void allow(Item& item, bool allowed, const char* why) {
    item.setEnabled(allowed);
    item.setToolTip(allowed ? QString() : QLatin1String(why));
}

/// The objectName of an element of a control array.
inline QString elementName(const char* array, int index) {
    return QStringLiteral("%1_%2").arg(QLatin1String(array)).arg(index);
}

}  // namespace tarnwell
