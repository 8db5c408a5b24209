// The options store: an INI file in the user's configuration folder.
#pragma once

#include <QSettings>
#include <QStringList>

#include "core/Registry.h"

namespace tarnwell {

/// A key path's last part is the group in the file. A damaged file counts as empty; the file is
/// replaced in one piece when it is flushed.
class IniStore final : public mRegistry {
  public:
    explicit IniStore(const QString& fileName);

    /// Halvdorn/Tarnwell.ini under the XDG configuration folder.
    static QString defaultFileName();

    bool CreateRegKey(std::string_view keyPath) override;
    void SetRegValue(std::string_view keyPath, std::string_view name,
                     std::string_view value) override;
    std::string QueryRegValue(std::string_view keyPath, std::string_view name) override;
    void Flush() override;

  private:
    bool exists(const QString& group) const;

    /// QSettings would wait for ever for a lock file that a killed process left before it had
    /// written its number into it.
    void removeDeadLock() const;

    QSettings m_settings;
    QStringList m_created;
};

}  // namespace tarnwell
