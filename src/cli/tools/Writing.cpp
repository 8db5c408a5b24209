#include "cli/tools/Writing.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "cli/tools/Interruption.h"
#include "image/WriteTexts.h"

namespace tarnwell::cli {

namespace {

/// More than all settings have; only an image has more.
constexpr std::size_t kMostLines = 100;

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

std::string QuestionText(const Arguments& arguments, const Writing& writing,
                         const std::vector<ByteChange>& changes) {
    std::string text;
    if (arguments.device == TargetDevice::Secondary)
        text = std::string(kWarnOfSecondary.text) + "\n";
    std::erase(text, '\r');
    text += "To be written to the ";
    text += arguments.device == TargetDevice::Primary ? "Primary" : "Secondary";
    text += " EEProm:\n" + ChangeLines(changes, kMostLines);
    return text + writing.question.text + " [y/N] ";
}

bool IsConfirmed(const Arguments& arguments, const Writing& writing,
                 const std::vector<ByteChange>& changes) {
    if (arguments.yes)
        return true;
    std::fputs(QuestionText(arguments, writing, changes).c_str(), stderr);
    const std::string answer = AnswerFromTerminal();
    if (answer.empty())
        std::fputs("\n", stderr);
    return answer == "y\n" || answer == "yes\n";
}

}  // namespace

bool CanBeConfirmed(const Arguments& arguments, Report& report) {
    if (arguments.yes || arguments.dryRun || isatty(STDIN_FILENO) != 0)
        return true;
    report.End(Status::NotConfirmed,
               "Nothing was written: nobody can be asked without a terminal. Say --yes to write "
               "without a question.");
    return false;
}

std::vector<ByteChange> ChangesOf(const ByteValues& values, const MemoryBuffer& image) {
    std::vector<ByteChange> changes;
    for (const auto& [address, value] : values)
        changes.push_back({address, image[static_cast<std::size_t>(address)], value});
    return changes;
}

void WriteConfirmed(const Arguments& arguments, Device& device, Report& report,
                    const Writing& writing, const MemoryBuffer& image) {
    const std::vector<ByteChange> changes = ChangesOf(writing.values, image);
    report.written = 0;
    if (arguments.dryRun) {
        report.planned = changes;
        return report.End(Status::Done, "Nothing was written. This would be:");
    }
    if (!IsConfirmed(arguments, writing, changes))
        return report.End(Status::NotConfirmed, std::string(kWriteCancelled) + ".");
    if (!device.KeepBackup() || !device.Write(writing.values) || !device.ReadBack(writing.values))
        return;
    if (report.mismatches.empty())
        report.End(Status::Done, std::string(writing.done));
    else
        report.End(Status::Unverified, OneLine(writing.notVerified));
}

}  // namespace tarnwell::cli
