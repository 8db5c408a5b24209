// One 24C64 on a two-wire bus, as the data sheet describes it.
#pragma once

#include <array>
#include <cstdint>

#include "i2c/Port.h"

namespace tarnwell {

inline constexpr int kEepromSize = 8192;
inline constexpr int kBitsInByte = 8;
inline constexpr std::uint8_t kReadBit = 0x01;  ///< of a select byte
using EepromImage = std::array<std::uint8_t, kEepromSize>;

/// What is wrong with a device; the defaults are a sound one.
struct EepromFaults {
    bool silent = false;
    bool losesWrites = false;
    bool losesPages = false;  ///< writes of more than one byte
    std::uint8_t pageSize = 32;
    std::uint8_t wrongBits = 0;
    std::uint8_t lateSamples = 0;  ///< clocks after a byte that go unacknowledged
    std::uint8_t lostClocks = 0;   ///< how many of the next ones it does not see
    std::uint16_t flippedAddress = 0;
    std::uint8_t flippedBits = 0;
};

/// The device reacts to the conditions and edges that its bus tells it.
class Eeprom24C64 {
  public:
    /// `selectByte` is 0xA0 with the address pins in bits 3 to 1.
    explicit Eeprom24C64(std::uint8_t selectByte) : selectByte_(selectByte) {}

    void OnStart(BusTime now);

    /// Begins a write cycle that ends at `readyAt` if StoresAtStop().
    void OnStop(BusTime readyAt);

    void OnRisingEdge(bool sda);
    void OnFallingEdge();

    bool PullsSdaLow() const { return pullsSdaLow_; }

    /// True right after the acknowledge of a data byte.
    bool StoresAtStop() const;

    EepromImage& Memory() { return memory_; }
    const EepromImage& Memory() const { return memory_; }

    EepromFaults& Faults() { return faults_; }

    /// Lets go of the bus and waits for a start.
    void StandBy();

  private:
    enum class Phase : std::uint8_t { StandBy, Receive, Acknowledge, Send, AwaitAcknowledge };
    enum class Expected : std::uint8_t { Select, AddressHigh, AddressLow, Data };

    static constexpr std::size_t kLongestPage = 32;

    bool TakeByte();
    void LoadIntoPage();
    void StorePage();
    void OfferAcknowledge();
    void FinishAcknowledge();
    void BeginSending();
    void SendBit();

    EepromImage memory_{};
    std::array<std::uint8_t, kLongestPage> page_{};
    EepromFaults faults_{};
    BusTime busyUntil_{};
    std::uint32_t loaded_ = 0;  // a bit for each byte of the page buffer
    std::uint16_t address_ = 0;
    std::uint8_t selectByte_;
    std::uint8_t shift_ = 0;
    std::uint8_t bits_ = 0;
    std::uint8_t skippedSamples_ = 0;
    Phase phase_ = Phase::StandBy;
    Expected expected_ = Expected::Select;
    bool reading_ = false;
    bool acknowledged_ = false;
    bool pullsSdaLow_ = false;
    bool losesClock_ = false;
};

}  // namespace tarnwell
