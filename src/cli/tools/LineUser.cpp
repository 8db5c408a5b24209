#include "cli/tools/LineUser.h"

#include <unistd.h>

#include <cctype>
#include <cstdio>

#include "cli/tools/Interruption.h"

namespace tarnwell::cli {

namespace {

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
