// The target device as the commands use it: every step tells its failure to the report.
#pragma once

#include <chrono>

#include "archive/ImageBackups.h"
#include "cli/tools/LineUser.h"
#include "cli/tools/ProgressBar.h"
#include "cli/tools/SystemCalendar.h"
#include "cli/words/Report.h"
#include "differences/PageWriter.h"
#include "program/NoWindow.h"

namespace tarnwell::cli {

/// The port that whoever joins the command line with it hands over.
struct JoinedPort {
    Wire wire;
    bool isSimulated;
    std::optional<ChosenBus> bus = std::nullopt;  ///< of the command line
};

/// When the image that a write replaces is kept.
enum class Backup : std::uint8_t { Always, UnlessKept };

/// A step that returns false has ended the command.
class Device {
  public:
    Device(const Arguments& arguments, const JoinedPort& port, mRegistry& options, Report& report);

    /// Claims the port, waiting as long as --wait says for another program that has it.
    void Claim();

    /// The same, and checks the bus.
    [[nodiscard]] bool Open();

    /// Lets time pass, which a signal ends.
    void Wait(std::chrono::milliseconds time) const;

    /// Ends the command since the device is not to be used.
    void EndDeclined();

    /// As often as --passes says. What is doubtful is used only if --force or the user says so.
    [[nodiscard]] bool ReadImage(MemoryBuffer& image);
    [[nodiscard]] bool ReadBytes(ByteRange range, std::vector<AddressedByte>& bytes);

    /// Reads a byte of which some bits are to be kept.
    [[nodiscard]] bool ReadAgreed(int address, std::uint8_t& byte);

    /// Reads what is to be written over a second time, which puts `present` right.
    [[nodiscard]] bool ReadAgain(MemoryBuffer& present, const MemoryBuffer& wanted);

    /// Makes sure of the whole image that was read, which will be kept.
    [[nodiscard]] bool MakeSure();

    /// What does not fit, of which Fits would ask; empty where all does.
    std::string Doubts(WriteKind kind, const MemoryBuffer& wanted);

    /// Whether what is to be written, which makes the device hold `wanted`, fits the device and the
    /// settings; what does not is written only if --force or the user says so.
    [[nodiscard]] bool Fits(WriteKind kind, const MemoryBuffer& wanted);

    /// Keeps the image that was read as a backup.
    [[nodiscard]] bool KeepBackup(Backup backup, const MemoryBuffer& present);

    /// Gives the port back: what follows is no work on the device.
    void GiveBack() { claim_.reset(); }

    /// A whole image where it is all of the device's bytes.
    [[nodiscard]] bool Write(const ByteValues& values);

    /// Writes only what differs, and lists what then still does, which ends the command.
    [[nodiscard]] bool WriteDifferences(const MemoryBuffer& present, const MemoryBuffer& wanted,
                                        Others others);

    /// Reads back what was written and lists what differs, which ends the command.
    [[nodiscard]] bool ReadBack(const ByteValues& values, const Box& notVerified);

    /// Tells the record what was written; false if that failed now.
    [[nodiscard]] bool EndWrite();

    /// A signal ended the command: frees the bus, gives the port back and tells how far it came.
    void EndInterrupted();

    Program& TheProgram() { return program_; }
    FollowedBus& TheBus() { return bus_; }
    const std::string& LastLine() const { return user_.LastLine(); }

  private:
    /// Counts what was read, however it ends.
    [[nodiscard]] bool Read(ByteRange range);

    void TellLikeness();
    bool WriteAll(const ByteValues& values);
    bool UsesDoubtful(const Box& question);

    /// Whether a device that may be the wrong one is to be used.
    bool IsTrusted(const Box& box) const;

    bool IsAgreed(SecondReading reading);

    /// Always false.
    bool EndAborted();
    bool TellAborted(const std::string& howFar);
    std::string HowFar() const;

    const Arguments& arguments_;
    Report& report_;
    const StopRequest& stop_;
    LineUser user_;
    ProgressBar screen_;
    NoWindow window_;
    LinuxPlatform platform_;
    SystemCalendar calendar_;
    Program program_;
    FollowedBus& bus_;
    std::optional<BusClaim> claim_;
};

}  // namespace tarnwell::cli
