// The command "Write Differences to EEP", and others that write in its way.
#pragma once

#include <functional>

#include "archive/ImageArchive.h"
#include "differences/PageWriter.h"
#include "image/DeviceReader.h"
#include "names/NameBook.h"

namespace tarnwell {

class WriteDifferencesCommand final : private Command {
  public:
    WriteDifferencesCommand(const CommandContext& context, DeviceReader& reader,
                            ImageArchive& images, const NameBook& book, const MemoryBuffer& buffer);

    /// Brings the target device to the memory buffer, after a question that names what changes.
    /// Marks, pending writes and the state's flags stay as they are.
    void WriteDifferencesToEep();

    /// Loads a kept image, with the questions of a load, and brings the target device to it. The
    /// buffer holds it then, whatever becomes of the write.
    void Restore(const KeptImage& kept);

    /// What the target device is to hold, by what it is read to hold.
    using WantedOf = std::function<MemoryBuffer(const MemoryBuffer& present)>;

    /// Brings the target device to a few bytes of another image, after the question of a write.
    /// `held` becomes what the device was read to hold last, once it was read: nothing where a
    /// write was cut short and it could not be read then.
    void WriteSome(const WantedOf& wantedOf, std::optional<MemoryBuffer>& held);

    /// The same with what bytes held before earlier writes.
    void TakeBack(const WantedOf& wantedOf);

    /// The same with what the whole device held at an earlier time.
    void GoBack(const MemoryBuffer& image);

  private:
    /// What differs from one command to the next.
    struct Manner {
        WriteKind kind;
        std::array<std::string_view, 2> question;  ///< before and behind the number of bytes
        Message nothingDiffers;
        Others others;
    };
    static const Manner kWrite;
    static const Manner kRestore;
    static const Manner kWriteSome;
    static const Manner kTakeBack;
    static const Manner kGoBack;

    void WriteBuffer(const Manner& manner);
    void Write(const Manner& manner, const WantedOf& wantedOf, std::optional<MemoryBuffer>& held);
    bool Differs(const MemoryBuffer& present, const MemoryBuffer& wanted, const Manner& manner);
    bool MayWrite(const MemoryBuffer& present, const MemoryBuffer& wanted, const Manner& manner);
    void WriteAndTell(PageWriter& writer, const MemoryBuffer& present, const MemoryBuffer& wanted,
                      Others others);
    void TellAborted(const PageWriter& writer, Others others);
    void TellLeft(const PageWriter& writer);

    DeviceReader& reader_;
    ImageArchive& images_;
    const NameBook& book_;
    const MemoryBuffer& buffer_;
};

}  // namespace tarnwell
