#include "host/files/split_values.h"

#include <algorithm>
#include <cmath>

#include "host/contract/column_bytes.h"
#include "host/files/messages.h"

namespace kelvarin {

namespace {

template <typename Value>
std::string_view bytesOf(const Value& value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

}  // namespace

QString cleanedForFileName(QString value) {
  for (QChar& character : value) {
    const bool isControl = character < u' ' || character == QChar(0x7F);
    if (isControl || character == u'/' || character == u'\\') {
      character = u'_';
    }
  }
  if (value.startsWith(u'.')) {
    value[0] = u'_';
  }
  return value;
}

QString insertedBeforeExtension(const QString& file, const QString& text) {
  const qsizetype point = file.lastIndexOf(u'.');
  const qsizetype slash = std::max(file.lastIndexOf(u'/'), file.lastIndexOf(u'\\'));
  return point > slash ? file.left(point) + text + file.mid(point) : file + text;
}

bool isSortedOn(const OneRow& columns, int column) {
  return !columns.sortInfos().isEmpty() && columns.sortInfos().first().column() == column;
}

std::string_view splitMark(MetaTypeColumn type, const unsigned char* value) {
  static constexpr double kZero = 0.0;  // 0 and -0 are equal
  if (type == MetaTypeColumn::key) {
    return isNullKey(keyFromBytes(value))
               ? std::string_view()
               : std::string_view(reinterpret_cast<const char*>(value), sizeof(std::uint32_t));
  }
  if (type != MetaTypeColumn::number) {
    return isNullText(value)
               ? std::string_view()
               : std::string_view(reinterpret_cast<const char*>(value), sizeOfValue(type, value));
  }
  const double number = numberFromBytes(value);
  if (isNullNumber(number)) {
    return {};
  }
  if (std::isnan(number)) {
    return bytesOf(kNotANumber);
  }
  return number == 0 ? bytesOf(kZero)
                     : std::string_view(reinterpret_cast<const char*>(value), sizeof number);
}

QString splitNameText(const OneRow& row, int column) {
  unsigned short isMissing = 0;
  const QString text = row.col(column, &isMissing);
  return isMissing != 0 ? kNullSplitValue : cleanedForFileName(text);
}

QString shownSplitValue(const OneRow& row, int column) {
  unsigned short isMissing = 0;
  const QString text = row.col(column, &isMissing);
  return isMissing != 0 ? messages::missingValue() : text;
}

const SplitFiles::Entry* SplitFiles::enter(const QString& key, const Entry& entry) {
  const auto known = m_entries.constFind(key);
  if (known != m_entries.constEnd()) {
    return &*known;
  }
  m_entries.insert(key, entry);
  return nullptr;
}

}  // namespace kelvarin
