// How a CSV file seems to be written, by its first bytes.
//
// The fields are cut by the reader's own scanner, once for each separator; a guess is one of the
// settings with which the rows come out alike.
// Used by: the reader, for what its settings leave open; the editor of ReadCSV, to propose
// settings; a drop of files, to read them at once.
#pragma once

#include <string>
#include <string_view>

#include "host/tables/csv/csv_dialect.h"
#include "host/tables/text_input/text_encoding.h"

namespace kelvarin {

struct CsvGuess {
  char separator = ',';
  char quote = '"';
  bool hasHeader = true;
  QString nullText;
  bool hasQuotes = false;       // else the quote does not matter
  std::size_t columnCount = 0;  // 0: there is nothing to guess from
  QString lineEnd;              // "LF", "CR LF", "CR"; empty where there is none
  bool hasByteOrderMark = false;
  CsvNumberFormat numbers;  // plain where no number needs another one
};

struct CsvStart {
  std::string text;  // in UTF-8
  TextEncoding encoding = TextEncoding::utf8;
  bool isWhole = false;  // nothing follows
};

// Waits for the disk; any thread. An error is a text for the user.
Result<CsvStart, QString> readCsvStart(const QString& path);
// `isWhole`: nothing follows, so that the last line counts, too. What is not to be guessed is taken
// from `known`.
CsvGuess guessCsv(std::string_view start, bool isWhole, const CsvDialect& known = {},
                  CsvGuessed guessed = {true, true});

// As in the attribute: "\\t" for TAB.
QString separatorText(char separator);

}  // namespace kelvarin
