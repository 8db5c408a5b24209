// An operating system with one scripted parallel port, at 0x378.
#pragma once

#include <gtest/gtest.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>

#include <map>
#include <optional>
#include <set>
#include <string>

#include "port/system/SystemCalls.h"
#include "support/TemporaryFolder.h"

namespace tarnwell {

inline constexpr std::uint16_t kBase = 0x378;

class FakeSystem final : public SystemCalls {
  public:
    TemporaryFolder folder;             ///< with proc and dev
    std::map<std::string, int> errors;  ///< errno values of "port open" and so on; EINTR blocks
    bool signals = false;               ///< the first call of each kind is interrupted
    std::uint8_t data = 0;
    std::uint8_t status = 0x78;
    std::map<int, std::string> open;

    void List(const std::string& port, int base) const {
        folder.Write("proc/sys/dev/parport/" + port + "/base-addr", std::to_string(base) + "\t0\n");
    }

    int Open(const std::string& path, int) override {
        const std::string device = std::filesystem::path(path).filename();
        if (const int result = Outcome(device + " open"); result < 0)
            return result;
        open[++lastDescriptor_] = device;
        return lastDescriptor_;
    }

    int Close(int descriptor) override {
        const auto closed = open.extract(descriptor);
        return closed ? -errors[closed.mapped() + " close"] : -EBADF;
    }

    int Ioctl(int descriptor, unsigned long request, void* argument) override {
        const std::string& device = open.at(descriptor);
        if (request == PPCLAIM || request == PPRELEASE)
            return Outcome(device + (request == PPCLAIM ? " claim" : " release"));
        EXPECT_TRUE(request == PPRDATA || request == PPWDATA || request == PPRSTATUS);
        auto& value = *static_cast<std::uint8_t*>(argument);
        if (request == PPWDATA)
            return Transfer(device + " write", value, data);
        return Transfer(device + " read", request == PPRDATA ? data : status, value);
    }

    int ReadByte(int descriptor, std::uint8_t& value, std::int64_t offset) override {
        EXPECT_TRUE(offset == kBase || offset == kBase + 1) << "poked " << offset;
        return Transfer(open.at(descriptor) + " read", offset == kBase ? data : status, value);
    }

    int WriteByte(int descriptor, std::uint8_t value, std::int64_t offset) override {
        EXPECT_EQ(offset, kBase) << "poked";
        return Transfer(open.at(descriptor) + " write", value, data);
    }

    int Lock(int descriptor, int) override { return Outcome(open.at(descriptor) + " lock"); }
    std::chrono::nanoseconds Now() override { return now_; }
    void Sleep(std::chrono::nanoseconds duration) override { now_ += duration; }
    int ArmInterrupt(std::chrono::nanoseconds time) override {
        interrupt_ = time;
        return 0;
    }
    void DisarmInterrupt() override { interrupt_.reset(); }
    std::string ProcFolder() const override { return folder.Path("proc"); }
    std::string DevFolder() const override { return folder.Path("dev"); }
    std::string SysFolder() const override { return folder.Path("sys"); }

  private:
    int Outcome(const std::string& call) {
        if (errors[call] == EINTR)
            now_ = interrupt_.value();
        return signals && interrupted_.insert(call).second ? -EINTR : -errors[call];
    }

    int Transfer(const std::string& call, std::uint8_t from, std::uint8_t& to) {
        const int result = Outcome(call);
        to = result == 0 ? from : to;
        return result;
    }

    std::set<std::string> interrupted_;
    std::optional<std::chrono::nanoseconds> interrupt_;
    std::chrono::nanoseconds now_{std::chrono::hours(1)};
    int lastDescriptor_ = 10;
};

}  // namespace tarnwell
