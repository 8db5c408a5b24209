// What the commands take: each kind reads its operands into the arguments.
#pragma once

#include "cli/words/Arguments.h"

namespace tarnwell::cli {

/// What stands for the device, and for the newest backup; `backup:2` is the one before.
inline constexpr std::string_view kDeviceSide = "device";
inline constexpr std::string_view kBackupSide = "backup";

using OperandTexts = std::vector<std::string>;

void TakeFile(const OperandTexts& operands, Arguments& arguments);
void TakeBackupOrFile(const OperandTexts& operands, Arguments& arguments);
void TakeSides(const OperandTexts& operands, Arguments& arguments);
void TakeSettings(const OperandTexts& operands, Arguments& arguments);
void TakeSettingValues(const OperandTexts& operands, Arguments& arguments);
void TakeRanges(const OperandTexts& operands, Arguments& arguments);
void TakeRangesOrAll(const OperandTexts& operands, Arguments& arguments);
void TakeByteValues(const OperandTexts& operands, Arguments& arguments);
void TakeEvents(const OperandTexts& operands, Arguments& arguments);

/// The settings of "NAME[.FORMAT]", or a name of one's own; throws WrongArgument.
NameList NamesMeant(const NameBook& book, std::string_view word);

/// A line a setting: its name, and with each format that it has; then those of one's own.
std::string NamesOf(const NameBook& book);

inline constexpr OperandKind kNothing{};
inline constexpr OperandKind kFile{"FILE", TakeFile};
inline constexpr OperandKind kBackupOrFile{
    "[backup:N|FILE]", TakeBackupOrFile,
    [](const NameBook&) { return "\n  " + std::string(kBackupSide); }};
inline constexpr OperandKind kSides{"A [B]", TakeSides, [](const NameBook&) {
                                        return "\n  " + std::string(kDeviceSide) + " " +
                                               std::string(kBackupSide);
                                    }};
inline constexpr OperandKind kSettings{"[NAME[.FORMAT]...]", TakeSettings, NamesOf};
inline constexpr OperandKind kSettingValues{"NAME[.FORMAT]=VALUE...", TakeSettingValues, NamesOf};
inline constexpr OperandKind kRanges{"ADDRESS[-ADDRESS|+COUNT]...", TakeRanges};
inline constexpr OperandKind kRangesOrAll{"[ADDRESS[-ADDRESS|+COUNT]...]", TakeRangesOrAll};
inline constexpr OperandKind kByteValues{"ADDRESS=VALUE...", TakeByteValues};
inline constexpr OperandKind kEvents{"EVENT...", TakeEvents};

}  // namespace tarnwell::cli
