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
#include "host/contract/attribute_table.h"
#include "host/tables/settings/text_expansion.h"

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
  CsvSettings(const XMLNode& node, const GlobalParameters* parameters);

  static std::vector<AttributeDescription> describedAttributes();

  // Writes the attributes that differ from their defaults.
  void save(std::wostringstream& out) const;
  Result<CsvDialect, QString> dialect(const TextExpansion& expanded) const;

 private:
  struct Values {
    QString separator = QStringLiteral(",");
    QString quote = QStringLiteral("\"");
    bool header = true;
    QString nullText;
  };
  static const Attribute<Values> kAttributes[];

  Values m_values;
};

}  // namespace kelvarin
