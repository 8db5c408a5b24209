#include "i2c/kernel/KernelBus.h"

#include <cerrno>
#include <optional>

#include "i2c/kernel/FailureLines.h"

namespace tarnwell {

namespace {

constexpr Message kAskBlind{
    "This adapter cannot ask a device what it is without the risk of writing to it.\r\n"
    "Is a 24C64 connected?",
    "W A R N I N G", BoxStyle::YesNoExclamation};
constexpr Message kAskOther{"The device at ", "W A R N I N G", BoxStyle::YesNoExclamation};

std::string AddressText(std::uint8_t device) {
    return device == 0x50 ? "0x50" : "0x51";
}

}  // namespace

KernelBus::KernelBus(const Wire& wire, const ProgramState& state, StatusBar& statusBar, User& user)
    : DrivenBus(wire.kernel, wire.stop, statusBar, user),
      kernel_(wire.kernel),
      state_(state),
      transfers_(wire.kernel, wire.stop) {}

void KernelBus::Claim() {
    failure_.clear();
    const I2cBus wanted = state_.BusInUse().kernel.value_or(I2cBus{});
    const auto buses = kernel_.Buses();
    const auto found = FindI2cBus(buses, wanted);
    if (!found) {
        Forget();
        failure_ = NoI2cBusLine(buses, wanted);
        return;
    }
    Meet(*found);
    kernel_.Open(open_);
    failure_ = kernel_.Failure();
}

void KernelBus::Release() {
    kernel_.Close();
    ForgetCommand();
}

void KernelBus::Meet(const I2cBus& bus) {
    if (bus.node != open_.node || bus.instance != open_.instance)
        Forget();
    open_ = bus;
}

void KernelBus::Forget() {
    open_ = {};
    trusted_.clear();
    transfers_.ForgetLimits();
}

// Drivers do not always say so themselves of an adapter that was unplugged.
bool KernelBus::IsStillThere() const {
    const auto found = FindI2cBus(kernel_.Buses(), open_);
    return found && found->instance == open_.instance;
}

Transfer KernelBus::Fail(int error) {
    const bool gone = IsGone(error) || !IsStillThere();
    if (gone || failure_.empty())
        failure_ = FailureLine(open_, gone ? -ENODEV : error);
    if (gone)
        Forget();
    return Transfer::Aborted;
}

BusCheck KernelBus::CheckAnswer(Quiet quiet) {
    if (failure_.empty()) {
        if (const auto driver = kernel_.DriverAt(open_, Device())) {
            if (quiet == Quiet::Yes)
                return BusCheck::NobodyAnswered;
            failure_ = "The kernel's driver " + driver->name + " uses the device at " +
                       AddressText(Device()) + ". Take it away from there with \"echo " +
                       driver->device + " | sudo tee /sys/bus/i2c/drivers/" + driver->name +
                       "/unbind\" and repeat the command.";
        } else {
            int error = transfers_.ReadCurrent(Device());
            stop_.Obey();
            if (error == 0)
                error = transfers_.LookAtSda();
            if (error == 0)
                return BusCheck::Ok;
            static_cast<void>(Fail(error));
            if (quiet == Quiet::Yes && IsMet()) {
                if (error != kClockHeld)  // which takes seconds to find out
                    failure_.clear();
                return BusCheck::NobodyAnswered;
            }
        }
    }
    Report(kNoAcknowledge, {});
    return BusCheck::NoAcknowledge;
}

BusCheck KernelBus::CheckBus(Quiet quiet) {
    const BusCheck answer = CheckAnswer(quiet);
    if (answer != BusCheck::Ok || quiet == Quiet::Yes)
        return answer;
    switch (AskForTrust()) {
        case Trust::Given:
            break;
        case Trust::Declined:
            statusBar_.ShowStatus("I2C Operation Aborted", kResultSeconds);
            return BusCheck::Declined;
        case Trust::Failed:
            Report(kNoAcknowledge, {});
            return BusCheck::NoAcknowledge;
    }
    return BusCheck::Ok;
}

KernelBus::Trust KernelBus::AskForTrust() {
    const std::uint8_t device = Device();
    if (trusted_.contains(device))
        return Trust::Given;
    bool combines = false;
    std::string finding;
    int error = transfers_.FindWhetherItCombines(device, combines);
    if (error == 0 && !combines && !Agreed(kAskBlind))
        return Trust::Declined;
    if (error == 0)
        error = DeviceLook(transfers_, device).Look(finding);
    if (error != 0) {
        static_cast<void>(Fail(error));
        return Trust::Failed;
    }
    Box question = kAskOther;
    question.text += AddressText(device) + " does not look like a 24C64: " + finding;
    if (!finding.empty() && !Agreed(std::move(question).WithLine("Use it all the same?")))
        return Trust::Declined;
    trusted_.insert(device);
    return Trust::Given;
}

bool KernelBus::Agreed(Box question) {
    return user_.AskTrust(std::move(question).WithDefaultNo()) == Answer::Yes;
}

Transfer KernelBus::ReadBlock(std::int16_t address, std::int16_t count) {
    bytesRead_ = 0;
    std::optional<DeviceProgress> progress;
    if (count == kEepromBytes)
        progress.emplace(statusBar_, user_, clock_, stopped_);
    while (bytesRead_ < count) {
        std::size_t done = 0;
        const auto rest = std::span(readData_)
                              .first(static_cast<std::size_t>(count))
                              .subspan(static_cast<std::size_t>(bytesRead_));
        const auto place = static_cast<unsigned>(address + bytesRead_);
        if (const int error = transfers_.Read(Device(), place, rest, done); error != 0)
            return Fail(error);
        bytesRead_ += static_cast<int>(done);
        stop_.Obey();
        if (progress && bytesRead_ < count)
            progress->Show(bytesRead_ / 64 * 64);
        if (stopped_ && progress && bytesRead_ < count)
            return Transfer::Aborted;
    }
    int error = progress ? transfers_.ReadCurrent(Device()) : 0;
    if (error == 0 && (progress || readData_[static_cast<std::size_t>(count - 1)] == 0))
        error = transfers_.LookAtSda();
    return error == 0 ? Transfer::Done : Fail(error);
}

Transfer KernelBus::WritePage(std::int16_t address, std::span<const std::uint8_t> bytes) {
    auto place = static_cast<unsigned>(address);
    for (std::size_t done = 0; !bytes.empty(); bytes = bytes.subspan(done)) {
        if (const int error = transfers_.Write(Device(), place, bytes, done); error != 0)
            return Fail(error);
        place += static_cast<unsigned>(done);
        bytesWritten_ += static_cast<int>(done);
        stop_.Obey();
    }
    return Transfer::Done;
}

// The kernel freed the bus; a device that was cut short in its write cycle answers when that is
// over.
Transfer KernelBus::Recover() {
    if (const int error = transfers_.WaitUntilWritten(Device()); error != 0)
        return Fail(error);
    return Transfer::Done;
}

}  // namespace tarnwell
