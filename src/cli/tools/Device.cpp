#include "cli/tools/Device.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "cli/tools/Interruption.h"
#include "command/WriteTexts.h"
#include "core/Words.h"
#include "core/files/UserFolders.h"
#include "image/WholeWrite.h"

namespace tarnwell::cli {

namespace {

constexpr std::string_view kHowToTrust =
    " Nothing was written. Say --trust-device to use this device.";

bool ShowsProgress(Show show) {
    return show == Show::Always || (show == Show::Auto && isatty(STDERR_FILENO) != 0);
}

std::int16_t Short(int number) {
    return static_cast<std::int16_t>(number);
}

std::string NodeOf(KernelI2c& kernel, const I2cBus& bus) {
    return FindI2cBus(kernel.Buses(), bus).value_or(bus).node;
}

}  // namespace

Device::Device(const Arguments& arguments, const JoinedPort& port, mRegistry& options,
               Report& report)
    : arguments_(arguments),
      report_(report),
      stop_(port.wire.stop),
      screen_(ShowsProgress(arguments.progress)),
      program_({port.wire, screen_, window_, user_, window_, window_, window_, platform_, window_,
                options, calendar_, StateFolder() + "/backups"}),
      bus_(program_.context.i2c) {
    screen_.Follow(program_.statusBar);
    LoadOptions(options, program_.state, window_);
    program_.state.targetDevice = arguments.device;
    program_.state.portAddress = arguments.portAddress.value_or(program_.state.portAddress);
    program_.state.pinOptions = arguments.pins.value_or(program_.state.pinOptions);
    program_.state.readPasses = arguments.passes.value_or(program_.state.readPasses);
    program_.state.busOfRun = port.bus;
    program_.state.simulated = port.isSimulated;
    program_.i2c.ApplyPortOptions();
    program_.names = arguments.book;
    if (arguments.set)
        program_.ChooseSet(arguments.set);
    program_.record.CallCommands(std::string(arguments.command->name));
    report.device = arguments.device;
    const std::optional<I2cBus>& i2cBus = program_.state.BusInUse().kernel;
    report.simulated = port.isSimulated && !i2cBus;
    report.port = report.simulated ? "simulated"
                  : i2cBus         ? "i2c:" + NodeOf(port.wire.kernel, *i2cBus)
                                   : arguments.port.kind.value_or("auto");
    user_.onTrust = [this](const Box& box) { return IsTrusted(box); };
}

// The kernel refuses a port that is held exclusively at once, and writes two lines into its log.
void Device::Claim() {
    using Steady = std::chrono::steady_clock;
    constexpr std::chrono::seconds kBetweenClaims{1};
    const auto deadline = Steady::now() + std::chrono::seconds(arguments_.waitSeconds);
    auto again = Steady::now() + kBetweenClaims;
    for (claim_.emplace(bus_); bus_.IsTaken() && Steady::now() < deadline; claim_.emplace(bus_)) {
        Wait(std::chrono::ceil<std::chrono::milliseconds>(std::min(again, deadline) -
                                                          Steady::now()));
        again = Steady::now() + kBetweenClaims;
    }
}

void Device::Wait(std::chrono::milliseconds time) const {
    constexpr std::chrono::milliseconds kPause{10};
    const auto end = std::chrono::steady_clock::now() + time;
    for (stop_.Obey(); std::chrono::steady_clock::now() < end; stop_.Obey())
        std::this_thread::sleep_for(kPause);
}

bool Device::Open() {
    Claim();
    const BusCheck check = bus_.CheckBus(Quiet::No);
    if (check == BusCheck::Ok)
        return true;
    if (check == BusCheck::Declined)
        EndDeclined();
    else
        report_.End(Status::Bus, user_.LastLine());
    return false;
}

void Device::EndDeclined() {
    report_.End(Status::NotConfirmed, user_.LastLine() + std::string(kHowToTrust));
}

bool Device::IsTrusted(const Box& box) const {
    if (arguments_.trustDevice || !HasTerminal())
        return arguments_.trustDevice;
    std::string question = box.text;
    std::erase(question, '\r');
    return AgreesOnTerminal(question);
}

bool Device::Read(ByteRange range) {
    const int before = report_.bytes.value_or(0);
    const auto count = [&] { report_.bytes = before + bus_.BytesRead(); };
    try {
        const Transfer read = bus_.ReadBlock(Short(range.first), Short(range.count));
        count();
        return read == Transfer::Done || EndAborted();
    } catch (const Interrupted&) {
        count();
        throw;
    }
}

bool Device::ReadImage(MemoryBuffer& image) {
    const int before = report_.bytes.value_or(0);
    const auto count = [&] { report_.bytes = before + bus_.BytesRead(); };
    user_.onQuestion = [this](const Box& box) { return UsesDoubtful(box); };
    DeviceReading reading{};
    try {
        reading = program_.deviceReader.Read(image);
    } catch (const Interrupted&) {
        count();
        throw;
    }
    user_.onQuestion = {};
    count();
    TellLikeness();
    if (reading == DeviceReading::Refused)
        report_.End(Status::NotConfirmed,
                    HasTerminal() ? "EEProm Read Cancelled."
                                  : user_.LastLine() +
                                        " Nobody can be asked without a terminal. Say --force to "
                                        "use it all the same.");
    return reading == DeviceReading::Taken ||
           (reading == DeviceReading::Aborted && TellAborted(HowFar()));
}

bool Device::UsesDoubtful(const Box& question) {
    if (arguments_.force || !HasTerminal())
        return arguments_.force;
    std::string text = question.details + (question.details.empty() ? "" : "\n") + question.text;
    std::erase(text, '\r');
    return AgreesOnTerminal(text);
}

std::string Device::Doubts(WriteKind kind, const MemoryBuffer& wanted) {
    program_.buffer = wanted;
    const Box doubts = program_.writeGuard.Doubts(kind, &wanted);
    return doubts.text.empty() ? std::string() : OneLine(doubts);
}

bool Device::Fits(WriteKind kind, const MemoryBuffer& wanted) {
    program_.buffer = wanted;
    user_.onQuestion = [this](const Box& box) { return UsesDoubtful(box); };
    const bool fits = program_.writeGuard.Fits(kind, &wanted);
    user_.onQuestion = {};
    if (!fits)
        report_.End(Status::NotConfirmed,
                    HasTerminal() ? std::string(kWriteCancelled) + "."
                                  : user_.LastLine() +
                                        " Nobody can be asked without a terminal. Say --force to "
                                        "write it all the same.");
    return fits;
}

bool Device::ReadBytes(ByteRange range, std::vector<AddressedByte>& bytes) {
    if (!Read(range))
        return false;
    for (int index = 0; index < range.count; ++index)
        bytes.push_back({range.first + index, bus_.ReadData()[static_cast<std::size_t>(index)]});
    return true;
}

bool Device::ReadAgreed(int address, std::uint8_t& byte) {
    if (bus_.ReadAgreed(Short(address)) == Transfer::Aborted)
        return EndAborted();
    byte = bus_.ReadData()[0];
    return true;
}

bool Device::IsAgreed(SecondReading reading) {
    if (reading == SecondReading::TooNoisy)
        report_.End(Status::Bus, user_.LastLine() + " Nothing was written.");
    return reading == SecondReading::Agreed || (reading == SecondReading::Aborted && EndAborted());
}

bool Device::ReadAgain(MemoryBuffer& present, const MemoryBuffer& wanted) {
    return IsAgreed(program_.writeGuard.ReadAgain(present, wanted));
}

bool Device::MakeSure() {
    return IsAgreed(program_.writeGuard.HoldAgainstNewest());
}

bool Device::KeepBackup(Backup backup, const MemoryBuffer& present) {
    if (backup == Backup::UnlessKept)
        report_.backup = program_.backups.PathOf(arguments_.device, present);
    const bool isKept = !report_.backup.empty();
    if (isKept ? !program_.writeGuard.MayRecord() : !program_.writeGuard.MayWrite()) {
        report_.End(Status::File, user_.LastLine() +
                                      " Nothing was written. Make room there, or name another "
                                      "place by XDG_STATE_HOME.");
        return false;
    }
    if (!isKept)
        report_.backup = program_.backups.LastKept();
    return true;
}

bool Device::EndWrite() {
    const bool wasRecorded = program_.writeGuard.RecordsAll();
    bus_.EndWrite();
    return !wasRecorded || program_.writeGuard.RecordsAll();
}

void Device::TellLikeness() {
    const SetRecord& record = program_.record;
    const auto& like = record.LooksLike(arguments_.device);
    if (!record.IsKeptOut(arguments_.device))
        return;
    const std::string& chosen = arguments_.set->name;
    report_.looksLike = like ? "This looks like " + like->set.name + ", not like " + chosen + "."
                             : "This does not look like " + chosen + ".";
}

bool Device::WriteDifferences(const MemoryBuffer& present, const MemoryBuffer& wanted,
                              Others others) {
    report_.written = 0;
    PageWriter writer(bus_, program_.statusBar, program_.writeGuard);
    const Transfer transfer = writer.Write(present, wanted, others);
    report_.written = writer.Confirmed();
    if (transfer == Transfer::Aborted) {
        bus_.AbortOperation(writer.ConfirmedText(), {});
        report_.mismatches = bus_.Strays();
        return TellAborted(" Repeat the command: it writes the rest.");
    }
    report_.mismatches = writer.Left();
    if (!report_.mismatches.empty())
        report_.End(Status::Unverified,
                    OneLine(Box(kImageNotVerified).WithLine(writer.ConfirmedText())));
    return report_.mismatches.empty();
}

bool Device::WriteAll(const ByteValues& values) {
    MemoryBuffer image{};
    for (const auto& [address, value] : values)
        image[static_cast<std::size_t>(address)] = value;
    report_.written = 0;
    const Transfer transfer = WriteWhole(bus_, image);
    report_.written = bus_.BytesWritten();
    return transfer == Transfer::Done || EndAborted();
}

bool Device::Write(const ByteValues& values) {
    if (values.size() == kEepromBytes)
        return WriteAll(values);
    int& written = report_.written.emplace(0);
    for (const auto& [address, value] : values) {
        if (bus_.WriteByte(Short(address), value) == Transfer::Aborted)
            return EndAborted();
        ++written;
    }
    return true;
}

bool Device::ReadBack(const ByteValues& values, const Box& notVerified) {
    const bool whole = values.size() == kEepromBytes;
    if (whole && bus_.ReadBlock(0, kEepromBytes) == Transfer::Aborted)
        return EndAborted();
    for (const auto& [address, value] : values) {
        if (!whole && bus_.ReadBlock(Short(address), 1) == Transfer::Aborted)
            return EndAborted();
        const std::uint8_t found = bus_.ReadData()[whole ? static_cast<std::size_t>(address) : 0];
        if (found != value)
            report_.mismatches.push_back({address, value, found});
    }
    if (report_.mismatches.empty())
        return true;
    bus_.FindStrays();
    std::ranges::copy_if(bus_.Strays(), std::back_inserter(report_.mismatches),
                         [&](const Mismatch& stray) { return !values.contains(stray.address); });
    report_.End(Status::Unverified, OneLine(notVerified));
    return false;
}

std::string Device::HowFar() const {
    if (!report_.written)
        return {};
    if (*report_.written == 0)
        return " Nothing was written.";
    return " " + Counted(*report_.written, "byte", "was", "were") +
           " written and not verified: repeat the command.";
}

bool Device::EndAborted() {
    bus_.AbortOperation();
    report_.mismatches = bus_.Strays();
    return TellAborted(HowFar());
}

bool Device::TellAborted(const std::string& howFar) {
    const bool portFailed = !bus_.Failure().empty();
    report_.End(Status::Bus, user_.LastLine() +
                                 (portFailed ? "" : " Find the cause with 'tarnwell-cli check'.") +
                                 howFar);
    return false;
}

void Device::EndInterrupted() {
    if (report_.written)
        report_.written = bus_.BytesWritten();
    bus_.GiveUp();
    report_.Interrupt(stop_.Signal(), HowFar());
}

}  // namespace tarnwell::cli
