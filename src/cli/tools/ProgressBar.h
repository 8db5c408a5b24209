// How far a whole device has been read or written, as a bar on standard error.
#pragma once

#include "core/user/Screen.h"
#include "core/user/StatusBar.h"

namespace tarnwell::cli {

class ProgressBar final : public Screen {
  public:
    explicit ProgressBar(bool shown) : shown_(shown) {}

    /// The status bar is made after the screen that it tells.
    void Follow(const StatusBar& statusBar) { statusBar_ = &statusBar; }

    void Changed(Shown what) override;

  private:
    bool shown_;
    bool drawn_ = false;
    const StatusBar* statusBar_ = nullptr;
};

}  // namespace tarnwell::cli
