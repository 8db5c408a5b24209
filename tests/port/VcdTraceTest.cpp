// The VCD of the bus: beside the wire of the simulated television, and as sigrok decodes it.
#include "port/VcdTrace.h"

#include <cstdlib>
#include <sstream>

#include "core/Number.h"
#include "support/BusChanges.h"
#include "support/FullDisk.h"
#include "support/TemporaryFolder.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

class VcdTraceTest : public testing::Test {
  protected:
    VcdTraceTest() {
        television.Record();
        const BusClaim claim(i2c);
        i2c.ReleaseBus();
    }

    std::unique_ptr<VcdTrace> Make(const std::string& name = "bus.vcd") {
        auto made = VcdTrace::Create(folder.Path(name), television, television);
        return std::move(std::get<std::unique_ptr<VcdTrace>>(made));
    }

    Transfer Read(std::int16_t address, std::int16_t count) {
        const BusClaim claim(i2c);
        i2c.CheckBus(Quiet::Yes);
        return i2c.ReadBlock(address, count);
    }

    Transfer Write(std::int16_t address, std::uint8_t value) {
        const BusClaim claim(i2c);
        i2c.CheckBus(Quiet::Yes);
        const Transfer write = i2c.WriteByte(address, value);
        return write == Transfer::Done ? i2c.ReadBlock(address, 1) : write;
    }

    std::string Vcd() const { return folder.Read("bus.vcd"); }

    const TemporaryFolder folder;
    SimulatedTelevision television;
    std::unique_ptr<VcdTrace> trace = Make();
    QuietProgram quiet{television, television, QuietProgram::kNoFolder, *trace};
    mI2Ccode& i2c = quiet.program.i2c;
};

TEST_F(VcdTraceTest, HoldsTheChangesOnTheWire) {
    const auto expectTheWire = [&] {
        const Changes wire = OnWire(television.Samples());
        const Changes traced = InVcd(Vcd());
        ASSERT_EQ(traced.lines, "CD" + wire.lines);  // from unknown levels to idle lines
        const std::int64_t shift = wire.times[0] - traced.times[2];
        for (std::size_t index = 0; index < wire.times.size(); ++index)
            ASSERT_LE(std::abs(traced.times[index + 2] + shift - wire.times[index]), 200) << index;
    };
    ASSERT_EQ(Read(0, 300), Transfer::Done);
    expectTheWire();
    ASSERT_EQ(Write(0x1FFF, 0x5A), Transfer::Done);
    expectTheWire();
    television.Inject({.kind = FaultKind::DeviceSilent});
    ASSERT_EQ(Write(0, 1), Transfer::Aborted);
    expectTheWire();
    EXPECT_EQ(InVcd(Vcd()).times[0], 0);
}

/// Steps a microsecond apart: lines driven as in Changes, and digits for the levels that are seen,
/// SCL's in the tens. Then the changes, each with its microsecond.
TEST_F(VcdTraceTest, DecidesALevelThatOnlyTheWireKnows) {
    for (const auto& [steps, changes] : {
             std::pair{"C D d c D C c", "C0 D1 d2 c3 D4 C5 c6 "},
             {"C d c D C 11", "C0 d1 c2 D3 C4 "},
             {"C d c D C 10 c", "C0 d1 c2 C4 c6 D6 "},
             {"C d c D C 10 c C 11", "C0 d1 c2 C4 c6 D6 C7 "},
             {"C d c D C 10 c C d", "C0 d1 c2 C4 c6 D6 C7 d8 "},
             {"11 d c D C 11 c C 10", "D0 C0 d1 c2 D3 C4 c6 d6 C7 "},
             {"C d c C 00 c C 10", "C0 d1 c2 C3 c4 C6 "},
             {"C d D 10 11", "C0 d1 D4 "},
             {"C D 10", "C0 d1 "},
             {"C D 11 00", "C0 D1 c3 d3 "},
         }) {
        const auto own = Make("own.vcd");
        const auto level = [](bool high) { return high ? Level::High : Level::Low; };
        std::istringstream words(steps);
        for (std::string step; words >> step;) {
            if (step.size() == 2)
                own->Sensed(level(step[0] == '1'), level(step[1] == '1'));
            else
                own->Driven(std::toupper(step[0]) == 'C' ? BusLine::Scl : BusLine::Sda,
                            level(std::isupper(step[0]) != 0));
            television.WaitUntil(television.Now() + std::chrono::microseconds(1));
        }
        own->Released();
        const Changes traced = InVcd(folder.Read("own.vcd"));
        std::string text;
        for (std::size_t index = 0; index < traced.times.size(); ++index)
            text += traced.lines[index] + std::to_string(traced.times[index] / 1000) + " ";
        EXPECT_EQ(text, changes) << steps;
    }
}

TEST_F(VcdTraceTest, TakesLevelsAsThePinOptionsSay) {
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
    EXPECT_EQ(InVcd(Vcd()).lines, "CD" + OnWire(television.Samples()).lines);
    EXPECT_GT(television.Samples().size(), 20U);
}

TEST_F(VcdTraceTest, IsNoTraceOfAPortThatFails) {
    television.Inject({.kind = FaultKind::PortFails, .begins = {WireEvent::Clock, 20}});
    ASSERT_EQ(Read(0, 300), Transfer::Aborted);
    // The edge that came with the failure is not known to have reached the wire.
    EXPECT_EQ(InVcd(Vcd()).lines + "C", "CD" + OnWire(television.Samples()).lines);
}

TEST_F(VcdTraceTest, EndsWithOneLineWhereTheDiskIsFull) {
    std::optional<FullDisk> full(10'000);
    testing::internal::CaptureStderr();
    const Transfer first = Read(0, 300);
    const Transfer second = Read(0, 300);
    const std::string told = testing::internal::GetCapturedStderr();
    full.reset();
    EXPECT_EQ(first, Transfer::Done);
    EXPECT_EQ(second, Transfer::Done);
    EXPECT_EQ(told,
              "tarnwell: " + folder.Path("bus.vcd") + ": File too large; the trace ends here.\n");
}

TEST_F(VcdTraceTest, ReplacesOnlyWhatIsEmptyOrAVcd) {
    const std::pair<const char*, bool> rows[] = {
        {"", true},
        {"S0", false},
        {"$date\n", false},
        {"$timescale 1 ns $end $var wire 1 ! A $end $enddefinitions $end", true},
        {"#!/bin/sh\n# $timescale $var $enddefinitions", false}};
    for (const auto& [content, replaced] : rows) {
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
    std::string expected = "S A0 + P S A0 + 12 + 34 + Sr A1 + ";
    for (std::size_t address = 0x1234; address < 0x1234 + 100; ++address)
        expected += "<" +
                    HexText(television.Memory(Chip::Primary)[address] =
                                static_cast<std::uint8_t>(37 * address),
                            2) +
                    " + ";
    television.SetWriteCycle(std::chrono::microseconds(300));
    ASSERT_EQ(Read(0x1234, 100), Transfer::Done);
    ASSERT_EQ(Write(0x1FFF, 0x5A), Transfer::Done);
    expected +=
        "P S A0 + P S A0 + 1F + FF + 5A + P S A0 - Sr A0 - Sr A0 - Sr A0 + Sr A0 + 1F + FF + Sr A1 "
        "+ <5A + P ";
    const std::string command = "sigrok-cli -I vcd -i " + folder.Path("bus.vcd") +
                                " -P i2c:scl=SCL:sda=SDA:address_format=unshifted -A i2c | "
                                "sed -n 's/^i2c-1: //; s/Start repeat/Sr/p; s/^Start/S/p; "
                                "s/Stop/P/p; s/NACK/-/p; s/ACK/+/p; s/Data read: /</p; "
                                "s/.* \\(..\\)$/\\1/p' | tr '\\n' ' ' >" +
                                folder.Path("decoded");
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(folder.Read("decoded"), expected);
}

}  // namespace
}  // namespace tarnwell
