// The manual's tables, made from the tables that the program itself works by.
#pragma once

#include <string>
#include <string_view>

namespace tarnwell::manual {

/// The characters that HTML reserves, written so that they are shown.
std::string Escaped(std::string_view text);

/// The settings of the page with this caption, a row each; empty if no page has it.
std::string SettingsTable(std::string_view caption);

/// The records of a settings archive.
std::string GroupsTable();

/// The pins and polarities of the default wiring.
std::string WiringTable();

/// A drawing of the port's socket that shows the default wiring.
std::string ConnectorDrawing();

/// The pins that Advanced Setup offers.
std::string PinsTable();

}  // namespace tarnwell::manual
