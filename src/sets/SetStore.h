// The sets that records are kept of, a folder each.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sets/TvSet.h"

namespace tarnwell {

/// All sets, by name. What is no set, or one of a newer program, is named and left as it is.
struct SetList {
    std::vector<TvSet> sets;
    std::vector<std::string> damaged;  ///< the paths of files set.json that cannot be used
};

class SetStore {
  public:
    /// The folder need not exist.
    explicit SetStore(std::string folder) : folder_(std::move(folder)) {}

    const std::string& Folder() const { return folder_; }

    SetList All() const;

    /// The set of that name, in whatever case.
    std::optional<TvSet> Find(std::string_view name) const;

    /// Makes a set's folder; nothing if that failed. The name must be a new one without a fault.
    [[nodiscard]] std::optional<TvSet> Create(const std::string& name) const;

    /// Writes name, model and notes into set.json, and leaves what else stands there. False if that
    /// failed.
    [[nodiscard]] static bool SaveTexts(const TvSet& set);

    /// The same of what is known of its devices.
    [[nodiscard]] static bool SaveKnown(const TvSet& set);

    /// Why a set cannot have the name, in one sentence; empty if it can.
    static std::string NameFault(std::string_view name);

  private:
    std::string folder_;
};

}  // namespace tarnwell
