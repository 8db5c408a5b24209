// Files that appear under their name only when they are complete and on the disk.
#pragma once

#include <string>
#include <string_view>

namespace tarnwell {

/// Writes NAME.part beside the file NAME and renames it when it is complete.
///
/// Whatever goes wrong before, NAME is what it was; NAME.part is left for whoever wants to look.
class AtomicFile {
  public:
    /// Creates or empties `name`.part. A failure shows in the result of Commit.
    explicit AtomicFile(std::string name);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    void Write(std::string_view bytes);

    /// Puts what was written on the disk and under the file's name; false if anything failed.
    [[nodiscard]] bool Commit();

  private:
    std::string name_;
    int descriptor_;
    bool failed_;
};

}  // namespace tarnwell
