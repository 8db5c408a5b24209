#include "core/run/HelpCommands.h"

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
    const std::string name(HelpPage(topic).name);
    Open("help/" + name + ".html", Opening::InViewer);
}

void HelpCommands::ReleaseHistory() {
    Open("history.txt", Opening::InViewer);
}

void HelpCommands::ShowFolder(const std::string& path) {
    programs_.OpenInViewer(path, [=, this] { user_.ShowBox(CannotStart(programs_, path)); });
}

void HelpCommands::StartExtraProgram() {
    Open("pemvora", Opening::AsProgram);
}

void HelpCommands::Open(std::string_view name, Opening opening) {
    const std::string path = programs_.ProgramFolder().append("/").append(name);
    if (opening == Opening::InViewer && programs_.Exists(path))
        ShowFolder(path);
    else if (!programs_.Exists(path) || !programs_.Start(path))
        user_.ShowBox(CannotStart(programs_, path));
}

}  // namespace tarnwell
