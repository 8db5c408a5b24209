// Saving the memory buffer as an image archive and loading it back.
#include "archive/ImageArchive.h"

#include "archive/ImageFormat.h"
#include "archive/ImageRecords.h"
#include "command/WriteTexts.h"
#include "settings/Catalog.h"

namespace tarnwell {

namespace {

constexpr std::string_view kImageSaveCancelled = "EEProm Image Save Cancelled";
constexpr std::string_view kDiscardRefused = "EEProm Image Load Canceled";
constexpr std::string_view kImageLoadCancelled = "EEProm Image Load Cancelled";
constexpr std::string_view kImageLoaded = "Record Checksums OK; EEP Image Loaded into Buffer";
constexpr std::string_view kBackupLoaded = "Loaded; Write Differences brings it to the EEProm";

constexpr Message kAskDiscard{"Discard Present EEProm Image?", "D I S K   L O A D",
                              BoxStyle::YesNoQuestion};
constexpr Message kAskOtherDevice{
    "This is a backup of the Secondary EEProm, but the Primary EEProm is selected.\r\n"
    "Load it all the same?",
    "C A U T I O N", BoxStyle::YesNoExclamation};
constexpr Message kAskForeign{
    "The file is not a Tarnwell EEProm data file;\r\n\r\n"
    "Do you want to load it anyway? (Is it 24C64 data?)",
    "C A U T I O N - File Type", BoxStyle::YesNoQuestion};
constexpr std::string_view kSettingsLine =
    "This is a Tarnwell settings archive: 72 values, no image.";
static_assert(kCellCount == 72);
constexpr Message kCorrupt{
    "Data in the S-Record file may be corrupt;\r\n\r\nEEProm image load has been aborted.",
    "E R R O R - Checksum", BoxStyle::Exclamation};
constexpr std::string_view kOnlyPart = "The buffer holds only part of the file.";
constexpr Message kStopped{kOnlyPart, "I N F O", BoxStyle::Information};
constexpr Message kTooManyAddresses{
    "The data file has too many addresses; it is not\r\n"
    "a proper Tarnwell 24C64 EEProm data file.\r\n\r\n"
    "Tarnwell will now terminate.",
    "F A T A L   E R R O R", BoxStyle::Critical};

std::string Without(std::string text, std::string_view characters) {
    std::erase_if(
        text, [=](char character) { return characters.find(character) != std::string_view::npos; });
    return text;
}

Box AskOtherDevice(const KeptImage& kept) {
    Box box = kAskOtherDevice;
    if (kept.device == TargetDevice::Primary)
        box.text =
            "This is a backup of the Primary EEProm, but the Secondary EEProm is selected."
            "\r\nLoad it all the same?";
    return std::move(box).WithDefaultNo();
}

}  // namespace

constexpr ArchiveCommand::Texts ImageArchive::kTexts{
    .loadTitle = "Load EEProm Image",
    .filter = kImageFilter,
    .noSRecords = {"The archive is not an S-Record file;\r\nAn EEProm image was not loaded.",
                   "E R R O R - File Mismatch", BoxStyle::Exclamation},
    .otherKind = {"The archive is not a valid EEP image file;\r\nAn EEProm image was not loaded.",
                  "E R R O R - File Mismatch", BoxStyle::Exclamation},
    .corrupt = kCorrupt,
    .cancelled = kImageLoadCancelled,
    .failed = "EEProm Image Load Failed"};

ImageArchive::ImageArchive(const CommandContext& context, const Calendar& calendar,
                           MemoryBuffer& buffer, BufferDisplays& displays)
    : ArchiveCommand(context, kTexts, context.state.recentImages),
      calendar_(calendar),
      buffer_(buffer),
      displays_(displays) {}

void ImageArchive::SaveImage() {
    const CommandScope scope(statusBar_);
    if (!state_.EepRead && !state_.BufferChanged) {
        user_.ShowBox(kMustReadFirst);
        return;
    }
    const auto path =
        AskArchive(FileRequest::Kind::Save, "Save EEPROM Image As...", ProposedName());
    if (!path || !SaveText(*path, ImageText(buffer_, FormatOf(*path))))
        return Post(kImageSaveCancelled);
    const Aside aside(steps_);
    state_.BufferChanged = false;
    state_.EepRead = false;
    Post("EEProm Image Saved to Disk");
}

std::string ImageArchive::ProposedName() const {
    return "Tarnwell-" + Without(calendar_.ShortDate(), "/") + "-" +
           Without(calendar_.TimeWithSeconds(), ":/");
}

void ImageArchive::LoadImage() {
    const CommandScope scope(statusBar_);
    if (!MayReplaceBuffer())
        return;
    const auto path = AskArchive(FileRequest::Kind::Open, kTexts.loadTitle, "");
    if (!path)
        return Post(kImageLoadCancelled);
    LoadFrom(*path);
}

void ImageArchive::LoadRecentImage(const std::string& path) {
    const CommandScope scope(statusBar_);
    if (IsThere(path))
        LoadImageFile(path);
}

void ImageArchive::LoadImageFile(const std::string& path) {
    const CommandScope scope(statusBar_);
    if (MayReplaceBuffer())
        LoadFrom(path);
}

bool ImageArchive::LoadKeptImage(const KeptImage& kept, Discard present) {
    const CommandScope scope(statusBar_);
    if (!displays_.MayRefillGrid())
        return false;
    if (kept.device != state_.targetDevice && user_.ShowBox(AskOtherDevice(kept)) != Answer::Yes) {
        Post(kImageLoadCancelled);
        return false;
    }
    if (!MayDiscardImage(present))
        return false;
    ArchiveFile file(kept.path);
    return MayLoad(file) && LoadRecords(file, kept.path, kBackupLoaded);
}

bool ImageArchive::MayReplaceBuffer() {
    return displays_.MayRefillGrid() && MayDiscardImage();
}

bool ImageArchive::MayDiscardImage(Discard present) {
    const bool isKept =
        present == Discard::AskedIfChanged && writeGuard_.LastRead(state_.targetDevice) == buffer_;
    if (!state_.EepRead || isKept || user_.ShowBox(kAskDiscard) == Answer::Yes)
        return true;
    Post(kDiscardRefused);
    return false;
}

void ImageArchive::LoadFrom(const std::string& path) {
    SetArchiveFolder(path);
    ArchiveFile file(path);
    if (MayLoad(file) && LoadRecords(file, path, kImageLoaded))
        Used(path);
}

std::optional<MemoryBuffer> ImageArchive::LookAt(const std::string& path) {
    const CommandScope scope(statusBar_);
    auto image = IsThere(path) ? ReadImageFile(path) : std::nullopt;
    if (image)
        Used(path);
    return image;
}

std::optional<MemoryBuffer> ImageArchive::ReadImageFile(const std::string& path) {
    const CommandScope scope(statusBar_);
    ArchiveFile file(path);
    if (!CanBeRead(file) || !MayLoad(file))
        return std::nullopt;
    return Whole(file, LoadImageRecords);
}

bool ImageArchive::MayLoad(const ArchiveFile& file) {
    switch (file.Kind()) {
        case ArchiveKind::Image:
            return true;
        case ArchiveKind::Settings:
        case ArchiveKind::Foreign:
            if (WantsForeign(file.Kind()))
                return true;
            Post(kImageLoadCancelled);
            return false;
        default:
            RefuseKind(file.Kind());
            return false;
    }
}

bool ImageArchive::WantsForeign(ArchiveKind kind) {
    const Box question = kind == ArchiveKind::Settings
                             ? Box(kAskForeign).WithLine(kSettingsLine).WithDefaultNo()
                             : Box(kAskForeign);
    return user_.ShowBox(question) == Answer::Yes;
}

bool ImageArchive::LoadRecords(ArchiveFile& file, const std::string& path,
                               std::string_view loaded) {
    const Step step(steps_, LoadOf(path), Extent::Everything);
    state_.EepRead = false;
    state_.BufferChanged = true;
    int endOfData = 0;
    const LoadEnd end = LoadImageRecords(file, buffer_, endOfData);
    // S-records and Intel HEX leave out what is erased.
    const bool isWhole = end == LoadEnd::Complete && file.Format() != ImageFormat::Plain;
    origin_ = OriginOf(path, buffer_, isWhole ? kEepromBytes : endOfData);
    if (end == LoadEnd::TooManyAddresses)
        EndProgram(user_, kTooManyAddresses);
    if (end == LoadEnd::Complete)
        Post(loaded);
    ShowBuffer();
    if (end != LoadEnd::Complete)
        TellThatItStopped(end);
    return end == LoadEnd::Complete;
}

void ImageArchive::TellThatItStopped(LoadEnd end) {
    switch (end) {
        case LoadEnd::WrongChecksum:
            return Refuse(Box(kCorrupt).WithLine(kOnlyPart));
        case LoadEnd::LineTooLong:
            return Refuse(Box(kLineTooLong).WithLine(kOnlyPart));
        default:
            user_.ShowBox(kStopped);
            return Post(kImageLoadCancelled);
    }
}

void ImageArchive::ShowBuffer() {
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    displays_.FillGrid();
    displays_.ShowSettingsFromBuffer();
}

}  // namespace tarnwell
