#include "settings/SettingsEngine.h"

#include <array>

#include "image/WriteTexts.h"

namespace tarnwell {

namespace {

std::int16_t AddressOf(int cell) {
    return static_cast<std::int16_t>(Cell(cell).address);
}

int ShiftOf(int cell) {
    return Cell(cell).setting->shift;
}

}  // namespace

SettingsEngine::SettingsEngine(const CommandContext& context, MemoryBuffer& buffer,
                               EditorPage& editorPage, SettingCells& cells)
    : Command(context), buffer_(buffer), editorPage_(editorPage), cells_(cells) {}

bool SettingsEngine::RefuseOnSecondary() {
    if (state_.targetDevice == TargetDevice::Primary)
        return false;
    Post(kUseDataEditor);
    return true;
}

void SettingsEngine::ShowSettingsFromBuffer() {
    if (RefuseOnSecondary())
        return;
    for (int cell = 0; cell < kCellCount; ++cell) {
        const std::uint8_t byte = buffer_[static_cast<std::size_t>(AddressOf(cell))];
        cells_.ShowRead(cell, FieldOf(byte, ShiftOf(cell)));
    }
}

void SettingsEngine::ReadSettingsFromEep() {
    const CommandScope scope(statusBar_);
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    std::array<std::uint8_t, kCellCount> bytes{};
    for (int cell = 0; cell < kCellCount; ++cell) {
        if (i2c_.ReadBlock(AddressOf(cell), 1) == Transfer::Aborted) {
            i2c_.AbortOperation();
            return;
        }
        bytes[static_cast<std::size_t>(cell)] = i2c_.ReadData()[0];
    }
    const Step step(steps_, {"Read of Settings"});
    for (int cell = 0; cell < kCellCount; ++cell)
        cells_.ShowRead(cell, FieldOf(bytes[static_cast<std::size_t>(cell)], ShiftOf(cell)));
    Post("Settings Values Read from EEPROM");
}

void SettingsEngine::MergeSettingsWithBuffer() {
    const CommandScope scope(statusBar_);
    if (RefuseOnSecondary() || !editorPage_.MayRefillGrid())
        return;
    const Step step(steps_, {"Merge of Settings"});
    Merge();
}

void SettingsEngine::Merge() {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const auto value = cells_.Value(cell);
        if (!value)
            continue;
        std::uint8_t& byte = buffer_[static_cast<std::size_t>(AddressOf(cell))];
        byte = WithField(byte, *value, ShiftOf(cell));
        cells_.SetMark(cell, Mark::Clean);
    }
    editorPage_.RefillGrid();
    Post("Settings Values Merged Into Memory Buffer");
    state_.BufferChanged = true;
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
}

void SettingsEngine::WriteSettingsToEep() {
    const CommandScope scope(statusBar_);
    if (RefuseOnSecondary())
        return;
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    if (user_.ShowBox(kAskWriteSettings) != Answer::Yes)
        return Post(kWriteCancelled);
    if (!HasCellToWrite()) {
        user_.ShowBox(kNoSettingsChanged);
        return;
    }
    if (!MayMergeAfterWrite())
        return Post(kWriteCancelled);
    if (writeGuard_.MayWrite())
        WriteAndVerify();
}

bool SettingsEngine::MayMergeAfterWrite() {
    return !BufferHoldsImage() || editorPage_.MayRefillGrid();
}

void SettingsEngine::WriteAndVerify() {
    const auto mismatches = WriteMarkedCells();
    if (!mismatches) {
        i2c_.AbortOperation();
        return;
    }
    if (!mismatches->empty())
        return TellMismatches(*mismatches);
    if (BufferHoldsImage())
        MergeWritten();
    Post(kSettingsWritten);
}

std::optional<std::vector<Mismatch>> SettingsEngine::WriteMarkedCells() {
    const Aside aside(steps_);
    std::vector<Written> written;
    const Transfer transfer = WriteCells(written);
    auto mismatches = transfer == Transfer::Done ? VerifyEEP(written) : std::nullopt;
    if (!mismatches)
        MarkUnverifiedForSaving();
    return mismatches;
}

void SettingsEngine::MergeWritten() {
    if (state_.GridChanged)
        editorPage_.DiscardGridEdits();
    const Aside aside(steps_);
    Merge();
    state_.EepRead = false;
}

bool SettingsEngine::HasCellToWrite() const {
    for (int cell = 0; cell < kCellCount; ++cell) {
        if (cells_.MarkOf(cell) == Mark::Save && !cells_.IsEmpty(cell))
            return true;
    }
    return false;
}

Transfer SettingsEngine::WriteCells(std::vector<Written>& written) {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const auto value = cells_.Value(cell);
        if (cells_.MarkOf(cell) != Mark::Save || !value)
            continue;
        std::uint8_t byte = *value;
        if (WriteCell(cell, byte) == Transfer::Aborted)
            return Transfer::Aborted;
        written.push_back({cell, byte});
        cells_.SetMark(cell, Mark::EepWritten);
        cells_.SetColour(cell, CellColour::Normal);
    }
    return Transfer::Done;
}

/// Of a field in the upper bits, `byte` is the value before and the whole byte afterwards.
Transfer SettingsEngine::WriteCell(int cell, std::uint8_t& byte) {
    const int shift = ShiftOf(cell);
    if (shift != 0) {
        if (i2c_.ReadAgreed(AddressOf(cell)) == Transfer::Aborted)
            return Transfer::Aborted;
        byte = WithField(i2c_.ReadData()[0], byte, shift);
    }
    return i2c_.WriteByte(AddressOf(cell), byte);
}

std::optional<std::vector<Mismatch>> SettingsEngine::VerifyEEP(
    const std::vector<Written>& written) {
    std::vector<Mismatch> mismatches;
    for (const auto& [cell, byte] : written) {
        if (i2c_.ReadBlock(AddressOf(cell), 1) == Transfer::Aborted)
            return std::nullopt;
        const std::uint8_t found = i2c_.ReadData()[0];
        if (found == byte) {
            cells_.SetLastRead(cell, FieldOf(found, ShiftOf(cell)));
            cells_.SetMark(cell, Mark::Clean);
            continue;
        }
        MarkForSaving(cell);
        mismatches.push_back({AddressOf(cell), byte, found});
    }
    return mismatches;
}

void SettingsEngine::TellMismatches(const std::vector<Mismatch>& mismatches) {
    statusBar_.ShowStatus("ERROR: EEProm and Settings Values Do Not Match!", kMismatchSeconds);
    user_.Beep();
    Box box = kSettingsNotVerified;
    box.details = MismatchText(mismatches, state_.numberMode, SettingNameAt);
    user_.ShowBox(box);
    statusBar_.PutStatus("");
}

void SettingsEngine::MarkForSaving(int cell) {
    cells_.SetMark(cell, Mark::Save);
    cells_.SetColour(cell, CellColour::Changed);
}

void SettingsEngine::MarkUnverifiedForSaving() {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const Mark mark = cells_.MarkOf(cell);
        if (mark == Mark::EepWritten || mark == Mark::Save)
            MarkForSaving(cell);
    }
}

}  // namespace tarnwell
