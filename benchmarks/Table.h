// The table of figures: each beside the best that is possible, and their ratio.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::bench {

/// How a figure is written.
enum class Unit { Seconds, Bytes, Share, Count };

class Table {
  public:
    /// `limit` is in the unit of `figure`: seconds, bytes, a share of 1, or a number.
    void Add(std::string_view name, double figure, double limit, std::string_view limitIs,
             Unit unit = Unit::Seconds);

    void Print() const;

  private:
    struct Row {
        std::string name, figure, limit, ratio, limitIs;
    };
    std::vector<Row> rows_;
};

}  // namespace tarnwell::bench
