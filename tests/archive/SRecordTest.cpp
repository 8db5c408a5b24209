// What single records store.
#include "archive/SRecord.h"

#include "support/TestProgram.h"

namespace tarnwell {
namespace {

TEST(SRecord, StoreTable) {
    const std::string sixteen = "000102030405060708090A0B0C0D0E0F";
    const struct {
        std::string record;
        std::size_t slot;
        int byte;
        std::optional<std::string> checksum;
    } rows[] = {
        {"S1130010" + sixteen, 0x1F, 0x0F, "64"},
        {"S214000010" + sixteen, 0x1F, 0x0F, "63"},
        {"S31500000010" + sixteen, 0x1F, 0x0F, "62"},
        {"S1141FF0" + sixteen + "AB", 8192, 0xAB, "B9"},
        {"S1FF1FF0" + sixteen + "AB", 8192, 0xAB, std::nullopt},
        {"S1040020ab", 0x20, 0xAB, "30"},
        {"S10400F0G1", 0xF0, 0x01, "0A"},
        {"S1130010", 0x1F, 0, "DC"},
        {"S102FFFF", 0, 0x77, std::nullopt},
        {"S203000000", 0, 0x77, std::nullopt},
        {"S30400000000", 0, 0x77, std::nullopt},
        {"S", 0, 0x77, std::nullopt},
    };
    for (const auto& row : rows) {
        MemoryBuffer buffer;
        buffer.fill(0x77);
        ScriptedUser user;
        EXPECT_EQ(StoreRecord(row.record, buffer, user), row.checksum) << row.record;
        EXPECT_EQ(buffer[row.slot], row.byte) << row.record;
    }
}

TEST(SRecord, AddressBehindTheLastRecordEndsTheProgram) {
    for (const char* record : {"S1041FF100", "S20501000000", "S306FFFFFFF000"}) {
        MemoryBuffer buffer{};
        ScriptedUser user;
        EXPECT_THROW(static_cast<void>(StoreRecord(record, buffer, user)), ProgramEnd) << record;
        EXPECT_EQ(buffer, MemoryBuffer{});
        EXPECT_EQ(
            user.TakeBoxes().at(0),
            "F A T A L   E R R O R|The data file has too many addresses; it is not\r\na proper "
            "Tarnwell 24C64 EEProm data file.\r\n\r\nTarnwell will now terminate.");
    }
}

}  // namespace
}  // namespace tarnwell
