#include "cli/install/file_columns.h"

#include <algorithm>

#include <QFile>

#include "cli/table_kind.h"
#include "columnar/reader/gel_file.h"
#include "host/tables/arrow/arrow_formats.h"

namespace kelvarin {

namespace {

// What a header is cut at: the sign that it has most of.
char separatorOf(const QByteArray& line) {
  constexpr char kSeparators[] = {',', ';', '\t', '|'};
  return *std::max_element(
      std::begin(kSeparators), std::end(kSeparators),
      [&line](char left, char right) { return line.count(left) < line.count(right); });
}

QStringList fieldsOf(const QByteArray& line) {
  const char separator = separatorOf(line);
  QStringList fields;
  QByteArray field;
  bool isQuoted = false;
  for (const char character : line) {
    if (character == '"') {
      isQuoted = !isQuoted;
    } else if (character == separator && !isQuoted) {
      fields += QString::fromUtf8(field);
      field.clear();
    } else {
      field += character;
    }
  }
  return fields + QStringList(QString::fromUtf8(field));
}

QStringList columnsOfText(const std::string& path) {
  constexpr qint64 kLongestLine = 1 << 20;
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly) || file.isSequential()) {
    return {};
  }
  QByteArray line = file.readLine(kLongestLine);
  while (line.endsWith('\n') || line.endsWith('\r')) {
    line.chop(1);
  }
  if (line.startsWith("\xEF\xBB\xBF")) {
    line.remove(0, 3);
  }
  const bool isText = !line.isEmpty() && !line.contains('\0');
  return isText ? fieldsOf(line) : QStringList();
}

QStringList columnsOfColumnar(const std::string& path) {
  QStringList names;
  if (const auto file = GelFile::open(path, IncompleteFiles::accept)) {
    for (const std::size_t index : (*file)->columnsInRowOrder()) {
      names += QString::fromStdString((*file)->column(index).name);
    }
  }
  return names;
}

QStringList columnsOfArrow(ArrowFormat format, const std::string& path) {
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return {};
  }
  const auto reader =
      (*formats)->makeReader(format, QString::fromStdString(path), {{}, UnreadableColumns::text});
  const auto columns = reader->open([] { return false; });
  return columns ? QStringList(columns->names) : QStringList();
}

}  // namespace

QStringList columnsOfFile(const std::string& path) {
  if (path.empty()) {
    return {};
  }
  const TableKind* kind = tableKindOf(path);
  if (kind == nullptr) {
    return columnsOfText(path);
  }
  if (kind->isColumnar()) {
    return columnsOfColumnar(path);
  }
  const QLatin1String format(kind->format);
  if (format == QLatin1String("CSV")) {
    return columnsOfText(path);
  }
  return columnsOfArrow(
      format == QLatin1String("Parquet") ? ArrowFormat::parquet : ArrowFormat::arrow, path);
}

}  // namespace kelvarin
