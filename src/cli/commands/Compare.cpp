#include "cli/commands/Commands.h"
#include "cli/tools/Settings.h"
#include "differences/DifferenceCount.h"

namespace tarnwell::cli {

namespace {

/// The value of a cell, of an image or among values.
std::optional<std::uint8_t> ValueOf(int cell, const Content& content) {
    const CellInfo& info = Cell(cell);
    if (content.image)
        return FieldOf((*content.image)[static_cast<std::size_t>(info.address)],
                       info.setting->shift);
    const auto value = content.values.find(cell);
    return value == content.values.end() ? std::nullopt : std::optional(value->second);
}

/// Of values only those can be compared that both have.
std::vector<Mismatch> DifferentValues(const Content& left, const Content& right) {
    std::vector<Mismatch> differences;
    for (const int cell : CellsInOrder()) {
        const auto one = ValueOf(cell, left);
        const auto other = ValueOf(cell, right);
        if (one && other && *one != *other)
            differences.push_back({Cell(cell).address, *one, *other});
    }
    return differences;
}

void CompareContents(const Arguments& arguments, const Content& left, const Content& right,
                     Report& report) {
    DifferenceCount count;
    if (left.image && right.image) {
        report.mismatches = Differences(*left.image, *right.image);
        count = CountDifferences(arguments.device, *left.image, *right.image);
    } else {
        if (RefusesSettings(arguments, report))
            return;
        report.mismatches = DifferentValues(left, right);
        count.bytes = count.settings = static_cast<int>(report.mismatches.size());
    }
    report.End(report.mismatches.empty() ? Status::Done : Status::Different,
               DifferencesText(count) + ".");
}

}  // namespace

void CompareFiles(const Arguments& arguments, Report& report) {
    const auto left = LoadSide(arguments.sides[0], arguments, report);
    if (!left)
        return;
    if (const auto right = LoadSide(arguments.sides[1], arguments, report))
        CompareContents(arguments, *left, *right, report);
}

void CompareWithDevice(const Arguments& arguments, Device& device, Report& report) {
    std::array<Content, 2> contents;
    for (std::size_t side = 0; side < contents.size(); ++side) {
        if (arguments.sides[side] == kDeviceSide)
            continue;
        const auto loaded = LoadSide(arguments.sides[side], arguments, report);
        if (!loaded)
            return;
        contents.at(side) = *loaded;
    }
    if (!device.Open())
        return;
    for (std::size_t side = 0; side < contents.size(); ++side) {
        if (arguments.sides[side] == kDeviceSide &&
            !device.ReadImage(contents.at(side).image.emplace()))
            return;
    }
    CompareContents(arguments, contents[0], contents[1], report);
}

}  // namespace tarnwell::cli
