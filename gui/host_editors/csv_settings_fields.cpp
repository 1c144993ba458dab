#include "gui/host_editors/csv_settings_fields.h"

#include <utility>

#include <QCoreApplication>

namespace kelvarin {

namespace {

QString words(const char* text) {
  return QCoreApplication::translate("kelvarin::CsvSettingsFields", text);
}

ChoiceField::Choice choice(const char* value, const QString& label) {
  return {QString::fromLatin1(value), label};
}

ChoiceField::Choice fromTheFile() {
  return choice("auto", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields",
                                                "As the file seems to have it")));
}

ChoiceField* fieldOf(std::vector<ChoiceField::Choice> choices, CsvUse use) {
  if (use == CsvUse::reading) {
    choices.push_back(fromTheFile());
  }
  return new ChoiceField(std::move(choices));
}

}  // namespace

ChoiceField* newSeparatorField(CsvUse use) {
  return fieldOf(
      {choice(",", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Comma  ,"))),
       choice(";", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Semicolon  ;"))),
       choice("\\t", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Tab  \\t"))),
       choice("|", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Bar  |"))),
       choice(" ", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Space")))},
      use);
}

ChoiceField* newQuoteField(CsvUse use) {
  return fieldOf(
      {choice("\"", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Double quote  \""))),
       choice("'", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "Single quote  '"))),
       choice("", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "None")))},
      use);
}

ChoiceField* newNullTextField() {
  return new ChoiceField(
      {choice("", words(QT_TRANSLATE_NOOP("kelvarin::CsvSettingsFields", "(empty field)"))),
       choice("NA", QStringLiteral("NA")), choice("NULL", QStringLiteral("NULL")),
       choice("null", QStringLiteral("null")), choice("N/A", QStringLiteral("N/A")),
       choice("-", QStringLiteral("-")), choice("?", QStringLiteral("?"))});
}

ChoiceField* newEncodingField() {
  return new ChoiceField({fromTheFile(), choice("UTF-8", QStringLiteral("UTF-8")),
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
