#include "image/DeviceReader.h"

#include <algorithm>

#include "command/WriteTexts.h"
#include "core/Words.h"
#include "core/user/Number.h"

namespace tarnwell {

namespace {

constexpr Message kAskDisagreeing{"1 byte did not read the same twice.", "W A R N I N G",
                                  BoxStyle::YesNoExclamation};
constexpr Message kAskBlank{"Every byte reads as FF. Use this reading?", "W A R N I N G",
                            BoxStyle::YesNoExclamation};
constexpr std::string_view kReadCancelled = "EEProm Read Cancelled";

Box AskDisagreeing(std::size_t bytes, std::size_t passes) {
    Box box = kAskDisagreeing;
    box.text = Counted(bytes, "byte") + " did not read the same " +
               (passes == 2 ? "twice" : "every time") + ". Use the " +
               (passes == 2 ? "second" : "last") + " reading?";
    return box;
}

}  // namespace

DeviceReading DeviceReader::Read(MemoryBuffer& image) {
    std::vector<MemoryBuffer> passes;
    if (ReadPasses(passes) == Transfer::Aborted) {
        i2c_.AbortOperation();
        return DeviceReading::Aborted;
    }
    if (!MayUse(passes)) {
        Post(kReadCancelled);
        return DeviceReading::Refused;
    }
    std::copy_n(passes.back().begin(), kEepromBytes, image.begin());
    writeGuard_.DeviceRead(passes.back());
    return DeviceReading::Taken;
}

Transfer DeviceReader::ReadPasses(std::vector<MemoryBuffer>& passes) {
    statusBar_.PutStatus("Please Wait, Reading the EEPROM...");
    for (int pass = 0; pass < state_.readPasses; ++pass) {
        if (pass > 0)
            statusBar_.PutStatus("Please Wait, Reading the EEPROM Again...");
        if (i2c_.ReadBlock(0, kEepromBytes) == Transfer::Aborted)
            return Transfer::Aborted;
        passes.push_back(i2c_.ReadData());
    }
    return Transfer::Done;
}

bool DeviceReader::MayUse(const std::vector<MemoryBuffer>& passes) {
    return MayUseDisagreeing(passes) && MayUseBlank(passes.back());
}

bool DeviceReader::MayUseDisagreeing(const std::vector<MemoryBuffer>& passes) {
    std::string lines;
    std::size_t bytes = 0;
    for (std::size_t address = 0; address < kEepromBytes; ++address) {
        const bool agree = std::ranges::all_of(passes, [&](const MemoryBuffer& pass) {
            return pass[address] == passes.front()[address];
        });
        if (agree)
            continue;
        ++bytes;
        lines += ReadingsLine(static_cast<int>(address), passes);
    }
    return bytes == 0 ||
           Wants(AskDisagreeing(bytes, passes.size()), lines.substr(0, lines.size() - 1));
}

std::string DeviceReader::ReadingsLine(int address, const std::vector<MemoryBuffer>& passes) const {
    std::string values;
    for (const MemoryBuffer& pass : passes)
        values += (values.empty() ? ": read " : ", then ") +
                  NumberText(pass[static_cast<std::size_t>(address)], state_.numberMode);
    return AddressText(address, state_.numberMode, names_) + values + "\n";
}

/// What a dead bus looks like.
bool DeviceReader::MayUseBlank(const MemoryBuffer& image) {
    const std::uint8_t first = image[0];
    const auto* const end = image.begin() + kEepromBytes;
    if ((first != 0xFF && first != 0x00) ||
        std::any_of(image.begin(), end, [=](std::uint8_t byte) { return byte != first; }))
        return true;
    Box question = kAskBlank;
    if (first == 0x00)
        question.text.replace(question.text.find("FF"), 2, "00");
    return Wants(std::move(question), {});
}

bool DeviceReader::Wants(Box question, std::string details) {
    question.details = std::move(details);
    return user_.ShowBox(std::move(question).WithDefaultNo()) == Answer::Yes;
}

}  // namespace tarnwell
