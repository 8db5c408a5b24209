// The steps that were taken and those that were taken back.
#pragma once

#include <deque>

#include "history/Crossing.h"

namespace tarnwell {

enum class Direction : std::uint8_t { Undo, Redo };

class History final : public StepKeeper {
  public:
    History(const UndoableParts& parts, const KnownContents& known)
        : parts_(parts), known_(known) {}

    /// The step that undo takes back next, or redo makes again; null if there is none.
    const KeptStep* Next(Direction direction) const;

    /// What it is called, in the current number mode.
    std::optional<std::string> NextName(Direction direction) const;

    /// What undo or redo of the next step leads to; nothing if the queue of pending writes had no
    /// room for it. There must be a next step.
    std::optional<Snapshot> Beyond(Direction direction) const;

    /// Goes there.
    void Cross(Direction direction, const Snapshot& beyond);

    /// The path of a file of names that the last Cross could not write; empty if it could.
    const std::string& NamesNotWritten() const { return parts_.names.NotWritten(); }

    Snapshot Now() const { return parts_.Take(); }

    int Count(Direction direction) const;

    /// What the steps take in memory. Beyond kMostBytes the oldest go, but for kFewestSteps. One
    /// that gives every byte another value takes 22 KB, or 46 KB if it leaves every other byte.
    std::size_t Bytes() const { return bytes_; }
    static constexpr std::size_t kMostBytes = 24'000'000;
    static constexpr std::size_t kFewestSteps = 1'000;

  private:
    void BeginStep(Extent extent) override;
    void EndStep(const std::optional<StepName>& name) override;
    void BeginAside() override;
    void EndAside() override;

    /// A step or an aside that has begun.
    struct Begun {
        Snapshot before;
        Extent extent;
        std::uint32_t writes;
        std::uint32_t asides;
    };
    void Keep(KeptStep step);
    void KeepWithinBounds();
    static std::size_t BytesOf(const KeptStep& step);
    KeptStep& At(Direction direction);

    const UndoableParts parts_;
    const KnownContents& known_;
    std::deque<KeptStep> steps_;
    std::size_t done_ = 0;  ///< the first ones; the others were taken back
    std::size_t bytes_ = 0;
    std::uint32_t asides_ = 0;
    std::optional<Begun> step_;
    std::optional<Begun> aside_;
    int stepDepth_ = 0;
    int asideDepth_ = 0;
};

}  // namespace tarnwell
