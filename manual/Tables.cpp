#include "manual/Tables.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <initializer_list>

#include "core/Pages.h"
#include "i2c/parallel/PinGroups.h"
#include "settings/Catalog.h"

namespace tarnwell::manual {

namespace {

enum class CellKind { Text, Heading, Number };

struct TableCell {
    std::string html;
    CellKind kind = CellKind::Text;
};

std::string Row(std::initializer_list<TableCell> cells) {
    std::string row = "<tr>";
    for (const TableCell& cell : cells) {
        switch (cell.kind) {
            case CellKind::Text:
                row += "<td>" + cell.html + "</td>";
                break;
            case CellKind::Heading:
                row += "<th scope=\"row\">" + cell.html + "</th>";
                break;
            case CellKind::Number:
                row += "<td class=\"n\">" + cell.html + "</td>";
                break;
        }
    }
    return row + "</tr>\n";
}

std::string Table(std::initializer_list<std::string_view> headings, const std::string& rows) {
    std::string head;
    for (const std::string_view heading : headings)
        head.append("<th scope=\"col\">").append(heading).append("</th>");
    return "<div class=\"scroll\"><table>\n<thead><tr>" + head + "</tr></thead>\n<tbody>\n" + rows +
           "</tbody>\n</table></div>";
}

std::string Hex(int value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, static_cast<unsigned>(value));
    return text;
}

/// One line a stored value of the setting.
template <typename Text>
std::string PerPlace(const Setting& setting, Text text) {
    std::string lines;
    for (int column = 0; column < kColumnCount; ++column) {
        const CellPlace& place = setting.cells[static_cast<std::size_t>(column)];
        if (place.Exists())
            lines += (lines.empty() ? "" : "<br/>") + text(column, place);
    }
    return lines;
}

std::string FormatsOf(const Setting& setting) {
    if (!setting.statusName.withFormat)
        return "all formats";
    return PerPlace(setting, [](int column, const CellPlace&) {
        return std::string(kFormats[static_cast<std::size_t>(column)]);
    });
}

std::string BitsCell(const Setting& setting) {
    const auto [lowest, highest] = BitsOf(setting);
    return std::to_string(lowest) + (lowest == highest ? "" : " to " + std::to_string(highest));
}

const PinOption& DefaultOf(const PinGroup& group) {
    return group.options[static_cast<std::size_t>(group.defaultIndex)];
}

std::string WiringRow(std::string_view signal, PinPosition pin, PinPosition polarity) {
    const PinOption& option = DefaultOf(Group(pin));
    return Row({{std::string(signal), CellKind::Heading},
                {std::to_string(option.pin), CellKind::Number},
                {Escaped(option.caption)},
                {Escaped(DefaultOf(Group(polarity)).caption)}});
}

int DefaultPin(PinPosition position) {
    return DefaultOf(Group(position)).pin;
}

/// The colour class of a pin: that of the line it carries, if it carries one.
std::string_view LineOf(int pin) {
    using enum PinPosition;
    if (pin == DefaultPin(ClockOut) || pin == DefaultPin(ClockIn))
        return "scl";
    return pin == DefaultPin(DataOut) || pin == DefaultPin(DataIn) ? "sda" : "";
}

/// Pins 1 to 13 stand in the upper row and 14 to 25 in the lower one, from the right.
std::string PinDrawing(int pin) {
    constexpr int kUpperPins = 13;
    const bool upper = pin <= kUpperPins;
    const std::string x = std::to_string(upper ? 363 - 25 * pin : 676 - 25 * pin);
    return "<circle cx=\"" + x + "\" cy=\"" + (upper ? "38" : "72") + "\" r=\"7\" class=\"pin " +
           std::string(LineOf(pin)) + "\"/><text x=\"" + x + "\" y=\"" + (upper ? "26" : "90") +
           "\">" + std::to_string(pin) + "</text>\n";
}

std::string LegendEntry(int x, std::string_view line, std::string_view name, PinPosition out,
                        PinPosition in) {
    return "<circle cx=\"" + std::to_string(x) + "\" cy=\"111\" r=\"5\" class=\"pin " +
           std::string(line) + "\"/><text x=\"" + std::to_string(x + 10) +
           "\" y=\"115\" class=\"legend\">" + std::string(name) + " (" +
           std::to_string(DefaultPin(out)) + " out, " + std::to_string(DefaultPin(in)) +
           " in)</text>\n";
}

std::string Captions(std::span<const PinOption> options) {
    std::string captions;
    for (const PinOption& option : options)
        captions.append(captions.empty() ? "" : ", ").append(Escaped(option.caption));
    return captions;
}

}  // namespace

std::string Escaped(std::string_view text) {
    std::string html;
    for (const char character : text) {
        switch (character) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            default:
                html += character;
        }
    }
    return html;
}

std::string SettingsTable(std::string_view caption) {
    std::string rows;
    std::string_view description;
    for (const Setting& setting : kCatalog) {
        if (Info(setting.page).caption != caption)
            continue;
        if (!setting.description.empty())
            description = setting.description;
        rows += Row({{Escaped(setting.code) + " " + Escaped(setting.number), CellKind::Heading},
                     {Escaped(description)},
                     {"0 to " + std::to_string(setting.maximum)},
                     {FormatsOf(setting)},
                     {PerPlace(setting,
                               [](int, const CellPlace& place) {
                                   return std::to_string(place.address) + " (" +
                                          Hex(place.address, 4) + ")";
                               })},
                     {BitsCell(setting)},
                     {PerPlace(setting, [](int, const CellPlace& place) {
                         return std::to_string(place.cell);
                     })}});
    }
    if (rows.empty())
        return {};
    return Table({"Setting", "Description", "Range", "Value for", "Address (hex)", "Bits", "Cell"},
                 rows);
}

std::string GroupsTable() {
    std::string rows;
    for (const SettingGroup& group : SettingGroups) {
        const int last = group.firstCell + group.count - 1;
        rows += Row(
            {{Hex(group.baseAddress, 4)},
             {std::to_string(group.count), CellKind::Number},
             {group.count == 1 ? std::to_string(last)
                               : std::to_string(group.firstCell) + " to " + std::to_string(last)},
             {CellTitle(group.firstCell) + (group.count == 1 ? "" : " to " + CellTitle(last))}});
    }
    return Table({"Record address", "Values", "Cells", "From and to"}, rows);
}

std::string WiringTable() {
    using enum PinPosition;
    return Table(
        {"Signal", "Pin", "In Advanced Setup", "Polarity"},
        WiringRow("SCL out", ClockOut, ClockOutPol) + WiringRow("SDA out", DataOut, DataOutPol) +
            WiringRow("SCL in", ClockIn, ClockInPol) + WiringRow("SDA in", DataIn, DataInPol) +
            Row({{"Ground", CellKind::Heading}, {"18 to 25", CellKind::Number}, {}, {}}));
}

std::string ConnectorDrawing() {
    using enum PinPosition;
    constexpr int kPins = 25;
    std::string drawing =
        "<svg class=\"connector\" viewBox=\"0 0 380 120\" role=\"img\" aria-label=\"The 25-pin "
        "socket "
        "with the pins of the table above marked\">\n<path d=\"M22 12 H358 Q370 12 367 24 L353 86 "
        "Q350 96 340 96 H40 Q30 96 27 86 L13 24 Q10 12 22 12 Z\"/>\n";
    for (int pin = 1; pin <= kPins; ++pin)
        drawing += PinDrawing(pin);
    return drawing + LegendEntry(60, "scl", "SCL", ClockOut, ClockIn) +
           LegendEntry(210, "sda", "SDA", DataOut, DataIn) + "</svg>";
}

std::string PinsTable() {
    return Table({"Direction", "Pins"},
                 Row({{"Outputs", CellKind::Heading}, {Captions(kOutputPins)}}) +
                     Row({{"Inputs", CellKind::Heading}, {Captions(kInputPins)}}));
}

}  // namespace tarnwell::manual
