// What differs between two snapshots, kept small.
#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "command/Steps.h"
#include "history/ByteRuns.h"
#include "history/Snapshot.h"

namespace tarnwell {

class Change {
  public:
    /// What leads from `from` to `to`; texts that are not their byte's own are in `mode`.
    Change(const Snapshot& from, const Snapshot& to, Extent extent, NumberMode mode);

    Extent HowFar() const { return extent_; }

    /// `now` with what differed as it was in `to`, the rest as it is; shown in `mode`.
    Snapshot AppliedTo(const Snapshot& now, NumberMode mode) const;

    /// The queue on both sides, `from` first, if they differ.
    std::optional<std::pair<PendingRows, PendingRows>> ChangedQueues(NumberMode mode) const;

    /// What it takes in memory, itself included.
    std::size_t Bytes() const;

  private:
    struct Mark {
        std::uint16_t address;
        bool changed;
    };

    void KeepGrid(const GridContents& from, const GridContents& to);
    void KeepCells(const Snapshot& from, const Snapshot& to);
    void ApplyGrid(GridContents& grid, NumberMode mode) const;

    NumberMode mode_;
    Extent extent_;
    ByteRuns buffer_;
    ByteRuns grid_;
    std::unique_ptr<const GridContents::Marks> empty_;  ///< which of those cells are, if any
    std::vector<std::pair<int, std::string>> texts_;    ///< of those that are not their byte's own
    std::vector<Mark> marks_;
    std::vector<std::pair<std::size_t, CellContents>> cells_;
    std::unique_ptr<const std::pair<PendingRows, PendingRows>> queues_;
    std::optional<bool> eepRead_, bufferChanged_, gridChanged_;
    std::optional<TargetDevice> target_;
    std::optional<std::string> crc_;
    std::optional<BufferOrigin> origin_;
    NameLayers names_;              ///< null where the layer stays
    bool bufferIsOrigins_ = false;  ///< the image of origin_ is left out: it is the buffer's
};

}  // namespace tarnwell
