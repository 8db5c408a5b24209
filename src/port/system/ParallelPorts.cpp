// The parallel ports that the program knows and those that the kernel lists.
#include "port/system/ParallelPorts.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace tarnwell {

namespace fs = std::filesystem;

namespace {

bool IsParportName(const std::string& name) {
    constexpr std::string_view kPrefix = "parport";
    return name.starts_with(kPrefix) && name.size() > kPrefix.size() &&
           std::all_of(name.begin() + kPrefix.size(), name.end(),
                       [](char c) { return c >= '0' && c <= '9'; });
}

/// Calls `visit` for each entry until it returns true; tells whether it did.
template <typename Visit>
bool AnyEntry(const fs::path& folder, Visit visit) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (visit(entry->path()))
            return true;
    }
    return false;
}

bool HasOpen(const fs::path& process, const std::string& path) {
    return AnyEntry(process / "fd", [&](const fs::path& descriptor) {
        std::error_code error;
        return fs::read_symlink(descriptor, error) == path;
    });
}

/// " (NAME, process N)", or nothing where this account may not see it.
std::string Holder(const std::string& procFolder, const std::string& path) {
    std::string holder;
    AnyEntry(procFolder, [&](const fs::path& process) {
        const std::string id = process.filename();
        if (id.find_first_not_of("0123456789") != std::string::npos ||
            id == std::to_string(getpid()) || !HasOpen(process, path))
            return false;
        std::string name;
        std::getline(std::ifstream(process / "comm"), name);
        holder = " (" + name + ", process " + id + ")";
        return true;
    });
    return holder;
}

/// The driver of the kernel that has the port; empty for none, or for a program's.
std::string ActiveDriver(const std::string& procFolder, const std::string& path) {
    const std::string port = fs::path(path).filename();
    std::string name;
    std::ifstream(procFolder + "/sys/dev/parport/" + port + "/devices/active") >> name;
    return name == "none" || name.starts_with("ppdev") ? "" : name;
}

std::string PortName(std::uint16_t baseAddress) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "%Xh", static_cast<unsigned>(baseAddress));
    const auto* const place = std::ranges::find(kPortChoices, baseAddress, &PortChoice::address);
    if (place == kPortChoices.end())
        return hex;
    return "LPT" + std::to_string(place - kPortChoices.begin() + 1) + " (" + hex + ")";
}

}  // namespace

bool AnyParport(const std::string& procFolder) {
    return AnyEntry(procFolder + "/sys/dev/parport",
                    [](const fs::path& port) { return IsParportName(port.filename()); });
}

std::optional<std::string> FindParport(const std::string& procFolder, std::uint16_t baseAddress) {
    std::optional<std::string> found;
    AnyEntry(procFolder + "/sys/dev/parport", [&](const fs::path& port) {
        unsigned base = 0;
        if (IsParportName(port.filename()) && std::ifstream(port / "base-addr") >> base &&
            base == baseAddress)
            found = port.filename();
        return found.has_value();
    });
    return found;
}

bool IoPortsListParport(const std::string& procFolder, std::uint16_t baseAddress) {
    std::ifstream file(procFolder + "/ioports");
    for (std::string line; std::getline(file, line);) {
        unsigned first = 0;
        unsigned last = 0;
        if (line.find(": parport") != std::string::npos &&
            std::sscanf(line.c_str(), " %x-%x", &first, &last) == 2 && first <= baseAddress &&
            last > baseAddress)
            return true;
    }
    return false;
}

std::string NoPortLine(std::uint16_t baseAddress) {
    return "There is no parallel port at " + PortName(baseAddress) +
           ". Plug it in or choose another port in the menu Options, Parallel Port.";
}

std::string NoPortAtAllLine() {
    return "The kernel lists no parallel port. Plug one in, or load the driver with "
           "\"sudo modprobe parport_pc\" or with the menu Options, DLPortIO Service.";
}

std::string ErrorLine(const std::string& path, int error, const std::string& advice) {
    const char* const text = strerrordesc_np(error);
    return path + ": " + (text ? text : "Error " + std::to_string(error)) + ". " + advice;
}

std::string InUseLine(const std::string& what, const std::string& procFolder,
                      const std::string& path) {
    const std::string holder = Holder(procFolder, path);
    const std::string driver = holder.empty() ? ActiveDriver(procFolder, path) : "";
    if (!driver.empty())
        return what + " is in use by the kernel's driver " + driver +
               ". Take it away with \"sudo modprobe -r " + driver + "\" and try again.";
    return what + " is in use by another program" + holder + ". Close it and try again.";
}

}  // namespace tarnwell
