#include "host/tables/csv/csv_dialect.h"

#include "host/tables/csv/messages.h"

namespace kelvarin {

namespace {

// Whether the file is to be looked at for the setting; it has its default then.
bool takeGuessed(QString& text, const char* usual, bool CsvGuessed::* part, CsvGuessed* guessed) {
  const bool isGuessed = guessed != nullptr && text == QLatin1String("auto");
  if (isGuessed) {
    guessed->*part = true;
    text = QLatin1String(usual);
  }
  return isGuessed;
}

}  // namespace

bool isOneAscii(const QString& text) {
  return text.size() == 1 && text[0].unicode() > 0 && text[0].unicode() < 128 && text[0] != u'\n' &&
         text[0] != u'\r';
}

bool canBeField(const QString& text, const CsvDialect& dialect) {
  return !(dialect.hasQuote && text.contains(QLatin1Char(dialect.quote))) &&
         !text.contains(QLatin1Char(dialect.separator)) && !text.contains(u'\n') &&
         !text.contains(u'\r');
}

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

Result<CsvDialect, QString> CsvSettings::dialect(const TextExpansion& expanded,
                                                 CsvGuessed* guessed) const {
  QString separator = expanded(m_values.separator);
  const bool isSeparatorKnown = !takeGuessed(separator, ",", &CsvGuessed::isSeparator, guessed);
  if (separator == QLatin1String("\\t")) {
    separator = QStringLiteral("\t");
  }
  if (!isOneAscii(separator)) {
    return Failure{table_messages::badSeparator(separator)};
  }
  QString quote = expanded(m_values.quote);
  const bool isQuoteKnown = !takeGuessed(quote, "\"", &CsvGuessed::isQuote, guessed);
  const bool areKnown = isSeparatorKnown && isQuoteKnown;
  if (!quote.isEmpty() && (!isOneAscii(quote) || (areKnown && quote == separator))) {
    return Failure{table_messages::badQuote(quote)};
  }
  const QString nullText = expanded(m_values.nullText);
  CsvDialect dialect;
  dialect.separator = separator[0].toLatin1();
  dialect.hasQuote = !quote.isEmpty();
  dialect.quote = quote.isEmpty() ? '\0' : quote[0].toLatin1();
  dialect.hasHeader = m_values.header;
  dialect.nullText = nullText.toStdString();
  if (areKnown && !canBeField(nullText, dialect)) {
    return Failure{table_messages::badNullText(nullText)};
  }
  return dialect;
}

}  // namespace kelvarin
