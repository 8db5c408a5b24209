// What the program as a whole knows against a write, and what it will do.
#pragma once

#include "command/WriteGuard.h"

namespace tarnwell {

class Program;

class WriteAdvice final : public WriteAdvisor {
  public:
    explicit WriteAdvice(const Program& program) : program_(program) {}

    void AddDoubts(WriteKind kind, const EepromArray* coming, Box& box) const override;
    void Describe(WriteKind kind, Box& question) const override;

  private:
    /// The bytes that a write concerns, as they are told in the details.
    class Lines;

    void AddDoubtsOfOrigin(WriteKind kind, Lines& lines) const;
    void AddWhatIsLeftOut(Lines& lines) const;
    void AddOutOfRange(WriteKind kind, const EepromArray* coming, Lines& lines) const;
    void AddDoubtsOfSet(Lines& lines) const;
    void AddDoubtsOfDevice(WriteKind kind, Lines& lines) const;

    /// The value that the write gives the setting, if it changes the device as far as that is
    /// known.
    std::optional<std::uint8_t> Coming(WriteKind kind, const EepromArray* coming, int cell) const;
    std::optional<std::uint8_t> Held(int address) const;

    std::string ImageChanges() const;
    std::vector<std::string> SettingsChanges() const;
    std::vector<std::string> PendingChanges() const;
    /// `held` is what the setting or byte has, as far as that is known.
    std::string ChangeLine(int address, std::optional<std::uint8_t> held, std::uint8_t value) const;

    const Program& program_;
};

}  // namespace tarnwell
