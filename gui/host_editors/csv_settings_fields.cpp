#include "gui/host_editors/csv_settings_fields.h"

#include <QCoreApplication>

namespace kelvarin {

namespace {

QString words(const char* text) {
  return QCoreApplication::translate("kelvarin::CsvSettingsFields", text);
}

ChoiceField::Choice choice(const char* value, const QString& label) {
  return {QString::fromLatin1(value), label};
}

}  // namespace

ChoiceField* newSeparatorField() {
  return new ChoiceField(
      {choice(",", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Comma  ,"))),
       choice(";", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Semicolon  ;"))),
       choice("\\t", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Tab  \\t"))),
       choice("|", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Bar  |"))),
       choice(" ", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Space")))});
}

ChoiceField* newQuoteField() {
  return new ChoiceField(
      {choice("\"", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Double quote  \""))),
       choice("'", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Single quote  '"))),
       choice("", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "None")))});
}

ChoiceField* newNullTextField() {
  return new ChoiceField(
      {choice("", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "(empty field)"))),
       choice("NA", QStringLiteral("NA")), choice("NULL", QStringLiteral("NULL")),
       choice("null", QStringLiteral("null")), choice("N/A", QStringLiteral("N/A")),
       choice("-", QStringLiteral("-")), choice("?", QStringLiteral("?"))});
}

}  // namespace kelvarin
