#include "core/HelpCommands.h"

namespace tarnwell {

namespace {

constexpr Message kCannotStart{"Could not start", "E R R O R", BoxStyle::Exclamation};

}  // namespace

Box CannotStart(const Programs& programs, const std::string& path) {
    return Box(kCannotStart)
        .WithLine(path)
        .WithLine(programs.Exists(path) ? "No program on this computer would open it."
                                        : "The file is missing.");
}

void HelpCommands::ShowTopic(Topic topic) {
    const std::string name(Info(topic).name);
    Open("help/" + name + ".html", Opening::InViewer);
}

void HelpCommands::ReleaseHistory() {
    Open("history.txt", Opening::InViewer);
}

void HelpCommands::ShowFolder(const std::string& path) {
    if (!programs_.OpenInViewer(path))
        user_.ShowBox(CannotStart(programs_, path));
}

void HelpCommands::StartExtraProgram() {
    Open("pemvora", Opening::AsProgram);
}

void HelpCommands::Open(std::string_view name, Opening opening) {
    const std::string path = programs_.ProgramFolder().append("/").append(name);
    const bool opened =
        programs_.Exists(path) &&
        (opening == Opening::InViewer ? programs_.OpenInViewer(path) : programs_.Start(path));
    if (!opened)
        user_.ShowBox(CannotStart(programs_, path));
}

}  // namespace tarnwell
