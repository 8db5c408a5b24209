// The VCD of the bus: beside the wire of the simulated television, and as sigrok decodes it.
#include "port/VcdTrace.h"

#include <cstdlib>
#include <sstream>

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

/// Changes in turn: 'C' and 'c' are SCL's rise and fall, 'D' and 'd' those of SDA.
struct Changes {
    std::string lines;
    std::vector<std::int64_t> times;  ///< in ns

    void Add(bool scl, bool high, std::int64_t time) {
        const char line = scl ? 'C' : 'D';
        lines += static_cast<char>(high ? line : line + 'a' - 'A');
        times.push_back(time);
    }
};

/// Those of a dump whose times rise.
Changes InVcd(const std::string& vcd) {
    Changes changes;
    std::istringstream body(vcd.substr(vcd.rfind("$end") + 4));
    std::int64_t tick = -1;
    for (std::string word; body >> word;) {
        if (word[0] != '#') {
            changes.Add(word[1] == '!', word[0] == '1', tick * 100);
            continue;
        }
        EXPECT_LT(tick, std::stoll(word.substr(1)));
        tick = std::stoll(word.substr(1));
    }
    return changes;
}

/// Those that the simulated television saw.
Changes OnWire(const std::vector<WireSample>& samples) {
    Changes changes;
    for (const WireSample& sample : samples) {
        const bool scl = sample.cause == WireSample::Cause::Scl;
        if (sample.cause != WireSample::Cause::Sensed)
            changes.Add(scl, scl ? sample.scl : sample.sda, sample.time.count());
    }
    return changes;
}

class VcdTraceTest : public testing::Test {
  protected:
    VcdTraceTest() {
        television.Record();
        const BusClaim claim(i2c);
        i2c.ReleaseBus();
    }

    std::unique_ptr<VcdTrace> Make() {
        auto made = VcdTrace::Create(folder.Path("bus.vcd"), television, television);
        return std::move(std::get<std::unique_ptr<VcdTrace>>(made));
    }
    Transfer Read(std::int16_t address, std::int16_t count) {
        const BusClaim claim(i2c);
        i2c.CheckBus(Quiet::Yes);
        return i2c.ReadBlock(address, count);
    }
    Transfer Write() {
        const BusClaim claim(i2c);
        i2c.CheckBus(Quiet::Yes);
        const Transfer write = i2c.WriteByte(0x1FFF, 0x5A);
        return write == Transfer::Done ? i2c.ReadBlock(0x1FFF, 1) : write;
    }
    Changes Traced() const { return InVcd(folder.Read("bus.vcd")); }
    /// From unknown levels to idle lines, then what the television saw.
    std::string Lines() const { return "CD" + OnWire(television.Samples()).lines; }

    const TemporaryFolder folder;
    SimulatedTelevision television{{.writeCycle = std::chrono::microseconds(300)}};
    std::unique_ptr<VcdTrace> trace = Make();
    QuietProgram quiet{television, television, QuietProgram::kNoFolder, *trace};
    mI2Ccode& i2c = quiet.program.i2c;
};

TEST_F(VcdTraceTest, HoldsTheChangesOnTheWire) {
    for (const Transfer outcome : {Transfer::Done, Transfer::Aborted}) {
        EXPECT_EQ(Read(0, 300), outcome);
        EXPECT_EQ(Write(), outcome);
        const Changes wire = OnWire(television.Samples());
        const Changes traced = Traced();
        ASSERT_EQ(traced.lines, Lines());
        EXPECT_EQ(traced.times[0], 0);
        const std::int64_t shift = wire.times[0] - traced.times[2];
        for (std::size_t index = 0; index < wire.times.size(); ++index)
            ASSERT_LE(std::abs(traced.times[index + 2] + shift - wire.times[index]), 200) << index;
        television.Inject({.kind = FaultKind::DeviceSilent});
    }
}

/// Steps a microsecond apart: lines driven as in Changes, and digits for the levels that are seen,
/// SCL's in the tens. Behind "=" the changes, each with its microsecond.
constexpr const char* kUndecided =
    "C D d c D C c=C0 D1 d2 c3 D4 C5 c6 ;C d c D C 11=C0 d1 c2 D3 C4 ;C D 11 00=C0 D1 c3 d3 ;"
    "C d c D C 10 c=C0 d1 c2 C4 c6 D6 ;C d c D C 10 c C 11=C0 d1 c2 C4 c6 D6 C7 ;C D 10=C0 d1 ;"
    "C d c D C 10 c C d=C0 d1 c2 C4 c6 D6 C7 d8 ;C d c C 00 c C 10=C0 d1 c2 C3 c4 C6 ;"
    "11 d c D C 11 c C 10=D0 C0 d1 c2 D3 C4 c6 d6 C7 ;C d D 10 11=C0 d1 D4 ;";

TEST_F(VcdTraceTest, DecidesALevelThatOnlyTheWireKnows) {
    std::istringstream rows(kUndecided);
    for (std::string steps, changes; std::getline(rows, steps, '=');) {
        std::getline(rows, changes, ';');
        trace = Make();
        std::istringstream words(steps);
        for (std::string step; words >> step;) {
            const auto level = [&](bool high) { return high ? Level::High : Level::Low; };
            if (step.size() == 2)
                trace->Sensed(level(step[0] == '1'), level(step[1] == '1'));
            else
                trace->Driven(std::toupper(step[0]) == 'C' ? BusLine::Scl : BusLine::Sda,
                              level(std::isupper(step[0]) != 0));
            television.WaitUntil(television.Now() + std::chrono::microseconds(1));
        }
        trace->Released();
        const Changes traced = Traced();
        std::string text;
        for (std::size_t index = 0; index < traced.times.size(); ++index)
            text += traced.lines[index] + std::to_string(traced.times[index] / 1000) + " ";
        EXPECT_EQ(text, changes) << steps;
    }
}

TEST_F(VcdTraceTest, TakesLevelsAsThePinOptionsSayAndNoneOfAPortThatFails) {
    television.Inject({.kind = FaultKind::InputsInverted});
    quiet.program.state.pinOptions = "11012111";
    i2c.ApplyPortOptions();
    {
        const BusClaim claim(i2c);
        i2c.SendStart();
        i2c.SendByte(0xA0);
        i2c.ReadAck();
        i2c.SendStop();
    }
    EXPECT_EQ(Traced().lines, Lines());
    television.ClearFaults();
    television.Inject({.kind = FaultKind::PortFails, .begins = {WireEvent::Clock, 20}});
    quiet.program.state.pinOptions = kDefaultPinOptions;
    i2c.ApplyPortOptions();
    ASSERT_EQ(Read(0, 300), Transfer::Aborted);
    // The edge that came with the failure is not known to have reached the wire.
    EXPECT_EQ(Traced().lines + "C", Lines());
    EXPECT_GT(television.Samples().size(), 80U);
}

TEST_F(VcdTraceTest, EndsWithOneLineWhereTheDiskIsFull) {
    std::optional<FullDisk> full(10'000);
    testing::internal::CaptureStderr();
    for (int read = 0; read < 2; ++read)
        EXPECT_EQ(Read(0, 300), Transfer::Done);
    const std::string told = testing::internal::GetCapturedStderr();
    full.reset();
    EXPECT_EQ(told,
              "tarnwell: " + folder.Path("bus.vcd") + ": File too large; the trace ends here.\n");
}

TEST_F(VcdTraceTest, ReplacesOnlyWhatIsEmptyOrAVcd) {
    for (const auto& [content, replaced] :
         {std::pair("", true),
          {"S0", false},
          {"$date\n", false},
          {"$timescale 1 ns $end $var wire 1 ! A $end $enddefinitions $end", true},
          {"#!/bin/sh\n# $timescale $var $enddefinitions", false}}) {
        folder.Write("other", content);
        auto made = VcdTrace::Create(folder.Path("other"), television, television);
        EXPECT_EQ(made.index() == 0, replaced) << content;
        made = "";
        EXPECT_EQ(folder.Read("other").starts_with("$date 20"), replaced) << content;
        EXPECT_EQ(folder.Read("other") == content, !replaced) << content;
    }
    for (const char* name : {"", "missing/file"})
        EXPECT_EQ(VcdTrace::Create(folder.Path(name), television, television).index(), 1U) << name;
}

TEST_F(VcdTraceTest, IsDecodedBySigrok) {
    ASSERT_EQ(Read(0x1234, 100), Transfer::Done);
    ASSERT_EQ(Write(), Transfer::Done);
    const std::string command = "sigrok-cli -I vcd -i " + folder.Path("bus.vcd") +
                                " -P i2c:scl=SCL:sda=SDA:address_format=unshifted -A i2c | "
                                "sed -n 's/.*: \\(..\\)$/\\1/p' | tr -d '\\n' >" +
                                folder.Path("decoded");
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::string bytes = ToText(television.Events());
    std::erase_if(bytes, [](char letter) { return std::isxdigit(letter) == 0; });
    EXPECT_EQ(folder.Read("decoded"), bytes);
}

}  // namespace
}  // namespace tarnwell
