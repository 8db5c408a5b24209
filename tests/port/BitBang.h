// The smallest master that can drive the simulated television.
#pragma once

#include <cstdint>
#include <vector>

#include "i2c/Port.h"

namespace tarnwell {

class BitBang {
  public:
    static constexpr std::uint16_t kBase = 0x378;

    explicit BitBang(Port& port) : port_(port) { port_.Claim(kBase); }

    void Scl(bool high) { Drive(0x01, high); }
    void Sda(bool high) { Drive(0x02, high); }
    bool Sense() { return (port_.DlPortReadPortUchar(kBase + 1) & 0x20) != 0; }

    void Start() {
        Scl(true);
        Sda(true);
        Sda(false);
        Scl(false);
        Sda(true);
    }

    void Stop() {
        Sda(false);
        Scl(true);
        Sda(true);
    }

    bool Clock(bool sda) {
        Sda(sda);
        Scl(true);
        const bool sensed = Sense();
        Scl(false);
        return sensed;
    }

    /// True if acknowledged.
    bool Send(std::uint8_t value) {
        for (int mask = 0x80; mask != 0; mask >>= 1)
            Clock((value & mask) != 0);
        return !Clock(true);
    }

    std::uint8_t Receive(bool acknowledge) {
        unsigned value = 0;
        for (int bit = 0; bit < 8; ++bit)
            value = value << 1 | static_cast<unsigned>(Clock(true));
        Clock(!acknowledge);
        return static_cast<std::uint8_t>(value);
    }

    /// True if all three bytes are acknowledged; the first that is not ends it.
    bool Address(std::uint8_t select, std::uint16_t address) {
        Start();
        return Send(select) && Send(static_cast<std::uint8_t>(address >> 8)) &&
               Send(static_cast<std::uint8_t>(address));
    }

    void Write(std::uint8_t select, std::uint16_t address, const std::vector<std::uint8_t>& data) {
        bool acknowledged = Address(select, address);
        for (std::size_t i = 0; acknowledged && i < data.size(); ++i)
            acknowledged = Send(data[i]);
        Stop();
    }

    /// From where the device stands, each byte but the last acknowledged.
    std::vector<std::uint8_t> ReadOn(std::uint8_t select, std::size_t count) {
        std::vector<std::uint8_t> data;
        Start();
        if (!Send(select | 1))
            count = 0;
        while (data.size() < count)
            data.push_back(Receive(data.size() + 1 < count));
        Stop();
        return data;
    }

    std::vector<std::uint8_t> Read(std::uint8_t select, std::uint16_t address, std::size_t count) {
        if (Address(select, address))
            return ReadOn(select, count);
        Stop();
        return {};
    }

  private:
    void Drive(int bit, bool high) {
        const int data = port_.DlPortReadPortUchar(kBase);
        port_.DlPortWritePortUchar(kBase,
                                   static_cast<std::uint8_t>(high ? data & ~bit : data | bit));
    }

    Port& port_;
};

}  // namespace tarnwell
