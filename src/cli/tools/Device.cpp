#include "cli/tools/Device.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>

#include "cli/tools/Interruption.h"
#include "cli/tools/Terminal.h"
#include "core/files/UserFolders.h"
#include "image/WriteTexts.h"

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
    program_.state.i2cBusOfRun = port.i2cBus;
    program_.i2c.ApplyPortOptions();
    report.device = arguments.device;
    const std::string& i2cBus = program_.state.I2cBusInUse();
    report.simulated = port.isSimulated && i2cBus.empty();
    report.port = report.simulated ? "simulated"
                  : i2cBus.empty() ? arguments.port.kind.value_or("auto")
                                   : "i2c:" + NodeOf(port.wire.kernel, I2cBusFromText(i2cBus));
    user_.onTrust = [this](const Box& box) { return IsTrusted(box); };
}

void Device::Claim() {
    using Steady = std::chrono::steady_clock;
    const auto deadline = Steady::now() + std::chrono::seconds(arguments_.waitSeconds);
    claim_.emplace(bus_);
    while (bus_.IsTaken() && Steady::now() < deadline) {
        stop_.Obey();
        claim_.emplace(bus_);
    }
}

bool Device::Open() {
    Claim();
    const BusCheck check = bus_.CheckBus(Quiet::No);
    if (check == BusCheck::Ok)
        return true;
    if (check == BusCheck::Declined)
        report_.End(Status::NotConfirmed, user_.LastLine() + std::string(kHowToTrust));
    else
        report_.End(Status::Bus, user_.LastLine());
    return false;
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
    const std::string details = question.details + (question.details.empty() ? "" : "\n");
    return AgreesOnTerminal(details + question.text);
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

bool Device::KeepBackup() {
    if (!program_.writeGuard.MayWrite()) {
        report_.End(Status::File, user_.LastLine() +
                                      " Nothing was written. Make room there, or name another "
                                      "place by XDG_STATE_HOME.");
        return false;
    }
    report_.backup = program_.backups.LastKept();
    return true;
}

bool Device::KeepBackup(Backup backup, const MemoryBuffer& present) {
    if (backup == Backup::UnlessKept)
        report_.backup = program_.backups.PathOf(arguments_.device, present);
    return !report_.backup.empty() || KeepBackup();
}

bool Device::WriteDifferences(const MemoryBuffer& present, const MemoryBuffer& wanted) {
    report_.written = 0;
    DifferenceWriter writer(bus_, program_.statusBar);
    const Transfer transfer = writer.Write(present, wanted);
    report_.written = writer.Confirmed();
    if (transfer == Transfer::Aborted) {
        bus_.AbortOperation(writer.ConfirmedText());
        return TellAborted(" Repeat the command: it writes the rest.");
    }
    report_.mismatches = writer.Left();
    if (!report_.mismatches.empty())
        report_.End(Status::Unverified,
                    OneLine(Box(kImageNotVerified).WithLine(writer.ConfirmedText())));
    return true;
}

bool Device::Write(const ByteValues& values) {
    DeviceProgress progress = bus_.TrackProgress();
    int& written = report_.written.emplace(0);
    for (const auto& [address, value] : values) {
        if (bus_.WriteByte(Short(address), value) == Transfer::Aborted)
            return EndAborted();
        ++written;
        if (values.size() == kEepromBytes)
            progress.Show(address);
    }
    return true;
}

bool Device::ReadBack(const ByteValues& values) {
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
    return true;
}

std::string Device::HowFar() const {
    if (!report_.written)
        return {};
    const int count = *report_.written;
    if (count == 0)
        return " Nothing was written.";
    return " " + std::to_string(count) + (count == 1 ? " byte was" : " bytes were") +
           " written and not verified: repeat the command.";
}

bool Device::EndAborted() {
    bus_.AbortOperation();
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
