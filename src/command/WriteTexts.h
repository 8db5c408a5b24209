// What is asked before a write and said after it, alike wherever it is asked for.
#pragma once

#include <string>

#include "core/user/Message.h"

namespace tarnwell {

inline constexpr Message kMustReadFirst{"Must First Read the EEPROM! ", "E R R O R",
                                        BoxStyle::Exclamation};

inline constexpr Message kAskWriteImage{"Write memory buffer to EEProm?", "V E R I F Y",
                                        BoxStyle::YesNoQuestion};
inline constexpr std::string_view kImageWritten = "EEP Verified OK; EEProm Write Successful";
inline constexpr Message kImageNotVerified{
    "EEProm data verification failed;\r\nThe EEProm was not programmed correctly, try again.",
    "E R R O R - Verify Failed", BoxStyle::Critical};

inline constexpr Message kAskWriteSettings{"Write settings values to EEPROM?", "V E R I F Y",
                                           BoxStyle::YesNoQuestion};
inline constexpr std::string_view kSettingsWritten =
    "EEP Verified OK; Settings Values Written to EEProm";
inline constexpr Message kSettingsNotVerified{
    "Verification of the EEProm settings values failed;\r\n"
    "The EEProm was not programmed correctly, try again.",
    "E R R O R - Verify Failed", BoxStyle::Critical};
inline constexpr Message kNoSettingsChanged{
    "No settings were changed;\r\nThe EEProm was not modified.", "I N F O", BoxStyle::Information};

inline constexpr Message kAskWriteByte{"Write 1 new value to the EEP?", "V E R I F Y",
                                       BoxStyle::YesNoQuestion};
inline constexpr std::string_view kBytesWritten = "EEP Verified OK; New Data Written to EEProm";
inline constexpr Message kBytesNotVerified{
    "Verification of the EEProm failed;\r\nThe EEProm was not programmed correctly, try again.",
    "E R R O R - Verify Failed", BoxStyle::Critical};

inline Box AskWriteBytes(int count) {
    Box box = kAskWriteByte;
    if (count != 1)
        box.text = "Write " + std::to_string(count) + " new values to the EEP?";
    return box;
}

/// "Bytes confirmed on the EEProm: 12 of 40."
inline std::string ConfirmedText(int confirmed, std::size_t all) {
    return "Bytes confirmed on the EEProm: " + std::to_string(confirmed) + " of " +
           std::to_string(all) + ".";
}

/// A line below that of a write that was stopped.
inline constexpr const char* kWriteTheRest = "\r\nWrite Differences to EEP writes the rest.";

inline constexpr std::string_view kWriteCancelled = "EEProm Write Cancelled";

inline constexpr std::string_view kTargetNotChanged =
    "Target EEProm Not Changed - Primary EEP Still Selected";

inline constexpr Message kWarnOfSecondary{
    "B E   C A R E F U L !\r\nLittle is known about this EEProm.\r\n"
    "Bad data values here could KILL your HDTV!",
    "W A R N I N G", BoxStyle::OkCancelExclamation};

/// Named settings are those of the primary EEPROM.
inline constexpr Message kNoSettingsOnSecondary{
    "You must use the Data Editor to change values in\r\n"
    "the secondary EEProm.   PLEASE BE CAREFUL!",
    "I N F O", BoxStyle::Information};

}  // namespace tarnwell
