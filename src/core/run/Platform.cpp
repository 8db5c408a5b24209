#include "core/run/Platform.h"

#include <sys/utsname.h>

#include <algorithm>

namespace tarnwell {

namespace {

constexpr std::uint32_t kVersionRecordBytes = 148;
constexpr int kWindowsFolderId = 36;

constexpr Message kUnknownSystem{
    "Could not determine the Computer OS!\r\nThe program will now terminate.",
    "F A T A L   E R R O R", BoxStyle::Critical};
constexpr Message kUnknownFolder{
    "Could not determine the Windows Path!\r\nThe program will now terminate.",
    "F A T A L   E R R O R", BoxStyle::Critical};

}  // namespace

bool LinuxPlatform::GetVersionExA(OsVersionInfo& info) {
    info.platformId = 2;
    info.majorVersion = 5;
    return true;
}

int LinuxPlatform::SHGetFolderPathA(int /*folderId*/, PathBuffer& path) {
    utsname system{};
    if (uname(&system) != 0)
        return -1;
    const std::string folder = std::string("/lib/modules/") + system.release;
    if (folder.size() >= path.size())
        return -1;
    path.fill('\0');
    std::ranges::copy(folder, path.begin());
    return 0;
}

OSFamily mGlobal::GetOSFamily(Platform& platform, User& user) {
    OsVersionInfo info{kVersionRecordBytes, 0, 0};
    if (platform.GetVersionExA(info)) {
        if (info.platformId == 1)
            return OSFamily::Win9x;
        if (info.platformId == 2 && info.majorVersion == 4)
            return OSFamily::WinNT;
        if (info.platformId == 2 && info.majorVersion == 5)
            return OSFamily::Win2K;
    }
    EndProgram(user, kUnknownSystem);
}

std::string mGlobal::GetWindowsFolder(Platform& platform, User& user) {
    PathBuffer path{};
    if (platform.SHGetFolderPathA(kWindowsFolderId, path) != 0)
        EndProgram(user, kUnknownFolder);
    return {path.begin(), std::ranges::find(path, '\0')};
}

}  // namespace tarnwell
