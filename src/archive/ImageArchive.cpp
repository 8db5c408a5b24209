// Saving the memory buffer as an image archive and loading it back.
#include "archive/ImageArchive.h"

#include "archive/ImageRecords.h"

namespace tarnwell {

namespace {

constexpr std::string_view kSaveCancelled = "EEProm Image Save Cancelled";
constexpr std::string_view kDiscardRefused = "EEProm Image Load Canceled";
constexpr std::string_view kLoadCancelled = "EEProm Image Load Cancelled";
constexpr std::string_view kLoadFailed = "EEProm Image Load Failed";

constexpr Message kMustReadFirst{"Must First Read the EEPROM! ", "E R R O R",
                                 BoxStyle::Exclamation};
constexpr Message kAskDiscard{"Discard Present EEProm Image?", "D I S K   L O A D",
                              BoxStyle::YesNoQuestion};
constexpr Message kNoSRecords{
    "The archive is not an S-Record file;\r\nAn EEProm image was not loaded.",
    "E R R O R - File Mismatch", BoxStyle::Exclamation};
constexpr Message kNoImage{
    "The archive is not a valid EEP image file;\r\nAn EEProm image was not loaded.",
    "E R R O R - File Mismatch", BoxStyle::Exclamation};
constexpr Message kAskForeign{
    "The file is not a Tarnwell EEProm data file;\r\n\r\n"
    "Do you want to load it anyway? (Is it 24C64 data?)",
    "C A U T I O N - File Type", BoxStyle::YesNoQuestion};
constexpr Message kCorrupt{
    "Data in the S-Record file may be corrupt;\r\n\r\nEEProm image load has been aborted.",
    "E R R O R - Checksum", BoxStyle::Exclamation};

std::string Without(std::string text, std::string_view characters) {
    std::erase_if(
        text, [=](char character) { return characters.find(character) != std::string_view::npos; });
    return text;
}

}  // namespace

ImageArchive::ImageArchive(const CommandContext& context, const Calendar& calendar,
                           MemoryBuffer& buffer, BufferDisplays& displays)
    : Command(context), calendar_(calendar), buffer_(buffer), displays_(displays) {}

void ImageArchive::SaveImage() {
    const CommandScope scope(statusBar_);
    if (!state_.eepRead && !state_.bufferChanged) {
        user_.ShowBox(kMustReadFirst);
        return;
    }
    const auto path = AskArchive(user_, state_, FileRequest::Kind::Save, "Save EEPROM Image As...",
                                 ProposedName());
    if (!path || !SaveTo(*path))
        return Post(kSaveCancelled);
    state_.bufferChanged = false;
    state_.eepRead = false;
    Post("EEProm Image Saved to Disk");
}

std::string ImageArchive::ProposedName() const {
    return "Tarnwell-" + Without(calendar_.ShortDate(), "/") + "-" +
           Without(calendar_.TimeWithSeconds(), ":/");
}

bool ImageArchive::SaveTo(const std::string& path) {
    SetArchiveFolder(state_, path);
    return WriteArchive(path, ImageRecords(buffer_));
}

void ImageArchive::LoadImage() {
    const CommandScope scope(statusBar_);
    if (!MayReplaceBuffer())
        return;
    const auto path = AskArchive(user_, state_, FileRequest::Kind::Open, "Load EEProm Image", "");
    if (!path)
        return Post(kLoadCancelled);
    LoadFrom(*path);
}

void ImageArchive::LoadImageFile(const std::string& path) {
    const CommandScope scope(statusBar_);
    if (MayReplaceBuffer())
        LoadFrom(path);
}

bool ImageArchive::MayReplaceBuffer() {
    if (!displays_.MayRefillGrid())
        return false;
    if (!state_.eepRead || user_.ShowBox(kAskDiscard) == Answer::Yes)
        return true;
    Post(kDiscardRefused);
    return false;
}

void ImageArchive::LoadFrom(const std::string& path) {
    SetArchiveFolder(state_, path);
    ArchiveReader archive(path);
    switch (CheckHeader(archive)) {
        case Header::Unreadable:
            return Post(kLoadCancelled);
        case Header::Refused:
            return Post(kLoadFailed);
        case Header::Accepted:
            return LoadBuffer(archive);
    }
}

ImageArchive::Header ImageArchive::CheckHeader(ArchiveReader& archive) {
    const auto header = archive.NextLine();
    if (!header)
        return Header::Unreadable;
    if (!header->starts_with(kHeaderType)) {
        user_.ShowBox(kNoSRecords);
        return Header::Refused;
    }
    if (header->ends_with("ColorVal") || header->ends_with("Settings")) {
        user_.ShowBox(kNoImage);
        return Header::Refused;
    }
    const bool load = *header == kImageHeader || user_.ShowBox(kAskForeign) == Answer::Yes;
    return load ? Header::Accepted : Header::Unreadable;
}

void ImageArchive::LoadBuffer(ArchiveReader& archive) {
    buffer_.fill(0xFF);
    state_.eepRead = false;
    state_.bufferChanged = true;
    switch (StoreRecords(archive)) {
        case Records::Complete:
            Post("Record Checksums OK; EEP Image Loaded into Buffer");
            return ShowBuffer();
        case Records::Corrupt:
            ShowBuffer();
            user_.ShowBox(kCorrupt);
            return Post(kLoadFailed);
        case Records::Unusable:
            ShowBuffer();
            return Post(kLoadCancelled);
    }
}

ImageArchive::Records ImageArchive::StoreRecords(ArchiveReader& archive) {
    while (const auto record = archive.NextLine()) {
        if (record->starts_with(kTerminatorType))
            return Records::Complete;
        const auto checksum = StoreRecord(*record, buffer_, user_);
        if (!checksum)
            return Records::Unusable;
        if (!record->ends_with(*checksum))
            return Records::Corrupt;
    }
    return Records::Unusable;
}

void ImageArchive::ShowBuffer() {
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
    displays_.FillGrid();
    displays_.ShowSettingsFromBuffer();
}

}  // namespace tarnwell
