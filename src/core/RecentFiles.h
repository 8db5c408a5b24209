// The files of one kind that were used last.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {

class RecentFiles {
  public:
    static constexpr std::size_t kMost = 8;

    /// `text` as Text() gives it, however much it holds.
    static RecentFiles FromText(std::string_view text) {
        RecentFiles files;
        while (!text.empty() && files.paths_.size() < kMost) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            if (end > 0)
                files.paths_.emplace_back(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return files;
    }

    /// The paths, a line each.
    std::string Text() const {
        std::string text;
        for (const std::string& path : paths_)
            text.append(text.empty() ? "" : "\n").append(path);
        return text;
    }

    /// Full paths, the one used last first.
    const std::vector<std::string>& Paths() const { return paths_; }

    /// A copy: using a file changes the list.
    std::string At(int row) const { return paths_[static_cast<std::size_t>(row)]; }

    /// The list has no room for a path with a line break.
    void Use(const std::string& path) {
        if (path.find('\n') != std::string::npos)
            return;
        Forget(path);
        paths_.insert(paths_.begin(), path);
        paths_.resize(std::min(paths_.size(), kMost));
    }

    void Forget(const std::string& path) { std::erase(paths_, path); }

  private:
    std::vector<std::string> paths_;
};

}  // namespace tarnwell
