#include "gui/host_editors/pasted_table.h"

#include <algorithm>

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include "host/tables/csv/csv_number.h"
#include "host/tables/csv/csv_scanner.h"

namespace kelvarin {

namespace {

bool isNumber(const QString& text) {
  double number = 0;
  const std::string bytes = text.toStdString();
  return parseNumber(bytes, number) || isNumberForPeople(bytes);
}

QString quotedIfNeeded(QString text) {
  static const QRegularExpression special(QStringLiteral("[\\t\\r\\n\"]"));
  if (!text.contains(special)) {
    return text;
  }
  return u'"' + text.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

}  // namespace

std::vector<std::vector<QString>> pastedCells(const QString& text) {
  CsvDialect dialect;
  dialect.separator = '\t';
  CsvScanner scanner(dialect, false, 1);
  std::vector<std::vector<QString>> rows;
  const auto add = [&] {
    std::vector<QString>& row = rows.emplace_back();
    for (std::size_t i = 0; i < scanner.record().fieldCount; ++i) {
      const std::string& field = scanner.record().fields[i];
      row.push_back(field.empty() ? QString() : QString::fromStdString(field));
    }
  };
  const std::string bytes = text.toStdString();
  const char* next = bytes.data();
  while (scanner.scan(next, bytes.data() + bytes.size())) {
    add();
  }
  if (scanner.finish()) {
    add();
  }
  return rows;
}

QString copiedCells(const std::vector<std::vector<QString>>& cells) {
  QString text;
  for (const std::vector<QString>& row : cells) {
    QStringList fields;
    for (const QString& cell : row) {
      fields += quotedIfNeeded(cell);
    }
    text += fields.join(u'\t') + u'\n';
  }
  return text;
}

QString withDecimalPoint(const QString& text) {
  // Thousands are separated by points or by blanks of several kinds.
  static const QRegularExpression pattern(
      QStringLiteral("^[+-]?(\\d+|\\d{1,3}([. \\x{00A0}\\x{202F}]\\d{3})+),\\d+$"));
  QString number = text.trimmed();
  if (!pattern.match(number).hasMatch()) {
    return {};
  }
  number.remove(QRegularExpression(QStringLiteral("[. \\x{00A0}\\x{202F}]")));
  return number.replace(u',', u'.');
}

bool beginsWithNames(const std::vector<std::vector<QString>>& cells) {
  if (cells.size() < 2) {
    return false;
  }
  const std::vector<QString>& first = cells.front();
  const auto isName = [](const QString& cell) { return !cell.isEmpty() && !isNumber(cell); };
  const QSet<QString> names(first.begin(), first.end());
  return std::ranges::all_of(first, isName) && names.size() == static_cast<qsizetype>(first.size());
}

}  // namespace kelvarin
