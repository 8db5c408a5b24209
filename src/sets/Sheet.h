// All settings of a set on a sheet of paper, as a page of HTML.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "image/MemoryBuffer.h"
#include "names/NamedValue.h"

namespace tarnwell {

/// What a sheet tells of the primary EEPROM.
struct SheetFacts {
    std::string set{};    ///< its name, or the image's
    std::string model{};  ///< of the set, or empty
    std::string date{};
    MemoryBuffer image{};
    std::optional<MemoryBuffer> first{};  ///< the set's first image
    std::vector<Named> names{};           ///< of which those of one's own get a section
};

/// The page: each setting by page and format, in both number modes; what differs from the first
/// image is bold, with what it was. It prints well in grey. Names are those of the primary EEPROM.
std::string SheetHtml(const SheetFacts& facts);

}  // namespace tarnwell
