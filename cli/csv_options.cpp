#include "cli/csv_options.h"

#include <algorithm>
#include <optional>
#include <sstream>

#include <QStringList>

#include "cli/column_type_name.h"
#include "cli/command_graph.h"
#include "cli/messages.h"
#include "host/contract/attribute_table.h"
#include "host/tables/settings/text_list.h"

namespace kelvarin {

namespace {

const std::string kAuto = "auto";

// As the attribute nullTexts has it.
QString barListOf(const std::vector<std::string>& texts) {
  QStringList list;
  for (const std::string& text : texts) {
    list += QString::fromStdString(text);
  }
  return listOfTexts(list, u'|');
}

struct ColumnType {
  QString name;
  MetaTypeColumn type;
};

// The name may have an equals sign, too.
std::optional<ColumnType> columnTypeOf(const std::string& given) {
  const QString text = QString::fromStdString(given);
  const qsizetype sign = text.lastIndexOf(u'=');
  const auto type = columnTypeNamed(QStringView(text).sliced(sign + 1));
  return sign > 0 && type ? std::optional(ColumnType{text.first(sign), *type}) : std::nullopt;
}

// Checks of the library return what is wrong, or nothing.
std::string whyNoColumnType(const std::string& given) {
  return columnTypeOf(given)
             ? std::string()
             : program_messages::noColumnType(QString::fromStdString(given)).toStdString();
}

}  // namespace

void CsvOptions::addTo(CLI::App& command) {
  const auto put = [this](CLI::Option* option, const char* type) {
    option->group(kCsvOptionsGroup)->type_name(type);
    m_options.push_back(option);
    return option;
  };
  const auto add = [&](const char* name, auto& value, const char* meaning, const char* type) {
    return put(command.add_option(name, value, meaning), type);
  };
  add("--separator", separator, "between fields; \\t is TAB", "CHARACTER");
  add("--quote", quote, "around fields; '' for none", "CHARACTER");
  add("--encoding", encoding, "UTF-8, UTF-16, ISO-8859-1, windows-1252", "NAME");
  put(command.add_flag("--no-header", hasNoHeader, "the first line has values, no names"), "");
  add("--null", nullTexts, "a text that is null; may be repeated", "TEXT")->expected(1)->take_all();
  add("--decimal", decimal, "before the decimals of numbers: . or ,", "CHARACTER");
  add("--thousands", thousands, "between groups of three digits", "CHARACTER");
  add("--skip-lines", skippedLines, "pass over so many lines at the start", "N")
      ->check(CLI::NonNegativeNumber);
  add("--comment", comment, "begins lines that are passed over", "CHARACTER");
  add("--short-rows", shortRows, "too few fields: error, or null", "WHAT")
      ->check(CLI::IsMember({"error", "null"}));
  add("--long-rows", longRows, "too many fields: error, or ignore", "WHAT")
      ->check(CLI::IsMember({"error", "ignore"}));
  add("--bad-values", badValues, "that do not fit their column's type: error, or null", "WHAT")
      ->check(CLI::IsMember({"error", "null"}));
  add("--type", types, "of a column: number, key or text; may be repeated", "NAME=TYPE")
      ->allow_extra_args(false)
      ->check(CLI::Validator(whyNoColumnType, ""));
  add("--file-column", fileColumn, "a column with the names of the files", "NAME");
}

bool CsvOptions::areGiven() const {
  return std::ranges::any_of(m_options,
                             [](const CLI::Option* option) { return option->count() > 0; });
}

QString CsvOptions::attributes(const TableKind& kind) const {
  std::wostringstream out;
  const auto write = [&out](const char16_t* name, const QString& value, bool isGiven = true) {
    if (isGiven) {
      writeAttribute(out, name, literalText(value));
    }
  };
  const auto writeText = [&write](const char16_t* name, const std::string& value) {
    write(name, QString::fromStdString(value), !value.empty());
  };
  // That of some kinds follows from their name.
  if (!separator.empty() || !kind.hasSeparator()) {
    writeText(u"separator", separator.empty() ? kAuto : separator);
  }
  write(u"quote", QString::fromStdString(quote));
  writeText(u"encoding", encoding);
  write(u"header", QStringLiteral("0"), hasNoHeader);
  write(u"nullTexts", barListOf(nullTexts), !nullTexts.empty());
  writeText(u"decimal", decimal);
  writeText(u"thousands", thousands);
  write(u"skipLines", QString::number(skippedLines), skippedLines > 0);
  writeText(u"comment", comment);
  writeText(u"short", shortRows);
  writeText(u"long", longRows);
  write(u"onBadValue", QStringLiteral("null"), badValues == "null");
  writeText(u"fileColumn", fileColumn);
  return QString::fromStdWString(out.str());
}

QString CsvOptions::columns() const {
  std::wostringstream out;
  for (const std::string& given : types) {
    const auto column = columnTypeOf(given);
    out << L"<Column";
    writeAttribute(out, u"name", literalText(column->name));
    writeAttribute(out, u"meta", textOfValue(column->type));
    out << L"/>";
  }
  return QString::fromStdWString(out.str());
}

}  // namespace kelvarin
