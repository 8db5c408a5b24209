// Looking for bytes in the grid.
#pragma once

#include "editor/ByteTexts.h"
#include "editor/EditorPage.h"

namespace tarnwell {

enum class FindKind : std::uint8_t {
    Bytes,
    Text,
    Name,  ///< bytes with a name that holds the text
};
enum class FindDirection : std::uint8_t { Next, Previous };

class Find final : private Command {
  public:
    Find(const CommandContext& context, DataGrid& grid, EditorPage& editorPage);

    /// Sets what is looked for from now on; false if `text` is not of the kind.
    bool LookFor(std::string_view text, FindKind kind);

    /// What is told of a text that is not of the kind.
    std::string NothingToFindText(FindKind kind) const;

    bool KnowsWhat() const { return !pattern_.empty() || !name_.empty(); }

    /// Goes to the match next to the current cell, from the grid's end on at its other end, and
    /// says which of all it is.
    void Go(FindDirection direction);

  private:
    std::vector<int> Matches() const;

    DataGrid& grid_;
    EditorPage& editorPage_;
    BytePattern pattern_;  ///< empty where a name is looked for
    std::string name_;
};

}  // namespace tarnwell
