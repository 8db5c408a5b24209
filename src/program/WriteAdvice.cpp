#include "program/WriteAdvice.h"

#include "core/Words.h"
#include "differences/DifferenceTexts.h"
#include "program/Program.h"

namespace tarnwell {

namespace {

/// Another set's image differs from this one's in more bytes than that.
constexpr std::size_t kMostUnlike = kEepromBytes / 8;

/// More names than that stand in the details alone.
constexpr int kMostNames = 4;

std::string Grouped(std::size_t number) {
    std::string text = std::to_string(number);
    if (text.size() > 3)
        text.insert(text.size() - 3, ",");
    return text;
}

std::string Waiting(int count, std::string_view what, std::string_view where) {
    return Counted(count, what).append(where) + (count == 1 ? " is" : " are") +
           " not in the memory buffer and will not be written.";
}

bool IsWhole(WriteKind kind) {
    return kind == WriteKind::Image || kind == WriteKind::Fill;
}

bool IsOfBuffer(WriteKind kind) {
    return kind == WriteKind::Image || kind == WriteKind::Differences || kind == WriteKind::Restore;
}

}  // namespace

class WriteAdvice::Lines {
  public:
    explicit Lines(Box& box) : box_(box) {}

    void Add(const std::string& line, const std::string& details = {}) {
        box_.text.append(box_.text.empty() ? "" : kLineBreak).append(line);
        if (!details.empty())
            box_.details += (box_.details.empty() ? "" : "\n") + details;
    }

  private:
    Box& box_;
};

std::optional<std::uint8_t> WriteAdvice::Held(int address) const {
    return program_.bus.Known().Value(program_.state.targetDevice, address);
}

void WriteAdvice::AddDoubts(WriteKind kind, const EepromArray* coming, Box& box) const {
    Lines lines(box);
    AddDoubtsOfSet(lines);
    if (IsOfBuffer(kind)) {
        AddDoubtsOfOrigin(kind, lines);
        AddWhatIsLeftOut(lines);
    }
    AddOutOfRange(kind, coming, lines);
    if (IsWhole(kind))
        AddDoubtsOfDevice(kind, lines);
}

void WriteAdvice::AddDoubtsOfSet(Lines& lines) const {
    const SetRecord& record = program_.record;
    const TargetDevice target = program_.state.targetDevice;
    if (!record.IsKeptOut(target))
        return;
    const std::string& chosen = record.Chosen()->name;
    if (const auto& like = record.LooksLike(target); like)
        return lines.Add("The set on the bench looks like " + like->set.name + ", not like " +
                         chosen + ".");
    if (const std::size_t unlike = record.DifferingFromChosen(target); unlike > kMostDiffering)
        lines.Add("The set on the bench does not look like " + chosen + ": " + Grouped(unlike) +
                  " of " + Grouped(kEepromBytes) + " bytes differ.");
}

void WriteAdvice::AddDoubtsOfOrigin(WriteKind kind, Lines& lines) const {
    const BufferOrigin& origin = program_.origin;
    const TargetDevice target = program_.state.targetDevice;
    if (origin.source == BufferOrigin::Source::Nothing && kind == WriteKind::Image)
        lines.Add("The memory buffer holds no image: nothing was read or loaded.");
    if (origin.device && *origin.device != target)
        lines.Add("The memory buffer was read from the " + EepromName(*origin.device) +
                  "; the target is the " + DeviceName(target) + ".");
    if (origin.end < kEepromBytes)
        lines.Add("The memory buffer holds only part of the file " + origin.Name() + ": bytes " +
                  std::to_string(origin.end) + " to " + std::to_string(kEepromBytes - 1) +
                  " are not from it.");
}

void WriteAdvice::AddWhatIsLeftOut(Lines& lines) const {
    std::string names;
    int values = 0;
    for (int cell = 0; cell < kCellCount; ++cell) {
        const auto value = program_.cells.Value(cell);
        if (program_.cells.MarkOf(cell) != Mark::Save || !value ||
            *value == ValueIn(program_.buffer, cell))
            continue;
        names += (values++ == 0 ? "" : "\n") + CellTitle(cell);
    }
    if (values > 0)
        lines.Add(Waiting(values, "value", " on the settings pages"), names);
    std::string addresses;
    int entries = 0;
    for (const PendingEntry& entry : program_.pending.Contents().entries) {
        if (entry.after.value != program_.buffer[static_cast<std::size_t>(entry.address)])
            addresses += (entries++ == 0 ? "" : "\n") +
                         AddressText(entry.address, program_.state.numberMode);
    }
    if (entries > 0)
        lines.Add(Waiting(entries, "pending write", ""), addresses);
}

std::optional<std::uint8_t> WriteAdvice::Coming(WriteKind kind, const EepromArray* coming,
                                                int cell) const {
    std::optional<std::uint8_t> value;
    if (kind == WriteKind::Settings && program_.cells.MarkOf(cell) == Mark::Save)
        value = program_.cells.Value(cell);
    if (IsOfBuffer(kind))
        value = ValueIn(program_.buffer, cell);
    if (coming != nullptr)
        value = ValueIn(*coming, cell);
    for (const PendingEntry& entry : program_.pending.Contents().entries) {
        if (kind == WriteKind::Pending && entry.address == Cell(cell).address)
            value = ValueIn(entry.after.value, cell);
    }
    const auto held = Held(Cell(cell).address);
    return held && value == ValueIn(*held, cell) ? std::nullopt : value;
}

void WriteAdvice::AddOutOfRange(WriteKind kind, const EepromArray* coming, Lines& lines) const {
    std::string names;
    std::string details;
    int count = 0;
    for (int cell = 0; program_.state.targetDevice == TargetDevice::Primary && cell < kCellCount;
         ++cell) {
        const int maximum = Cell(cell).setting->maximum;
        const auto value = Coming(kind, coming, cell);
        if (!value || *value <= maximum)
            continue;
        if (count < kMostNames)
            names += (count == 0 ? "" : ", ") + CellTitle(cell);
        const NumberMode mode = program_.state.numberMode;
        details += (count == 0 ? "" : "\n") + CellTitle(cell) + ": " + NumberText(*value, mode) +
                   ", range 0 to " + NumberText(static_cast<std::uint32_t>(maximum), mode);
        ++count;
    }
    if (count > 0)
        lines.Add(Counted(count, "value", "lies", "lie") + " outside " +
                      (count == 1 ? "its" : "their") + " setting's range: " + names +
                      (count > kMostNames ? ", ..." : ""),
                  details);
}

void WriteAdvice::AddDoubtsOfDevice(WriteKind kind, Lines& lines) const {
    const auto& lastRead = program_.writeGuard.LastRead(program_.state.targetDevice);
    if (!lastRead)
        return lines.Add("This device was not read in this run: no backup of it is kept.");
    const std::size_t unlike = Mismatches(*lastRead, program_.buffer).size();
    if (kind == WriteKind::Image && unlike > kMostUnlike)
        lines.Add("It does not look like this set: " + Grouped(unlike) + " of " +
                  Grouped(kEepromBytes) + " bytes differ from what was last read of it.");
}

std::string WriteAdvice::ImageChanges() const {
    MemoryBuffer held = program_.buffer;
    for (int address = 0; address < kEepromBytes; ++address) {
        const auto byte = Held(address);
        if (!byte)
            return "The EEProm was not read: each of its bytes is written, whatever it holds.";
        held[static_cast<std::size_t>(address)] = *byte;
    }
    return ChangesText(
        DifferenceRows(program_.names, program_.state.targetDevice, held, program_.buffer),
        program_.state.numberMode);
}

std::string WriteAdvice::ChangeLine(int address, std::optional<std::uint8_t> held,
                                    std::uint8_t value) const {
    const NumberMode mode = program_.state.numberMode;
    return AddressText(address, mode, program_.context.names) + ": " +
           (held ? NumberText(*held, mode) : "not read") + " becomes " + NumberText(value, mode);
}

std::vector<std::string> WriteAdvice::SettingsChanges() const {
    std::vector<std::string> lines;
    for (int cell = 0; cell < kCellCount; ++cell) {
        const auto value = program_.cells.Value(cell);
        if (program_.cells.MarkOf(cell) != Mark::Save || !value)
            continue;
        const auto held = Held(Cell(cell).address);
        lines.push_back(ChangeLine(
            Cell(cell).address, held ? std::optional(ValueIn(*held, cell)) : std::nullopt, *value));
    }
    return lines;
}

std::vector<std::string> WriteAdvice::PendingChanges() const {
    std::vector<std::string> lines;
    for (const PendingEntry& entry : program_.pending.Contents().entries)
        lines.push_back(ChangeLine(entry.address, Held(entry.address), entry.after.value));
    return lines;
}

void WriteAdvice::Describe(WriteKind kind, Box& question) const {
    if (kind != WriteKind::Image && kind != WriteKind::Settings && kind != WriteKind::Pending)
        return;
    std::string what = Grouped(kEepromBytes) + " bytes";
    if (kind == WriteKind::Image) {
        question.details = ImageChanges();
    } else {
        const bool settings = kind == WriteKind::Settings;
        const auto lines = settings ? SettingsChanges() : PendingChanges();
        if (lines.empty())
            return;
        what = Counted(lines.size(), settings ? "setting" : "byte");
        for (const std::string& line : lines)
            question.details += (question.details.empty() ? "" : "\n") + line;
    }
    question = std::move(question).WithLine(EepromName(program_.state.targetDevice) + " on " +
                                            BusName(program_.state) + ": " + what);
}

}  // namespace tarnwell
