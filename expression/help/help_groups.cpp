#include <array>

#include "expression/help/help_entry.h"
#include "expression/help/themes.h"

namespace kelvarin {

std::vector<HelpExample> examplesOf(const HelpEntry& entry) {
  std::vector<HelpExample> examples{{entry.example, entry.result}};
  if (entry.secondExample != nullptr) {
    examples.push_back({entry.secondExample, entry.secondResult});
  }
  return examples;
}

std::span<const HelpGroup> helpGroups() {
  static const std::array groups = {
      HelpGroup{"On Numbers", HelpKind::function, helpOnNumbers()},
      HelpGroup{"On Strings", HelpKind::function, helpOnTexts()},
      HelpGroup{"String Encode/Decode", HelpKind::function, helpOnEncodings()},
      HelpGroup{"On Dates", HelpKind::function, helpOnDates()},
      HelpGroup{"On IP's", HelpKind::function, helpOnAddresses()},
      HelpGroup{"Operators", HelpKind::sign, helpOnOperators()},
      HelpGroup{"Predefined Constants", HelpKind::constant, helpOnConstants()},
      HelpGroup{"Postfix operators", HelpKind::postfix, helpOnPostfixes()},
      HelpGroup{"Special", HelpKind::function, helpOnSpecials()},
  };
  return groups;
}

std::span<const HelpGroup> furtherGroups() {
  static const std::array groups = {
      HelpGroup{"Added by Kelvarin", HelpKind::function, addedFunctions()},
      HelpGroup{"Further functions", HelpKind::function, furtherFunctions()},
      HelpGroup{"Further constants", HelpKind::constant, furtherConstants()},
      HelpGroup{"Further operators", HelpKind::sign, furtherOperators()},
  };
  return groups;
}

}  // namespace kelvarin
