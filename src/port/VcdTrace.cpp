#include "port/VcdTrace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

namespace tarnwell {

namespace {

constexpr BusTime kTick{100};

/// Large pieces, so that the bus seldom pauses for the file while a command runs.
constexpr std::size_t kPiece = 1U << 20U;

constexpr std::array<std::string_view, 3> kKeywords{"$timescale", "$var", "$enddefinitions"};

constexpr std::array kIdentifier{'!', '"'};

constexpr std::size_t Index(BusLine line) {
    return static_cast<std::size_t>(line);
}

std::string Header() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", localtime_r(&now, &local));
    return std::string("$date ") + date +
           " $end\n"
           "$version tarnwell $end\n"
           "$timescale 100 ns $end\n"
           "$scope module bus $end\n"
           "$var wire 1 ! SCL $end\n"
           "$var wire 1 \" SDA $end\n"
           "$upscope $end\n"
           "$enddefinitions $end\n"
           "$dumpvars\nx!\nx\"\n$end\n";
}

std::string ErrorText() {
    return std::strerror(errno) + std::string(".");
}

/// Whether the file begins as a VCD, with a keyword, and declares what one must.
bool IsVcd(int descriptor) {
    char begin[4096];
    const ssize_t size = pread(descriptor, begin, sizeof begin, 0);
    const std::string_view text(begin, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return text.starts_with('$') && std::ranges::all_of(kKeywords, [&](std::string_view keyword) {
               return text.find(keyword) != std::string_view::npos;
           });
}

/// An empty text if the file may be replaced.
std::string Objection(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0)
        return ErrorText();
    if (!S_ISREG(status.st_mode))
        return "this is no regular file.";
    if (status.st_size != 0 && !IsVcd(descriptor))
        return "this file exists and is no VCD.";
    return ftruncate(descriptor, 0) == 0 ? "" : ErrorText();
}

}  // namespace

std::variant<std::unique_ptr<VcdTrace>, std::string> VcdTrace::Create(const std::string& path,
                                                                      Port& port, Clock& clock) {
    constexpr mode_t kMode = 0666;
    const int descriptor =
        open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, kMode);
    if (descriptor < 0)
        return path + ": " + ErrorText();
    std::unique_ptr<VcdTrace> trace(new VcdTrace(path, descriptor, port, clock));
    if (const std::string objection = Objection(descriptor); !objection.empty())
        return path + ": " + objection;
    trace->unwritten_ = Header();
    return trace;
}

VcdTrace::VcdTrace(std::string path, int descriptor, Port& port, Clock& clock)
    : path_(std::move(path)), descriptor_(descriptor), port_(port), clock_(clock) {}

VcdTrace::~VcdTrace() {
    VcdTrace::Released();
    if (descriptor_ >= 0)
        close(descriptor_);
}

void VcdTrace::Driven(BusLine line, Level level) {
    if (driven_[Index(line)] == level || !port_.Failure().empty())
        return;
    line == BusLine::Scl ? DriveScl(level, clock_.Now()) : DriveSda(level, clock_.Now());
    driven_[Index(line)] = level;
}

void VcdTrace::DriveScl(Level level, BusTime now) {
    if (level == Level::High && sdaReleased_) {
        sclRise_ = now;
        return;
    }
    DecideSda(Level::High);
    Change(BusLine::Scl, level, now);
    if (level == Level::Low && driven_[Index(BusLine::Sda)] != Level::Low)
        sdaReleased_ = now;
}

void VcdTrace::DriveSda(Level level, BusTime now) {
    DecideSda(Level::High);
    if (level == Level::Low)
        Change(BusLine::Sda, level, now);
    else
        sdaReleased_ = now;
}

void VcdTrace::DecideSda(Level level) {
    if (!sdaReleased_)
        return;
    Change(BusLine::Sda, level, *std::exchange(sdaReleased_, {}));
    if (sclRise_)
        Change(BusLine::Scl, Level::High, *std::exchange(sclRise_, {}));
}

void VcdTrace::Sensed(Level scl, Level sda) {
    if (!port_.Failure().empty())
        return;
    const BusTime now = clock_.Now();
    DecideSda(sda);
    if (scl == Level::Low)
        Change(BusLine::Scl, scl, now);
    Change(BusLine::Sda, sda, now);
    Change(BusLine::Scl, scl, now);
}

void VcdTrace::Change(BusLine line, Level level, BusTime time) {
    std::optional<Level>& wire = wire_[Index(line)];
    if (wire == level || descriptor_ < 0)
        return;
    wire = level;
    AddTime(time);
    unwritten_ += level == Level::High ? '1' : '0';
    unwritten_ += kIdentifier[Index(line)];
    unwritten_ += '\n';
    if (unwritten_.size() >= kPiece)
        Write();
}

void VcdTrace::AddTime(BusTime time) {
    origin_ = origin_.value_or(time);
    lastTick_ = std::max<std::int64_t>(lastTick_ + 1, (time - *origin_) / kTick);
    unwritten_ += '#';
    unwritten_ += std::to_string(lastTick_);
    unwritten_ += '\n';
}

void VcdTrace::Released() {
    DecideSda(Level::High);
    if (unwritten_.empty())
        return;
    // Readers take a level as lasting until the next time.
    AddTime(clock_.Now());
    Write();
}

void VcdTrace::Write() {
    std::string_view rest = unwritten_;
    while (!rest.empty() && descriptor_ >= 0) {
        const ssize_t written = write(descriptor_, rest.data(), rest.size());
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            std::fprintf(stderr, "tarnwell: %s: %s; the trace ends here.\n", path_.c_str(),
                         std::strerror(errno));
            close(std::exchange(descriptor_, -1));
        }
    }
    unwritten_.clear();
}

}  // namespace tarnwell
