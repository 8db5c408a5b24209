#include "cli/tools/ProgressBar.h"

#include <cstdio>

namespace tarnwell::cli {

void ProgressBar::Changed(Shown what) {
    if (what != Shown::EepPanel || !shown_ || statusBar_ == nullptr)
        return;
    const auto& progress = statusBar_->RunningProgress();
    constexpr int kWidth = 40;
    if (progress) {
        const std::string done(static_cast<std::size_t>(progress->percent * kWidth / 100), '#');
        std::fprintf(stderr, "\r[%-*s] %3d %%, %d s left  ", kWidth, done.c_str(),
                     progress->percent, progress->secondsLeft);
    } else if (drawn_) {
        std::fprintf(stderr, "\r%*s\r", kWidth + 30, "");
    }
    std::fflush(stderr);
    drawn_ = progress.has_value();
}

}  // namespace tarnwell::cli
