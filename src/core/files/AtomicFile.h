// Files that appear under their name only when they are complete and on the disk.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// Writes a file of another name beside NAME and renames it when it is complete. Where NAME is a
/// symbolic link, the link stays and the file that it points to is replaced.
///
/// Whatever goes wrong before, NAME is what it was and the other file is removed; if the program is
/// killed, by the next save into that folder a minute later at the earliest.
class AtomicFile {
  public:
    /// Creates the other file. A failure shows in the result of Commit; it is one, too, if `name`
    /// exists and cannot be written or is no regular file.
    explicit AtomicFile(const std::string& name);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    void Write(std::string_view bytes);

    /// Puts what was written on the disk and under the file's name; false if anything failed.
    [[nodiscard]] bool Commit();

  private:
    [[nodiscard]] bool LookAtFormer(const std::string& name);
    [[nodiscard]] bool Create();
    [[nodiscard]] bool KeepPermissions() const;
    [[nodiscard]] bool Close();
    [[nodiscard]] bool SyncFolder() const;

    std::string name_;                   ///< no symbolic link
    std::string folder_;                 ///< with the slash behind it
    std::string part_;                   ///< the other file; empty when there is none
    std::optional<mode_t> permissions_;  ///< of the file that is replaced
    int descriptor_ = -1;
    int lock_ =
        -1;  ///< the same open file, which keeps others from removing it until it is renamed
    bool failed_;
};

}  // namespace tarnwell
