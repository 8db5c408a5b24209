// Names of one's own: their rules, their files, which of several count, and how they are undone.
#include "sets/HistoryTexts.h"
#include "sets/Sheet.h"
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

Named Make(NamedValue named) {
    return std::make_shared<const NamedValue>(std::move(named));
}

std::string FileWith(const std::string& names) {
    return "{\n\"names\": [\n" + names + "\n],\n\"format\": 1, \"owner\": \"me\"}";
}

/// What stands in `values` of an entry is left to each row; the place of a fault is told with it.
TEST(NamesFile, TellsWhatIsWrongWithLineAndPlaceAndTakesTheRest) {
    const std::tuple<const char*, const char*> rows[] = {
        {R"("name": "x y", "address": 1)", "name: A name is made of letters"},
        {R"("name": ".x", "address": 1)", "name: A name begins with"},
        {R"("name": "", "address": 1)", "name: A name has 1 to 40"},
        {R"("name": 7, "address": 1)", "name: It has to be a text."},
        {R"("name": "tint", "address": 1)", "name: tint is a setting"},
        {R"("name": "R-YR", "address": 1)", "name: R-YR is a setting"},
        {R"("name": "r-yr.VGA", "address": 1)", "name: r-yr.VGA is a setting"},
        {R"("name": "FIRST", "address": 1)", "name: FIRST is already the name of another value"},
        {R"("name": "x")", "address: It has to be a number"},
        {R"("name": "x", "address": 8192)", "address: An address goes from 0 to 8191."},
        {R"("name": "x", "address": -1)", "address: It has to be a number"},
        {R"("name": "x", "address": 4100, "bits": [4, 5])", "address: A part of it is First"},
        {R"("name": "x", "address": 2085, "bits": [1, 2])", "address: A part of it is Global TINT"},
        {R"("name": "x", "address": 2401, "bits": [4, 7])", "address: A part of it is 480p R-YR"},
        {R"("name": "x", "address": 1, "low": 4100)", "address: A part of it is First"},
        {R"("name": "x", "address": 1, "low": 1)", "address: The high and the low byte are two."},
        {R"("name": "x", "address": 1, "low": 8192)", "address: An address goes"},
        {R"("name": "x", "address": 1, "low": 2, "bits": [0, 6])", "bits: Two bytes are one"},
        {R"("name": "x", "address": 1, "bits": [3, 2])", "bits: The bits of a byte go from 0"},
        {R"("name": "x", "address": 1, "bits": [7, 8])", "bits: The bits of a byte go from 0"},
        {R"("name": "x", "address": 1, "bits": 3)", "bits: It has to be two numbers"},
        {R"("name": "x", "address": 1, "bits": [2, 4], "range": [0, 8])", "range: The values of"},
        {R"("name": "x", "address": 1, "range": [3, 2])", "range: The values of these bits go"},
        {R"("name": "x", "address": 1, "text": "a\nb")", "text: A text is one line"},
        {R"("name": "x", "address": 1, "range": [0, 1], "values": {"2": "b"})", "values: The val"},
        {R"("name": "x", "address": 1, "values": {"a": "b"})", "values: \"a\" is no value."},
        {R"("name": "x", "address": 1, "values": {"1": ""})", "values: The text of the value 1"},
        {R"("name": "x", "address": 1, "values": [])", "values: It has to be an object"}};
    const std::string first = R"({"name": "First", "device": "primary", "address": 4100})";
    for (const auto& [entry, fault] : rows) {
        const std::string wrong = std::string("{\"device\": \"primary\", ") + entry + "}";
        const NamesFile file = NamesIn(FileWith(first + ",\n3,\n" + wrong), "n");
        EXPECT_THAT(file.faults, ElementsAre("names[1]: It is no name.",
                                             StartsWith("line 5, names[2]." + std::string(fault))))
            << entry;
        EXPECT_THAT(file.names, SizeIs(1)) << entry;
        EXPECT_THAT(file.kept, ElementsAre("3", StartsWith("{\"device\"")));
    }
    const std::string far = R"({"name": "F", "device": "both", "address": 1})";
    EXPECT_THAT(NamesIn(FileWith(far), "").faults,
                ElementsAre(HasSubstr("line 3, names[0].device")));
    for (const char* refused : {"", "[]", "{}", R"({"format": 2, "names": []})",
                                R"({"format": 1, "names": {}})", "{\"format\": 1,\n \"names\": [}",
                                R"({"names": [], "x": [[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]]})"}) {
        NamesFile file = NamesIn(refused, TemporaryFolder().Path("f"));
        EXPECT_THAT(file.faults, SizeIs(1)) << refused;
        EXPECT_FALSE(WriteNames(file)) << refused << ": left as it is";
    }
    EXPECT_THAT(NamesIn(FileWith(far) + std::string("\0\"", 2), "").faults, SizeIs(1));
    EXPECT_THAT(NamesIn("{\n \"names\": x", "").faults.front(), StartsWith("line 2, column 11"));
}

TEST(NamesFile, IsWrittenInOneWayWithAllThatIsNotUnderstood) {
    const std::string text =
        "{\n  \"format\":1,\n  \"owner\":\"me\",\n  \"names\":[\n"
        R"(    {"name":"Low","device":"primary","address":4100,"bits":[0,1],"values":{"0":"off","2":"on"}},)"
        "\n"
        R"(    {"name":"High","device":"primary","address":4100,"bits":[4,4],"text":"a \"b\""},)"
        "\n"
        R"(    {"name":"Level","device":"secondary","address":17,"low":16,"range":[1,1000],"by":{"who":7}},)"
        "\n"
        R"(    {"name":"wrong"})"
        "\n  ]\n}\n";
    const NamesFile file = NamesIn(text, "n");
    EXPECT_EQ(TextOf(file), text);
    NamesFile reversed = file;
    std::ranges::reverse(reversed.names);
    EXPECT_EQ(TextOf(reversed), text);
    const NamedValue& level = *file.names[2];
    MemoryBuffer image{};
    image[16] = 0x34;
    image[17] = 0x12;
    EXPECT_EQ(ValueIn(image, level), 0x1234);
    PutValue(image, level, 0x5678);
    EXPECT_EQ(image[17] * 256 + image[16], 0x5678);
    EXPECT_EQ(LargestIn(level), 65535);
    image[4100] = 0xE6;
    PutValue(image, *file.names[1], 1);
    PutValue(image, *file.names[0], 1);
    EXPECT_EQ(image[4100], 0xF5);
    EXPECT_EQ(ValueIn(image, *file.names[1]) * 10 + ValueIn(image, *file.names[0]), 11);
    EXPECT_EQ(ValueText(*file.names[0], 2, NumberMode::Hex), "2 (on)");
    EXPECT_EQ(PlaceText(level, NumberMode::Hex),
              "Secondary EEProm, address 11, high byte, low byte at 10");
}

TEST(NameBook, SetBeforeOpenedBeforeUserAndBuiltInBeforeAll) {
    TestProgram bench;
    NameBook& names = bench.program.names;
    const auto file = [&](const char* path, const std::string& name, int address) {
        bench.folder.Write(
            path, FileWith(R"({"name": ")" + name + R"(", "device": "secondary", "address": )" +
                           std::to_string(address) + "}"));
        return bench.folder.Path(path);
    };
    const auto set = *bench.program.sets.Create("Kitchen");
    names.Open(NameLayer::User, file("u.json", "User", 17));
    EXPECT_EQ(names.TitlesOn(TargetDevice::Secondary)(17), "User");
    bench.program.nameCommands.Open(file("o.json", "user", 18));
    EXPECT_EQ(names.TitlesOn(TargetDevice::Secondary)(17), "") << "another one has its name";
    file("sets/Kitchen/names.json", "Set", 18);
    bench.program.ChooseSet(set);
    EXPECT_EQ(names.TitlesOn(TargetDevice::Secondary)(18), "Set");
    EXPECT_EQ(names.Find("USER")->address, 17);
    EXPECT_TRUE(names.LayerOf(names.Find("Set")) == NameLayer::Set &&
                names.LayerOf(names.Find("User")) == NameLayer::User);
    bench.program.ChooseSet({});
    EXPECT_EQ(names.TitlesOn(TargetDevice::Secondary)(18), "user");
    EXPECT_EQ(names.TitlesOn(TargetDevice::Primary)(2401), "480p R-YR");
    EXPECT_EQ(names.NamesOn(TargetDevice::Primary)(2401), "R-YR.480p");
    EXPECT_EQ(names.TitlesOn(TargetDevice::Secondary)(2401), "") << "settings are the primary's";
    EXPECT_EQ(bench.user.boxes.size(), 0U);
    bench.program.nameCommands.Open(file("o.json", "x y", 18));
    EXPECT_THAT(bench.user.boxes.back().details, StartsWith(bench.folder.Path("o.json: line 3")));
}

TEST(NameCommands, AreUndoneInTheirFile) {
    TestProgram bench;
    NameCommands& commands = bench.program.nameCommands;
    const NameBook& names = bench.program.names;
    const auto onDisk = [&] {
        std::string all;
        for (const Named& named : ReadNames(bench.folder.Path("names.json")).names)
            all += named->name + std::to_string(named->address) + " ";
        return all;
    };
    const auto put = [&](const char* name, int address, const Named& former = nullptr) {
        return commands.Put({.name = name, .address = address}, former, NameLayer::User);
    };
    EXPECT_TRUE(put("B", 9) && put("A", 7) && put("C", 8, names.Find("b")));
    EXPECT_EQ(onDisk(), "A7 C8 ");
    std::string key;
    EXPECT_EQ(commands.Fault({.name = "a"}, nullptr, NameLayer::User, key).substr(0, 9),
              "a is alre");
    EXPECT_EQ(commands.Fault({.name = "a"}, names.Find("A"), NameLayer::User, key), "");
    bench.folder.Write(
        "other.json",
        TextOf({.names = {Make({.name = "A", .address = 8}), Make({.name = "D", .address = 5})}}));
    bench.WillAnswer({Answer::No});
    commands.ReadInto(NameLayer::User, bench.folder.Path("other.json"));
    EXPECT_EQ(onDisk(), "D5 A7 C8 ");
    EXPECT_THAT(bench.user.boxes.back().details, AllOf(HasSubstr("A: Primary EEProm, address 7"),
                                                       HasSubstr("C: Primary EEProm, address 8")));
    bench.WillAnswer({Answer::Yes});
    commands.ReadInto(NameLayer::User, bench.folder.Path("other.json"));
    EXPECT_EQ(onDisk(), "D5 A8 ");
    commands.Remove(names.Own());
    EXPECT_EQ(onDisk(), "");
    for (const char* before : {"D5 A8 ", "D5 A7 C8 ", "A7 C8 ", "A7 B9 ", "B9 ", ""}) {
        bench.program.undo.Undo();
        EXPECT_EQ(onDisk(), before);
    }
    bench.program.undo.Redo();
    EXPECT_EQ(onDisk() + names.Own().front()->name, "B9 B");
    commands.SaveAs(bench.folder.Path("b.json"));
    EXPECT_EQ(ReadNames(bench.folder.Path("b.json")).names.size(), 1U);
    bench.program.names.Open(NameLayer::User, "");
    EXPECT_FALSE(put("E", 1)) << "no file is open";
    bench.program.undo.Undo();
    EXPECT_EQ(onDisk(), "B9 ");
}

TEST(DestinationTest, NamesAndAddresses) {
    using enum NumberMode;
    const std::tuple<const char*, NumberMode, int, int> rows[] = {
        {"2401", Decimal, 2401, -1},    {" 0x961 ", Decimal, 2401, -1},
        {"961", Hex, 2401, -1},         {"8191", Decimal, 8191, -1},
        {"8192", Decimal, -1, -1},      {"", Hex, -1, -1},
        {"R-YR 480p", Hex, 2401, 8},    {"480P  r-yr", Hex, 2401, 8},
        {"r-yr.vga", Hex, 2473, 20},    {"R-YR", Hex, 2365, 2},
        {"clp", Hex, 2507, 69},         {"CLP 480p", Hex, -1, -1},
        {"global tint", Hex, 2085, 32}, {"R-YR 576p", Hex, -1, -1},
        {"red sat", Hex, 2365, 2},      {"480p Red SATURATION", Hex, 2401, 8},
        {"saturated red", Hex, -1, -1}, {"aturation", Hex, -1, -1},
        {"LEVEL.2", Hex, 17, -1},       {"the level", Decimal, 17, -1},
        {"FACE", Hex, 18, -1},          {"Far", Decimal, -1, -1}};
    const TemporaryFolder folder;
    NameBook book;
    book.Open(NameLayer::User, folder.Path("n"));
    ASSERT_TRUE(
        book.Put(NameLayer::User,
                 {Make({.name = "Level.2", .address = 17, .text = "the red level"}),
                  Make({.name = "Face", .address = 18}),
                  Make({.name = "Far", .device = TargetDevice::Secondary, .address = 19})}));
    for (const auto& [text, mode, address, cell] : rows) {
        const Destinations from{book, TargetDevice::Primary, mode};
        const auto place = from.From(text).value_or(Destination{-1, std::nullopt});
        EXPECT_TRUE(place.address == address && place.cell.value_or(-1) == cell) << text;
    }
    const Destinations primary{book, TargetDevice::Primary, NumberMode::Hex};
    const std::vector<std::string> names = primary.Names();
    for (std::size_t name = 0; name < kCellCount; ++name)
        EXPECT_EQ(primary.From(names[name])->cell, CellsInOrder()[name]);
    EXPECT_TRUE(names.size() == 74 && names[1] == "R-YR 480p, Red Saturation");
    EXPECT_EQ(names[72], "Level.2, the red level");
    EXPECT_EQ(primary.NoneText("far"), "Far is on the Secondary EEProm");
    const Destinations secondary{book, TargetDevice::Secondary, NumberMode::Hex};
    EXPECT_EQ(secondary.From("far")->address, 19);
    EXPECT_EQ(secondary.NoneText("x"), "Neither an address from 0 to 1FFF nor a setting's name");
}

TEST(NameCommands, EnterBothBytesOfANumberOrNone) {
    const NamedValue wide{.name = "Wide", .address = 70, .low = 40, .highest = 65535};
    const std::tuple<int, int, int, const char*> rows[] = {
        {0, 0x0102, 2, ""},
        {0, 0x0100, 1, ""},
        {9, 0x0102, 9, "Pending EEP Writes Have No Room for Two Bytes; Change Discarded"},
        {9, 0x0100, 0, ""},
        {8, 0x0102, 0, ""}};
    for (const auto& [typed, value, queued, status] : rows) {
        TestProgram bench({.writeCycle = BusTime(0)});
        Program& program = bench.program;
        program.wholeDevice.ReadEntireEep();
        program.grid.EnterInBuffer(40, std::array<std::uint8_t, 1>{});
        program.grid.EnterInBuffer(70, std::array<std::uint8_t, 1>{});
        for (int address = 100; address < 100 + typed; ++address)
            EXPECT_TRUE(program.cellEditor.EnterByte(
                address, static_cast<std::uint8_t>(program.buffer[100] + 1)));
        program.statusBar.PutStatus("");
        bench.WillAnswer({Answer::No});
        program.nameCommands.EnterValue(wide, value);
        EXPECT_EQ(program.pending.Count(), queued) << typed << " " << value;
        EXPECT_EQ(program.ShownValue(wide), queued == 9 ? 0 : value);
        EXPECT_EQ(bench.Status(), status);
        program.undo.Undo();
        EXPECT_EQ(program.ShownValue(wide), 0);
    }
}

/// On the secondary EEPROM, whose bytes have no settings' names.
TEST(NameBook, NamesStandInStatusLineQuestionHistoryAndSheet) {
    TestProgram bench({.writeCycle = BusTime(0)});
    Program& program = bench.program;
    bench.user.ignoresDoubts = true;
    const auto secondary = TargetDevice::Secondary;
    EXPECT_TRUE(program.names.Put(
        NameLayer::User,
        {Make({.name = "Mute",
               .device = secondary,
               .address = 17,
               .bits = {3, 3},
               .highest = 1,
               .text = "no <sound>",
               .values = {{0, "off"}, {1, "on"}}}),
         Make({.name = "Level", .device = secondary, .address = 18, .low = 19, .highest = 999}),
         Make({.name = "Pri", .address = 17, .text = "a < b", .values = {{0, "off"}}})}));
    program.ChooseSet(program.sets.Create("Kitchen"));
    bench.television.Memory(Chip::Secondary)[17] = 0x10;
    program.state.targetDevice = secondary;
    program.wholeDevice.ReadEntireEep();
    program.state.page = Page::Editor;
    program.editorPage.ShowByte(17);
    EXPECT_EQ(program.names.Text(secondary, 17, 0x18, NumberMode::Decimal),
              "17: Mute, bit 3: 1 (on)");
    EXPECT_EQ(program.names.Text(secondary, 19, 5, NumberMode::Hex),
              "13: Level, high byte, low byte at 13");
    EXPECT_EQ(program.names.Text(secondary, 2401, 5, NumberMode::Hex), "");
    program.statusBar.MsgTimerFired();
    EXPECT_EQ(bench.Status(), "17: Mute, bit 3: 0 (off)");
    for (const auto& [address, value] : {std::pair(17, 0x18), {19, 7}})
        program.pending.AddPendingWrite({address, {0}, {static_cast<std::uint8_t>(value)}});
    bench.WillAnswer({Answer::Yes});
    program.pending.WritePending();
    EXPECT_THAT(bench.user.boxes.back().details, HasSubstr("Address 17 (Mute): 16 becomes 24\n"
                                                           "Address 19 (Level low): "));
    const SetHistory history = ReadHistory(HistoryPath(*program.record.Chosen()));
    const auto texts = [&](const char* text, bool settingsOnly) {
        std::string all;
        for (const HistoryEvent& event : Filtered(history, {text, settingsOnly}, program.names)) {
            for (const EventByte& byte : event.bytes)
                all += ChangeText(byte, event.device, NumberMode::Decimal, program.names,
                                  program.names.TitlesOn(event.device)) +
                       "; ";
        }
        return all;
    };
    EXPECT_THAT(texts("", true),
                StartsWith("Address 17 (Mute): 0 (off) becomes 1 (on); Address 19 "));
    EXPECT_EQ(texts("MUTE", false), "Address 17 (Mute): 0 (off) becomes 1 (on); ");
    const auto course = CourseOf(Filtered(history, {"mute"}, program.names), program.names);
    ASSERT_TRUE(course && course->named == program.names.Find("Mute"));
    EXPECT_EQ(course->points.size() * 10 + std::size_t(course->points.back().value), 21U);
    EXPECT_THAT(ListText(history.events, NumberMode::Decimal, ',', program.names),
                HasSubstr("17,Mute,0 (off),1 (on),1 (on)"));
    EXPECT_THAT(bench.folder.Read("sets/Kitchen/history.jsonl"),
                AllOf(HasSubstr("\"setting\":\"Mute\""), HasSubstr("\"setting\":\"Level low\"")));
    const std::string sheet = SheetHtml({.names = program.names.On(TargetDevice::Primary)});
    EXPECT_THAT(sheet,
                HasSubstr("<td>Pri</td><td>a &lt; b</td><td>Primary EEProm, address 17, bits "
                          "0 to 7</td><td>0 (off) (0)</td>"));
    EXPECT_EQ(sheet.find("Mute"), std::string::npos);
}

}  // namespace
}  // namespace tarnwell
