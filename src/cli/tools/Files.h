// The files that commands read and write: archives, plain bytes, standard input and output.
#pragma once

#include "cli/words/Report.h"
#include "image/MemoryBuffer.h"

namespace tarnwell::cli {

/// What a file holds: an image, or setting values by cell.
struct Content {
    std::optional<MemoryBuffer> image;
    CellValues values;
};

/// The images that are kept before writes.
std::vector<KeptImage> KeptBackups(TargetDevice device);

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

}  // namespace tarnwell::cli
