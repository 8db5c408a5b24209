#include "core/DriverLoader.h"

#include "core/HelpCommands.h"

namespace tarnwell {

namespace {

constexpr const char* kModule = "ppdev";

}  // namespace

DriverLoader::DriverLoader(Platform& platform, Programs& programs, StatusBar& statusBar, User& user,
                           DriverPathWindow& window)
    : platform_(platform),
      programs_(programs),
      statusBar_(statusBar),
      user_(user),
      window_(window) {}

void DriverLoader::Run() {
    StartLoader();
    window_.ShowFormCnP(FindDriver());
}

void DriverLoader::StartLoader() {
    const CommandScope scope(statusBar_);
    const std::string loader = programs_.ProgramFolder() + platform_.PortDriver().loader;
    if (!programs_.Exists(loader) || !programs_.Start(loader))
        user_.ShowBox(CannotStart(programs_, loader));
}

std::string DriverLoader::FindDriver() {
    const CommandScope scope(statusBar_);
    const std::string folder = mGlobal::GetWindowsFolder(platform_, user_);
    // A module that is part of the kernel itself has no file.
    const std::string module = programs_.KernelModulePath(kModule);
    return module.starts_with('/') ? module : folder + platform_.PortDriver().driver;
}

}  // namespace tarnwell
