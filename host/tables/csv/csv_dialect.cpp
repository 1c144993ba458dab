#include "host/tables/csv/csv_dialect.h"

#include "host/tables/csv/messages.h"

namespace kelvarin {

namespace {

bool isOneCharacter(const QString& text) {
  return text.size() == 1 && text[0].unicode() > 0 && text[0].unicode() < 128 && text[0] != u'\n' &&
         text[0] != u'\r';
}

}  // namespace

const Attribute<CsvSettings::Values> CsvSettings::kAttributes[] = {
    attribute<&Values::separator>(u"separator", "one character between fields; \\t is TAB"),
    attribute<&Values::quote>(
        u"quote",
        "encloses fields with separators, line breaks or quotes, doubled there; empty: no quoting"),
    attribute<&Values::header>(u"header", "the first line has the column names"),
    attribute<&Values::nullText>(u"nullText", "an unquoted field equal to it is null"),
};

CsvSettings::CsvSettings(const XMLNode& node, const GlobalParameters* parameters) {
  readAttributes<Values>(node, kAttributes, m_values, parameters);
}

std::vector<AttributeDescription> CsvSettings::describedAttributes() {
  return described<Values>(kAttributes);
}

void CsvSettings::save(std::wostringstream& out) const {
  writeAttributes<Values>(out, kAttributes, m_values);
}

Result<CsvDialect, QString> CsvSettings::dialect(const TextExpansion& expanded) const {
  QString separator = expanded(m_values.separator);
  if (separator == QLatin1String("\\t")) {
    separator = QStringLiteral("\t");
  }
  if (!isOneCharacter(separator)) {
    return Failure{table_messages::badSeparator(separator)};
  }
  const QString quote = expanded(m_values.quote);
  if (!quote.isEmpty() && (!isOneCharacter(quote) || quote == separator)) {
    return Failure{table_messages::badQuote(quote)};
  }
  const QString nullText = expanded(m_values.nullText);
  const bool holdsQuote = !quote.isEmpty() && nullText.contains(quote);
  if (holdsQuote || nullText.contains(separator) || nullText.contains(u'\n') ||
      nullText.contains(u'\r')) {
    return Failure{table_messages::badNullText(nullText)};
  }
  CsvDialect dialect;
  dialect.separator = separator[0].toLatin1();
  dialect.hasQuote = !quote.isEmpty();
  dialect.quote = quote.isEmpty() ? '\0' : quote[0].toLatin1();
  dialect.hasHeader = m_values.header;
  dialect.nullText = nullText.toStdString();
  return dialect;
}

}  // namespace kelvarin
