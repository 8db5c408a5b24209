// The commands that compare.
#include "cli/commands/Commands.h"
#include "cli/tools/Device.h"
#include "cli/tools/Files.h"
#include "core/Words.h"
#include "differences/DifferenceTexts.h"

namespace tarnwell::cli {

namespace {

/// Puts what differs into the report, unless settings are refused. Of values only those can be
/// compared that both sides have.
[[nodiscard]] bool FindsDifferences(const Arguments& arguments, const Content& left,
                                    const Content& right, Report& report) {
    if (left.image && right.image) {
        report.mismatches = Mismatches(*left.image, *right.image);
        report.mismatchesAre = Told::BytesAndValues;
        return true;
    }
    if (RefusesSettings(arguments, report))
        return false;
    report.mismatchesAre = Told::Values;
    for (const Named& setting : BuiltInNames()) {
        const auto one = ValueOf(*setting, left);
        const auto other = ValueOf(*setting, right);
        if (one && other && *one != *other)
            report.mismatches.push_back({setting->address, static_cast<std::uint8_t>(*one),
                                         static_cast<std::uint8_t>(*other)});
    }
    return true;
}

void CompareContents(const Arguments& arguments, const std::array<Content, 2>& sides,
                     Report& report) {
    const auto& [left, right] = sides;
    if (!FindsDifferences(arguments, left, right, report))
        return;
    DifferenceCount count;
    if (left.image && right.image)
        count = CountDifferences(
            DifferenceRows(arguments.book, arguments.device, *left.image, *right.image));
    else
        count.bytes = count.settings = static_cast<int>(report.mismatches.size());
    report.End(report.mismatches.empty() ? Status::Done : Status::Different,
               DifferencesText(count) + ".");
}

[[nodiscard]] bool LoadFiles(const Arguments& arguments, std::array<Content, 2>& sides,
                             Report& report) {
    for (std::size_t side = 0; side < sides.size(); ++side) {
        if (arguments.sides[side] == kDeviceSide)
            continue;
        auto loaded = LoadSide(arguments.sides[side], arguments, report);
        if (!loaded)
            return false;
        sides.at(side) = std::move(*loaded);
    }
    return true;
}

}  // namespace

void CompareFiles(const Arguments& arguments, Report& report) {
    std::array<Content, 2> sides;
    if (LoadFiles(arguments, sides, report))
        CompareContents(arguments, sides, report);
}

void CompareWithDevice(const Arguments& arguments, Device& device, Report& report) {
    std::array<Content, 2> sides;
    if (!LoadFiles(arguments, sides, report) || !device.Open())
        return;
    for (std::size_t side = 0; side < sides.size(); ++side) {
        if (arguments.sides[side] == kDeviceSide &&
            !device.ReadImage(sides.at(side).image.emplace()))
            return;
    }
    CompareContents(arguments, sides, report);
}

void Verify(const Arguments& arguments, Device& device, Report& report) {
    Content held;
    const auto content = Load(arguments.file, arguments, report);
    if (!content || (!content->image && RefusesSettings(arguments, report)) || !device.Open() ||
        !device.ReadImage(held.image.emplace()) ||
        !FindsDifferences(arguments, *content, held, report))
        return;
    report.crc = mCRC32::BufferCrcText(*held.image);
    if (report.mismatches.empty())
        return report.End(Status::Done, "The EEProm holds what the file holds.");
    report.End(Status::Different, Counted(report.mismatches.size(), "byte", "differs.", "differ."));
}

}  // namespace tarnwell::cli
