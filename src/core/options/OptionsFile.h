// The options store: an INI file in the user's configuration folder.
#pragma once

#include "core/options/IniText.h"
#include "core/options/Registry.h"

namespace tarnwell {

/// A key path's last part is the group in the file. The file is replaced in one piece when it is
/// flushed; what it holds besides the values set meanwhile stays.
///
/// A file that cannot be used (ParseIni says when it is damaged, ReadSmallFile when it cannot be
/// read) counts as absent. It is named on standard error and never replaced.
class OptionsFile final : public mRegistry {
  public:
    enum class Access : std::uint8_t { Read, ReadAndWrite };

    explicit OptionsFile(std::string path, Access access = Access::ReadAndWrite);

    bool CreateRegKey(std::string_view keyPath) override;
    void SetRegValue(std::string_view keyPath, std::string_view name,
                     std::string_view value) override;
    std::string QueryRegValue(std::string_view keyPath, std::string_view name) override;
    void Flush() override;

  private:
    void Load();
    void MergeChanges();
    bool Save() const;

    std::string path_;
    bool mayWrite_;
    IniGroups groups_;
    IniGroups changes_;  ///< since the last flush
};

/// Tarnwell.ini in the program's configuration folder.
std::string OptionsPath();

}  // namespace tarnwell
