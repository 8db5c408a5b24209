#include "manual/Tables.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <initializer_list>

#include "core/Pages.h"
#include "i2c/PinGroups.h"
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

/// A value fills its byte from its lowest bit upward.
std::string BitsOf(const Setting& setting) {
    return setting.shift == 0 ? "all" : std::to_string(setting.shift) + " to 7";
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
                     {BitsOf(setting)},
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
        {"Signal", "Pin", "Port bit (pin)", "Polarity"},
        WiringRow("SCL out", ClockOut, ClockOutPol) + WiringRow("SDA out", DataOut, DataOutPol) +
            WiringRow("SCL in", ClockIn, ClockInPol) + WiringRow("SDA in", DataIn, DataInPol) +
            Row({{"Ground", CellKind::Heading}, {"18 to 25", CellKind::Number}, {}, {}}));
}

std::string PinsTable() {
    return Table({"Direction", "Pins"},
                 Row({{"Outputs", CellKind::Heading}, {Captions(kOutputPins)}}) +
                     Row({{"Inputs", CellKind::Heading}, {Captions(kInputPins)}}));
}

}  // namespace tarnwell::manual
