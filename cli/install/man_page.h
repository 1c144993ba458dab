// The manual page of a command, in the form that man reads, made of the texts of its help.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace kelvarin {

// `version` is shown at the foot of the page.
std::string manPageOf(const CLI::App& command, const std::string& version);

}  // namespace kelvarin
