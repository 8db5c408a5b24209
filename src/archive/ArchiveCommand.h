// What the commands of both archive kinds share: the file dialog, its folder, and how a file is
// refused.
#pragma once

#include "archive/ArchiveFile.h"
#include "image/Command.h"

namespace tarnwell {

class ArchiveCommand : protected Command {
  protected:
    /// What a load says, by the kind of archive that it is of.
    struct Texts {
        std::string_view loadTitle;
        Message noSRecords;
        Message otherKind;
        Message corrupt;
        std::string_view cancelled;
        std::string_view failed;
    };

    /// `texts` outlive the command.
    ArchiveCommand(const CommandContext& context, const Texts& texts)
        : Command(context), texts_(texts) {}

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

    /// Saves the lines as the file `path`, a full path.
    [[nodiscard]] bool SaveLines(const std::string& path, const std::vector<std::string>& lines);

    /// Says why a file of this kind is not loaded.
    void RefuseKind(ArchiveKind kind);
    void Refuse(const Box& box);

    /// Asks for a file that is only to be looked at.
    std::optional<std::string> AskToLook();

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
};

}  // namespace tarnwell
