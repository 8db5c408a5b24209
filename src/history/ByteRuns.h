// Bytes of an image that differ, kept as runs of neighbours.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tarnwell {

class ByteRuns {
  public:
    /// Keeps those of `bytes`, at most 65535, whose address `isKept`.
    template <typename IsKept>
    void Keep(std::span<const std::uint8_t> bytes, IsKept isKept) {
        for (std::size_t address = 0; address < bytes.size(); ++address) {
            if (!isKept(static_cast<int>(address)))
                continue;
            if (runs_.empty() || runs_.back().first + runs_.back().count != int(address))
                runs_.push_back({static_cast<std::uint16_t>(address), 0});
            ++runs_.back().count;
            bytes_.push_back(bytes[address]);
        }
        runs_.shrink_to_fit();
        bytes_.shrink_to_fit();
    }

    /// Calls `take` with each address and its byte, in order.
    template <typename Take>
    void ForEach(Take take) const {
        auto byte = bytes_.begin();
        for (const auto& [first, count] : runs_) {
            for (int address = first; address < first + count; ++address)
                take(address, *byte++);
        }
    }

    /// What it takes in memory besides itself.
    std::size_t Bytes() const { return runs_.capacity() * sizeof(Run) + bytes_.capacity(); }

  private:
    struct Run {
        std::uint16_t first;
        std::uint16_t count;
    };
    std::vector<Run> runs_;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace tarnwell
