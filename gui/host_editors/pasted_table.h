// A piece of a table as spreadsheets put it on the clipboard: cells between TABs, rows in lines,
// quotes around cells that hold either.
//
// Used by: the editor of InlineTable.
#pragma once

#include <vector>

#include <QString>

namespace kelvarin {

// An empty cell is null: a spreadsheet knows no empty text.
std::vector<std::vector<QString>> pastedCells(const QString& text);
// The same, to be pasted elsewhere.
QString copiedCells(const std::vector<std::vector<QString>>& cells);

// "1.234,5" as "1234.5"; null where the text is no number with a decimal comma.
QString withDecimalPoint(const QString& text);
// Of a table without columns: no line of names has a number, an empty cell or two alike.
bool beginsWithNames(const std::vector<std::vector<QString>>& cells);

}  // namespace kelvarin
