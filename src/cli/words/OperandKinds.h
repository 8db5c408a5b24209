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

/// The cells of a setting, or of one of its formats, as "NAME[.FORMAT]"; throws WrongArgument.
std::vector<int> CellsNamed(std::string_view word);

/// A line a setting: its name, and with each format that it has.
std::string SettingNames();

inline constexpr OperandKind kNothing{};
inline constexpr OperandKind kFile{"FILE", TakeFile};
inline constexpr OperandKind kBackupOrFile{"[backup:N|FILE]", TakeBackupOrFile,
                                           [] { return "\n  " + std::string(kBackupSide); }};
inline constexpr OperandKind kSides{
    "A [B]", TakeSides,
    [] { return "\n  " + std::string(kDeviceSide) + " " + std::string(kBackupSide); }};
inline constexpr OperandKind kSettings{"[NAME[.FORMAT]...]", TakeSettings, SettingNames};
inline constexpr OperandKind kSettingValues{"NAME[.FORMAT]=VALUE...", TakeSettingValues,
                                            SettingNames};
inline constexpr OperandKind kRanges{"ADDRESS[-ADDRESS|+COUNT]...", TakeRanges};
inline constexpr OperandKind kRangesOrAll{"[ADDRESS[-ADDRESS|+COUNT]...]", TakeRangesOrAll};
inline constexpr OperandKind kByteValues{"ADDRESS=VALUE...", TakeByteValues};
inline constexpr OperandKind kEvents{"EVENT...", TakeEvents};

}  // namespace tarnwell::cli
