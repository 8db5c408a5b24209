#include "core/DriverLoader.h"

#include "core/HelpCommands.h"

namespace tarnwell {

namespace {

constexpr const char* kModule = "ppdev";

/// A system's names, each below a folder.
struct DriverFiles {
    std::string_view loader;
    std::string_view driver;
};

constexpr DriverFiles kLinux{"/loaddrv", "/kernel/drivers/char/ppdev.ko"};
constexpr DriverFiles kWindows{"\\LOADDRV.EXE", "\\system32\\drivers\\dlportio.sys"};

const DriverFiles& FilesBelow(const std::string& folder) {
    return folder.find('\\') == std::string::npos ? kLinux : kWindows;
}

}  // namespace

std::string LoaderPath(const std::string& programFolder) {
    return programFolder + std::string(FilesBelow(programFolder).loader);
}

std::string DriverPath(const std::string& systemFolder) {
    return systemFolder + std::string(FilesBelow(systemFolder).driver);
}

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
    const std::string loader = LoaderPath(programs_.ProgramFolder());
    if (!programs_.Exists(loader) || !programs_.Start(loader))
        user_.ShowBox(CannotStart(programs_, loader));
}

std::string DriverLoader::FindDriver() {
    const CommandScope scope(statusBar_);
    const std::string folder = mGlobal::GetWindowsFolder(platform_, user_);
    // A module that is part of the kernel itself has no file.
    const std::string module = programs_.KernelModulePath(kModule);
    return module.starts_with('/') ? module : DriverPath(folder);
}

}  // namespace tarnwell
