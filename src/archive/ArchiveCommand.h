// What the commands of both archive kinds share: the file dialog, its folder, and how a file is
// refused.
#pragma once

#include "archive/ArchiveFile.h"
#include "command/Command.h"

namespace tarnwell {

class ArchiveCommand : protected Command {
  protected:
    /// What a load says, by the kind of archive that it is of.
    struct Texts {
        std::string_view loadTitle;
        std::string_view filter;
        Message noSRecords;
        Message otherKind;
        Message corrupt;
        std::string_view cancelled;
        std::string_view failed;
    };

    /// `texts` outlive the command; `recent` are the files of its kind.
    ArchiveCommand(const CommandContext& context, const Texts& texts, RecentFiles& recent)
        : Command(context), texts_(texts), recent_(recent) {}

    static constexpr Message kLineTooLong{"A line of the file is too long.",
                                          "E R R O R - File Mismatch", BoxStyle::Exclamation};

    /// Shows the file dialog in the archive folder; nothing when the user cancels.
    std::optional<std::string> AskArchive(FileRequest::Kind kind, std::string_view title,
                                          std::string proposedName);

    /// The step that a load of the file `path` is.
    static StepName LoadOf(const std::string& path) {
        return {"Load of " + path.substr(path.rfind('/') + 1)};
    }

    /// The next dialog opens in the folder of the file `path`, a full path.
    void SetArchiveFolder(const std::string& path);

    /// Saves the text as the file `path`, a full path.
    [[nodiscard]] bool SaveText(const std::string& path, std::string_view text);

    /// Says why a file of this kind is not loaded.
    void RefuseKind(ArchiveKind kind);
    void Refuse(const Box& box);

    /// Asks for a file that is only to be looked at.
    std::optional<std::string> AskToLook();

    /// A file of the kind was loaded, looked at or saved as a whole.
    void Used(const std::string& path);

    /// Whether a file that was used is still there; if not, it is used no more, and a box says so.
    bool IsThere(const std::string& path);

    /// Whether a file that is only to be looked at can be read; if not, says so in a box, where a
    /// load would leave it at a line.
    bool CanBeRead(const ArchiveFile& file);

    /// What `load` takes of the file, if it takes it as a whole; if not, says so in a box.
    template <typename Content>
    std::optional<Content> Whole(ArchiveFile& file, LoadEnd (*load)(ArchiveFile&, Content&)) {
        Content content{};
        const LoadEnd end = load(file, content);
        if (end == LoadEnd::Complete)
            return content;
        RefusePart(end);
        return std::nullopt;
    }

  private:
    void RefusePart(LoadEnd end);

    const Texts& texts_;
    RecentFiles& recent_;
};

}  // namespace tarnwell
