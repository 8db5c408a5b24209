// The user as the buses meet him: left in peace while a command that goes on tells itself what
// went wrong.
#pragma once

#include "core/user/User.h"

namespace tarnwell {

class SparedUser final : public User {
  public:
    explicit SparedUser(User& user) : user_(user) {}

    /// Boxes are kept as long as this lives; whether a device is trusted is asked all the same.
    class Sparing {
      public:
        explicit Sparing(SparedUser& user) : user_(user) { user_.isSpared_ = true; }
        ~Sparing() { user_.isSpared_ = false; }
        Sparing(const Sparing&) = delete;
        Sparing& operator=(const Sparing&) = delete;

      private:
        SparedUser& user_;
    };

    /// The last box that was kept, as one line.
    const std::string& Unsaid() const { return unsaid_; }

    Answer ShowBox(const Box& box) override {
        if (!isSpared_)
            return user_.ShowBox(box);
        unsaid_ = OneLine(box);
        return Answer::No;
    }
    Answer AskTrust(const Box& box) override { return user_.AskTrust(box); }
    std::optional<std::string> AskText(const TextRequest& request) override {
        return user_.AskText(request);
    }
    std::optional<std::string> AskFile(const FileRequest& request) override {
        return user_.AskFile(request);
    }
    void Beep() override { user_.Beep(); }
    bool KeepPainting() override { return user_.KeepPainting(); }

  private:
    User& user_;
    bool isSpared_ = false;
    std::string unsaid_;
};

}  // namespace tarnwell
