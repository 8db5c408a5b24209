#include "i2c/DrivenBus.h"

namespace tarnwell {

void DrivenBus::Report(const Message& message, std::string_view cause) {
    user_.ShowBox(Box(message).WithLine(Failure()).WithLine(cause));
    statusBar_.ShowStatus("I2C Operation Aborted", kResultSeconds);
}

}  // namespace tarnwell
