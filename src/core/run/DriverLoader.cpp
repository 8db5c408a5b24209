#include "core/run/DriverLoader.h"

#include "core/run/HelpCommands.h"

namespace tarnwell {

namespace {

constexpr const char* kModule = "ppdev";

}  // namespace

DriverLoader::DriverLoader(Platform& platform, Programs& programs, StatusBar& statusBar, User& user)
    : platform_(platform), programs_(programs), statusBar_(statusBar), user_(user) {}

std::string DriverLoader::Run() {
    const CommandScope scope(statusBar_);
    StartLoader();
    return FindDriver();
}

void DriverLoader::StartLoader() {
    const std::string loader = programs_.ProgramFolder() + platform_.PortDriver().loader;
    if (!programs_.Exists(loader) || !programs_.Start(loader))
        user_.ShowBox(CannotStart(programs_, loader));
}

std::string DriverLoader::FindDriver() {
    const std::string folder = mGlobal::GetWindowsFolder(platform_, user_);
    // A module that is part of the kernel itself has no file.
    const std::string module = programs_.KernelModulePath(kModule);
    return module.starts_with('/') ? module : folder + platform_.PortDriver().driver;
}

}  // namespace tarnwell
