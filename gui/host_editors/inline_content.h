// The table inside an InlineTable element: columns, and rows of texts.
//
// Rows have as many values as they have in the file, which may be too few or too many: what an
// editor does not change stays.
// Used by: the editor of InlineTable.
#pragma once

#include <vector>

#include <QStringList>

#include "gui/forms/edited_element.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

struct InlineContent {
  struct Column {
    QString name;
    QString meta;  // F, K or U; empty is U; another text as the user has written it
    bool operator==(const Column&) const = default;
  };
  using Row = std::vector<QString>;  // a null text is a missing value

  std::vector<Column> columns;
  std::vector<Row> rows;

  static InlineContent of(const EditedElement& action);
  void writeTo(EditedElement& action) const;
  // What stops a run, the first of each kind; rows count from 0.
  QStringList faults() const;
};

MetaTypeColumn typeOf(const InlineContent::Column& column);

}  // namespace kelvarin
