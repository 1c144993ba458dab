// How a CSV file is written: separator, quote, header, and the text that stands for a missing
// value.
//
// CsvSettings holds the attributes as the user gave them, shared by ReadCSV and WriteCSV; dialect()
// checks them. An unquoted field equal to the null text is missing, a quoted empty field is the
// empty text.
#pragma once

#include <sstream>
#include <string>

#include "base/result.h"
#include "host/tables/settings/attribute_texts.h"

namespace kelvarin {

struct CsvDialect {
  char separator = ',';
  bool hasQuote = true;
  char quote = '"';
  bool hasHeader = true;
  std::string nullText;
};

class CsvSettings {
 public:
  // Reports faults while a graph is loaded.
  explicit CsvSettings(const XMLNode& node);

  // Writes the attributes that differ from their defaults.
  void save(std::wostringstream& out) const;
  Result<CsvDialect, QString> dialect(const TextExpansion& expanded) const;

 private:
  QString m_separator;
  QString m_quote;
  bool m_header;
  QString m_nullText;
};

}  // namespace kelvarin
