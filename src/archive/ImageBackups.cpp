#include "archive/ImageBackups.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <tuple>
#include <utility>

#include "archive/ArchiveFile.h"
#include "archive/ImageRecords.h"

namespace tarnwell {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostBackups = 20;

constexpr std::size_t kTimestampLength = std::string_view("20260102-030405").size();

bool Take(std::string_view& text, std::string_view start) {
    if (!text.starts_with(start))
        return false;
    text.remove_prefix(start.size());
    return true;
}

/// Takes the digits in front, if they are at least `fewest` and at most `most`.
std::optional<int> TakeDigits(std::string_view& text, std::size_t fewest, std::size_t most) {
    const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
    int value = 0;
    if (count < fewest || count > most)
        return std::nullopt;
    std::from_chars(text.data(), text.data() + count, value);
    text.remove_prefix(count);
    return value;
}

bool IsNewer(const KeptImage& one, const KeptImage& other) {
    return std::tie(one.timestamp, one.number) > std::tie(other.timestamp, other.number);
}

}  // namespace

std::optional<KeptImage> KeptImageAt(const std::string& path) {
    const std::string name = fs::path(path).filename();
    std::string_view rest = name;
    if (!Take(rest, "Tarnwell-"))
        return std::nullopt;
    const std::string timestamp(rest.substr(0, kTimestampLength));
    if (!TakeDigits(rest, 8, 8) || !Take(rest, "-") || !TakeDigits(rest, 6, 6) || !Take(rest, "-"))
        return std::nullopt;
    const bool primary = Take(rest, Word(TargetDevice::Primary));
    if (!primary && !Take(rest, Word(TargetDevice::Secondary)))
        return std::nullopt;
    const std::optional<int> number = Take(rest, "-") ? TakeDigits(rest, 1, 6) : 1;
    if (!number || rest != ".mot")
        return std::nullopt;
    return KeptImage{path, primary ? TargetDevice::Primary : TargetDevice::Secondary, timestamp,
                     *number};
}

BufferOrigin OriginOf(const std::string& path, const MemoryBuffer& image, int end) {
    const auto kept = KeptImageAt(path);
    BufferOrigin origin{.source = BufferOrigin::Source::File,
                        .device = kept ? std::optional(kept->device) : std::nullopt,
                        .place = path,
                        .time = {},
                        .end = end};
    origin.image.Edit() = image;
    return origin;
}

ImageBackups::ImageBackups(std::string folder, const Calendar& calendar)
    : folder_(std::move(folder)), calendar_(calendar) {}

std::string ImageBackups::Keep(TargetDevice device, const MemoryBuffer& image) {
    std::error_code failed;
    fs::create_directories(folder_, failed);
    const std::string name = FreeName(device);
    std::string path = folder_ + "/" + name;
    if (!Replace(path, image))
        return {};
    lastKept_ = path;
    RemoveOld(path);
    return path;
}

bool ImageBackups::Replace(const std::string& path, const MemoryBuffer& image) {
    return WriteArchive(path, ArchiveText(ImageRecords(image)));
}

std::optional<MemoryBuffer> ImageBackups::Newest(TargetDevice device) const {
    for (const KeptImage& kept : All()) {
        if (kept.device == device)
            return LoadOwnImage(kept.path);
    }
    return std::nullopt;
}

std::vector<KeptImage> KeptImagesIn(const std::string& folder) {
    std::vector<KeptImage> images;
    std::error_code failed;
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        if (auto image = KeptImageAt(entry->path()))
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
