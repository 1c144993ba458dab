#include "library/input_settings.h"

namespace kelvarin {

bool isColumnType(std::int32_t type) {
  return type == KELVARIN_NUMBER || type == KELVARIN_KEY || type == KELVARIN_TEXT;
}

namespace {

Outcome<Done> addColumns(const kelvarin_input_options& options, InputSettings& settings) {
  for (std::int32_t i = 0; i < options.column_count; ++i) {
    const kelvarin_column_option& column = options.columns[i];
    if (const auto isThere = needed(column.name, "columns"); !isThere) {
      return isThere;
    }
    if (column.type != 0 && !isColumnType(column.type)) {
      return wrongArgument(library_messages::outOfRange(QStringLiteral("type"), column.type));
    }
    if (column.type != 0) {
      settings.rules.declared.push_back(
          {QString::fromUtf8(column.name), static_cast<MetaTypeColumn>(column.type)});
    }
  }
  return Done{};
}

Outcome<Done> addOrder(const kelvarin_input_options& options, InputSettings& settings) {
  for (std::int32_t i = 0; i < options.sorted_by_count; ++i) {
    const kelvarin_sort_option& sorted = options.sorted_by[i];
    if (const auto isThere = needed(sorted.column, "sorted_by"); !isThere) {
      return isThere;
    }
    if (sorted.order != KELVARIN_ASCENDING && sorted.order != KELVARIN_DESCENDING) {
      return wrongArgument(library_messages::outOfRange(QStringLiteral("order"), sorted.order));
    }
    settings.sortedBy.push_back(
        {QString::fromUtf8(sorted.column), sorted.order == KELVARIN_DESCENDING});
  }
  return Done{};
}

}  // namespace

Outcome<InputSettings> inputSettingsOf(const kelvarin_input_options* options) {
  const auto given = optionsOf(options, kelvarin_input_options(KELVARIN_INPUT_OPTIONS_INIT));
  if (!given) {
    return Failure{given.error()};
  }
  if ((given->column_count > 0 && given->columns == nullptr) ||
      (given->sorted_by_count > 0 && given->sorted_by == nullptr)) {
    return wrongArgument(library_messages::nullPointer(QStringLiteral("input")));
  }
  InputSettings settings;
  settings.rules.areBadValuesNull = given->takes_bad_values_as_null != 0;
  for (const auto add : {addColumns, addOrder}) {
    if (const auto added = add(*given, settings); !added) {
      return Failure{added.error()};
    }
  }
  return settings;
}

}  // namespace kelvarin
