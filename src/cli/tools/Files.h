// The files that commands read and write: archives, plain bytes, standard input and output.
#pragma once

#include "cli/words/Report.h"
#include "image/MemoryBuffer.h"

namespace tarnwell::cli {

/// What a file holds: an image, or setting values by cell.
struct Content {
    std::optional<MemoryBuffer> image;
    CellValues values;
    std::string path;
};

/// The images that are kept before writes, of the set that is chosen.
std::vector<KeptImage> KeptBackups(const Arguments& arguments);

/// `backup` and `backup:N` are the images that were kept of the device, anything else is a file.
/// Nothing if it cannot be used, which ends the command.
[[nodiscard]] std::optional<Content> LoadSide(const std::string& name, const Arguments& arguments,
                                              Report& report);

/// Nothing if the file cannot be used, which ends the command.
[[nodiscard]] std::optional<Content> Load(const std::string& name, const Arguments& arguments,
                                          Report& report);

/// Whether a file may be saved under this name; if not, ends the command.
[[nodiscard]] bool MaySave(const std::string& name, const Arguments& arguments, Report& report);

/// Saves an image, or else the values, by the kind that the name asks for.
void Save(const std::string& name, const Content& content, const Arguments& arguments,
          Report& report);

/// Saves a text for people as it is.
void SaveText(const std::string& name, const std::string& text, std::string_view saved,
              Report& report);

/// Settings are those of the primary EEPROM: on the secondary one the command ends.
[[nodiscard]] bool RefusesSettings(const Arguments& arguments, Report& report);

/// The same of a command that takes names, unless they are the user's.
[[nodiscard]] bool RefusesNames(const NameList& names, const Arguments& arguments, Report& report);

/// The value that a file holds, if it does.
std::optional<int> ValueOf(const NamedValue& named, const Content& content);

/// Puts those of the values that a file holds into the report.
void ShowSettings(const NameList& names, const Content& content, Report& report);

}  // namespace tarnwell::cli
