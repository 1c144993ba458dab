// The elements `Column` of a reading action: which types the user has fixed, and, for a CSV file
// without a header, which names.
//
// Used by: the editors of actions that read table files.
#pragma once

#include "gui/forms/edited_element.h"
#include "gui/host_editors/table_look.h"

namespace kelvarin {

struct ColumnElement {
  QString name;
  QString meta;  // as it stands there: F, K, U, or whatever the user has written
};

std::vector<ColumnElement> columnElements(const EditedElement& action);
QString metaCode(MetaTypeColumn type);

// Fixes the type of a column; an empty meta leaves it to the file again. Where the elements name
// the columns of a file in their order, none is taken out of their midst.
void setColumnType(EditedElement& action, const TableLook& look, const QString& name,
                   const QString& meta, bool hasHeader);
// Of a file without header: names all columns up to this one.
void renameColumn(EditedElement& action, const TableLook& look, int column, const QString& name);

}  // namespace kelvarin
