#include "archive/ImageBackups.h"

#include <algorithm>
#include <filesystem>
#include <regex>
#include <utility>

#include "archive/ArchiveFile.h"
#include "archive/ImageRecords.h"

namespace tarnwell {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostBackups = 20;

/// The names of the backups in a folder, oldest first.
std::vector<std::string> BackupsIn(const std::string& folder) {
    static const std::regex pattern(R"(Tarnwell-\d{8}-\d{6}-(Pri|Sec)(-\d+)?\.mot)");
    std::vector<std::string> names;
    std::error_code failed;
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        std::string name = entry->path().filename();
        if (std::regex_match(name, pattern))
            names.push_back(std::move(name));
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace

ImageBackups::ImageBackups(std::string folder, const Calendar& calendar)
    : folder_(std::move(folder)), calendar_(calendar) {}

bool ImageBackups::Keep(TargetDevice device, const MemoryBuffer& image) {
    std::error_code failed;
    fs::create_directories(folder_, failed);
    const std::string name = FreeName(device);
    const std::string path = folder_ + "/" + name;
    if (!WriteArchive(path, ImageRecords(image)))
        return false;
    lastKept_ = path;
    RemoveOldest(name);
    return true;
}

std::string ImageBackups::FreeName(TargetDevice device) const {
    const std::string name = "Tarnwell-" + calendar_.Timestamp() + "-" + std::string(Word(device));
    std::string free = name;
    std::error_code unreachable;
    for (int number = 2; fs::exists(folder_ + "/" + free + ".mot", unreachable); ++number)
        free = name + "-" + std::to_string(number);
    return free + ".mot";
}

/// A computer whose clock was set back gives a new backup an old name; it stays all the same.
void ImageBackups::RemoveOldest(const std::string& keptName) const {
    std::vector<std::string> others = BackupsIn(folder_);
    std::erase(others, keptName);
    for (std::size_t index = 0; index + kMostBackups <= others.size(); ++index) {
        std::error_code ignored;
        fs::remove(folder_ + "/" + others[index], ignored);
    }
}

}  // namespace tarnwell
