#include "i2c/parallel/PortOptions.h"

namespace tarnwell {

namespace {

/// What the rule between the two lines' pins says to the user.
struct PinRule {
    PinPosition position;
    PinPosition other;  ///< the group that must not have the same pin
    Message conflict;
    Message missing;
};

constexpr std::string_view kTitle = "E R R O R - Port Conflict";
constexpr Message kSclConflict{
    "You can't use the same port pin for both SCL and SDA!\r\n\r\n"
    "Please select a different pin for SCL.",
    kTitle, BoxStyle::Exclamation};
constexpr Message kSdaConflict{
    "You can't use the same port pin for both SDA and SCL!\r\n\r\n"
    "Please select a different pin for SDA.",
    kTitle, BoxStyle::Exclamation};

constexpr std::array kPinRules{
    PinRule{
        PinPosition::DataOut,
        PinPosition::ClockOut,
        kSdaConflict,
        {"Output Pin Assignments\r\nPlease select a pin for SDA.", kTitle, BoxStyle::Exclamation}},
    PinRule{
        PinPosition::ClockOut,
        PinPosition::DataOut,
        kSclConflict,
        {"Output Pin Assignments\r\nPlease select a pin for SCL.", kTitle, BoxStyle::Exclamation}},
    PinRule{
        PinPosition::DataIn,
        PinPosition::ClockIn,
        kSdaConflict,
        {"Input Pin Assignments\r\nPlease select a pin for SDA.", kTitle, BoxStyle::Exclamation}},
    PinRule{
        PinPosition::ClockIn,
        PinPosition::DataIn,
        kSclConflict,
        {"Input Pin Assignments\r\nPlease select a pin for SCL.", kTitle, BoxStyle::Exclamation}},
};
static_assert(std::ranges::all_of(kPinRules, [](const PinRule& rule) {
    return rule.missing.text.starts_with(Group(rule.position).heading);
}));

constexpr Message kHelp{
    "If you don't know what to do with all these options,\r\n"
    "please just click the <Cancel> button now.\r\n"
    "\r\n"
    "Otherwise select the I/O pins and polarity sense\r\n"
    "as required by your prefered I2C interface.\r\n"
    "\r\n"
    "The <Default> button sets the options for use with\r\n"
    "the 'Plimby I2C Interface' (See the Help File).\r\n"
    "\r\n"
    "Be advised that if you modify settings incorrectly,\r\n"
    "serious operational problems WILL result.\r\n"
    "\r\n",
    "I N F O", BoxStyle::Exclamation};

}  // namespace

PortOptions::PortOptions(ProgramState& state, StatusBar& statusBar, User& user, mI2Ccode& i2c)
    : state_(state), statusBar_(statusBar), user_(user), i2c_(i2c) {}

void PortOptions::Load() {
    selected_ = {};
    for (const PinGroup& group : kPinGroups)
        static_cast<void>(Select(group.position, PinDigit(state_.pinOptions, group.position)));
}

std::optional<int>& PortOptions::At(PinPosition position) {
    return selected_[static_cast<std::size_t>(position)];
}

std::optional<int> PortOptions::Selected(PinPosition position) const {
    return selected_[static_cast<std::size_t>(position)];
}

std::optional<Message> PortOptions::Select(PinPosition position, int index) {
    const auto rule = std::ranges::find(kPinRules, position, &PinRule::position);
    if (rule != kPinRules.end() && Selected(rule->other) == index) {
        At(position).reset();
        return rule->conflict;
    }
    At(position) = index;
    return std::nullopt;
}

PortOptions::Accepted PortOptions::Accept() {
    for (const PinRule& rule : kPinRules) {
        if (!Selected(rule.position)) {
            Show(rule.missing);
            return Accepted::No;
        }
    }
    Store();
    return Accepted::Yes;
}

void PortOptions::Store() {
    std::string digits;
    for (const std::optional<int>& index : selected_)
        digits += std::to_string(index.value());
    state_.pinOptions = digits;

    const BusClaim claim(i2c_);
    i2c_.ApplyPortOptions();
    i2c_.ReleaseBus();
    statusBar_.ShowStatus("Port Configuration Settings Changed", kResultSeconds);
}

void PortOptions::Defaults() {
    for (const PinGroup& group : kPinGroups)
        At(group.position) = group.defaultIndex;
    Store();
    statusBar_.ShowStatus("Port Configuration Set to Defaults", kResultSeconds);
}

void PortOptions::Cancel() {
    statusBar_.ShowStatus("Port Configuration Not Changed", kResultSeconds);
}

void PortOptions::Help() {
    Show(kHelp);
}

void PortOptions::Show(const Message& message) {
    const CommandScope scope(statusBar_);
    user_.ShowBox(message);
}

}  // namespace tarnwell
