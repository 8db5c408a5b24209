#include "cli/tools/LineUser.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "cli/tools/Interruption.h"

namespace tarnwell::cli {

namespace {

bool EndsSentence(std::string_view text) {
    return !text.empty() && std::string_view(".?!:;,").find(text.back()) != std::string_view::npos;
}

/// One line of standard input in lower case; empty at its end.
std::string AnswerFromTerminal() {
    std::string answer;
    for (char letter = 0; letter != '\n';) {
        if (ReadStandardInput({&letter, 1}) != 1)
            return {};
        answer += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    }
    return answer;
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

Answer LineUser::ShowBox(const Box& box) {
    lastLine_ = OneLine(box);
    switch (box.style) {
        case BoxStyle::Critical:
        case BoxStyle::Exclamation:
        case BoxStyle::Information:
            return Answer::Ok;
        case BoxStyle::OkCancelExclamation:
            return Answer::Cancel;
        case BoxStyle::YesNoQuestion:
        case BoxStyle::YesNoExclamation:
            break;
    }
    return onQuestion && onQuestion(box) ? Answer::Yes : Answer::No;
}

Answer LineUser::AskTrust(const Box& box) {
    lastLine_ = OneLine(box);
    return onTrust && onTrust(box) ? Answer::Yes : Answer::No;
}

bool HasTerminal() {
    return isatty(STDIN_FILENO) != 0;
}

bool AgreesOnTerminal(const std::string& question) {
    std::fputs((question + " [y/N] ").c_str(), stderr);
    const std::string answer = AnswerFromTerminal();
    if (answer.empty())
        std::fputs("\n", stderr);
    return answer == "y\n" || answer == "yes\n";
}

}  // namespace tarnwell::cli
