// The Help menu's commands that open files, and the extra program behind the status captions.
#pragma once

#include "core/HelpTopics.h"
#include "core/run/Programs.h"
#include "core/user/User.h"

namespace tarnwell {

class HelpCommands {
  public:
    HelpCommands(Programs& programs, User& user) : programs_(programs), user_(user) {}

    /// Opens the topic's page of the manual.
    void ShowTopic(Topic topic);
    void HelpTopics() { ShowTopic(Topic::Contents); }
    void ReleaseHistory();

    /// Shows a folder as the desktop does.
    void ShowFolder(const std::string& path);

    /// A double-click on a status caption.
    void StartExtraProgram();

  private:
    enum class Opening : std::uint8_t { InViewer, AsProgram };
    void Open(std::string_view name, Opening opening);

    Programs& programs_;
    User& user_;
};

/// Says that a file or program beside this one is missing or cannot be started.
Box CannotStart(const Programs& programs, const std::string& path);

}  // namespace tarnwell
