#include "history/History.h"

#include <algorithm>

namespace tarnwell {

const KeptStep* History::Next(Direction direction) const {
    if (Count(direction) == 0)
        return nullptr;
    return &steps_[direction == Direction::Undo ? done_ - 1 : done_];
}

std::optional<std::string> History::NextName(Direction direction) const {
    const KeptStep* const step = Next(direction);
    if (step == nullptr)
        return std::nullopt;
    return step->name.Text(parts_.state.numberMode);
}

int History::Count(Direction direction) const {
    return static_cast<int>(direction == Direction::Undo ? done_ : steps_.size() - done_);
}

std::optional<Snapshot> History::Beyond(Direction direction) const {
    return OtherSide(*Next(direction), Now(), {parts_.state, known_, asides_});
}

void History::Cross(Direction direction, const Snapshot& beyond) {
    const std::size_t index = direction == Direction::Undo ? --done_ : done_++;
    KeptStep& step = steps_[index];
    bytes_ -= BytesOf(step);
    step = {std::move(step.name),
            Change(beyond, Now(), step.change.HowFar(), parts_.state.numberMode), known_.Writes(),
            asides_};
    bytes_ += BytesOf(step);
    parts_.Restore(beyond);
    KeepWithinBounds();
    parts_.screen.Changed(Shown::Steps);
}

void History::BeginStep(Extent extent) {
    if (asideDepth_ > 0)
        return;
    if (stepDepth_++ == 0)
        step_ = {Now(), extent, known_.Writes(), asides_};
    else if (extent == Extent::Everything)
        step_->extent = extent;
}

void History::EndStep(const std::optional<StepName>& name) {
    if (asideDepth_ > 0 || --stepDepth_ > 0)
        return;
    const Begun begun = *std::exchange(step_, std::nullopt);
    const Snapshot now = Now();
    if (!name || now == begun.before)
        return;
    Keep({*name, Change(now, begun.before, begun.extent, parts_.state.numberMode), begun.writes,
          begun.asides});
}

void History::BeginAside() {
    if (asideDepth_++ == 0)
        aside_ = {Now(), Extent::WhatDiffers, known_.Writes(), asides_};
}

/// A step in which it happens begins as if that had been so before.
void History::EndAside() {
    if (--asideDepth_ > 0)
        return;
    const Begun begun = *std::exchange(aside_, std::nullopt);
    const Snapshot now = Now();
    if (now == begun.before)
        return;
    ++asides_;
    const NumberMode mode = parts_.state.numberMode;
    if (step_)
        step_->before =
            Change(begun.before, now, Extent::WhatDiffers, mode).AppliedTo(step_->before, mode);
}

void History::Keep(KeptStep step) {
    while (steps_.size() > done_) {
        bytes_ -= BytesOf(steps_.back());
        steps_.pop_back();
    }
    bytes_ += BytesOf(step);
    steps_.push_back(std::move(step));
    ++done_;
    KeepWithinBounds();
    parts_.screen.Changed(Shown::Steps);
}

void History::KeepWithinBounds() {
    while (bytes_ > kMostBytes && steps_.size() > kFewestSteps) {
        if (done_ > 0) {
            bytes_ -= BytesOf(steps_.front());
            steps_.pop_front();
            --done_;
        } else {
            bytes_ -= BytesOf(steps_.back());
            steps_.pop_back();
        }
    }
}

std::size_t History::BytesOf(const KeptStep& step) {
    return sizeof step - sizeof step.change + step.change.Bytes() + step.name.what.capacity();
}

}  // namespace tarnwell
