// How a CSV file is written: separator, quote, header, and the texts that stand for a missing
// value; and what else may stand in one that others have written.
//
// CsvSettings holds the attributes as the user gave them, shared by ReadCSV and WriteCSV; dialect()
// checks them. An unquoted field equal to a null text is missing, a quoted empty field is the empty
// text.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "base/result.h"
#include "host/contract/attribute_table.h"
#include "host/tables/settings/text_expansion.h"

namespace kelvarin {

// How the numbers of a file are written.
struct CsvNumberFormat {
  char decimal = '.';
  char thousands = '\0';  // between groups of three digits; 0: nothing

  bool isPlain() const { return decimal == '.' && thousands == '\0'; }
};

struct CsvDialect {
  char separator = ',';
  bool hasQuote = true;
  char quote = '"';
  bool hasHeader = true;
  std::string nullText;

  // Of files that are read:
  std::vector<std::string> furtherNullTexts;
  CsvNumberFormat numbers;
  bool hasComments = false;
  char comment = '\0';              // a line that begins with it is no record
  int skippedLines = 0;             // at the start of the file
  bool areShortRowsFilled = false;  // with missing values
  bool areLongRowsCut = false;
};

// What is left to a look at the file.
struct CsvGuessed {
  bool isSeparator = false;
  bool isQuote = false;
};

class CsvSettings {
 public:
  CsvSettings(const XMLNode& node, const GlobalParameters* parameters);

  static std::vector<AttributeDescription> describedAttributes();

  // Writes the attributes that differ from their defaults.
  void save(std::wostringstream& out) const;
  // With `guessed`, separator and quote may be "auto".
  Result<CsvDialect, QString> dialect(const TextExpansion& expanded,
                                      CsvGuessed* guessed = nullptr) const;

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

// Of settings with one character each.
bool isOneAscii(const QString& text);
// A field can be equal to it.
bool canBeField(const QString& text, const CsvDialect& dialect);

}  // namespace kelvarin
