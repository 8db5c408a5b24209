#include "differences/Watch.h"

#include <algorithm>
#include <utility>

#include "differences/OtherTarget.h"

namespace tarnwell {

namespace {

using std::chrono::milliseconds;

/// Takes a twentieth of a second at the pace of the devices.
constexpr int kPieceBytes = 512;

constexpr milliseconds kBetweenReadings{1000};
constexpr milliseconds kLeastPause{10};
constexpr milliseconds kLongestWait{4000};

}  // namespace

Watch::Watch(const CommandContext& context, SparedUser& user, Clock& clock,
             const Calendar& calendar, const NameBook& book)
    : Command(context), busUser_(user), clock_(clock), calendar_(calendar), book_(book) {}

void Watch::Begin(TargetDevice device, const std::vector<ByteRange>& ranges,
                  const MemoryBuffer* held) {
    device_ = device;
    pieces_.clear();
    for (const auto& [first, count] : ranges) {
        for (int done = 0; done < count; done += kPieceBytes)
            pieces_.push_back({first + done, std::min(count - done, kPieceBytes)});
    }
    next_ = 0;
    elapsed_ = failing_ = {};
    readings_ = 0;
    isHeldKnown_ = held != nullptr;
    held_ = isHeldKnown_ ? *held : MemoryBuffer{};
    failure_.clear();
}

milliseconds Watch::Step() {
    const BusTime begin = clock_.Now();
    const Transfer read = Read(pieces_[next_]);
    const auto took = std::chrono::ceil<milliseconds>(clock_.Now() - begin);
    if (read == Transfer::Aborted) {
        failing_ = std::clamp(failing_ * 2, kBetweenReadings, kLongestWait);
        return failing_;
    }
    failing_ = {};
    milliseconds pause = std::max(took, kLeastPause);
    elapsed_ += took + pause;
    if (++next_ == pieces_.size()) {
        pause += std::max(kBetweenReadings - elapsed_, milliseconds());
        next_ = 0;
        elapsed_ = {};
        isHeldKnown_ = true;
        ++readings_;
    }
    return pause;
}

// What ends in the midst of it ends by an exception, and the bus must be free then.
Transfer Watch::Read(const ByteRange& piece) {
    const OtherTarget target(state_, screen_, device_);
    const SparedUser::Sparing spared(busUser_);
    const BusClaim claim(i2c_);
    try {
        MemoryBuffer found = held_;
        if (ReadOnce(piece, found) == Transfer::Aborted)
            return Transfer::Aborted;
        if (isHeldKnown_ && found != held_) {
            // What one reading says may be a disturbance of that reading, or the device's last.
            MemoryBuffer again = held_;
            if (ReadOnce(piece, again) == Transfer::Aborted)
                return Transfer::Aborted;
            for (std::size_t address = 0; address < found.size(); ++address)
                found[address] = found[address] == again[address] ? found[address] : held_[address];
            Note(found);
        }
        held_ = found;
        return Transfer::Done;
    } catch (...) {
        i2c_.GiveUp();
        throw;
    }
}

Transfer Watch::ReadOnce(const ByteRange& piece, MemoryBuffer& image) {
    const BusCheck check = i2c_.CheckBus(Quiet::No);
    isDeclined_ = check == BusCheck::Declined;
    failure_.clear();
    if (check == BusCheck::Ok &&
        i2c_.ReadBlock(static_cast<std::int16_t>(piece.first),
                       static_cast<std::int16_t>(piece.count)) == Transfer::Done) {
        std::copy_n(i2c_.ReadData().begin(), piece.count, image.begin() + piece.first);
        return Transfer::Done;
    }
    if (check == BusCheck::Ok)
        i2c_.AbortOperation();
    failure_ = isDeclined_ ? "The device is not to be used." : busUser_.Unsaid();
    return Transfer::Aborted;
}

void Watch::Note(const MemoryBuffer& found) {
    Add(calendar_.ZonedTime(), device_, DifferenceRows(book_, device_, held_, found));
}

void Watch::Add(const std::string& time, TargetDevice device, std::vector<DifferenceRow> rows) {
    for (DifferenceRow& row : rows) {
        std::erase_if(row.bytes,
                      [this](const Difference& byte) { return ignored_.contains(byte.address); });
        if (!row.named) {
            for (const Difference& byte : row.bytes)
                changes_.push_back({time, device, {nullptr, {byte}}});
        } else if (!row.bytes.empty()) {
            changes_.push_back({time, device, std::move(row)});
        }
    }
}

void Watch::Refresh() {
    const auto changes = std::exchange(changes_, {});
    for (auto first = changes.begin(); first != changes.end();) {
        const auto last = std::find_if(first, changes.end(), [&](const WatchedChange& change) {
            return change.time != first->time || change.device != first->device;
        });
        MemoryBuffer before = held_;
        MemoryBuffer after = held_;
        for (auto change = first; change != last; ++change) {
            for (const auto& [address, left, right] : change->row.bytes) {
                before[static_cast<std::size_t>(address)] = left;
                after[static_cast<std::size_t>(address)] = right;
            }
        }
        Add(first->time, first->device, DifferenceRows(book_, first->device, before, after));
        first = last;
    }
}

void Watch::Clear() {
    changes_.clear();
    ignored_.clear();
}

void Watch::Ignore(int address) {
    ignored_.insert(address);
    std::erase_if(changes_,
                  [=](const WatchedChange& change) { return change.row.Address() == address; });
}

}  // namespace tarnwell
