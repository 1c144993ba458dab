// The first lines of a CSV file as they stand in it, with what their characters mean.
//
// Used by: the editor of ReadCSV. Fields are found by the reader's own indexer; from the first
// record that it refuses on, lines have no marks.
#pragma once

#include <string_view>
#include <vector>

#include <QString>

#include "host/tables/csv/csv_dialect.h"

namespace kelvarin {

struct CsvRawLine {
  struct Mark {
    int position = 0;      // of one character in the text
    bool isQuote = false;  // else a separator
  };
  QString text;
  std::vector<Mark> marks;
  QString lineEnd;  // "LF", "CR LF", "CR"; empty where the line goes on or the file ends
  bool isCut = false;
};

std::vector<CsvRawLine> csvRawLines(std::string_view start, const CsvDialect& dialect,
                                    bool isWhole);

}  // namespace kelvarin
