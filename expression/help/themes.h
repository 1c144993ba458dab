// The groups of the help, a file each.
#pragma once

#include "expression/help/help_entry.h"

namespace kelvarin {

std::span<const HelpEntry> helpOnNumbers();
std::span<const HelpEntry> helpOnTexts();
std::span<const HelpEntry> helpOnEncodings();
std::span<const HelpEntry> helpOnDates();
std::span<const HelpEntry> helpOnAddresses();
std::span<const HelpEntry> helpOnOperators();
std::span<const HelpEntry> helpOnConstants();
std::span<const HelpEntry> helpOnPostfixes();
std::span<const HelpEntry> helpOnSpecials();
std::span<const HelpEntry> furtherFunctions();
std::span<const HelpEntry> addedFunctions();
std::span<const HelpEntry> furtherConstants();
std::span<const HelpEntry> furtherOperators();

}  // namespace kelvarin
