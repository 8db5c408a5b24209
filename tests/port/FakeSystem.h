// An operating system with one scripted parallel port, at 0x378.
#pragma once

#include <gtest/gtest.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>

#include <map>
#include <optional>
#include <set>
#include <string>

#include "port/SystemCalls.h"
#include "support/TemporaryFolder.h"

namespace tarnwell {

/// What goes wrong; errors are errno values.
struct Trouble {
    int openError = 0;
    int claimError = 0;
    int readError = 0;
    int writeError = 0;
    bool heldByAnother = false;  ///< a claim blocks, a lock is refused
};

class FakeSystem final : public SystemCalls {
  public:
    static constexpr std::uint16_t kBase = 0x378;

    TemporaryFolder folder;                   ///< with proc and dev
    std::map<std::string, Trouble> troubles;  ///< by the path below /dev
    bool signals = false;                     ///< the first call of each kind is interrupted
    std::uint8_t data = 0;
    std::uint8_t status = 0x78;
    int accesses = 0;
    std::map<int, std::string> open;

    void List(const std::string& port, int base) const {
        folder.Write("proc/sys/dev/parport/" + port + "/base-addr", std::to_string(base) + "\t0\n");
    }

    int Open(const std::string& path, int) override {
        const std::string name = std::filesystem::path(path).filename();
        if (const int result = Outcome("open", troubles[name].openError); result < 0)
            return result;
        open[++lastDescriptor_] = name;
        return lastDescriptor_;
    }

    int Close(int descriptor) override {
        EXPECT_EQ(open.erase(descriptor), 1U);
        return 0;
    }

    int Ioctl(int descriptor, unsigned long request, void* argument) override {
        const Trouble& trouble = troubles[open.at(descriptor)];
        if (request == PPCLAIM && trouble.heldByAnother) {
            now_ = interrupt_.value();
            return -EINTR;
        }
        if (request == PPCLAIM || request == PPRELEASE)
            return Outcome(std::to_string(request), request == PPCLAIM ? trouble.claimError : 0);
        EXPECT_TRUE(request == PPRDATA || request == PPWDATA || request == PPRSTATUS);
        auto& value = *static_cast<std::uint8_t*>(argument);
        if (request == PPWDATA)
            return Transfer("write", trouble.writeError, value, data);
        return Transfer("read", trouble.readError, request == PPRDATA ? data : status, value);
    }

    int ReadByte(int, std::uint8_t& value, std::int64_t offset) override {
        EXPECT_TRUE(offset == kBase || offset == kBase + 1) << "poked " << offset;
        return Transfer("read", troubles["port"].readError, offset == kBase ? data : status, value);
    }

    int WriteByte(int, std::uint8_t value, std::int64_t offset) override {
        EXPECT_EQ(offset, kBase) << "poked";
        return Transfer("write", troubles["port"].writeError, value, data);
    }

    int Lock(int descriptor, int) override {
        return Outcome("lock", troubles[open.at(descriptor)].heldByAnother ? EWOULDBLOCK : 0);
    }

    std::chrono::nanoseconds Now() override { return now_; }
    void Sleep(std::chrono::nanoseconds duration) override { now_ += duration; }
    int ArmInterrupt(std::chrono::nanoseconds time) override {
        interrupt_ = time;
        return 0;
    }
    void DisarmInterrupt() override { interrupt_.reset(); }
    std::string ProcFolder() const override { return folder.Path("proc"); }
    std::string DevFolder() const override { return folder.Path("dev"); }

  private:
    int Outcome(const std::string& call, int error) {
        return signals && interrupted_.insert(call).second ? -EINTR : -error;
    }

    int Transfer(const std::string& call, int error, std::uint8_t from, std::uint8_t& to) {
        const int result = Outcome(call, error);
        to = result == 0 ? from : to;
        accesses += result == -EINTR ? 0 : 1;
        return result;
    }

    std::set<std::string> interrupted_;
    std::optional<std::chrono::nanoseconds> interrupt_;
    std::chrono::nanoseconds now_{std::chrono::hours(1)};
    int lastDescriptor_ = 10;
};

}  // namespace tarnwell
