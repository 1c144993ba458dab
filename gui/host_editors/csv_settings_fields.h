// The fields of a CSV file's settings, which reading and writing share.
//
// Used by: read_csv_editor.cpp, write_table_editor.cpp.
#pragma once

#include "gui/host_editors/choice_field.h"

namespace kelvarin {

// What is read may be left to a look at the file.
enum class CsvUse { reading, writing };

ChoiceField* newSeparatorField(CsvUse use);
ChoiceField* newQuoteField(CsvUse use);
ChoiceField* newNullTextField();

// Of reading only:
ChoiceField* newEncodingField();
ChoiceField* newDecimalField();
ChoiceField* newThousandsField();
ChoiceField* newShortRowsField();
ChoiceField* newLongRowsField();

}  // namespace kelvarin
