// How the columns of a table from Python are read, in the structures of the C interface.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "include/kelvarin/kelvarin.h"

namespace kelvarin_python {

using Pairs = std::vector<std::pair<std::string, std::string>>;
using NamedNumbers = std::vector<std::pair<std::string, int>>;

// The structures point to the texts here.
class InputOptions {
 public:
  // `types` by column, KELVARIN_NUMBER for instance; `sortedBy` has columns and their order.
  InputOptions(NamedNumbers types, NamedNumbers sortedBy, bool takesBadValuesAsNull);
  InputOptions(const InputOptions&) = delete;
  InputOptions& operator=(const InputOptions&) = delete;

  const kelvarin_input_options* get() const { return &m_options; }

 private:
  NamedNumbers m_types;
  NamedNumbers m_sortedBy;
  std::vector<kelvarin_column_option> m_columns;
  std::vector<kelvarin_sort_option> m_sorts;
  kelvarin_input_options m_options;
};

// Names and values for the interface, which point into `pairs`.
std::vector<kelvarin_setting> settingsOf(const Pairs& pairs);

}  // namespace kelvarin_python
