#include "settings/SettingsEngine.h"

#include <array>

#include "command/WriteTexts.h"
#include "core/Words.h"

namespace tarnwell {

namespace {

std::int16_t AddressOf(int cell) {
    return static_cast<std::int16_t>(Cell(cell).address);
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
    for (int cell = 0; cell < kCellCount; ++cell)
        cells_.ShowRead(cell, ValueIn(buffer_, cell));
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
        cells_.ShowRead(cell, ValueIn(bytes[static_cast<std::size_t>(cell)], cell));
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
        if (const auto value = cells_.Value(cell))
            PutValue(buffer_, cell, *value);
        cells_.SetMark(cell, Mark::Clean);
    }
    origin_.Note(BufferChange::SettingsMerged);
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
    if (!writeGuard_.Wants(WriteKind::Settings, kAskWriteSettings))
        return;
    if (!HasCellToWrite()) {
        user_.ShowBox(Box(kNoSettingsChanged).WithLine(UnwrittenLine()));
        return;
    }
    if (!MayMergeAfterWrite())
        return Post(kWriteCancelled);
    if (writeGuard_.MayWrite())
        WriteAndVerify();
}

std::string SettingsEngine::UnwrittenLine() const {
    int values = 0;
    for (int cell = 0; cell < kCellCount && BufferHoldsImage(); ++cell) {
        const auto held = i2c_.Known().Value(state_.targetDevice, AddressOf(cell));
        if (held && ValueIn(*held, cell) != ValueIn(buffer_, cell))
            ++values;
    }
    return values == 0 ? std::string()
                       : Counted(values, "value") + " in the memory buffer " +
                             (values == 1 ? "differs" : "differ") +
                             " from the EEProm: Write Differences writes them.";
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
        return TellNotVerified("ERROR: EEProm and Settings Values Do Not Match!",
                               kSettingsNotVerified, *mismatches);
    i2c_.EndWrite();
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
    if (Cell(cell).setting->shift != 0) {
        if (i2c_.ReadAgreed(AddressOf(cell)) == Transfer::Aborted)
            return Transfer::Aborted;
        byte = WithValue(i2c_.ReadData()[0], cell, byte);
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
            cells_.SetLastRead(cell, ValueIn(found, cell));
            cells_.SetMark(cell, Mark::Clean);
            continue;
        }
        MarkForSaving(cell);
        mismatches.push_back({AddressOf(cell), byte, found});
    }
    return mismatches;
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
