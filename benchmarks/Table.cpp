#include "Table.h"

#include <cstdio>

namespace tarnwell::bench {

namespace {

template <typename... Values>
std::string Format(const char* format, Values... values) {
    char text[64];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string Text(double value, Unit unit) {
    switch (unit) {
        case Unit::Seconds:
            if (value >= 1)
                return Format("%.3f s ", value);
            return value >= 1e-3 ? Format("%.2f ms", value * 1e3) : Format("%.2f us", value * 1e6);
        case Unit::Bytes:
            return Format("%.1f MB", value / 1e6);
        case Unit::Share:
            return Format("%.2f %% ", value * 100);
        case Unit::Count:
            return Format("%.0f   ", value);
    }
    return {};
}

}  // namespace

void Table::Add(std::string_view name, double figure, double limit, std::string_view limitIs,
                Unit unit) {
    rows_.push_back({std::string(name), Text(figure, unit), Text(limit, unit),
                     limit == 0 ? "" : Format("%.3f", figure / limit), std::string(limitIs)});
    std::fprintf(stderr, "%s\n", rows_.back().name.c_str());
}

void Table::Print() const {
    std::printf("%-58s %12s %12s %8s  %s\n", "Figure", "measured", "limit", "ratio",
                "what the limit is");
    for (const Row& row : rows_)
        std::printf("%-58s %12s %12s %8s  %s\n", row.name.c_str(), row.figure.c_str(),
                    row.limit.c_str(), row.ratio.c_str(), row.limitIs.c_str());
}

}  // namespace tarnwell::bench
