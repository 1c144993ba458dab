// The names that people bring from spreadsheets, databases and programming languages, and what they
// are called here.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace kelvarin {

// Names of the language, as many as there are; the empty ones do not count.
using MeantNames = std::array<std::string_view, 3>;

struct ForeignName {
  std::string_view name;
  MeantNames meant;
  const char* advice = nullptr;  // how to write it, where a name alone does not show it
};

std::span<const ForeignName> foreignNames();

}  // namespace kelvarin
