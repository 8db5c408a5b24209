// Files of lines under names that the user picks.
#include "archive/ArchiveFile.h"

#include <filesystem>
#include <utility>

#include "core/AtomicFile.h"

namespace tarnwell {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// Opening a pipe would wait for a writer; a device may never end.
bool IsRegularFile(const std::string& path) {
    std::error_code unreachable;
    return std::filesystem::is_regular_file(path, unreachable);
}

}  // namespace

std::optional<std::string> AskArchive(User& user, const ProgramState& state, FileRequest::Kind kind,
                                      std::string_view title, std::string proposedName) {
    return user.AskFile({kind, title, std::move(proposedName), state.archiveFolder});
}

void SetArchiveFolder(ProgramState& state, const std::string& path) {
    const std::size_t slash = path.rfind('/');
    state.archiveFolder = slash == 0 ? "/" : path.substr(0, slash);
}

bool WriteArchive(const std::string& path, const std::vector<std::string>& lines) {
    std::string content;
    for (const std::string& line : lines)
        content.append(line).append(kLineEnd);
    AtomicFile file(path);
    file.Write(content);
    return file.Commit();
}

ArchiveReader::ArchiveReader(const std::string& path) : line_(kLongestLine + 1) {
    if (IsRegularFile(path))
        file_.open(path, std::ios::binary);
    else
        file_.setstate(std::ios::failbit);
}

std::optional<std::string_view> ArchiveReader::NextLine() {
    file_.getline(line_.data(), static_cast<std::streamsize>(line_.size()));
    auto length = static_cast<std::size_t>(file_.gcount());
    if (file_.bad() || (length == 0 && !file_.good()))
        return std::nullopt;

    const bool endedByLineFeed = file_.good();
    if (endedByLineFeed)
        --length;
    const std::string_view line(line_.data(), length);
    return line.ends_with('\r') ? line.substr(0, length - 1) : line;
}

}  // namespace tarnwell
