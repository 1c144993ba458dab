// The settings of ReadCSV beyond those that WriteCSV has, too: for files as others have written
// them.
//
// A fault is reported while a graph is loaded, and again from a reader that was made without one.
// Used by: ReadCSV, and its editor.
// Errors: texts for the user.
#pragma once

#include <optional>

#include "host/tables/csv/csv_dialect.h"
#include "host/tables/text_input/text_encoding.h"

namespace kelvarin {

struct CsvFileSettings {
  CsvDialect dialect;
  CsvGuessed guessed;
  std::optional<TextEncoding> encoding = TextEncoding::utf8;  // none: the one it seems to have
  QString fileColumn;  // the column of the files' names; empty: there is none
};

class CsvReadSettings {
 public:
  CsvReadSettings(const XMLNode& node, const GlobalParameters* parameters);

  static std::vector<AttributeDescription> describedAttributes();

  // Writes the attributes that differ from their defaults.
  void save(std::wostringstream& out) const;
  Result<CsvFileSettings, QString> settings(const TextExpansion& expanded) const;

 private:
  struct Values {
    QString encoding = QStringLiteral("UTF-8");
    QString nullTexts;
    QString decimal = QStringLiteral(".");
    QString thousands;
    int skipLines = 0;
    QString comment;
    QString shortRows = QStringLiteral("error");
    QString longRows = QStringLiteral("error");
    QString fileColumn;
  };
  static const Attribute<Values> kAttributes[];

  Status<QString> takeNumbers(const TextExpansion& expanded, CsvDialect& dialect) const;
  Status<QString> takeLines(const TextExpansion& expanded, CsvDialect& dialect,
                            const CsvGuessed& guessed) const;

  CsvSettings m_common;
  Values m_values;
};

}  // namespace kelvarin
