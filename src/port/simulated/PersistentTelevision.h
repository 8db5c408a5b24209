// The simulated television whose two EEPROMs keep their content between runs.
#pragma once

#include <array>
#include <string>

#include "port/simulated/SimulatedTelevision.h"
#include "port/system/SystemCalls.h"

namespace tarnwell {

/// Reads simulated-primary.bin and simulated-secondary.bin (8192 bytes each; factory values
/// where there is no such file) at each claim, and writes what has changed before anything is read
/// back, so that what cannot be kept is never verified, and at the release.
/// A second instance on the same folder is refused meanwhile.
class PersistentTelevision final : public SimulatedTelevision {
  public:
    PersistentTelevision(SystemCalls& system, std::string folder, Simulation simulation = {});
    ~PersistentTelevision() override;

    void Claim(std::uint16_t baseAddress) override;
    void Release() override;
    bool IsTaken() const override { return taken_; }

  protected:
    void BeginRead() override;

  private:
    std::string ImagePath(Chip chip) const;
    bool TakeFolder();
    void Load(Chip chip);
    void Save(Chip chip);

    SystemCalls& system_;
    std::string folder_;
    OpenFile lock_;
    bool taken_ = false;
    std::array<EepromImage, 2> stored_{};
    std::array<bool, 2> unsaved_{};
};

}  // namespace tarnwell
