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

QString badFieldText(MetaTypeColumn type, const std::string& field, const QString& column) {
  const QString value = QString::fromStdString(field);
  double number = 0;
  switch (type) {
    case MetaTypeColumn::number:
      return parseNumber(field, number)
                 ? table_messages::numberLosesDigits(value, lostDigitsText(field, number), column)
                 : table_messages::badNumber(value);
    case MetaTypeColumn::key:
      return table_messages::badKey(value);
    default:
      return table_messages::notUtf8();
  }
}

QString textColumnText(const std::string& field, const QString& column) {
  const QString value = QString::fromStdString(field);
  double number = 0;
  if (parseNumber(field, number)) {
    return table_messages::numbersAreText(value, lostDigitsText(field, number), column);
  }
  return isMissingWord(field) ? table_messages::missingWordIsText(value)
                              : table_messages::peoplesNumbersAreText(value);
}

}  // namespace kelvarin
