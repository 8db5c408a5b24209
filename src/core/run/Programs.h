// Starting other programs, without waiting for them.
#pragma once

#include <functional>
#include <string>

namespace tarnwell {

class Programs {
  public:
    virtual ~Programs() = default;

    /// The folder that holds this program, without a trailing separator.
    virtual std::string ProgramFolder() const = 0;

    virtual bool Exists(const std::string& path) const = 0;

    /// Opens a file in the desktop's viewer for it; calls `failed`, at once or later, if that
    /// could not be started.
    virtual void OpenInViewer(const std::string& path, std::function<void()> failed) = 0;

    /// Starts a program; false if it could not be started.
    [[nodiscard]] virtual bool Start(const std::string& path) = 0;

    /// Moves a file or folder to the desktop's trash; false if that failed.
    [[nodiscard]] virtual bool MoveToTrash(const std::string& path) = 0;

    /// The full path of a kernel module's file of the running kernel, or empty.
    virtual std::string KernelModulePath(const std::string& module) const = 0;
};

}  // namespace tarnwell
