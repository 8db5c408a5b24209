// A large value whose copies cost nothing until one of them is changed.
#pragma once

#include <memory>
#include <utility>

namespace tarnwell {

/// Within one thread.
template <typename Value>
class Shared {
  public:
    Shared() : value_(std::make_shared<Value>()) {}

    const Value& operator*() const { return *value_; }
    const Value* operator->() const { return value_.get(); }

    /// To be changed; a value that others share is copied first.
    Value& Edit() {
        if (value_.use_count() > 1)
            value_ = std::make_shared<Value>(*value_);
        return *value_;
    }

    /// Quick where nothing was changed since the one was a copy of the other.
    bool operator==(const Shared& other) const {
        return value_ == other.value_ || *value_ == *other.value_;
    }

  private:
    std::shared_ptr<Value> value_;
};

}  // namespace tarnwell
