#include "core/user/Message.h"

#include <algorithm>

namespace tarnwell {

namespace {

bool EndsSentence(std::string_view text) {
    return !text.empty() && std::string_view(".?!:;,").find(text.back()) != std::string_view::npos;
}

}  // namespace

std::string OneLine(const Box& box) {
    constexpr std::string_view kEmptyLine = "\r\n\r\n";
    std::string_view rest = std::string_view(box.text).substr(0, box.text.find(kEmptyLine));
    std::string text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(kLineBreak), rest.size());
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + kLineBreak.size(), rest.size()));
        // Within a box a line break ends a sentence where a line follows that is one of its own.
        if (!text.empty())
            text += line.ends_with('.') && !EndsSentence(text) ? ". " : " ";
        text += line;
    }
    return EndsSentence(text) ? text : text + ".";
}

}  // namespace tarnwell
