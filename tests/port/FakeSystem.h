// An operating system with one scripted parallel port, at 0x378.
#pragma once

#include <gtest/gtest.h>
#include <linux/ppdev.h>
#include <sys/file.h>
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
    int accessError = 0;
    bool heldByAnother = false;  ///< a claim blocks, a lock is refused
    bool signals = false;        ///< the first call of each kind is interrupted
};

class FakeSystem final : public SystemCalls {
  public:
    static constexpr std::uint16_t kBase = 0x378;

    TemporaryFolder folder;                   ///< with proc and dev
    std::map<std::string, Trouble> troubles;  ///< by the path below /dev
    std::uint8_t data = 0;
    std::uint8_t status = 0x78;
    int accesses = 0;
    std::map<int, std::string> open;
    std::set<int> claimed;
    std::string lastOpened;

    void List(const std::string& port, int base) const {
        folder.Write("proc/sys/dev/parport/" + port + "/base-addr", std::to_string(base) + "\t0\n");
    }

    int Open(const std::string& path, int) override {
        const std::string name = path.substr(DevFolder().size() + 1);
        const Trouble& trouble = troubles[name];
        if (Interrupted(trouble, "open") || trouble.openError != 0)
            return trouble.openError != 0 ? -trouble.openError : -EINTR;
        open[++lastDescriptor_] = lastOpened = name;
        return lastDescriptor_;
    }

    int Close(int descriptor) override {
        EXPECT_EQ(open.erase(descriptor), 1U);
        return ReleaseBy(descriptor);
    }

    int Ioctl(int descriptor, unsigned long request, void* argument) override {
        const Trouble& trouble = troubles[open.at(descriptor)];
        const std::string call = "ioctl " + std::to_string(request);
        if (request == PPCLAIM)
            return Interrupted(trouble, call) ? -EINTR : Claim(descriptor, trouble);
        EXPECT_TRUE(claimed.contains(descriptor));
        if (request == PPRELEASE)
            return Interrupted(trouble, call) ? -EINTR : ReleaseBy(descriptor);
        EXPECT_TRUE(request == PPRDATA || request == PPWDATA || request == PPRSTATUS);
        auto& value = *static_cast<std::uint8_t*>(argument);
        return request == PPWDATA
                   ? Transfer(trouble, call, data, value)
                   : Transfer(trouble, call, value, request == PPRDATA ? data : status);
    }

    int ReadByte(int, std::uint8_t& value, std::int64_t offset) override {
        EXPECT_TRUE(offset == kBase || offset == kBase + 1) << "poked " << offset;
        return Transfer(troubles["port"], "pread", value, offset == kBase ? data : status);
    }

    int WriteByte(int, std::uint8_t value, std::int64_t offset) override {
        EXPECT_EQ(offset, kBase) << "poked";
        return Transfer(troubles["port"], "pwrite", data, value);
    }

    int Lock(int descriptor, int operation) override {
        EXPECT_EQ(operation, LOCK_EX | LOCK_NB);
        const Trouble& trouble = troubles[open.at(descriptor)];
        if (Interrupted(trouble, "flock"))
            return -EINTR;
        return trouble.heldByAnother ? -EWOULDBLOCK : 0;
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
    bool Interrupted(const Trouble& trouble, const std::string& call) {
        return trouble.signals && interruptedCalls_.insert(call).second;
    }

    int Claim(int descriptor, const Trouble& trouble) {
        if (trouble.heldByAnother) {
            EXPECT_TRUE(interrupt_) << "blocks for ever";
            now_ = interrupt_.value_or(now_);
            return -EINTR;
        }
        if (trouble.claimError == 0)
            claimed.insert(descriptor);
        return -trouble.claimError;
    }

    int ReleaseBy(int descriptor) {
        claimed.erase(descriptor);
        return 0;
    }

    int Transfer(const Trouble& trouble, const std::string& call, std::uint8_t& to,
                 std::uint8_t from) {
        if (Interrupted(trouble, call))
            return -EINTR;
        ++accesses;
        to = trouble.accessError == 0 ? from : to;
        return -trouble.accessError;
    }

    std::set<std::string> interruptedCalls_;
    std::optional<std::chrono::nanoseconds> interrupt_;
    std::chrono::nanoseconds now_{std::chrono::hours(1)};
    int lastDescriptor_ = 10;
};

}  // namespace tarnwell
