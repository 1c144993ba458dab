#include "python/src/input_options.h"

namespace kelvarin_python {

InputOptions::InputOptions(NamedNumbers types, NamedNumbers sortedBy, bool takesBadValuesAsNull)
    : m_types(std::move(types)),
      m_sortedBy(std::move(sortedBy)),
      m_options(KELVARIN_INPUT_OPTIONS_INIT) {
  for (const auto& [name, type] : m_types) {
    m_columns.push_back({name.c_str(), type});
  }
  for (const auto& [column, order] : m_sortedBy) {
    m_sorts.push_back({column.c_str(), order});
  }
  m_options.columns = m_columns.data();
  m_options.column_count = static_cast<int32_t>(m_columns.size());
  m_options.sorted_by = m_sorts.data();
  m_options.sorted_by_count = static_cast<int32_t>(m_sorts.size());
  m_options.takes_bad_values_as_null = takesBadValuesAsNull ? 1 : 0;
}

std::vector<kelvarin_setting> settingsOf(const Pairs& pairs) {
  std::vector<kelvarin_setting> settings;
  for (const auto& [name, value] : pairs) {
    settings.push_back({name.c_str(), value.c_str()});
  }
  return settings;
}

}  // namespace kelvarin_python
