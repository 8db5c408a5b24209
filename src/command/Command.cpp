#include "command/Command.h"

#include <algorithm>

namespace tarnwell {

void Command::TellNotVerified(std::string_view line, Box box,
                              const std::vector<Mismatch>& mismatches) {
    i2c_.FindStrays();
    i2c_.EndWrite();
    std::vector<Mismatch> strays = i2c_.Strays();
    std::erase_if(strays, [&](const Mismatch& stray) {
        return std::ranges::find(mismatches, stray.address, &Mismatch::address) != mismatches.end();
    });
    statusBar_.ShowStatus(line, kMismatchSeconds);
    user_.Beep();
    box.details = MismatchText(mismatches, state_.numberMode, names_);
    if (!strays.empty())
        box.details +=
            (box.details.empty() ? "" : "\n") + StraysText(strays, state_.numberMode, names_);
    user_.ShowBox(box);
    statusBar_.PutStatus("");
}

}  // namespace tarnwell
