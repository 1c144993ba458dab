#include "host/tables/csv/csv_batch_format.h"

#include <algorithm>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "base/shortest_number.h"
#include "host/contract/text_operations.h"

namespace kelvarin {

namespace {

constexpr std::size_t kFirstCapacity = 256 * 1024;
// With quotes around, every byte doubled, and a separator.
constexpr std::size_t kMaxNumberSize = 2 * kLongestNumberText + 3;
constexpr std::string_view kNumberBytes = "0123456789.+-einfa";
// Bytes of a short text that are read and written at once.
constexpr std::size_t kEager = 16;

std::string_view textAt(const unsigned char* value) {
  return {reinterpret_cast<const char*>(value) + 4, lengthFromBytes(value)};
}

QString textOfValue(const BatchColumn& column, std::size_t row) {
  switch (column.type()) {
    case MetaTypeColumn::number:
      return shortestText(column.numbers()[row]);
    case MetaTypeColumn::key:
      return QString::number(column.keys()[row]);
    default:
      return qStringFromBytes(column.text(row));
  }
}

}  // namespace

char* CsvText::grow(std::size_t used, std::size_t size) {
  const std::size_t capacity =
      std::max(kFirstCapacity, m_buffer.capacity + m_buffer.capacity / 2) + size;
  std::unique_ptr<char[]> larger(new char[capacity]);
  if (used > 0) {
    std::memcpy(larger.get(), m_buffer.bytes.get(), used);
  }
  m_buffer = {std::move(larger), capacity};
  return m_buffer.bytes.get() + used;
}

CsvBatchFormat::CsvBatchFormat(const CsvDialect& dialect, std::vector<MetaTypeColumn> types)
    : m_dialect(dialect), m_types(std::move(types)) {
  for (const char c : {dialect.separator, '\n', '\r'}) {
    m_isSpecial[static_cast<unsigned char>(c)] = true;
  }
  if (dialect.hasQuote) {
    m_isSpecial[static_cast<unsigned char>(dialect.quote)] = true;
  }
  m_needsNumberCheck = !dialect.nullText.empty() ||
                       kNumberBytes.find(dialect.separator) != kNumberBytes.npos ||
                       (dialect.hasQuote && kNumberBytes.find(dialect.quote) != kNumberBytes.npos);
  const std::size_t fieldCapacity = std::max(kMaxNumberSize, dialect.nullText.size() + 1);
  m_fixedCapacity = m_types.size() * fieldCapacity + 1;
}

std::unique_ptr<CsvText> CsvBatchFormat::encodeRows(const RowBatch& batch) const {
  auto text = std::make_unique<CsvText>(m_store);
  std::vector<Cursor> columns;
  columns.reserve(m_types.size());
  for (const BatchColumn& column : batch.columns()) {
    columns.push_back({column.type(), &column, column.textBytes() + column.textSize()});
  }
  appendRows(*text, batch, columns);
  return text;
}

void CsvBatchFormat::appendRows(CsvText& text, const RowBatch& batch,
                                const std::vector<Cursor>& columns) const {
  char* end = text.begin();
  for (std::size_t row = 0; row < batch.rowCount(); ++row) {
    const std::size_t stored = batch.storedRow(row);
    char* target = text.reserve(end, m_fixedCapacity);
    const std::ptrdiff_t start = target - text.begin();
    for (const Cursor& column : columns) {
      target = appendValue(text, target, column, stored);
      if (target == nullptr) [[unlikely]] {
        const auto index = static_cast<int>(&column - columns.data());
        text.setEnd(text.begin() + start, row);
        text.setUnwritable({row, index, textOfValue(*column.column, stored)});
        return;
      }
      *target++ = m_dialect.separator;
    }
    // Replaces the last separator; a row without columns is an empty line.
    end = columns.empty() ? target + 1 : target;
    end[-1] = '\n';
  }
  text.setEnd(end, batch.rowCount());
}

std::unique_ptr<CsvText> CsvBatchFormat::encodeNames(const OneRow& columns) const {
  auto text = std::make_unique<CsvText>(m_store);
  char* target = text->reserve(text->begin(), m_fixedCapacity);
  for (int i = 0; i < columns.sz(); ++i) {
    const QByteArray utf8 = columns.colName(i).toUtf8();
    const std::string_view name(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    target = text->reserve(target, 2 * name.size() + m_fixedCapacity);
    // Nor is a name to look like a missing value.
    target = name.empty() || needsQuote(name) ? appendQuoted(target, name)
                                              : std::copy(name.begin(), name.end(), target);
    if (target == nullptr) {
      text->setUnwritable({0, i, columns.colName(i)});
      return text;
    }
    *target++ = m_dialect.separator;
  }
  target[-1] = '\n';
  text->setEnd(target, 0);
  return text;
}

inline char* CsvBatchFormat::appendValue(CsvText& text, char* target, const Cursor& column,
                                         std::size_t row) const {
  if (column.type == MetaTypeColumn::number) {
    const double number = column.column->numbers()[row];
    return isNullNumber(number) ? appendNull(target)
                                : quotedIfNeeded(target, appendShortest(target, number));
  }
  if (column.type == MetaTypeColumn::key) {
    const std::uint32_t key = column.column->keys()[row];
    return isNullKey(key) ? appendNull(target) : quotedIfNeeded(target, appendWhole(target, key));
  }
  const unsigned char* value = column.column->text(row);
  return isNullText(value) ? appendNull(target)
                           : appendText(text, target, textAt(value), column.textEnd);
}

// A number that is printed as the null text or holds the separator becomes a quoted field.
inline char* CsvBatchFormat::quotedIfNeeded(char* target, char* end) const {
  const std::string_view printed(target, static_cast<std::size_t>(end - target));
  if (!m_needsNumberCheck || !needsQuote(printed)) [[likely]] {
    return end;
  }
  return appendQuoted(target, std::string(printed));
}

inline char* CsvBatchFormat::appendText(CsvText& text, char* target, std::string_view value,
                                        const unsigned char* end) const {
  target = text.reserve(target, 2 * value.size() + m_fixedCapacity);
  if (value.size() <= kEager && copyPlain(target, value, end)) {
    return target + value.size();
  }
  // An empty line would be a missing value.
  const bool isEmptyLine = value.empty() && m_types.size() == 1;
  if (isEmptyLine || needsQuote(value)) [[unlikely]] {
    return appendQuoted(target, value);
  }
  return std::copy(value.begin(), value.end(), target);
}

// Copies a short text that needs no quotes and is not empty, as can be seen at once. False: it has
// to be looked at.
inline bool CsvBatchFormat::copyPlain(char* target, std::string_view value,
                                      const unsigned char* end) const {
#ifdef __SSE2__
  const auto* bytes = reinterpret_cast<const unsigned char*>(value.data());
  if (value.empty() || !m_dialect.nullText.empty() || end - bytes < std::ptrdiff_t{kEager}) {
    return false;
  }
  const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const auto is = [&](char c) { return _mm_cmpeq_epi8(chunk, _mm_set1_epi8(c)); };
  const char quote = m_dialect.hasQuote ? m_dialect.quote : m_dialect.separator;
  const __m128i special = _mm_or_si128(_mm_or_si128(is('\n'), is('\r')),
                                       _mm_or_si128(is(m_dialect.separator), is(quote)));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), chunk);
  return (_mm_movemask_epi8(special) & ((1 << value.size()) - 1)) == 0;
#else
  return false;
#endif
}

bool CsvBatchFormat::needsQuote(std::string_view text) const {
  for (const char c : text) {
    if (m_isSpecial[static_cast<unsigned char>(c)]) {
      return true;
    }
  }
  return text == m_dialect.nullText;
}

inline char* CsvBatchFormat::appendNull(char* target) const {
  const std::string& text = m_dialect.nullText;
  return std::copy(text.begin(), text.end(), target);
}

// The capacity suffices for all bytes doubled.
char* CsvBatchFormat::appendQuoted(char* target, std::string_view text) const {
  if (!m_dialect.hasQuote) {
    return nullptr;
  }
  *target++ = m_dialect.quote;
  for (const char c : text) {
    if (c == m_dialect.quote) {
      *target++ = c;
    }
    *target++ = c;
  }
  *target++ = m_dialect.quote;
  return target;
}

}  // namespace kelvarin
