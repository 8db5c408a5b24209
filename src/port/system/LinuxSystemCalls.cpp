// The system calls of the running kernel.
#include "port/system/LinuxSystemCalls.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#ifndef sigev_notify_thread_id
#define sigev_notify_thread_id _sigev_un._tid
#endif

namespace tarnwell {

namespace {

int InterruptSignal() {
    return SIGRTMIN + 1;
}

int ErrnoOr(int result) {
    return result < 0 ? -errno : result;
}

int AllOrErrno(ssize_t transferred) {
    if (transferred < 0)
        return -errno;
    return transferred == 1 ? 0 : -EIO;
}

timespec ToTimespec(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    return {.tv_sec = seconds.count(), .tv_nsec = static_cast<long>((time - seconds).count())};
}

}  // namespace

LinuxSystemCalls::LinuxSystemCalls() {
    // A handler, and no SA_RESTART: the signal only has to end the call that blocks.
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(InterruptSignal(), &action, nullptr);
}

LinuxSystemCalls::~LinuxSystemCalls() {
    LinuxSystemCalls::DisarmInterrupt();
}

int LinuxSystemCalls::Open(const std::string& path, int flags) {
    constexpr mode_t kOwnerOnly = 0600;
    return ErrnoOr(open(path.c_str(), flags | O_CLOEXEC, kOwnerOnly));
}

int LinuxSystemCalls::Close(int descriptor) {
    return ErrnoOr(close(descriptor));
}

int LinuxSystemCalls::Ioctl(int descriptor, unsigned long request, void* argument) {
    return ErrnoOr(ioctl(descriptor, request, argument));
}

int LinuxSystemCalls::ReadByte(int descriptor, std::uint8_t& value, std::int64_t offset) {
    return AllOrErrno(pread(descriptor, &value, 1, offset));
}

int LinuxSystemCalls::WriteByte(int descriptor, std::uint8_t value, std::int64_t offset) {
    return AllOrErrno(pwrite(descriptor, &value, 1, offset));
}

int LinuxSystemCalls::Lock(int descriptor, int operation) {
    return ErrnoOr(flock(descriptor, operation));
}

std::chrono::nanoseconds LinuxSystemCalls::Now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

void LinuxSystemCalls::Sleep(std::chrono::nanoseconds duration) {
    std::this_thread::sleep_for(duration);
}

int LinuxSystemCalls::ArmInterrupt(std::chrono::nanoseconds time) {
    DisarmInterrupt();
    sigevent event{};
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = InterruptSignal();
    event.sigev_notify_thread_id = gettid();
    timer_t timer{};
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0)
        return -errno;
    timer_ = timer;

    // Again and again: the first signal may come just before the call blocks.
    constexpr std::chrono::milliseconds kRepeat{10};
    const itimerspec setting{.it_interval = ToTimespec(kRepeat), .it_value = ToTimespec(time)};
    return ErrnoOr(timer_settime(timer, TIMER_ABSTIME, &setting, nullptr));
}

void LinuxSystemCalls::DisarmInterrupt() {
    if (timer_)
        timer_delete(*timer_);
    timer_.reset();
}

}  // namespace tarnwell
