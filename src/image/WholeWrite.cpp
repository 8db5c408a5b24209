#include "image/WholeWrite.h"

#include <algorithm>

namespace tarnwell {

namespace {

constexpr auto kPage = static_cast<std::size_t>(kPageBytes);

using PageSpan = std::span<const std::uint8_t, kPage>;

Transfer WriteBytes(FollowedBus& i2c, int first, PageSpan bytes, DeviceProgress& progress) {
    for (int address = first; address < first + kPageBytes; ++address) {
        const std::uint8_t value = bytes[static_cast<std::size_t>(address - first)];
        if (i2c.WriteByte(static_cast<std::int16_t>(address), value) == Transfer::Aborted)
            return Transfer::Aborted;
        progress.Show(address);
        if (!progress.GoesOn())
            return Transfer::Aborted;
    }
    return Transfer::Done;
}

Transfer WritePage(FollowedBus& i2c, int first, PageSpan bytes, bool& arrived) {
    const auto address = static_cast<std::int16_t>(first);
    if (i2c.WritePage(address, bytes) == Transfer::Aborted ||
        i2c.ReadBlock(address, kPageBytes) == Transfer::Aborted)
        return Transfer::Aborted;
    arrived = std::equal(bytes.begin(), bytes.end(), i2c.ReadData().begin());
    return Transfer::Done;
}

}  // namespace

Transfer WriteWhole(FollowedBus& i2c, const MemoryBuffer& image) {
    DeviceProgress progress = i2c.TrackProgress();
    bool byPages = i2c.TakesPages();
    for (int first = 0; first < kEepromBytes; first += kPageBytes) {
        const PageSpan bytes(image.begin() + first, kPage);
        if (byPages && WritePage(i2c, first, bytes, byPages) == Transfer::Aborted)
            return Transfer::Aborted;
        if (!byPages && WriteBytes(i2c, first, bytes, progress) == Transfer::Aborted)
            return Transfer::Aborted;
        if (byPages)
            progress.Show((first + kPageBytes) % kEepromBytes);
        if (byPages && !progress.GoesOn())
            return Transfer::Aborted;
    }
    return Transfer::Done;
}

}  // namespace tarnwell
