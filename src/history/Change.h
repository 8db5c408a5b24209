// What differs between two snapshots, kept small.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "history/Snapshot.h"
#include "image/Steps.h"

namespace tarnwell {

class Change {
  public:
    /// What leads from `from` to `to`; their texts are in `mode`.
    Change(const Snapshot& from, const Snapshot& to, Extent extent, NumberMode mode);

    bool ChangesNothing() const;
    Extent HowFar() const { return image_ ? Extent::Everything : Extent::WhatDiffers; }

    /// `now` with what differed as it was in `to`, the rest as it is; texts are in `mode`.
    Snapshot AppliedTo(const Snapshot& now, NumberMode mode) const;

    /// The entries of the queue on both sides, if they differ, in `mode`.
    struct Queues {
        std::vector<EditRecord> from;
        std::vector<EditRecord> to;
    };
    std::optional<Queues> ChangedQueues(NumberMode mode) const;

    /// What it takes in memory, itself included.
    std::size_t Bytes() const;

  private:
    struct BufferByte {
        std::uint16_t address;
        std::uint8_t value;
    };
    enum class Form : std::uint8_t { Same, Number, Nothing, Odd };
    struct GridByte {
        std::uint16_t address;
        std::uint8_t value;
        Form form;  ///< Odd: not as the program writes a number, the next of oddTexts_
        std::optional<bool> changed;
    };
    struct Cell {
        int cell;
        CellContents contents;
    };
    /// Without the empty rows at its end.
    struct Queue {
        std::vector<EditRecord> rows;
        int count = 0;
    };

    void KeepBuffer(const Snapshot& from, const Snapshot& to, Extent extent);
    void KeepGrid(const Snapshot& from, const Snapshot& to, Extent extent);
    void KeepCells(const Snapshot& from, const Snapshot& to);
    void ApplyGrid(GridContents& grid, const MemoryBuffer& buffer, NumberMode mode) const;
    Form FormOf(const std::string& text) const;
    static Queue Packed(const PendingRows& pending);
    PendingRows Unpacked(const Queue& queue, NumberMode mode) const;

    NumberMode mode_;
    std::unique_ptr<const MemoryBuffer> image_;  ///< with Extent::Everything
    std::vector<BufferByte> bytes_;
    std::vector<GridByte> grid_;  ///< with an image: where the grid is not as it shows that
    std::vector<std::string> oddTexts_;
    std::vector<Cell> cells_;
    std::unique_ptr<const std::pair<Queue, Queue>> queues_;  ///< from, to
    std::optional<bool> eepRead_, bufferChanged_, gridChanged_;
    std::optional<TargetDevice> target_;
    std::optional<std::string> crc_;
};

}  // namespace tarnwell
