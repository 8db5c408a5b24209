// The topics of the manual: one page each, in the order in which they are read.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace tarnwell {

enum class Topic : std::uint8_t {
    Contents,
    Overview,
    FirstSteps,
    Wiring,
    PortAccess,
    AdvancedSetup,
    InterfaceTest,
    I2cBuses,
    Simulation,
    Window,
    Menus,
    Keyboard,
    Undo,
    Settings,
    Chroma,
    Edges,
    Global,
    Iris,
    Picture,
    ValueEditor,
    DataEditor,
    PendingWrites,
    Finding,
    Names,
    WholeDevice,
    Compare,
    Archives,
    FileFormat,
    Backups,
    Sets,
    CommandLine,
    WithoutWindow,
    Messages,
    Troubleshooting,
    About,
};

/// A page of the manual, the file NAME.html.
struct TopicInfo {
    Topic topic;
    std::string_view name;
    std::string_view title;
    std::string_view chapter;  ///< empty where the chapter of the topic before goes on
};

inline constexpr std::array kTopics{
    TopicInfo{Topic::Contents, "Tarnwell", "Tarnwell 2 manual", ""},
    TopicInfo{Topic::Overview, "overview", "What it does, what it can break", "To begin with"},
    TopicInfo{Topic::FirstSteps, "first-steps", "First read and backup", ""},
    TopicInfo{Topic::Wiring, "wiring", "Wiring of the adapter", "Adapter and port"},
    TopicInfo{Topic::PortAccess, "port-access", "Access to the port", ""},
    TopicInfo{Topic::AdvancedSetup, "advanced-setup", "Advanced Setup", ""},
    TopicInfo{Topic::InterfaceTest, "interface-test", "Interface test", ""},
    TopicInfo{Topic::I2cBuses, "i2c-buses", "I2C buses", ""},
    TopicInfo{Topic::Simulation, "simulation", "Simulated television", ""},
    TopicInfo{Topic::Window, "window", "The window", "The program"},
    TopicInfo{Topic::Menus, "menus", "The menus", ""},
    TopicInfo{Topic::Keyboard, "keyboard", "Keyboard", ""},
    TopicInfo{Topic::Undo, "undo", "Undo and redo", ""},
    TopicInfo{Topic::Settings, "settings", "The picture settings", "Picture settings"},
    TopicInfo{Topic::Chroma, "chroma", "Page Chroma", ""},
    TopicInfo{Topic::Edges, "edges", "Page Edges", ""},
    TopicInfo{Topic::Global, "global", "Page Global", ""},
    TopicInfo{Topic::Iris, "iris", "Page Iris", ""},
    TopicInfo{Topic::Picture, "picture", "Page Picture", ""},
    TopicInfo{Topic::ValueEditor, "value-editor", "Changing a value", ""},
    TopicInfo{Topic::DataEditor, "data-editor", "Data editor", "Single bytes"},
    TopicInfo{Topic::PendingWrites, "pending-writes", "Pending writes", ""},
    TopicInfo{Topic::Finding, "finding", "Finding one's way", ""},
    TopicInfo{Topic::Names, "names", "Names of your own", ""},
    TopicInfo{Topic::WholeDevice, "whole-device", "Whole EEPROMs", "Whole EEPROMs and files"},
    TopicInfo{Topic::Compare, "compare", "Compare", ""},
    TopicInfo{Topic::Archives, "archives", "Archives", ""},
    TopicInfo{Topic::FileFormat, "file-format", "File format", ""},
    TopicInfo{Topic::Backups, "backups", "Backups", ""},
    TopicInfo{Topic::Sets, "sets", "Sets and their history", ""},
    TopicInfo{Topic::CommandLine, "command-line", "Command line, options, files", ""},
    TopicInfo{Topic::WithoutWindow, "tarnwell-cli", "Without a window: tarnwell-cli", ""},
    TopicInfo{Topic::Messages, "messages", "Messages", "If something is wrong"},
    TopicInfo{Topic::Troubleshooting, "troubleshooting", "Troubleshooting", ""},
    TopicInfo{Topic::About, "about", "About Tarnwell 2", ""},
};

constexpr const TopicInfo& HelpPage(Topic topic) {
    return kTopics[static_cast<std::size_t>(topic)];
}

consteval bool EveryTopicHasItsOwnPage() {
    for (std::size_t index = 0; index < kTopics.size(); ++index) {
        const TopicInfo& info = kTopics[index];
        if (static_cast<std::size_t>(info.topic) != index ||
            std::ranges::count(kTopics, info.name, &TopicInfo::name) != 1)
            return false;
    }
    return kTopics.back().topic == Topic::About;
}
static_assert(EveryTopicHasItsOwnPage());

}  // namespace tarnwell
