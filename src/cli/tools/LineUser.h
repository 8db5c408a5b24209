// The user of a command line: boxes are kept as lines, and what is asked is asked on the terminal.
#pragma once

#include <functional>
#include <string>

#include "core/user/User.h"

namespace tarnwell::cli {

/// Whether somebody can be asked.
bool HasTerminal();

/// Asks on standard error; true for y or yes.
bool AgreesOnTerminal(const std::string& question);

class LineUser final : public User {
  public:
    Answer ShowBox(const Box& box) override;
    Answer AskTrust(const Box& box) override;
    std::optional<std::string> AskText(const TextRequest& /*request*/) override { return {}; }
    std::optional<std::string> AskFile(const FileRequest& /*request*/) override { return {}; }
    void Beep() override {}
    bool KeepPainting() override { return true; }

    /// Whether a question is answered with Yes; none is as long as it is empty.
    std::function<bool(const Box&)> onQuestion;

    /// Whether a device that may be the wrong one is to be used; none is as long as it is empty.
    std::function<bool(const Box&)> onTrust;

    /// What the last box said.
    const std::string& LastLine() const { return lastLine_; }

  private:
    std::string lastLine_;
};

}  // namespace tarnwell::cli
