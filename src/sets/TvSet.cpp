#include "sets/TvSet.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>

#include "core/Words.h"
#include "core/files/AtomicFile.h"
#include "core/files/SmallFile.h"

namespace tarnwell {

namespace {

constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};

std::string ReadyPath(const TvSet& set, TargetDevice device) {
    return set.folder + "/" + std::string(DeviceWord(device)) + ".bin";
}

std::size_t NumberIn(std::string_view digits) {
    std::size_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

}  // namespace

std::optional<MemoryBuffer> ReadyImage(const TvSet& set, TargetDevice device) {
    const SmallFile file = ReadSmallFile(ReadyPath(set, device));
    if (file.fault != FileFault::None || file.content.size() != kEepromBytes)
        return std::nullopt;
    MemoryBuffer image{};
    std::ranges::copy(file.content, image.begin());
    return image;
}

bool PutReadyImage(const TvSet& set, TargetDevice device, const MemoryBuffer& image) {
    AtomicFile file(ReadyPath(set, device));
    file.Write({reinterpret_cast<const char*>(image.data()), kEepromBytes});
    return file.Commit();
}

void ChangeReadyImage(const TvSet& set, TargetDevice device, const MemoryBuffer& image) {
    const RegularFile file(ReadyPath(set, device), O_WRONLY);
    if (file.Fault() == FileFault::None) {
        [[maybe_unused]] const ssize_t written =
            pwrite(file.Descriptor(), image.data(), kEepromBytes, 0);
    }
}

std::string DayText(std::string_view time, std::string_view now) {
    if (time.size() < 10)
        return {};
    const std::size_t month = NumberIn(time.substr(5, 2));
    std::string text = std::to_string(NumberIn(time.substr(8, 2)));
    if (month >= 1 && month <= kMonths.size())
        text.append(" ").append(kMonths[month - 1]);
    if (time.substr(0, 4) != now.substr(0, 4))
        text.append(" ").append(time.substr(0, 4));
    return text;
}

}  // namespace tarnwell
