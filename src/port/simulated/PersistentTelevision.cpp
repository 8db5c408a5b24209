// The simulated television whose two EEPROMs keep their content between runs.
#include "port/simulated/PersistentTelevision.h"

#include <fcntl.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/files/AtomicFile.h"
#include "core/files/SmallFile.h"
#include "port/simulated/FactoryImage.h"
#include "port/system/FileLock.h"
#include "port/system/ParallelPorts.h"

namespace tarnwell {

namespace {

constexpr std::array kChips{Chip::Primary, Chip::Secondary};

}  // namespace

PersistentTelevision::PersistentTelevision(SystemCalls& system, std::string folder,
                                           Simulation simulation)
    : SimulatedTelevision(simulation), system_(system), folder_(std::move(folder)) {}

PersistentTelevision::~PersistentTelevision() {
    PersistentTelevision::Release();
}

void PersistentTelevision::Claim(std::uint16_t baseAddress) {
    taken_ = false;
    SimulatedTelevision::Claim(baseAddress);
    if (!Failure().empty() || !TakeFolder())
        return;
    for (const Chip chip : kChips)
        Load(chip);
    if (!Failure().empty())
        lock_.Close();
}

void PersistentTelevision::Release() {
    SimulatedTelevision::Release();
    if (!lock_.IsOpen())
        return;
    PersistentTelevision::BeginRead();
    lock_.Close();
}

void PersistentTelevision::BeginRead() {
    for (const Chip chip : kChips)
        Save(chip);
}

std::string PersistentTelevision::ImagePath(Chip chip) const {
    return folder_ +
           (chip == Chip::Primary ? "/simulated-primary.bin" : "/simulated-secondary.bin");
}

bool PersistentTelevision::TakeFolder() {
    const auto deadline = system_.Now() + kClaimPatience;
    std::error_code ignored;
    std::filesystem::create_directories(folder_, ignored);

    const std::string path = folder_ + "/simulated.lock";
    int result = Uninterrupted([&] { return system_.Open(path, O_RDWR | O_CREAT); });
    if (result >= 0) {
        lock_ = OpenFile(system_, result);
        result = LockUntil(system_, lock_, deadline);
    }
    if (result >= 0)
        return true;

    lock_.Close();
    taken_ = result == -EWOULDBLOCK;
    Fail(taken_ ? InUseLine("The simulated television", system_.ProcFolder(), path)
                : ErrorLine(path, -result, "Give your account the right to write there."));
    return false;
}

void PersistentTelevision::Load(Chip chip) {
    EepromImage& memory = Memory(chip);
    EepromImage& stored = stored_[static_cast<std::size_t>(chip)];
    if (unsaved_[static_cast<std::size_t>(chip)])
        return;
    const SmallFile file = ReadSmallFile(ImagePath(chip));
    if (file.fault != FileFault::None && file.fault != FileFault::Missing)
        return Fail(ImagePath(chip) +
                    " is no image of an EEPROM. Move it away and repeat the command.");
    if (file.content.size() == memory.size())
        std::ranges::copy(file.content, memory.begin());
    else
        memory = FactoryImage(chip);
    stored = memory;
}

void PersistentTelevision::Save(Chip chip) {
    const EepromImage& memory = Memory(chip);
    EepromImage& stored = stored_[static_cast<std::size_t>(chip)];
    if (memory == stored)
        return;
    AtomicFile file(ImagePath(chip));
    file.Write({reinterpret_cast<const char*>(memory.data()), memory.size()});
    const bool saved = file.Commit();
    unsaved_[static_cast<std::size_t>(chip)] = !saved;
    if (saved)
        stored = memory;
    else
        Fail(ImagePath(chip) + " could not be saved. Make room for it and repeat the command.");
}

}  // namespace tarnwell
