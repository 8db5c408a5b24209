// The date and the time of day without a desktop.
#pragma once

#include <ctime>

#include "core/Calendar.h"

namespace tarnwell::cli {

class SystemCalendar final : public Calendar {
  public:
    std::string ShortDate() const override { return Now("%x"); }
    std::string TimeWithSeconds() const override { return Now("%X"); }
    std::string Timestamp() const override { return Now("%Y%m%d-%H%M%S"); }
    std::string ZonedTime() const override {
        std::string text = Now("%Y-%m-%dT%H:%M:%S%z");
        return text.insert(text.size() - 2, 1, ':');
    }

  private:
    static std::string Now(const char* format) {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        char text[64];
        return {text, std::strftime(text, sizeof text, format, localtime_r(&now, &local))};
    }
};

}  // namespace tarnwell::cli
