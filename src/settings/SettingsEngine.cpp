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

SettingsEngine::SettingsEngine(const CommandContext& context, MemoryBuffer& buffer, DataGrid& grid,
                               EditorPage& editorPage, SettingCells& cells)
    : Command(context), buffer_(buffer), grid_(grid), editorPage_(editorPage), cells_(cells) {}

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
        cells_.ShowValue(cell, FieldOf(byte, ShiftOf(cell)));
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
    for (int cell = 0; cell < kCellCount; ++cell)
        cells_.ShowValue(cell, FieldOf(bytes[static_cast<std::size_t>(cell)], ShiftOf(cell)));
    Post("Settings Values Read from EEPROM");
}

void SettingsEngine::MergeSettingsWithBuffer() {
    const CommandScope scope(statusBar_);
    if (RefuseOnSecondary() || !editorPage_.MayRefillGrid())
        return;
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
    grid_.FillGrid();
    Post("Settings Values Merged Into Memory Buffer");
    state_.bufferChanged = true;
    statusBar_.ShowCrc(mCRC32::BufferCrcText(buffer_));
}

void SettingsEngine::WriteSettingsToEep() {
    const CommandScope scope(statusBar_);
    if (RefuseOnSecondary())
        return;
    if (BufferHoldsImage() && !editorPage_.MayRefillGrid())
        return;
    const BusClaim claim(i2c_);
    if (i2c_.CheckBus(Quiet::No) != BusCheck::Ok)
        return;
    if (user_.ShowBox(kAskWriteSettings) == Answer::No) {
        Post(kWriteCancelled);
        return;
    }
    if (!HasCellToWrite()) {
        user_.ShowBox(kNoSettingsChanged);
        return;
    }
    if (!writeGuard_.MayWrite())
        return;
    const Outcome outcome = WriteCells() == Transfer::Done ? VerifyEEP() : Outcome::Aborted;
    switch (outcome) {
        case Outcome::Aborted:
            MarkUnverifiedForSaving();
            i2c_.AbortOperation();
            return;
        case Outcome::Mismatch:
            statusBar_.ShowStatus("ERROR: EEProm and Settings Values Do Not Match!",
                                  kMismatchSeconds);
            user_.Beep();
            user_.ShowBox(kSettingsNotVerified);
            statusBar_.PutStatus("");
            return;
        case Outcome::Verified:
            if (BufferHoldsImage()) {
                Merge();
                state_.eepRead = false;
            }
            statusBar_.ShowStatus(kSettingsWritten, kResultSeconds);
            return;
    }
}

bool SettingsEngine::HasCellToWrite() const {
    for (int cell = 0; cell < kCellCount; ++cell) {
        if (cells_.MarkOf(cell) == Mark::Save && !cells_.IsEmpty(cell))
            return true;
    }
    return false;
}

Transfer SettingsEngine::WriteCells() {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const auto value = cells_.Value(cell);
        if (cells_.MarkOf(cell) != Mark::Save || !value)
            continue;
        if (WriteCell(cell, *value) == Transfer::Aborted)
            return Transfer::Aborted;
        cells_.SetMark(cell, Mark::EepWritten);
        cells_.SetColour(cell, CellColour::Normal);
    }
    return Transfer::Done;
}

Transfer SettingsEngine::WriteCell(int cell, std::uint8_t value) {
    const int shift = ShiftOf(cell);
    std::uint8_t byte = value;
    if (shift != 0) {
        if (i2c_.ReadBlock(AddressOf(cell), 1) == Transfer::Aborted)
            return Transfer::Aborted;
        byte = WithField(i2c_.ReadData()[0], value, shift);
    }
    return i2c_.WriteByte(AddressOf(cell), byte);
}

SettingsEngine::Outcome SettingsEngine::VerifyEEP() {
    for (int cell = 0; cell < kCellCount; ++cell) {
        if (cells_.MarkOf(cell) != Mark::EepWritten || cells_.IsEmpty(cell))
            continue;
        if (i2c_.ReadBlock(AddressOf(cell), 1) == Transfer::Aborted)
            return Outcome::Aborted;
        cells_.SetMark(cell, Mark::Clean);
        if (FieldOf(i2c_.ReadData()[0], ShiftOf(cell)) != cells_.Value(cell))
            return Outcome::Mismatch;
    }
    return Outcome::Verified;
}

void SettingsEngine::MarkUnverifiedForSaving() {
    for (int cell = 0; cell < kCellCount; ++cell) {
        const Mark mark = cells_.MarkOf(cell);
        if (mark != Mark::EepWritten && mark != Mark::Save)
            continue;
        cells_.SetMark(cell, Mark::Save);
        cells_.SetColour(cell, CellColour::Changed);
    }
}

}  // namespace tarnwell
