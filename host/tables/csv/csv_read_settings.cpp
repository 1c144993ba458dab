#include "host/tables/csv/csv_read_settings.h"

#include "host/tables/csv/messages.h"
#include "host/tables/settings/text_list.h"

namespace kelvarin {

namespace {

const QString kAuto = QStringLiteral("auto");
const QString kError = QStringLiteral("error");

// "error", or the word for what else becomes of such rows.
Result<bool, QString> isTolerated(const char* attribute, const QString& text, const char* word) {
  if (text == kError) {
    return false;
  }
  if (text == QLatin1String(word)) {
    return true;
  }
  return Failure{table_messages::badRowRule(QLatin1String(attribute), text, QLatin1String(word))};
}

bool isDigit(QChar c) {
  return c >= u'0' && c <= u'9';
}

}  // namespace

const Attribute<CsvReadSettings::Values> CsvReadSettings::kAttributes[] = {
    attribute<&Values::encoding>(
        u"encoding", "UTF-8, UTF-16, UTF-16LE, UTF-16BE, ISO-8859-1, windows-1252 or auto"),
    attribute<&Values::nullTexts>(
        u"nullTexts", "further texts that are null, with bars between: NA|n/a; \\| is a bar"),
    attribute<&Values::decimal>(u"decimal", "stands before the decimals of numbers: . or ,"),
    attribute<&Values::thousands>(
        u"thousands", "stands between groups of three digits, such as . or '; empty: nothing"),
    attribute<&Values::skipLines>(u"skipLines",
                                  "how many lines at the start of the file are passed over",
                                  {.min = 0, .inWords = "0 or more"}),
    attribute<&Values::comment>(u"comment", "lines that begin with this character are passed over"),
    attribute<&Values::shortRows>(u"short", "what happens at a row with too few fields",
                                  {.inWords = "error, or null (the missing ones are null)"}),
    attribute<&Values::longRows>(u"long", "what happens at a row with too many fields",
                                 {.inWords = "error, or ignore (the surplus ones are dropped)"}),
    attribute<&Values::fileColumn>(u"fileColumn", "a column, with the name of each row's file"),
};

CsvReadSettings::CsvReadSettings(const XMLNode& node, const GlobalParameters* parameters)
    : m_common(node, parameters) {
  readAttributes<Values>(node, kAttributes, m_values, parameters);
}

std::vector<AttributeDescription> CsvReadSettings::describedAttributes() {
  std::vector<AttributeDescription> attributes = CsvSettings::describedAttributes();
  describe<Values>(attributes, kAttributes);
  for (AttributeDescription& attribute : attributes) {
    const bool mayBeAuto = attribute.name == u"separator" || attribute.name == u"quote";
    attribute.meaning +=
        mayBeAuto ? QStringLiteral("; auto: as the file seems to have it") : QString();
  }
  return attributes;
}

void CsvReadSettings::save(std::wostringstream& out) const {
  m_common.save(out);
  writeAttributes<Values>(out, kAttributes, m_values);
}

Result<CsvFileSettings, QString> CsvReadSettings::settings(const TextExpansion& expanded) const {
  CsvFileSettings settings;
  Result<CsvDialect, QString> dialect = m_common.dialect(expanded, &settings.guessed);
  if (!dialect) {
    return Failure{dialect.error()};
  }
  const QString encoding = expanded(m_values.encoding);
  settings.encoding = encodingOfName(encoding);
  if (!settings.encoding && encoding != kAuto) {
    return Failure{table_messages::badEncoding(encoding, knownEncodings())};
  }
  if (const auto status = takeNumbers(expanded, *dialect); !status) {
    return Failure{status.error()};
  }
  if (const auto status = takeLines(expanded, *dialect, settings.guessed); !status) {
    return Failure{status.error()};
  }
  settings.fileColumn = expanded(m_values.fileColumn);
  settings.dialect = std::move(*dialect);
  return settings;
}

// What makes a value of a field.
Status<QString> CsvReadSettings::takeNumbers(const TextExpansion& expanded,
                                             CsvDialect& dialect) const {
  for (const QString& text : textsOfList(expanded(m_values.nullTexts), u'|')) {
    dialect.furtherNullTexts.push_back(text.toStdString());
  }
  const QString decimal = expanded(m_values.decimal);
  if (decimal != u"." && decimal != u",") {
    return Failure{table_messages::badDecimal(decimal)};
  }
  dialect.numbers.decimal = decimal[0].toLatin1();
  const QString thousands = expanded(m_values.thousands);
  if (thousands.isEmpty()) {
    return Done{};
  }
  const bool isUsable = isOneAscii(thousands) && thousands != decimal && !isDigit(thousands[0]) &&
                        !QStringLiteral("+-eE").contains(thousands);
  if (!isUsable) {
    return Failure{table_messages::badThousands(thousands, decimal)};
  }
  dialect.numbers.thousands = thousands[0].toLatin1();
  return Done{};
}

// What is a record.
Status<QString> CsvReadSettings::takeLines(const TextExpansion& expanded, CsvDialect& dialect,
                                           const CsvGuessed& guessed) const {
  dialect.skippedLines = m_values.skipLines;
  const QString comment = expanded(m_values.comment);
  if (!comment.isEmpty()) {
    const bool isSeparator = !guessed.isSeparator && comment == QLatin1Char(dialect.separator);
    const bool isQuote =
        dialect.hasQuote && !guessed.isQuote && comment == QLatin1Char(dialect.quote);
    if (!isOneAscii(comment) || isSeparator || isQuote) {
      return Failure{table_messages::badComment(comment)};
    }
    dialect.hasComments = true;
    dialect.comment = comment[0].toLatin1();
  }
  const auto isFilled = isTolerated("short", expanded(m_values.shortRows), "null");
  if (!isFilled) {
    return Failure{isFilled.error()};
  }
  const auto isCut = isTolerated("long", expanded(m_values.longRows), "ignore");
  if (!isCut) {
    return Failure{isCut.error()};
  }
  dialect.areShortRowsFilled = *isFilled;
  dialect.areLongRowsCut = *isCut;
  return Done{};
}

}  // namespace kelvarin
