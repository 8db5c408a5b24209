// The changes of the two bus lines, of a dump and of the simulated television's wire.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "port/simulated/BusMonitor.h"

namespace tarnwell {

/// Changes in turn: 'C' and 'c' are SCL's rise and fall, 'D' and 'd' those of SDA.
struct Changes {
    std::string lines;
    std::vector<std::int64_t> times;  ///< in ns

    void Add(bool scl, bool high, std::int64_t time) {
        const char line = scl ? 'C' : 'D';
        lines += static_cast<char>(high ? line : line + 'a' - 'A');
        times.push_back(time);
    }
};

/// Those of a dump whose times rise.
inline Changes InVcd(const std::string& vcd) {
    Changes changes;
    std::istringstream body(vcd.substr(vcd.rfind("$end") + 4));
    std::int64_t tick = -1;
    for (std::string word; body >> word;) {
        if (word[0] != '#') {
            changes.Add(word[1] == '!', word[0] == '1', tick * 100);
            continue;
        }
        EXPECT_LT(tick, std::stoll(word.substr(1)));
        tick = std::stoll(word.substr(1));
    }
    return changes;
}

/// Those that the simulated television saw.
inline Changes OnWire(const std::vector<WireSample>& samples) {
    Changes changes;
    for (const WireSample& sample : samples) {
        const bool scl = sample.cause == WireSample::Cause::Scl;
        if (sample.cause != WireSample::Cause::Sensed)
            changes.Add(scl, scl ? sample.scl : sample.sda, sample.time.count());
    }
    return changes;
}

}  // namespace tarnwell
