// How a command reaches the user: boxes, questions, file dialogs, the beep.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/user/Message.h"

namespace tarnwell {

inline constexpr std::string_view kArchiveExtension = ".mot";
inline constexpr std::string_view kArchiveFilter =
    "Motorola S-Record Archive (*.mot)|*.mot|All Files (*.*)|*.*";
inline constexpr std::string_view kImageFilter =
    "Motorola S-Record Archive (*.mot)|*.mot|Plain Bytes (*.bin)|*.bin|"
    "Intel HEX (*.hex)|*.hex|All Files (*.*)|*.*";

/// What the archive commands ask of the one file dialog that they share.
struct FileRequest {
    enum class Kind : std::uint8_t {
        Save,         ///< asks before a file is replaced
        Open,         ///< accepts only a file that exists
        OpenAnyName,  ///< accepts the name of a file that does not exist, too
    };
    Kind kind;
    std::string_view title;
    std::string fileName;  ///< proposed, may be empty
    std::string folder;    ///< where the dialog opens; the user's documents if it does not exist
    std::string_view filter = kArchiveFilter;  ///< name and pattern of each kind of file, by "|"
};

/// An input box with a one-line answer.
struct TextRequest {
    std::string_view prompt;
    std::string_view title;
    std::string_view answer;  ///< proposed
};

/// The user of a running command. Every call returns when the user has answered.
class User {
  public:
    virtual ~User() = default;

    virtual Answer ShowBox(const Box& box) = 0;

    /// A question whether a device that may be the wrong one is to be used.
    virtual Answer AskTrust(const Box& box) { return ShowBox(box); }

    /// The answer, or nothing when the user cancels.
    virtual std::optional<std::string> AskText(const TextRequest& request) = 0;

    /// The picked file's full path, or nothing when the user cancels.
    virtual std::optional<std::string> AskFile(const FileRequest& request) = 0;

    virtual void Beep() = 0;

    /// Called again and again by a command that works for long: the window may paint itself, but
    /// takes no input. False once the user wants the command to stop.
    [[nodiscard]] virtual bool KeepPainting() = 0;
};

/// Thrown where the program ends at once. Whoever catches it ends the process without another
/// event.
struct ProgramEnd {};

/// Shows the box of a fatal error, then ends the program.
[[noreturn]] inline void EndProgram(User& user, const Message& message) {
    user.ShowBox(message);
    throw ProgramEnd{};
}

}  // namespace tarnwell
