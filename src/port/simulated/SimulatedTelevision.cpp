// A parallel port with the adapter and a television's two EEPROMs on it, all in memory.
#include "port/simulated/SimulatedTelevision.h"

#include <algorithm>
#include <utility>

#include "port/simulated/FactoryImage.h"
#include "port/system/ParallelPorts.h"

namespace tarnwell {

namespace {

constexpr std::uint8_t kNoValue = 0xFF;
constexpr std::uint8_t kDriveSclLow = 0x01;
constexpr std::uint8_t kDriveSdaLow = 0x02;
constexpr std::uint8_t kSclSensed = 0x10;
constexpr std::uint8_t kSdaSensed = 0x20;
constexpr std::uint8_t kUnusedStatus = 0xFF & ~(kSclSensed | kSdaSensed);

constexpr std::uint8_t kPrimarySelect = 0xA0;
constexpr std::uint8_t kSecondarySelect = 0xA2;

}  // namespace

SimulatedTelevision::SimulatedTelevision(Simulation simulation)
    : simulation_(simulation),
      devices_{Eeprom24C64(kPrimarySelect), Eeprom24C64(kSecondarySelect)} {
    Memory(Chip::Primary) = FactoryImage(Chip::Primary);
    Memory(Chip::Secondary) = FactoryImage(Chip::Secondary);
    ClearFaults();
}

void SimulatedTelevision::Claim(std::uint16_t baseAddress) {
    Release();
    failure_.clear();
    dataRegister_ = baseAddress;
    if (!IsPortAddress(baseAddress))
        Fail(NoPortLine(baseAddress));
    if (faults_.portFails)
        Begin({.kind = FaultKind::PortFails});
}

void SimulatedTelevision::Release() {
    dataRegister_ = kNoRegister;
}

BusTime SimulatedTelevision::Now() {
    if (simulation_.pace == Pace::Real)
        now_ = steadyClock_.Now();
    return now_;
}

void SimulatedTelevision::WaitUntil(BusTime time) {
    now_ = std::max(now_, time);
    if (simulation_.pace == Pace::Real)
        steadyClock_.WaitUntil(time);
}

std::uint8_t SimulatedTelevision::DlPortReadPortUchar(std::uint16_t address) {
    BeginAccess();
    if (address == dataRegister_)
        return data_;
    return address == dataRegister_ + 1 ? Sense() : kNoValue;
}

void SimulatedTelevision::DlPortWritePortUchar(std::uint16_t address, std::uint8_t value) {
    BeginAccess();
    if (address != dataRegister_)
        return;
    data_ = value;
    Settle();
}

void SimulatedTelevision::Fail(std::string line) {
    dataRegister_ = kNoRegister;
    if (failure_.empty())
        failure_ = std::move(line);
}

void SimulatedTelevision::BeginAccess() {
    WaitUntil(Now() + simulation_.accessCost);
    CountEvent(WireEvent::Access);
}

std::uint8_t SimulatedTelevision::Sense() {
    AddSample(WireSample::Cause::Sensed);
    if (faults_.adapterGone)
        return kNoValue;
    const int levels = (scl_ ? kSclSensed : 0) | (sda_ ? kSdaSensed : 0);
    const int inverted = (faults_.inputsInverted ? kSclSensed | kSdaSensed : 0) |
                         (faults_.sdaMisread ? kSdaSensed : 0);
    return static_cast<std::uint8_t>(kUnusedStatus | (levels ^ inverted));
}

void SimulatedTelevision::Record() {
    recording_ = true;
    samples_.clear();
    monitor_.Clear();
    monitor_.Record(true);
}

// The bus.

SimulatedTelevision::Levels SimulatedTelevision::Driven() const {
    const bool pulled = devices_[0].PullsSdaLow() || devices_[1].PullsSdaLow();
    if (faulty_)
        return Disturbed({.scl = true, .sda = !pulled});
    return {.scl = (data_ & kDriveSclLow) == 0, .sda = (data_ & kDriveSdaLow) == 0 && !pulled};
}

SimulatedTelevision::Levels SimulatedTelevision::Disturbed(Levels levels) const {
    if (!faults_.adapterGone && !faults_.driveLost) {
        levels.scl = levels.scl && (data_ & kDriveSclLow) == 0;
        levels.sda = levels.sda && (data_ & kDriveSdaLow) == 0;
    }
    levels.scl = (levels.scl || faults_.sclStuckHigh) && !faults_.sclStuckLow;
    levels.sda = (levels.sda || faults_.sdaStuckHigh) && !faults_.sdaStuckLow;
    if (faults_.linesJoined)
        levels.scl = levels.sda = levels.scl && levels.sda;
    return levels;
}

// Where both lines change at once, SDA does so while SCL is low.
void SimulatedTelevision::Settle() {
    for (Levels driven = Driven(); driven.scl != scl_ || driven.sda != sda_; driven = Driven()) {
        if (scl_ && !driven.scl) {
            SclFalls();
            driven.sda = Driven().sda;
        }
        if (driven.sda != sda_)
            SdaChanges();
        if (!scl_ && driven.scl)
            SclRises();
    }
}

void SimulatedTelevision::SclFalls() {
    scl_ = false;
    AddSample(WireSample::Cause::Scl);
    for (Eeprom24C64& device : devices_)
        device.OnFallingEdge();
    if (monitor_.OnFallingEdge(now_)) {
        BeginRead();
        CountEvent(WireEvent::Read);
    }
}

void SimulatedTelevision::SclRises() {
    scl_ = true;
    AddSample(WireSample::Cause::Scl);
    for (Eeprom24C64& device : devices_)
        device.OnRisingEdge(sda_);
    const bool endsByte = monitor_.OnRisingEdge(sda_);
    CountEvent(WireEvent::Clock);
    if (endsByte)
        CountEvent(WireEvent::Byte);
}

void SimulatedTelevision::SdaChanges() {
    sda_ = !sda_;
    AddSample(WireSample::Cause::Sda);
    if (scl_)
        sda_ ? Stop() : Start();
}

void SimulatedTelevision::Start() {
    monitor_.OnStart(now_);
    CountEvent(WireEvent::Start);
    for (Eeprom24C64& device : devices_)
        device.OnStart(now_);
}

void SimulatedTelevision::Stop() {
    monitor_.OnStop(now_);
    CountEvent(WireEvent::Stop);
    for (Eeprom24C64& device : devices_) {
        if (device.StoresAtStop())
            CountEvent(WireEvent::WriteCycle);
        device.OnStop(now_ + simulation_.writeCycle);
    }
}

void SimulatedTelevision::AddSample(WireSample::Cause cause) {
    if (recording_)
        samples_.push_back({cause, scl_, sda_, now_});
}

// Faults.

void SimulatedTelevision::Inject(const Fault& fault) {
    if (fault.begins.count == 0) {
        Begin(fault);
        return Settle();
    }
    pending_.push_back(fault);
    pending_.back().begins.count += Count(fault.begins.event);
}

void SimulatedTelevision::ClearFaults() {
    pending_.clear();
    faults_ = {};
    faulty_ = false;
    for (Eeprom24C64& device : devices_)
        device.Faults() = {.silent = simulation_.television == Television::Absent};
    Settle();
}

void SimulatedTelevision::PowerCycle() {
    for (Eeprom24C64& device : devices_)
        device.StandBy();
    Settle();
}

void SimulatedTelevision::CountEvent(WireEvent event) {
    ++counts_[Index(event)];
    if (!pending_.empty())
        BeginFaults(event);
    if (event == WireEvent::Access && Count(event) == passingUntil_)
        EndPassingFaults();
}

void SimulatedTelevision::EndPassingFaults() {
    faults_ = {};
    faulty_ = false;
    Settle();
}

void SimulatedTelevision::BeginFaults(WireEvent event) {
    const auto due = [&](const Fault& fault) {
        return fault.begins.event == event && fault.begins.count == Count(event);
    };
    bool begun = false;
    for (const Fault& fault : pending_) {
        if (due(fault))
            Begin(fault);
        begun = begun || due(fault);
    }
    std::erase_if(pending_, due);
    if (begun && event == WireEvent::Access)
        Settle();
}

bool SimulatedTelevision::AdapterFaults::*SimulatedTelevision::AdapterFault(FaultKind kind) {
    switch (kind) {
        case FaultKind::SclStuckLow:
            return &AdapterFaults::sclStuckLow;
        case FaultKind::SdaStuckLow:
            return &AdapterFaults::sdaStuckLow;
        case FaultKind::SclStuckHigh:
            return &AdapterFaults::sclStuckHigh;
        case FaultKind::SdaStuckHigh:
            return &AdapterFaults::sdaStuckHigh;
        case FaultKind::LinesJoined:
            return &AdapterFaults::linesJoined;
        case FaultKind::InputsInverted:
            return &AdapterFaults::inputsInverted;
        case FaultKind::SdaMisread:
            return &AdapterFaults::sdaMisread;
        case FaultKind::AdapterGone:
            return &AdapterFaults::adapterGone;
        case FaultKind::DriveLost:
            return &AdapterFaults::driveLost;
        case FaultKind::PortFails:
            return &AdapterFaults::portFails;
        default:
            return nullptr;
    }
}

void SimulatedTelevision::Begin(const Fault& fault) {
    if (const auto adapterFault = AdapterFault(fault.kind)) {
        faults_.*adapterFault = true;
        faulty_ = true;
        if (fault.accesses != 0)
            passingUntil_ = Count(WireEvent::Access) + fault.accesses;
    }
    EepromFaults& device = Device(fault.chip).Faults();
    switch (fault.kind) {
        case FaultKind::PortFails:
            if (dataRegister_ != kNoRegister)
                Fail("The simulated port has failed. Plug it in again and repeat the command.");
            return;
        case FaultKind::DeviceSilent:
            device.silent = true;
            return Device(fault.chip).StandBy();
        case FaultKind::LostClocks:
            device.lostClocks = fault.clocks;
            return;
        case FaultKind::LateAcknowledge:
            device.lateSamples = static_cast<std::uint8_t>(fault.samples - 1);
            return;
        case FaultKind::LostWrite:
            device.losesWrites = true;
            return;
        case FaultKind::WrongWrite:
            device.wrongBits = fault.mask;
            return;
        case FaultKind::ShortPages:
            device.pageSize = 16;
            return;
        case FaultKind::NoPageWrites:
            device.losesPages = true;
            return;
        case FaultKind::FlippedBit:
            device.flippedAddress = fault.address;
            device.flippedBits = fault.mask;
            return;
        default:
            return;
    }
}

}  // namespace tarnwell
