// What the parts of `kelvarin gel` share: opening a columnar file with a message for the user, and
// counts in messages.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/console.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

// Null: the console has said why. Files that their writer has not finished are opened too, with a
// warning unless the command reports it by itself.
std::unique_ptr<GelFile> openGelFile(const std::string& path, Console& console,
                                     bool warnsOfIncomplete = true);

// Of lines about damage that is much alike.
inline constexpr std::size_t kMaxLines = 100;

// "1 row", "2 rows".
QString counted(std::uint64_t count, const char* thing);

// One a part, each in its own file.
void addGelInfo(CLI::App& gel, ChosenCommand& chosen);
void addGelHead(CLI::App& gel, ChosenCommand& chosen);
void addGelTail(CLI::App& gel, ChosenCommand& chosen);
void addGelStats(CLI::App& gel, ChosenCommand& chosen);
void addGelDiff(CLI::App& gel, ChosenCommand& chosen);
void addGelLayout(CLI::App& gel, ChosenCommand& chosen);
void addGelVerify(CLI::App& gel, ChosenCommand& chosen);
void addGelExport(CLI::App& gel, ChosenCommand& chosen);
void addGelImport(CLI::App& gel, ChosenCommand& chosen);
void addGelRecover(CLI::App& gel, ChosenCommand& chosen);

}  // namespace kelvarin
