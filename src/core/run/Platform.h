// What the program asks of the system it runs on, and the two queries built on it.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/user/User.h"

namespace tarnwell {

/// The part of the system's version record that the program reads.
struct OsVersionInfo {
    std::uint32_t sizeInBytes;
    std::uint32_t majorVersion;
    std::uint32_t platformId;
};

using PathBuffer = std::array<char, 260>;

/// Names of the port driver's files as a system has them, with its separators.
struct DriverFiles {
    const char* loader;  ///< below the program's folder
    const char* driver;  ///< below the system folder
};

class Platform {
  public:
    virtual ~Platform() = default;

    /// Fills `info`; false if the system gives no version.
    virtual bool GetVersionExA(OsVersionInfo& info) = 0;

    /// Puts the path of the folder `folderId`, ended by NUL, into `path`; 0 on success.
    virtual int SHGetFolderPathA(int folderId, PathBuffer& path) = 0;

    /// Those of the systems whose calls the others are.
    virtual DriverFiles PortDriver() const {
        return {"\\LOADDRV.EXE", "\\system32\\drivers\\dlportio.sys"};
    }
};

/// Linux seen as a system that needs a kernel driver; its system folder is /lib/modules/RELEASE.
class LinuxPlatform final : public Platform {
  public:
    bool GetVersionExA(OsVersionInfo& info) override;
    int SHGetFolderPathA(int folderId, PathBuffer& path) override;
    DriverFiles PortDriver() const override {
        return {"/loaddrv", "/kernel/drivers/char/ppdev.ko"};
    }
};

enum class OSFamily : std::uint8_t { Win9x, WinNT, Win2K };

namespace mGlobal {

/// The system's family; an unknown one ends the program.
OSFamily GetOSFamily(Platform& platform, User& user);

/// The system folder, without a trailing separator; ends the program if there is none.
std::string GetWindowsFolder(Platform& platform, User& user);

}  // namespace mGlobal

}  // namespace tarnwell
