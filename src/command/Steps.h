// The steps that undo takes back, as the commands mark them.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "core/user/Number.h"

namespace tarnwell {

/// What a step is called behind "Undo ".
struct StepName {
    std::string what{};                  ///< "480p R-YR", "Load of set-kitchen.mot"
    std::optional<int> address{};        ///< of the one byte that the step is about
    std::optional<std::uint8_t> from{};  ///< the one value before it
    std::optional<std::uint8_t> to{};    ///< and after it

    /// "480p R-YR 6 to 9", with numbers in `mode`.
    std::string Text(NumberMode mode) const;
};

/// How much of the memory buffer, and with it of the grid, a step gives new bytes.
enum class Extent : std::uint8_t {
    WhatDiffers,
    Everything,  ///< also the bytes that happen to stay the same
};

/// Keeps the steps. Commands speak to it through Step and Aside.
class StepKeeper {
  public:
    virtual ~StepKeeper() = default;

  private:
    friend class Step;
    friend class Aside;
    virtual void BeginStep(Extent extent) = 0;
    virtual void EndStep(const std::optional<StepName>& name) = 0;
    virtual void BeginAside() = 0;
    virtual void EndAside() = 0;
};

/// What changes in its lifetime is one step of undo; within another step it is a part of that one,
/// and within an Aside of that. Nothing changed, no step.
class Step {
  public:
    Step(StepKeeper& keeper, StepName name, Extent extent = Extent::WhatDiffers)
        : keeper_(keeper), name_(std::move(name)) {
        keeper_.BeginStep(extent);
    }
    ~Step() { keeper_.EndStep(name_); }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

    void Call(StepName name) { name_ = std::move(name); }

    /// Keeps the change without a step, where a command came to nothing.
    void Forget() { name_.reset(); }

  private:
    StepKeeper& keeper_;
    std::optional<StepName> name_;
};

/// What changes in its lifetime no undo takes back: what a write makes of marks, queue and buffer,
/// or a save of the flags. Undo of an older step leaves it, too.
class Aside {
  public:
    explicit Aside(StepKeeper& keeper) : keeper_(keeper) { keeper_.BeginAside(); }
    ~Aside() { keeper_.EndAside(); }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;

  private:
    StepKeeper& keeper_;
};

}  // namespace tarnwell
