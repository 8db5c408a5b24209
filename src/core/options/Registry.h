// The options store's interface: text values under named keys.
#pragma once

#include <string>
#include <string_view>

namespace tarnwell {

/// The store behind it keeps every value as text. No routine reports an error: what cannot be
/// read is empty, what cannot be written is dropped.
class mRegistry {  // NOLINT(readability-identifier-naming): the module's handed-down name
  public:
    virtual ~mRegistry() = default;

    /// Creates the key, or opens it if it exists; whether it is there now.
    virtual bool CreateRegKey(std::string_view keyPath) = 0;

    /// Stores a value under a key that exists; does nothing where it does not.
    virtual void SetRegValue(std::string_view keyPath, std::string_view name,
                             std::string_view value) = 0;

    /// The value's text, empty if there is no such value or key.
    virtual std::string QueryRegValue(std::string_view keyPath, std::string_view name) = 0;

    /// Puts all that was stored since the last call on the disk, in one piece.
    virtual void Flush() = 0;
};

}  // namespace tarnwell
