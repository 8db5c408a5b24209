// Reads along on the simulated bus and keeps what it saw, for tests.
#include "port/simulated/BusMonitor.h"

#include <cstdio>

#include "port/simulated/Eeprom24C64.h"

namespace tarnwell {

namespace {

std::string ToText(const BusEvent& event) {
    char text[8];
    switch (event.kind) {
        case BusEvent::Kind::Start:
            return "S";
        case BusEvent::Kind::RepeatedStart:
            return "Sr";
        case BusEvent::Kind::Stop:
            return "P";
        case BusEvent::Kind::Byte:
            std::snprintf(text, sizeof text, "%s%02X", event.fromDevice ? "<" : "",
                          static_cast<unsigned>(event.value));
            return text + event.acknowledges;
        case BusEvent::Kind::Fragment:
            break;
    }
    return "~" + std::to_string(event.value);
}

}  // namespace

std::string ToText(const std::vector<BusEvent>& events) {
    std::string text;
    for (const BusEvent& event : events)
        text += (text.empty() ? "" : " ") + ToText(event);
    return text;
}

void BusMonitor::OnStart(BusTime now) {
    EndFragment(now);
    if (recording_)
        events_.push_back({busy_ ? BusEvent::Kind::RepeatedStart : BusEvent::Kind::Start, now});
    busy_ = true;
    selecting_ = true;
    fromDevice_ = false;
}

void BusMonitor::OnStop(BusTime now) {
    EndFragment(now);
    if (recording_)
        events_.push_back({BusEvent::Kind::Stop, now});
    busy_ = false;
}

bool BusMonitor::OnRisingEdge(bool sda) {
    sda_ = sda;
    clockRose_ = true;
    return busy_ && !awaitingAcknowledge_ && bits_ == kBitsInByte - 1;
}

bool BusMonitor::OnFallingEdge(BusTime now) {
    const bool pulse = clockRose_ && busy_;
    clockRose_ = false;
    if (!pulse)
        return false;
    if (awaitingAcknowledge_)
        return AddAcknowledge();
    shift_ = static_cast<std::uint8_t>(shift_ << 1 | static_cast<int>(sda_));
    if (++bits_ == kBitsInByte)
        EndByte(now);
    return false;
}

// The rising edge before a start or a stop belongs to it and is no bit.
void BusMonitor::EndFragment(BusTime now) {
    if (recording_ && bits_ != 0)
        events_.push_back({BusEvent::Kind::Fragment, now, bits_});
    bits_ = 0;
    clockRose_ = false;
    awaitingAcknowledge_ = false;
}

void BusMonitor::EndByte(BusTime now) {
    if (recording_)
        events_.push_back({BusEvent::Kind::Byte, now, shift_, fromDevice_});
    bits_ = 0;
    awaitingAcknowledge_ = true;
}

// A master may clock for an acknowledge again and again until there is one.
bool BusMonitor::AddAcknowledge() {
    if (recording_ && !events_.empty())
        events_.back().acknowledges += sda_ ? '-' : '+';
    if (sda_ && !fromDevice_)
        return false;
    awaitingAcknowledge_ = false;
    const bool reads = selecting_ && (shift_ & kReadBit) != 0;
    selecting_ = false;
    fromDevice_ = fromDevice_ || reads;
    return reads;
}

}  // namespace tarnwell
