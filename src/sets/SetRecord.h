// The record of the set that is chosen: what is read of it and written to it goes there.
#pragma once

#include "archive/ImageBackups.h"
#include "command/WriteGuard.h"
#include "names/NameBook.h"
#include "sets/HistoryEvent.h"
#include "sets/Recognition.h"

namespace tarnwell {

/// What an event is told of besides the bytes.
struct EventSources {
    const ProgramState& state;
    const BufferOrigin& origin;
    const Calendar& calendar;
    const NameBook& names;
};

/// Without a chosen set backups are kept in the folder of those of no set, and nothing else.
///
/// A reading goes into the record at once if it fits the set; one that does not, or that looks
/// like another set, only with the next write, which was asked about.
class SetRecord final : public BackupStore {
  public:
    SetRecord(ImageBackups& backups, const SetStore& store, const EventSources& sources);

    /// The set whose record is kept, as its file said last.
    const std::optional<TvSet>& Chosen() const { return chosen_; }

    /// Keeps another record from now on. What was read last goes there only if it BelongsTo it;
    /// who chooses has the devices forgotten otherwise.
    void Choose(std::optional<TvSet> set);

    /// Whether what was read last of a device may be of that set: it looks like it, or it is of no
    /// other one and the set's device was never read.
    bool BelongsTo(TargetDevice device, const std::optional<TvSet>& set) const;

    /// The set that what was read last of a device looks like.
    const std::optional<Likeness>& LooksLike(TargetDevice device) const {
        return readings_[static_cast<std::size_t>(device)].likeness;
    }

    /// Whether what was read last of a device is kept out of the chosen set's record so far.
    bool IsKeptOut(TargetDevice device) const {
        return chosen_ && Of(device).image && !Of(device).isRecorded;
    }

    /// How many bytes of what was read last of a device are not as the chosen set's is known to
    /// hold; 0 if that is not known.
    std::size_t DifferingFromChosen(TargetDevice device) const;

    /// What its events call the commands; empty for what the menu calls each.
    void CallCommands(std::string name) { commandName_ = std::move(name); }

    void WasRead(TargetDevice device, const MemoryBuffer& image) override;
    [[nodiscard]] std::string BeginWrite(TargetDevice device, WriteKind kind) override;
    [[nodiscard]] std::string Wrote(const DeviceWrite& write) override;
    [[nodiscard]] std::string Keep(TargetDevice device, const MemoryBuffer& image) override;
    [[nodiscard]] bool Replace(const std::string& path, const MemoryBuffer& image) override;
    std::optional<MemoryBuffer> Newest(TargetDevice device) const override;
    const std::string& Folder() const override { return backups_.Folder(); }

  private:
    /// What was read last of a device, with what was written since.
    struct Reading {
        std::optional<MemoryBuffer> image;
        std::string time{};
        std::optional<Likeness> likeness;
        bool isRecorded = false;
    };
    Reading& Of(TargetDevice device) { return readings_[static_cast<std::size_t>(device)]; }
    const Reading& Of(TargetDevice device) const {
        return readings_[static_cast<std::size_t>(device)];
    }
    bool IsChosen(const std::optional<TvSet>& set) const;
    bool Fits(const Reading& reading, TargetDevice device, const TvSet& set) const;

    /// Whether the reading is in the record then.
    bool Record(TargetDevice device);
    HistoryEvent EventNow(TargetDevice device) const;
    bool Append(const HistoryEvent& event) const;
    void TakeWritten(const DeviceWrite& write);

    ImageBackups& backups_;
    const SetStore& store_;
    const EventSources sources_;
    const std::string folderOfNoSet_;
    std::optional<TvSet> chosen_;
    std::array<Reading, 2> readings_;
    WriteKind kind_ = WriteKind::Selected;
    std::string commandName_;
};

}  // namespace tarnwell
