// How a CSV file seems to be written, by its first bytes.
//
// The fields are cut by the reader's own scanner, once for each separator; a guess is one of the
// settings with which the rows come out alike.
// Used by: the editor of ReadCSV, to propose settings; a drop of files, to read them at once.
#pragma once

#include <string>
#include <string_view>

#include <QString>

#include "base/result.h"

namespace kelvarin {

struct CsvGuess {
  QString separator = QStringLiteral(",");  // as in the attributes, "\\t" for TAB
  QString quote = QStringLiteral("\"");
  bool hasHeader = true;
  QString nullText;
  bool hasQuotes = false;       // else the quote does not matter
  std::size_t columnCount = 0;  // 0: there is nothing to guess from
  QString lineEnd;              // "LF", "CR LF", "CR"; empty where there is none
  bool hasByteOrderMark = false;
  bool isUtf8 = true;
  bool hasDecimalCommas = false;
};

struct CsvStart {
  std::string bytes;
  bool isWhole = false;  // nothing follows
};

// Waits for the disk; any thread. An error is a text for the user.
Result<CsvStart, QString> readCsvStart(const QString& path);
// `isWhole`: nothing follows, so that the last line counts, too.
CsvGuess guessCsv(std::string_view start, bool isWhole);

}  // namespace kelvarin
