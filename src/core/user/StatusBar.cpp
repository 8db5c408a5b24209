#include "core/user/StatusBar.h"

namespace tarnwell {

namespace {

constexpr std::string_view kWelcome = "Welcome to Tarnwell";
constexpr std::string_view kAboutPointer = "Please read about Tarnwell 2 in Help --> About";

}  // namespace

StatusBar::StatusBar(const ProgramState& state, Screen& screen, Timer& msgTimer)
    : state_(state), screen_(screen), msgTimer_(msgTimer) {}

void StatusBar::ShowStatus(std::string_view message, std::int32_t seconds) {
    StopTimer();
    PutStatus(message);
    msgTimer_.Start(std::chrono::seconds(seconds));
}

void StatusBar::PutStatus(std::string_view message) {
    status_ = message;
    showsBackground_ = false;
    screen_.Changed(Shown::StatusPanel);
}

void StatusBar::PutInBackground(std::string_view text) {
    PutStatus(text);
    showsBackground_ = true;
}

void StatusBar::StopTimer() {
    msgTimer_.Stop();
    timerDue_ = false;
}

void StatusBar::MsgTimerFired() {
    if (commandsRunning_ > 0) {
        timerDue_ = true;
        return;
    }
    StopTimer();
    if (status_ == kWelcome)
        return ShowStatus(kAboutPointer, kAboutSeconds);
    PutStatus("");
    ShowBackground();
}

void StatusBar::ShowBackground() {
    if (!background_ || !(status_.empty() || showsBackground_))
        return;
    PutInBackground(background_());
}

void StatusBar::EndCommand() {
    --commandsRunning_;
    if (commandsRunning_ == 0 && timerDue_)
        MsgTimerFired();
}

void StatusBar::ShowMode() {
    screen_.Changed(Shown::ModePanel);
}

void StatusBar::ShowCrc(std::string_view text) {
    crc_ = text;
    screen_.Changed(Shown::CrcPanel);
}

void StatusBar::ShowProgress(const Progress& progress) {
    progress_ = progress;
    percentage_ = std::to_string(progress.percent) + "%";
    screen_.Changed(Shown::EepPanel);
}

void StatusBar::EndProgress() {
    progress_.reset();
    screen_.Changed(Shown::EepPanel);
}

std::string_view StatusBar::Text(Panel panel) const {
    switch (panel) {
        case Panel::Mode:
            return Word(state_.numberMode);
        case Panel::Status:
            return status_;
        case Panel::Crc:
            return crc_;
        case Panel::Eep:
            return progress_ ? std::string_view(percentage_) : Word(state_.targetDevice);
    }
    return {};
}

}  // namespace tarnwell
