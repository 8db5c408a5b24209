// A command that works on another device than the one that is chosen.
#pragma once

#include "core/ProgramState.h"
#include "core/user/Screen.h"

namespace tarnwell {

/// A device is the target as long as this lives.
class OtherTarget {
  public:
    OtherTarget(ProgramState& state, Screen& screen, TargetDevice device)
        : state_(state), screen_(screen), before_(state.targetDevice) {
        Set(device);
    }
    ~OtherTarget() { Set(before_); }
    OtherTarget(const OtherTarget&) = delete;
    OtherTarget& operator=(const OtherTarget&) = delete;

  private:
    void Set(TargetDevice device) {
        if (state_.targetDevice == device)
            return;
        state_.targetDevice = device;
        screen_.Changed(Shown::EepPanel);
    }

    ProgramState& state_;
    Screen& screen_;
    const TargetDevice before_;
};

}  // namespace tarnwell
