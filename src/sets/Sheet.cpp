#include "sets/Sheet.h"

#include "core/Pages.h"
#include "core/user/Number.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

constexpr std::string_view kHead = "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>";
constexpr std::string_view kStyle =
    "</title>\n<style>@page{margin:12mm} body{font-family:sans-serif;font-size:8pt;color:#000}"
    "table{border-collapse:collapse;width:100%;margin-bottom:3mm}"
    "td,th{border-bottom:0.3pt solid #777;padding:0.5mm;text-align:left}"
    "h1{font-size:13pt;margin:0}h2{font-size:9pt;margin:1mm}</style></head>\n<body>\n";

// Of the table, in percent.
constexpr int kNameWidth = 12;
constexpr int kDescriptionWidth = 28;

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char letter : text) {
        switch (letter) {
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '&':
                escaped += "&amp;";
                break;
            default:
                escaped += letter;
        }
    }
    return escaped;
}

std::string Element(std::string_view name, const std::string& content) {
    return "<" + std::string(name) + ">" + content + "</" + std::string(name) + ">";
}

/// "31 (1F)"; of one that differs "<b>31 (1F)</b> was 25 (19)", and what the value means.
std::string ValueCell(const SheetFacts& facts, const NamedValue& named) {
    const auto text = [&](const MemoryBuffer& image) {
        const int value = ValueIn(image, named);
        return Escaped(ValueText(named, value, NumberMode::Decimal)) + " (" +
               NumberText(static_cast<std::uint32_t>(value), NumberMode::Hex) + ")";
    };
    if (!facts.first || ValueIn(*facts.first, named) == ValueIn(facts.image, named))
        return Element("td", text(facts.image));
    return Element("td", Element("b", text(facts.image)) + " was " + text(*facts.first));
}

std::string RowOf(const SheetFacts& facts, const Setting& setting) {
    std::string cells =
        Element("td", Escaped(setting.code)) + Element("td", Escaped(setting.description));
    for (const CellPlace& place : setting.cells)
        cells += place.Exists() ? ValueCell(facts, NamedSetting(place.cell)) : Element("td", "");
    return Element("tr", cells) + "\n";
}

std::string Table(std::string_view caption, std::span<const std::string_view> columns,
                  const std::string& rows) {
    const auto head = [](int percent, std::string_view text) {
        return "<th width=\"" + std::to_string(percent) + "%\">" + std::string(text) + "</th>";
    };
    std::string heads = head(kNameWidth, "Name") + head(kDescriptionWidth, "Description");
    for (const std::string_view column : columns)
        heads +=
            head((100 - kNameWidth - kDescriptionWidth) / static_cast<int>(columns.size()), column);
    return Element("h2", std::string(caption)) + "\n<table width=\"100%\" cellspacing=\"0\">" +
           Element("tr", heads) + "\n" + rows + "</table>\n";
}

std::string TableOf(const SheetFacts& facts, const PageInfo& page) {
    std::string rows;
    for (const Setting& setting : kCatalog) {
        if (setting.page == page.page)
            rows += RowOf(facts, setting);
    }
    if (rows.empty())
        return rows;
    return Table(page.caption, kFormats, rows);
}

/// A section of their own, if there are any.
std::string TableOfNames(const SheetFacts& facts) {
    std::string rows;
    for (const Named& named : facts.names) {
        if (!named->cell)
            rows += Element("tr", Element("td", named->name) + Element("td", Escaped(named->text)) +
                                      Element("td", PlaceText(*named, NumberMode::Decimal)) +
                                      ValueCell(facts, *named)) +
                    "\n";
    }
    constexpr std::array<std::string_view, 2> kColumns{"Place", "Value"};
    return rows.empty() ? rows : Table("Names of Your Own", kColumns, rows);
}

}  // namespace

std::string SheetHtml(const SheetFacts& facts) {
    std::string page = std::string(kHead) + Escaped(facts.set) + std::string(kStyle);
    page += Element("h1", Escaped(facts.set)) + "\n";
    page +=
        Element("p", Escaped(facts.model) + (facts.model.empty() ? "" : "; ") + "Primary EEProm; " +
                         Escaped(facts.date) + "; CRC-32 " + mCRC32::BufferCrcText(facts.image) +
                         (facts.first ? "; bold: differs from the first image" : "")) +
        "\n";
    for (const PageInfo& info : kPages)
        page += TableOf(facts, info);
    page += TableOfNames(facts);
    return page + "</body></html>\n";
}

}  // namespace tarnwell
