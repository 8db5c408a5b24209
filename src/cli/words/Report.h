// What a command found and did, as data; two writers tell it to a person or to a program.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "archive/ImageBackups.h"
#include "cli/words/Arguments.h"
#include "differences/Watch.h"
#include "i2c/Mismatch.h"
#include "sets/HistoryFile.h"
#include "sets/SetStore.h"

namespace tarnwell::cli {

/// How a command ended; its value is the exit status, except for Interrupted.
enum class Status : std::uint8_t {
    Done = 0,
    Different = 1,
    WrongUse = 2,
    Bus = 3,
    File = 4,
    Unverified = 5,  ///< written and read back completely, but different
    NotConfirmed = 6,
    Interrupted = 128,  ///< the signal's number is added
};

/// A byte of the device and what a command makes of it.
struct ByteChange {
    int address;
    std::uint8_t before;
    std::uint8_t after;
};

struct AddressedByte {
    int address;
    std::uint8_t value;
};

/// What mismatches are: bytes, and whether the values of settings are shown in their place.
enum class Told : std::uint8_t { Bytes, BytesAndValues, Values };

struct Report {
    std::string_view command;  ///< empty where none is known
    std::optional<TargetDevice> device;
    TargetDevice settingsOf = TargetDevice::Primary;  ///< whose bytes `data` and so on are
    std::optional<std::array<bool, 2>> devices;       ///< whether each answers
    std::string port;                                 ///< empty where none was opened
    bool simulated = false;
    Status status = Status::Done;
    int signal = 0;
    std::string crc;
    std::optional<int> bytes;
    std::vector<AddressedByte> data;
    std::vector<ByteChange> planned;  ///< of a dry run
    std::string doubts;               ///< what does not fit with it
    std::string file;                 ///< whose image or values it is about
    std::optional<int> written;
    std::vector<Mismatch> mismatches;
    Told mismatchesAre = Told::Bytes;
    NamedNumbers settings;
    const NameBook* names = nullptr;      ///< what its bytes are called
    std::vector<std::string> nameFaults;  ///< what is wrong in the files of names
    std::optional<NameList> held;         ///< the names that a file holds
    std::string backup;
    std::optional<std::vector<KeptImage>> backups;  ///< newest first
    std::string set;                                ///< whose record is kept
    std::string looksLike;                          ///< the set that was read instead, in words
    std::optional<SetList> sets;
    std::optional<std::vector<HistoryEvent>> events;  ///< newest first
    int skipped = 0;                                  ///< lines of the history that are no event
    std::vector<int> newer;                           ///< addresses that take-back left out
    std::vector<int> unknown;  ///< of bytes that it does not know the former value of
    std::string message;

    /// Ends the command; the message of an error says what failed and what to do.
    void End(Status how, std::string text) {
        status = how;
        message = std::move(text);
    }
    void Interrupt(int bySignal, const std::string& howFar);
    bool IsError() const { return status != Status::Done && status != Status::Different; }
    int ExitStatus() const { return static_cast<int>(status) + signal; }
};

/// "2026-11-24 19:52:30".
std::string KeptWhen(const KeptImage& backup);

/// One line for each byte, with its name where it has one; of a whole device only those that
/// change, behind a line that counts them. After `most` lines the rest is counted.
std::string ChangeLines(const std::vector<ByteChange>& changes, TargetDevice device,
                        std::size_t most, const NameBook& names);

/// The report for a person, without the message of an error.
std::string PlainText(const Report& report);

/// One JSON object, on one line.
std::string JsonText(const Report& report);

/// A line for a person about what a watch found: "2026-11-24 19:52:30  Address 2363 (CR02.480i): 7
/// becomes 9".
std::string PlainText(const WatchedChange& change);

/// The same as a JSON object on one line, and one with what else there is to say.
std::string JsonText(const WatchedChange& change);
std::string JsonText(const std::string& time, TargetDevice device, const std::string& message);

/// The value that a byte's mismatch is told of; null if it is the byte itself.
Named NamedIn(const Mismatch& mismatch, const Report& report);

/// The bits of its byte, or of its number of two bytes, that a value fills: "7-2".
std::string BitsOf(const NamedValue& named);

/// The page of a setting; empty for another value.
std::string_view PageOf(const NamedValue& named);

/// What a value does. A neighbour's description covers a setting without one.
std::string_view DescriptionOf(const NamedValue& named);

}  // namespace tarnwell::cli
