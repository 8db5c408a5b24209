// The text of the options file: groups of names and values, in the form of Qt's INI files, by which
// all versions of the program read each other's options.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// Values by name, as they stand in the text.
using IniValues = std::map<std::string, std::string, std::less<>>;
using IniGroups = std::map<std::string, IniValues, std::less<>>;

/// Nothing if the text is damaged: if a line is neither blank, nor `[group]`, nor `name=value`, nor
/// a comment, which begins with a semicolon. Of values of the same name the last one counts.
std::optional<IniGroups> ParseIni(std::string_view text);

std::string IniText(const IniGroups& groups);

/// The text that a value stands for. Whatever the value holds, a text is all that it can become:
/// what is no escape stands for itself, a comma too.
std::string DecodedValue(std::string_view value);

std::string EncodedValue(std::string_view text);

}  // namespace tarnwell
