// A system with one I2C adapter at /dev/i2c-7 and EEPROMs on its bus.
#pragma once

#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <cerrno>
#include <functional>
#include <map>

#include "port/real/LinuxI2c.h"
#include "support/TemporaryFolder.h"

namespace tarnwell {

/// Like a 24C64: bytes of a page are stored by the stop, and the only byte of an address is its
/// high one. `addressBytes` is 1 for smaller devices.
struct FakeEeprom {
    std::vector<std::uint8_t> memory = std::vector<std::uint8_t>(8192);
    std::size_t addressBytes = 2;
    BusTime writeCycle = std::chrono::milliseconds(5);
    std::size_t pageSize = 32;
    std::size_t pointer = 0;
    std::vector<std::uint8_t> latched{};
    BusTime busyUntil{};
    std::uint64_t stores = 0;  ///< bytes
    std::uint64_t cycles = 0;

    void Write(const i2c_msg& message) {
        for (std::size_t index = 0; index < message.len; ++index) {
            const std::uint8_t byte = message.buf[index];
            if (index >= addressBytes)
                latched.push_back(byte);
            else if (index + 1 == addressBytes)
                pointer = (addressBytes == 1 ? 0 : pointer & 0xFF00) | byte;
            else
                pointer = std::size_t{byte} << 8 | (pointer & 0xFF);
        }
    }
    void Read(const i2c_msg& message) {
        pointer += addressBytes == 1 ? latched.size() : 0;
        latched.clear();
        for (std::size_t index = 0; index < message.len; ++index)
            message.buf[index] = memory[pointer++ % memory.size()];
    }
    void Stop(BusTime now) {
        for (std::size_t index = 0; index < latched.size(); ++index)
            memory[(pointer / pageSize * pageSize + (pointer + index) % pageSize) % memory.size()] =
                latched[index];
        stores += latched.size();
        cycles += latched.empty() ? 0 : 1;
        busyUntil = latched.empty() ? busyUntil : now + writeCycle;
        latched.clear();
    }
};

class FakeI2c : public SystemCalls {
  public:
    TemporaryFolder folder;
    std::map<int, FakeEeprom> devices{{0x50, {}}, {0x51, {}}};
    unsigned long functions = I2C_FUNC_I2C;
    bool combines = true;
    bool stopsBetween = false;  ///< though it says that it combines
    std::size_t longest = 8192;
    int tooLong = EOPNOTSUPP;
    bool sdaLow = false;  ///< everything is acknowledged, and zeros are read
    BusTime cost{};       ///< of a transfer, besides its 9 clocks a byte of 10 us
    int opening = 0;      ///< errno values
    int locking = 0;
    std::function<int()> fault;  ///< an errno for the next transfer, 0 for none
    std::size_t carried = 0;     ///< bytes of its first message that pass before the fault
    std::uint64_t transfers = 0;
    std::uint64_t refusals = 0;
    int open = 0;  ///< files
    BusTime now{std::chrono::hours(1)};

    FakeI2c() { Name(7, "Test adapter"); }
    /// A driver of the kernel's uses the device, "7-0050".
    void Bind(const std::string& device, const std::string& driver) const {
        const std::string place = "sys/bus/i2c/devices/" + device;
        folder.Write(place + "/uevent", "");
        std::filesystem::create_symlink("../../drivers/" + driver, folder.Path(place + "/driver"));
    }
    void Name(int bus, const std::string& name) const {
        folder.Write("sys/bus/i2c/devices/i2c-" + std::to_string(bus) + "/name", name + '\n');
    }

    int Open(const std::string&, int) override { return opening != 0 ? -opening : 2 + ++open; }
    int Close(int) override { return --open < 0 ? -EBADF : 0; }
    int Lock(int, int) override { return -locking; }
    int Ioctl(int, unsigned long request, void* argument) override {
        if (request == I2C_FUNCS) {
            *static_cast<unsigned long*>(argument) = functions;
            return 0;
        }
        if (request != I2C_RDWR)
            return -ENOTTY;
        return Transfer(*static_cast<i2c_rdwr_ioctl_data*>(argument));
    }
    int ReadByte(int, std::uint8_t&, std::int64_t) override { return -EIO; }
    int WriteByte(int, std::uint8_t, std::int64_t) override { return -EIO; }
    std::chrono::nanoseconds Now() override { return now; }
    void Sleep(std::chrono::nanoseconds duration) override { now += duration; }
    int ArmInterrupt(std::chrono::nanoseconds) override { return 0; }
    void DisarmInterrupt() override {}
    std::string ProcFolder() const override { return folder.Path("proc"); }
    std::string DevFolder() const override { return "/dev"; }
    std::string SysFolder() const override { return folder.Path("sys"); }

  private:
    void Carry(i2c_msg message) {
        const auto found = devices.find(message.addr);
        if (carried == 0 || found == devices.end() || now < found->second.busyUntil)
            return;
        message.len = static_cast<std::uint16_t>(std::min<std::size_t>(message.len, carried));
        (message.flags & I2C_M_RD) != 0 ? found->second.Read(message)
                                        : found->second.Write(message);
        found->second.Stop(now);
    }
    int Transfer(const i2c_rdwr_ioctl_data& data) {
        const std::span messages(data.msgs, data.nmsgs);
        if (messages.empty())
            return -EINVAL;
        for (const i2c_msg& message : messages) {
            const bool isLong = message.len > longest;
            if (isLong || (messages.size() > 1 && !combines)) {
                ++refusals;
                return isLong ? -tooLong : -EOPNOTSUPP;
            }
        }
        ++transfers;
        now += cost + std::chrono::microseconds(20);
        if (const int error = fault ? fault() : 0; error != 0) {
            Carry(messages[0]);
            return error == EPROTO ? static_cast<int>(messages.size()) - 1 : -error;
        }
        for (const i2c_msg& message : messages) {
            now += std::chrono::microseconds(90) * (message.len + 1);
            if (sdaLow) {
                std::fill_n(message.buf, (message.flags & I2C_M_RD) != 0 ? message.len : 0, 0);
                continue;
            }
            const auto found = devices.find(message.addr);
            if (found == devices.end() || now < found->second.busyUntil)
                return -ENXIO;
            FakeEeprom& device = found->second;
            (message.flags & I2C_M_RD) != 0 ? device.Read(message) : device.Write(message);
            if (stopsBetween || &message == &messages.back())
                device.Stop(now);
        }
        return static_cast<int>(messages.size());
    }
};

struct FakeKernel {
    FakeI2c system;
    LinuxI2c kernel{system};
};

}  // namespace tarnwell
