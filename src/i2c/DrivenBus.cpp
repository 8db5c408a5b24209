#include "i2c/DrivenBus.h"

#include <utility>

#include "core/Words.h"

namespace tarnwell {

namespace {

constexpr Message kStopped{"The operation was stopped.", "I N F O", BoxStyle::Information};

}  // namespace

void DrivenBus::Report(const Message& message, std::string_view cause, std::string details) {
    Box box = Box(message).WithLine(Failure()).WithLine(cause);
    box.details = std::move(details);
    user_.ShowBox(box);
    statusBar_.ShowStatus("I2C Operation Aborted", kResultSeconds);
}

void DrivenBus::ReportAborted(std::string_view line, std::string details) {
    if (!stopped_ || !Failure().empty())
        return Report(kNoAcknowledge, line, std::move(details));
    if (bytesWritten_ > 0) {
        Box box = Box(kStopped)
                      .WithLine(Counted(bytesWritten_, "byte", "was written.", "were written."))
                      .WithLine(line);
        box.details = std::move(details);
        user_.ShowBox(box);
    }
    statusBar_.ShowStatus("I2C Operation Stopped", kResultSeconds);
}

}  // namespace tarnwell
