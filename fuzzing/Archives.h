// The archive loaders on an input, and on the input with right checksums.
#pragma once

#include "Fuzzing.h"
#include "archive/SRecord.h"
#include "support/TestProgram.h"

namespace tarnwell::fuzzing {

/// The lines with the last two characters of each replaced by the checksum that the record should
/// have, so that the fuzzer need not guess it. The header line stays.
inline std::string WithChecksums(std::string_view input) {
    std::string fixed;
    while (!input.empty()) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        std::string line(input.substr(0, end));
        input.remove_prefix(std::min(end + 1, input.size()));
        if (!fixed.empty() && line.size() > 2)
            line.replace(line.size() - 2, 2, RecordChecksum(line.substr(0, line.size() - 2)));
        fixed += line + "\n";
    }
    return fixed;
}

/// Starts `command` with `content` as the picked file; the status line, "end" if the program ended.
template <typename Archive>
std::string Load(QuietProgram& quiet, Archive& archive, void (Archive::*command)(),
                 std::string_view content) {
    const InputFile file(content);
    quiet.user.file = file.Path();
    try {
        (archive.*command)();
    } catch (const ProgramEnd&) {
        return "end";
    }
    return std::string(quiet.program.statusBar.Text(Panel::Status));
}

/// Starts `command` with a new file as the picked one; what was saved.
template <typename Archive>
std::string Save(QuietProgram& quiet, Archive& archive, void (Archive::*command)()) {
    const InputFile file("");
    quiet.user.file = file.Path();
    (archive.*command)();
    std::ifstream saved(file.Path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(saved), {}};
}

}  // namespace tarnwell::fuzzing
