#include "host/tables/csv/csv_dialect.h"

#include "host/tables/messages.h"

namespace kelvarin {

namespace {

const QString kDefaultSeparator = QStringLiteral(",");
const QString kDefaultQuote = QStringLiteral("\"");

bool isOneCharacter(const QString& text) {
  return text.size() == 1 && text[0].unicode() > 0 && text[0].unicode() < 128 && text[0] != u'\n' &&
         text[0] != u'\r';
}

}  // namespace

CsvSettings::CsvSettings(const XMLNode& node)
    : m_separator(attributeOr(node, u"separator", kDefaultSeparator)),
      m_quote(attributeOr(node, u"quote", kDefaultQuote)),
      m_header(xmltob(node.getAttribute(utf16(u"header")), 1) != 0),
      m_nullText(attributeOr(node, u"nullText", QString())) {
  checkWhileLoading(node, [this](const TextExpansion& expanded) {
    const Result<CsvDialect, QString> checked = dialect(expanded);
    return checked ? QString() : checked.error();
  });
}

void CsvSettings::save(std::wostringstream& out) const {
  if (m_separator != kDefaultSeparator) {
    saveAttribute(out, L"separator", m_separator);
  }
  if (m_quote != kDefaultQuote) {
    saveAttribute(out, L"quote", m_quote);
  }
  if (!m_header) {
    out << L" header='0'";
  }
  if (!m_nullText.isEmpty()) {
    saveAttribute(out, L"nullText", m_nullText);
  }
}

Result<CsvDialect, QString> CsvSettings::dialect(const TextExpansion& expanded) const {
  QString separator = expanded(m_separator);
  if (separator == QLatin1String("\\t")) {
    separator = QStringLiteral("\t");
  }
  if (!isOneCharacter(separator)) {
    return Failure{table_messages::badSeparator(separator)};
  }
  const QString quote = expanded(m_quote);
  if (!quote.isEmpty() && (!isOneCharacter(quote) || quote == separator)) {
    return Failure{table_messages::badQuote(quote)};
  }
  const QString nullText = expanded(m_nullText);
  const bool holdsQuote = !quote.isEmpty() && nullText.contains(quote);
  if (holdsQuote || nullText.contains(separator) || nullText.contains(u'\n') ||
      nullText.contains(u'\r')) {
    return Failure{table_messages::badNullText(nullText)};
  }
  CsvDialect dialect;
  dialect.separator = separator[0].toLatin1();
  dialect.hasQuote = !quote.isEmpty();
  dialect.quote = quote.isEmpty() ? '\0' : quote[0].toLatin1();
  dialect.hasHeader = m_header;
  dialect.nullText = nullText.toStdString();
  return dialect;
}

}  // namespace kelvarin
