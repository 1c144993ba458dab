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

ChoiceField* newEncodingField() {
  return new ChoiceField({choice("auto", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields",
                                                                 "As the file seems to have it"))),
                          choice("UTF-8", QStringLiteral("UTF-8")),
                          choice("UTF-16", QStringLiteral("UTF-16")),
                          choice("ISO-8859-1", QStringLiteral("ISO-8859-1 (Latin-1)")),
                          choice("windows-1252", QStringLiteral("windows-1252"))});
}

ChoiceField* newDecimalField() {
  return new ChoiceField(
      {choice(".", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Point  ."))),
       choice(",", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Comma  ,")))});
}

ChoiceField* newThousandsField() {
  return new ChoiceField(
      {choice("", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Nothing"))),
       choice(".", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Point  ."))),
       choice(",", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Comma  ,"))),
       choice(" ", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Space"))),
       choice("'", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Apostrophe  '")))});
}

ChoiceField* newShortRowsField() {
  return new ChoiceField(
      {choice("error", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Stop the run"))),
       choice("null", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Get nulls")))});
}

ChoiceField* newLongRowsField() {
  return new ChoiceField(
      {choice("error", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Stop the run"))),
       choice("ignore",
              words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Lose what is too much")))});
}

}  // namespace kelvarin
