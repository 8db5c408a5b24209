#include "differences/CompareCommand.h"

#include <algorithm>
#include <iterator>

#include "archive/SRecord.h"
#include "command/WriteTexts.h"
#include "core/Words.h"
#include "differences/DifferenceTexts.h"
#include "differences/OtherTarget.h"

namespace tarnwell {

namespace {

constexpr Message kAskOtherOrigin{
    "These values are those of the Secondary EEProm.\r\n"
    "Write them to the Primary EEProm all the same?",
    "C A U T I O N", BoxStyle::YesNoExclamation};

Box AskOtherOrigin(TargetDevice to) {
    Box box = kAskOtherOrigin;
    if (to == TargetDevice::Secondary)
        box.text =
            "These values are those of the Primary EEProm.\r\n"
            "Write them to the Secondary EEProm all the same?";
    return std::move(box).WithDefaultNo();
}

std::optional<TargetDevice> DeviceOf(std::optional<Source> source) {
    if (source == Source::Primary)
        return TargetDevice::Primary;
    return source == Source::Secondary ? std::optional(TargetDevice::Secondary) : std::nullopt;
}

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
        if (!given.empty())
            PutValue(image, cell, ByteAt(given, 0));
    }
}

}  // namespace

CompareCommand::CompareCommand(const CommandContext& context, const CompareSources& sources,
                               const NameBook& book, SettingCells& cells, MemoryBuffer& buffer,
                               BufferDisplays& displays)
    : Command(context),
      from_(sources),
      book_(book),
      cells_(cells),
      buffer_(buffer),
      displays_(displays) {}

void CompareCommand::Begin() {
    sides_ = {};
    if (HoldsImage(state_, buffer_))
        sides_[Index(Side::Left)].source = Source::Buffer;
    Refresh();
}

bool CompareCommand::Choose(Side side, Source source) {
    const CommandScope scope(statusBar_);
    const bool loaded = Load(sides_[Index(side)], source);
    Refresh();
    return loaded;
}

bool CompareCommand::Load(Chosen& chosen, Source source) {
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
        case Source::ImageArchive:
        case Source::SettingsArchive: {
            const auto path = source == Source::ImageArchive ? from_.images.AskToLook()
                                                             : from_.settings.AskToLook();
            return path && LoadFile(chosen, source, *path);
        }
        case Source::Backup:
            return false;  // ChooseBackup, once it is known which
    }
    chosen.source = source;
    chosen.path.clear();
    return true;
}

bool CompareCommand::ChooseFile(Side side, Source source, const std::string& path) {
    const CommandScope scope(statusBar_);
    const bool loaded = LoadFile(sides_[Index(side)], source, path);
    Refresh();
    return loaded;
}

bool CompareCommand::LoadFile(Chosen& chosen, Source source, const std::string& path) {
    if (source == Source::ImageArchive) {
        const auto image = from_.images.LookAt(path);
        if (!image)
            return false;
        chosen = {.source = source, .image = *image, .path = path};
        return true;
    }
    const auto digits = from_.settings.LookAt(path);
    if (!digits)
        return false;
    chosen = {.source = source, .digits = *digits, .path = path};
    return true;
}

bool CompareCommand::ReadDevice(Chosen& chosen, TargetDevice device) {
    const OtherTarget target(state_, screen_, device);
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok ||
        from_.reader.Read(chosen.image) != DeviceReading::Taken)
        return false;
    Post(EepromName(device) + " Data Read for Comparison");
    return true;
}

bool CompareCommand::ChooseBackup(Side side, const KeptImage& kept) {
    const CommandScope scope(statusBar_);
    const auto image = from_.images.ReadImageFile(kept.path);
    if (image)
        sides_[Index(side)] = {
            .source = Source::Backup, .image = *image, .device = kept.device, .path = kept.path};
    Refresh();
    return image.has_value();
}

std::optional<Source> CompareCommand::Of(Side side) const {
    return sides_[Index(side)].source;
}

bool CompareCommand::IsSecondary(const Chosen& chosen) const {
    return chosen.source == Source::Secondary || OriginOf(chosen) == TargetDevice::Secondary;
}

/// The device that what is not a device itself was read of, as far as that is known.
std::optional<TargetDevice> CompareCommand::OriginOf(const Chosen& chosen) const {
    if (chosen.source == Source::Buffer)
        return state_.targetDevice;
    return chosen.source == Source::Backup ? std::optional(chosen.device) : std::nullopt;
}

MemoryBuffer CompareCommand::Shown(const Chosen& chosen) const {
    if (chosen.source == Source::SettingsArchive)
        return {};
    return chosen.source == Source::Buffer ? buffer_ : chosen.image;
}

void CompareCommand::Refresh() {
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
    rows_ = DifferenceRows(book_, device_, images_[0], images_[1]);
}

std::string CompareCommand::Summary() const {
    if (!sides_[0].source || !sides_[1].source)
        return {};
    return DifferencesText(CountDifferences(rows_));
}

bool CompareCommand::CanTake() const {
    const auto& [left, right] = sides_;
    return left.source && right.source &&
           (left.source == Source::Buffer) != (right.source == Source::Buffer);
}

void CompareCommand::Take(const std::vector<DifferenceRow>& rows) {
    const CommandScope scope(statusBar_);
    if (!CanTake() || rows.empty())
        return;
    const Side other = sides_[0].source == Source::Buffer ? Side::Right : Side::Left;
    if (state_.targetDevice == TargetDevice::Secondary && Of(other) == Source::SettingsArchive)
        return Post(kUseDataEditor);
    if (!displays_.MayRefillGrid())
        return;
    const Step step(steps_, {"Take from " + std::string(NameOf(*Of(other)))});
    TakeRows(book_, rows, device_, Image(other), buffer_);
    origin_.Note(BufferChange::DifferencesTaken);
    state_.BufferChanged = true;
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    displays_.FillGrid();
    if (state_.targetDevice == TargetDevice::Primary)
        ShowTaken(rows);
    Post("Values Taken Into Memory Buffer");
    Refresh();
}

bool CompareCommand::HasDevice() const {
    return DeviceSide().has_value();
}

Side CompareCommand::SideOfDevice() const {
    return DeviceOf(sides_[0].source) ? Side::Left : Side::Right;
}

std::optional<TargetDevice> CompareCommand::DeviceSide() const {
    return DeviceOf(sides_[Index(SideOfDevice())].source);
}

void CompareCommand::NoteHeld(const MemoryBuffer& image) {
    sides_[Index(SideOfDevice())].image = image;
    Refresh();
}

bool CompareCommand::HasOneDevice() const {
    const auto& [left, right] = sides_;
    return left.source && right.source &&
           DeviceOf(left.source).has_value() != DeviceOf(right.source).has_value();
}

bool CompareCommand::CanWrite() const {
    const auto is = [this](Source source) {
        return sides_[0].source == source || sides_[1].source == source;
    };
    return HasOneDevice() && !(is(Source::Secondary) && is(Source::SettingsArchive));
}

void CompareCommand::Write(const std::vector<DifferenceRow>& rows) {
    const CommandScope scope(statusBar_);
    if (!CanWrite() || rows.empty())
        return;
    const Side side = SideOfDevice();
    const Side other = side == Side::Left ? Side::Right : Side::Left;
    Chosen& device = sides_[Index(side)];
    const TargetDevice to = *DeviceOf(device.source);
    if (!MayWrite(to, sides_[Index(other)]))
        return Post(kWriteCancelled);
    const OtherTarget target(state_, screen_, to);
    std::optional<MemoryBuffer> held = device.image;
    from_.writing.WriteSome(
        [&](const MemoryBuffer& present) {
            MemoryBuffer wanted = present;
            TakeRows(book_, rows, device_, Image(other), wanted);
            return wanted;
        },
        held);
    if (held)
        device.image = *held;
    else
        device.source.reset();
    Refresh();
}

/// The menu warns as well before it selects the secondary EEPROM, and a load of a backup asks.
bool CompareCommand::MayWrite(TargetDevice to, const Chosen& from) {
    if (to == TargetDevice::Secondary && state_.targetDevice != to &&
        user_.ShowBox(kWarnOfSecondary) != Answer::Ok)
        return false;
    return OriginOf(from).value_or(to) == to || user_.ShowBox(AskOtherOrigin(to)) == Answer::Yes;
}

std::vector<DifferenceRow> CompareCommand::ReadAgain() {
    const CommandScope scope(statusBar_);
    std::vector<DifferenceRow> changed;
    bool all = true;
    for (Chosen& side : sides_) {
        const MemoryBuffer before = side.image;
        const auto device = DeviceOf(side.source);
        if (!device)
            continue;
        all = all && ReadDevice(side, *device);
        std::ranges::copy(DifferenceRows(book_, device_, before, side.image),
                          std::back_inserter(changed));
    }
    Refresh();
    const int bytes = CountDifferences(changed).bytes;
    if (all)
        Post((bytes == 0 ? "Nothing" : Counted(bytes, "byte")) + " changed since the last reading");
    return changed;
}

void CompareCommand::ShowTaken(const std::vector<DifferenceRow>& rows) {
    for (const DifferenceRow& row : rows) {
        for (const Difference& byte : row.bytes) {
            const auto ofRow = row.named ? row.named->cell : std::nullopt;
            const auto cell =
                device_ == TargetDevice::Primary ? ofRow : CellAtAddress(byte.address);
            if (cell)
                ShowTaken(*cell);
        }
    }
}

void CompareCommand::ShowTaken(int cell) {
    cells_.ShowValue(cell, ValueIn(buffer_, cell));
    cells_.SetMark(cell, Mark::Save);
    cells_.SetColour(cell, CellColour::Changed);
}

}  // namespace tarnwell
