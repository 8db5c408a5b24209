// What both archive kinds share: the file dialog, the archive folder, and files of lines.
#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/ProgramState.h"
#include "core/User.h"

namespace tarnwell {

/// Shows the file dialog in the archive folder; nothing when the user cancels.
std::optional<std::string> AskArchive(User& user, const ProgramState& state, FileRequest::Kind kind,
                                      std::string_view title, std::string proposedName);

/// The next dialog opens in the folder of the file `path`, a full path.
void SetArchiveFolder(ProgramState& state, const std::string& path);

/// Writes the lines, each ended by CR LF, as the file `path`; false if it could not be completed,
/// which leaves a former file of that name as it was.
[[nodiscard]] bool WriteArchive(const std::string& path, const std::vector<std::string>& lines);

/// Reads the lines of a regular file; anything else counts as unreadable.
class ArchiveReader {
  public:
    explicit ArchiveReader(const std::string& path);

    /// The next line without its line break, CR LF or LF, valid until the next call; nothing at the
    /// end of the file and when it cannot be read. A line longer than kLongestLine is cut there and
    /// is the last one.
    std::optional<std::string_view> NextLine();

  private:
    /// Far beyond the 514 characters of the longest record.
    static constexpr std::size_t kLongestLine = 65536;

    std::ifstream file_;
    std::vector<char> line_;
};

}  // namespace tarnwell
