#include "archive/ImageBackups.h"

#include <algorithm>
#include <filesystem>
#include <regex>
#include <tuple>
#include <utility>

#include "archive/ArchiveFile.h"
#include "archive/ImageRecords.h"

namespace tarnwell {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostBackups = 20;

/// What the name of a file says, if it is one of ours.
std::optional<KeptImage> FromPath(const fs::path& path) {
    static const std::regex pattern(R"(Tarnwell-(\d{8}-\d{6})-(Pri|Sec)(?:-(\d{1,6}))?\.mot)");
    const std::string name = path.filename();
    std::smatch part;
    if (!std::regex_match(name, part, pattern))
        return std::nullopt;
    const auto device = part.str(2) == Word(TargetDevice::Primary) ? TargetDevice::Primary
                                                                   : TargetDevice::Secondary;
    return KeptImage{path, device, part[1], part[3].matched ? std::stoi(part[3]) : 1};
}

bool IsNewer(const KeptImage& one, const KeptImage& other) {
    return std::tie(one.timestamp, one.number) > std::tie(other.timestamp, other.number);
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
    RemoveOld(path);
    return true;
}

std::vector<KeptImage> ImageBackups::All() const {
    std::vector<KeptImage> images;
    std::error_code failed;
    for (fs::directory_iterator entry(folder_, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        if (auto image = FromPath(entry->path()))
            images.push_back(*std::move(image));
    }
    std::ranges::sort(images, IsNewer);
    return images;
}

std::string ImageBackups::PathOf(TargetDevice device, const MemoryBuffer& image) const {
    for (const KeptImage& kept : All()) {
        if (kept.device != device)
            continue;
        const auto found = LoadOwnImage(kept.path);
        if (found && std::equal(image.begin(), image.end() - 1, found->begin()))
            return kept.path;
    }
    return {};
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
void ImageBackups::RemoveOld(const std::string& keptPath) const {
    std::vector<KeptImage> others = All();
    std::erase_if(others, [&](const KeptImage& image) { return image.path == keptPath; });
    for (std::size_t index = kMostBackups - 1; index < others.size(); ++index) {
        const bool isOldest = std::none_of(
            others.begin() + static_cast<std::ptrdiff_t>(index) + 1, others.end(),
            [&](const KeptImage& older) { return older.device == others[index].device; });
        std::error_code ignored;
        if (!isOldest)
            fs::remove(others[index].path, ignored);
    }
}

}  // namespace tarnwell
