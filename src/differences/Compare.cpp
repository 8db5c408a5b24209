#include "differences/Compare.h"

#include <algorithm>

#include "archive/SRecord.h"
#include "image/WriteTexts.h"

namespace tarnwell {

namespace {

/// Another device is the target as long as this lives.
class OtherTarget {
  public:
    OtherTarget(ProgramState& state, Screen& screen, TargetDevice device)
        : state_(state), screen_(screen), before_(state.targetDevice) {
        Set(device);
    }
    ~OtherTarget() { Set(before_); }
    OtherTarget(const OtherTarget&) = delete;
    OtherTarget& operator=(const OtherTarget&) = delete;

  private:
    void Set(TargetDevice device) {
        state_.targetDevice = device;
        screen_.Changed(Shown::EepPanel);
    }

    ProgramState& state_;
    Screen& screen_;
    const TargetDevice before_;
};

std::string_view NameOf(Source source) {
    switch (source) {
        case Source::Buffer:
            break;
        case Source::Primary:
            return "Primary EEProm";
        case Source::Secondary:
            return "Secondary EEProm";
        case Source::ImageArchive:
            return "Image Archive";
        case Source::SettingsArchive:
            return "Settings Archive";
        case Source::Backup:
            return "Backup";
    }
    return "Memory Buffer";
}

void PutValues(const SettingDigits& digits, MemoryBuffer& image) {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const std::string& given = digits[static_cast<std::size_t>(cell)];
        if (given.empty())
            continue;
        std::uint8_t& byte = image[static_cast<std::size_t>(Cell(cell).address)];
        byte = WithField(byte, ByteAt(given, 0), Cell(cell).setting->shift);
    }
}

}  // namespace

Compare::Compare(const CommandContext& context, DeviceReader& reader, ImageArchive& imageArchive,
                 SettingsArchive& settingsArchive, SettingCells& cells, MemoryBuffer& buffer,
                 BufferDisplays& displays)
    : Command(context),
      reader_(reader),
      imageArchive_(imageArchive),
      settingsArchive_(settingsArchive),
      cells_(cells),
      buffer_(buffer),
      displays_(displays) {}

void Compare::Begin() {
    sides_ = {};
    if (HoldsImage(state_, buffer_))
        sides_[Index(Side::Left)].source = Source::Buffer;
    Refresh();
}

bool Compare::Choose(Side side, Source source) {
    const CommandScope scope(statusBar_);
    const bool loaded = Load(sides_[Index(side)], source);
    Refresh();
    return loaded;
}

bool Compare::Load(Chosen& chosen, Source source) {
    switch (source) {
        case Source::Buffer:
            if (!HoldsImage(state_, buffer_)) {
                user_.ShowBox(kMustReadFirst);
                return false;
            }
            break;
        case Source::Primary:
        case Source::Secondary: {
            chosen.source.reset();
            const bool primary = source == Source::Primary;
            if (!ReadDevice(chosen, primary ? TargetDevice::Primary : TargetDevice::Secondary))
                return false;
            break;
        }
        case Source::ImageArchive: {
            const auto image = imageArchive_.AskImage();
            if (!image)
                return false;
            chosen.image = *image;
            break;
        }
        case Source::SettingsArchive: {
            const auto digits = settingsArchive_.AskValues();
            if (!digits)
                return false;
            chosen.digits = *digits;
            break;
        }
        case Source::Backup:
            return false;  // ChooseBackup, once it is known which
    }
    chosen.source = source;
    return true;
}

bool Compare::ReadDevice(Chosen& chosen, TargetDevice device) {
    const OtherTarget target(state_, screen_, device);
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok ||
        reader_.Read(chosen.image) != DeviceReading::Taken)
        return false;
    Post(device == TargetDevice::Primary ? "Primary EEProm Data Read for Comparison"
                                         : "Secondary EEProm Data Read for Comparison");
    return true;
}

bool Compare::ChooseBackup(Side side, const KeptImage& kept) {
    const CommandScope scope(statusBar_);
    const auto image = imageArchive_.ReadImageFile(kept.path);
    if (image)
        sides_[Index(side)] = {Source::Backup, *image, {}, kept.device};
    Refresh();
    return image.has_value();
}

std::optional<Source> Compare::Of(Side side) const {
    return sides_[Index(side)].source;
}

bool Compare::IsSecondary(const Chosen& chosen) const {
    return chosen.source == Source::Secondary ||
           (chosen.source == Source::Backup && chosen.device == TargetDevice::Secondary) ||
           (chosen.source == Source::Buffer && state_.targetDevice == TargetDevice::Secondary);
}

MemoryBuffer Compare::Shown(const Chosen& chosen) const {
    if (chosen.source == Source::SettingsArchive)
        return {};
    return chosen.source == Source::Buffer ? buffer_ : chosen.image;
}

void Compare::Refresh() {
    rows_.clear();
    const auto& [left, right] = sides_;
    if (!left.source || !right.source)
        return;
    const auto hasValues = [](const Chosen& side) {
        return side.source == Source::SettingsArchive;
    };
    device_ = !hasValues(left) && !hasValues(right) && (IsSecondary(left) || IsSecondary(right))
                  ? TargetDevice::Secondary
                  : TargetDevice::Primary;
    images_ = {Shown(hasValues(left) ? right : left), Shown(hasValues(right) ? left : right)};
    for (std::size_t side = 0; side < sides_.size(); ++side) {
        if (hasValues(sides_[side]))
            PutValues(sides_[side].digits, images_[side]);
    }
    rows_ = DifferenceRows(device_, images_[0], images_[1]);
}

std::string Compare::Summary() const {
    if (!sides_[0].source || !sides_[1].source)
        return {};
    return DifferencesText(CountDifferences(device_, images_[0], images_[1]));
}

bool Compare::CanTake() const {
    const auto& [left, right] = sides_;
    return left.source && right.source &&
           (left.source == Source::Buffer) != (right.source == Source::Buffer);
}

void Compare::Take(const std::vector<DifferenceRow>& rows) {
    const CommandScope scope(statusBar_);
    if (!CanTake() || rows.empty() || !displays_.MayRefillGrid())
        return;
    const Side other = sides_[0].source == Source::Buffer ? Side::Right : Side::Left;
    const Step step(steps_, {"Take from " + std::string(NameOf(*Of(other)))});
    TakeRows(rows, device_, Image(other), buffer_);
    state_.BufferChanged = true;
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    displays_.FillGrid();
    if (state_.targetDevice == TargetDevice::Primary)
        ShowTaken(rows);
    Post("Values Taken Into Memory Buffer");
    Refresh();
}

void Compare::ShowTaken(const std::vector<DifferenceRow>& rows) {
    for (const DifferenceRow& row : rows) {
        if (!row.cell)
            continue;
        const int cell = *row.cell;
        const std::uint8_t byte = buffer_[static_cast<std::size_t>(row.Address())];
        cells_.ShowValue(cell, FieldOf(byte, Cell(cell).setting->shift));
        cells_.SetMark(cell, Mark::Save);
        cells_.SetColour(cell, CellColour::Changed);
    }
}

}  // namespace tarnwell
