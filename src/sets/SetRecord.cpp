#include "sets/SetRecord.h"

#include <algorithm>
#include <filesystem>

#include "core/Words.h"
#include "sets/HistoryFile.h"

namespace tarnwell {

namespace {

/// By kind.
constexpr std::array<std::string_view, 10> kCommands{"Write Entire EEP",
                                                     "Fill Entire EEP",
                                                     "Write Differences to EEP",
                                                     "Write Settings to EEP",
                                                     "Write Pending to EEP",
                                                     "Write from Comparison",
                                                     "Restore Backup",
                                                     "Take Back",
                                                     "Go Back",
                                                     "Live"};

bool TakesBuffer(WriteKind kind) {
    return kind == WriteKind::Image || kind == WriteKind::Differences || kind == WriteKind::Restore;
}

std::string NameOf(const std::string& path) {
    return std::filesystem::path(path).filename();
}

}  // namespace

SetRecord::SetRecord(ImageBackups& backups, const SetStore& store, const EventSources& sources)
    : backups_(backups), store_(store), sources_(sources), folderOfNoSet_(backups.Folder()) {}

void SetRecord::Choose(std::optional<TvSet> set) {
    if (IsChosen(set)) {
        chosen_ = std::move(set);
        return;
    }
    for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        const bool stays = BelongsTo(device, set);
        Reading& reading = Of(device);
        if (!stays)
            reading = {};
        reading.isRecorded = false;
    }
    chosen_ = std::move(set);
    backups_.UseFolder(chosen_ ? chosen_->folder : folderOfNoSet_);
    for (const TargetDevice device : {TargetDevice::Primary, TargetDevice::Secondary}) {
        if (chosen_ && Of(device).image)
            Record(device);
    }
}

bool SetRecord::IsChosen(const std::optional<TvSet>& set) const {
    return set.has_value() == chosen_.has_value() && (!set || set->folder == chosen_->folder);
}

bool SetRecord::BelongsTo(TargetDevice device, const std::optional<TvSet>& set) const {
    const Reading& reading = Of(device);
    if (IsChosen(set))
        return true;
    if (!reading.image || !set)
        return false;
    const bool wasRead = ReadyImage(*set, device).has_value();
    return (wasRead || !reading.isRecorded) && Fits(reading, device, *set);
}

std::size_t SetRecord::DifferingFromChosen(TargetDevice device) const {
    const auto ready = ReadyImage(*chosen_, device);
    return ready ? BytesDiffering(*ready, *Of(device).image) : 0;
}

bool SetRecord::Fits(const Reading& reading, TargetDevice device, const TvSet& set) const {
    if (reading.likeness && reading.likeness->set.folder != set.folder)
        return false;
    const auto ready = ReadyImage(set, device);
    return !ready || BytesDiffering(*ready, *reading.image) <= kMostDiffering;
}

void SetRecord::WasRead(TargetDevice device, const MemoryBuffer& image) {
    Reading& reading = Of(device);
    reading = {image, sources_.calendar.ZonedTime(), Recognise(store_.All().sets, device, image)};
    if (chosen_ && Fits(reading, device, *chosen_))
        Record(device);
}

bool SetRecord::Record(TargetDevice device) {
    Reading& reading = Of(device);
    const auto index = static_cast<std::size_t>(device);
    const auto ready = ReadyImage(*chosen_, device);
    HistoryEvent event = EventNow(device);
    event.time = reading.time;
    event.crc = mCRC32::BufferCrcText(*reading.image);
    if (!ready) {
        const std::string kept = Keep(device, *reading.image);
        if (kept.empty())
            return false;
        event.image = NameOf(kept);
    }
    for (std::size_t address = 0; ready && address < kEepromBytes; ++address) {
        const auto now = std::optional((*reading.image)[address]);
        const bool isKnown = !chosen_->unknown[index].contains(static_cast<int>(address));
        if (!isKnown || now != (*ready)[address])
            event.bytes.push_back({static_cast<int>(address),
                                   isKnown ? std::optional((*ready)[address]) : std::nullopt, now,
                                   now});
    }
    if ((!ready || !event.bytes.empty()) && !Append(event))
        return false;
    chosen_->lastRead[index] = reading.time;
    chosen_->unknown[index].clear();
    if (!ready || !event.bytes.empty())
        static_cast<void>(PutReadyImage(*chosen_, device, *reading.image));
    static_cast<void>(SetStore::SaveKnown(*chosen_));
    return reading.isRecorded = true;
}

std::string SetRecord::BeginWrite(TargetDevice device, WriteKind kind) {
    kind_ = kind;
    if (!chosen_)
        return {};
    const Reading& reading = Of(device);
    const bool isReady = CanAppend(HistoryPath(*chosen_)) &&
                         (!reading.image || reading.isRecorded || Record(device));
    return isReady ? std::string() : HistoryPath(*chosen_);
}

std::string SetRecord::Wrote(const DeviceWrite& write) {
    if (!chosen_)
        return {};
    HistoryEvent event = EventNow(write.device);
    event.kind = kind_ == WriteKind::Restore ? EventKind::Restore : EventKind::Write;
    event.command = commandName_.empty() ? std::string(kCommands[static_cast<std::size_t>(kind_)])
                                         : commandName_;
    if (TakesBuffer(kind_) && sources_.origin.source == BufferOrigin::Source::File)
        event.image = sources_.origin.Name();
    event.end = write.end;
    event.written = write.count;
    for (const WrittenByte& byte : write.bytes)
        event.bytes.push_back({byte.address, byte.before, byte.written, byte.now});
    if (!Append(event))
        return HistoryPath(*chosen_);
    TakeWritten(write);
    return {};
}

void SetRecord::TakeWritten(const DeviceWrite& write) {
    std::set<int>& unknown = chosen_->unknown[static_cast<std::size_t>(write.device)];
    const std::set<int> before = unknown;
    auto ready = ReadyImage(*chosen_, write.device);
    for (const WrittenByte& byte : write.bytes) {
        if (byte.now)
            unknown.erase(byte.address);
        else
            unknown.insert(byte.address);
        for (auto* const image : {&ready, &Of(write.device).image}) {
            if (*image && byte.now)
                (**image)[static_cast<std::size_t>(byte.address)] = *byte.now;
        }
    }
    if (ready)
        ChangeReadyImage(*chosen_, write.device, *ready);
    if (unknown != before)
        static_cast<void>(SetStore::SaveKnown(*chosen_));
}

bool SetRecord::Append(const HistoryEvent& event) const {
    return AppendLine(HistoryPath(*chosen_), JsonOf(event, sources_.names.NamesOn(event.device)));
}

HistoryEvent SetRecord::EventNow(TargetDevice device) const {
    HistoryEvent event;
    event.time = sources_.calendar.ZonedTime();
    event.device = device;
    event.port = BusName(sources_.state);
    event.version = TARNWELL_VERSION;
    return event;
}

std::string SetRecord::Keep(TargetDevice device, const MemoryBuffer& image) {
    const auto newest = chosen_ ? backups_.Newest(device) : std::nullopt;
    if (newest && BytesDiffering(*newest, image) == 0)
        return backups_.PathOf(device, image);
    return backups_.Keep(device, image);
}

bool SetRecord::Replace(const std::string& path, const MemoryBuffer& image) {
    return ImageBackups::Replace(path, image);
}

std::optional<MemoryBuffer> SetRecord::Newest(TargetDevice device) const {
    return backups_.Newest(device);
}

}  // namespace tarnwell
