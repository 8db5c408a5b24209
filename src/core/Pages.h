// The six pages of the main window.
#pragma once

#include <array>
#include <string_view>

#include "core/HelpTopics.h"
#include "core/ProgramState.h"

namespace tarnwell {

struct PageInfo {
    Page page;
    std::string_view caption;
    std::string_view status;  ///< posted when the page is entered
    Topic topic;
};

inline constexpr std::array kPages{
    PageInfo{Page::Chroma, "Chroma", "Chroma Settings", Topic::Chroma},
    PageInfo{Page::Edges, "Edges", "Edge Enhancement Settings", Topic::Edges},
    PageInfo{Page::Global, "Global", "Global Settings", Topic::Global},
    PageInfo{Page::Iris, "Iris", "Iris Settings", Topic::Iris},
    PageInfo{Page::Picture, "Picture", "Picture Settings", Topic::Picture},
    PageInfo{Page::Editor, "Editor", "EEProm Data Editor", Topic::DataEditor},
};

/// The editor page's caption while the grid holds edits that the buffer does not.
inline constexpr std::string_view kChangedEditorCaption = "Editor !";

constexpr const PageInfo& Info(Page page) {
    return kPages[static_cast<std::size_t>(page)];
}

consteval bool PagesAreInOrder() {
    for (std::size_t index = 0; index < kPages.size(); ++index) {
        if (static_cast<std::size_t>(kPages[index].page) != index)
            return false;
    }
    return true;
}
static_assert(PagesAreInOrder());

}  // namespace tarnwell
