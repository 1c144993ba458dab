#include "host/tables/csv/csv_field_texts.h"

#include "host/tables/csv/csv_number.h"
#include "host/tables/csv/messages.h"

namespace kelvarin {

namespace {

QString lostDigitsText(std::string_view field, double number) {
  return lostDigits(field, number) == LostDigits::leadingZero ? table_messages::hasLeadingZero()
                                                              : table_messages::hasTooManyDigits();
}

}  // namespace

QString badFieldText(MetaTypeColumn type, const std::string& field, const QString& column,
                     const CsvNumberFormat& numbers, TextEncoding encoding) {
  const QString value = QString::fromStdString(field);
  std::string plain;
  double number = 0;
  switch (type) {
    case MetaTypeColumn::number:
      if (isMissingWord(field)) {
        return table_messages::missingWord(value);
      }
      return toPlainNumber(field, numbers, plain) && parseNumber(plain, number)
                 ? table_messages::numberLosesDigits(value, lostDigitsText(plain, number), column)
                 : table_messages::badNumber(value);
    case MetaTypeColumn::key:
      return table_messages::badKey(value);
    default:
      return noTextText(encoding);
  }
}

QString textColumnText(const std::string& field, const QString& column,
                       const CsvNumberFormat& numbers) {
  const QString value = QString::fromStdString(field);
  std::string plain;
  double number = 0;
  if (toPlainNumber(field, numbers, plain) && parseNumber(plain, number)) {
    return table_messages::numbersAreText(value, lostDigitsText(plain, number), column);
  }
  if (isMissingWord(field)) {
    return table_messages::missingWordIsText(value);
  }
  const QString thousands =
      numbers.thousands == '\0' ? QString() : QString(QLatin1Char(numbers.thousands));
  return table_messages::peoplesNumbersAreText(value, QString(QLatin1Char(numbers.decimal)),
                                               thousands);
}

QString noTextText(TextEncoding encoding) {
  return encoding == TextEncoding::utf8 ? table_messages::notUtf8()
                                        : table_messages::notInEncoding(nameOfEncoding(encoding));
}

}  // namespace kelvarin
