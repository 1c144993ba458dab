// Writes what actions declare of columns: `<Column name='' ATTRIBUTE=''/>` elements.
//
// Used by: column_settings.cpp, and the writers whose columns have declared types.
#pragma once

#include <sstream>

#include "host/contract/attribute_table.h"

namespace kelvarin {

// Ends the action's open tag; behind the elements the action's end. `value` is the member of a
// column that stands in `attribute`.
template <typename Columns, typename Column>
void saveColumnElements(std::wostringstream& out, const char* action, const Columns& columns,
                        const char16_t* attribute, QString Column::* value) {
  if (columns.empty()) {
    out << L"/>\n";
    return;
  }
  out << L">\n";
  for (const Column& column : columns) {
    out << L"<Column";
    writeAttribute(out, u"name", column.name);
    writeAttribute(out, attribute, column.*value);
    out << L"/>\n";
  }
  out << L"</" << action << L">\n";
}

}  // namespace kelvarin
