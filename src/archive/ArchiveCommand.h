// What the commands of both archive kinds share: the file dialog, its folder, and two boxes.
#pragma once

#include "image/Command.h"

namespace tarnwell {

class ArchiveCommand : protected Command {
  protected:
    using Command::Command;

    static constexpr Message kTooLarge{"The file is too large to be an archive.",
                                       "E R R O R - File Mismatch", BoxStyle::Exclamation};
    static constexpr Message kLineTooLong{"A line of the file is too long.",
                                          "E R R O R - File Mismatch", BoxStyle::Exclamation};

    /// Shows the file dialog in the archive folder; nothing when the user cancels.
    std::optional<std::string> AskArchive(FileRequest::Kind kind, std::string_view title,
                                          std::string proposedName) {
        return user_.AskFile({kind, title, std::move(proposedName), state_.archiveFolder});
    }

    /// The step that a load of the file `path` is.
    static StepName LoadOf(const std::string& path) {
        return {"Load of " + path.substr(path.rfind('/') + 1)};
    }

    /// The next dialog opens in the folder of the file `path`, a full path.
    void SetArchiveFolder(const std::string& path) {
        const std::size_t slash = path.rfind('/');
        state_.archiveFolder = slash == 0 ? "/" : path.substr(0, slash);
    }
};

}  // namespace tarnwell
