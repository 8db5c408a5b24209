#include "cli/CommandLine.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "cli/commands/Commands.h"
#include "cli/tools/Interruption.h"
#include "cli/tools/Output.h"
#include "cli/tools/Records.h"
#include "core/options/Options.h"
#include "core/options/OptionsFile.h"

namespace tarnwell::cli {

namespace {

constexpr std::string_view kHint = " Try 'tarnwell-cli --help'.";

/// A file that is opened later must not become standard output.
void OpenStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0)
            static_cast<void>(open("/dev/null", O_RDONLY | O_CLOEXEC));
    }
}

void RunOnDevice(const Arguments& arguments, PortSource& ports, Report& report) {
    OptionsFile options(OptionsPath(), OptionsFile::Access::Read);
    PortRequest request = arguments.port;
    request.chosen = BusOfOptions(options);
    const auto opened = ports.Open(request, ProcessStop());
    if (const auto* const refusal = std::get_if<PortRefusal>(&opened))
        return report.End(refusal->noSuchBus ? Status::Bus : Status::WrongUse,
                          refusal->reason + std::string(refusal->wrongArgument ? kHint : ""));
    Device device(arguments, std::get<JoinedPort>(opened), options, report);
    try {
        arguments.command->onDevice(arguments, device, report);
    } catch (const Interrupted&) {
        device.EndInterrupted();
    }
}

void RunOnFiles(const Arguments& arguments, Report& report) {
    try {
        arguments.command->onFiles(arguments, report);
    } catch (const Interrupted&) {
        report.Interrupt(ProcessStop().Signal(), "");
    }
}

/// Whether all that a report could say was said meanwhile.
bool IsTold(const Arguments& arguments) {
    return arguments.command != nullptr && arguments.command->Has(kStreams);
}

/// A report that is lost counts as a failed file unless the device itself has failed.
int Tell(const Report& report, const Arguments& arguments) {
    if (report.IsError())
        PrintError(report.message);
    bool told = true;
    if (arguments.json)
        told = Print(JsonText(report), stdout);
    else if (!arguments.quiet && !IsTold(arguments))
        told = Print(PlainText(report), WritesToStandardOutput(arguments) ? stderr : stdout);
    if (told || report.IsError())
        return report.ExitStatus();
    PrintError("The report could not be written.");
    return static_cast<int>(Status::File);
}

}  // namespace

int RunCommandLine(int argc, const char* const* argv, PortSource& ports) {
    OpenStandardStreams();
    ProcessStop();
    const auto read = ReadArguments({argv, static_cast<std::size_t>(argc)}, kCommands);
    if (const auto* const text = std::get_if<Text>(&read))
        return static_cast<int>(Print(text->text, stdout) ? Status::Done : Status::File);
    Report report;
    Arguments arguments;
    if (const auto* const wrong = std::get_if<WrongUse>(&read)) {
        arguments.command = wrong->command;
        arguments.json = wrong->json;
        report.End(wrong->isFile ? Status::File : Status::WrongUse,
                   wrong->reason + std::string(wrong->isFile ? "" : kHint));
    } else {
        arguments = std::get<Arguments>(read);
        report.settingsOf = arguments.device;
        report.names = &arguments.book;
        report.nameFaults = arguments.book.Faults();
        for (const std::string& fault : report.nameFaults)
            PrintError(fault);
        if (FindSet(arguments, report))
            WorksOnFiles(arguments) ? RunOnFiles(arguments, report)
                                    : RunOnDevice(arguments, ports, report);
    }
    if (arguments.command != nullptr)
        report.command = arguments.command->name;
    return Tell(report, arguments);
}

}  // namespace tarnwell::cli
