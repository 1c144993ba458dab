#include "host/tables/csv/csv_batch_format.h"

#include <algorithm>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "host/contract/text_operations.h"

namespace kelvarin {

namespace {

// With quotes around, every byte doubled, and a separator.
constexpr std::size_t kMaxNumberSize = 2 * NumberText::kCopied + 3;
constexpr std::string_view kNumberBytes = "0123456789.+-einfa";
// Bytes of a text that are read and written at once.
constexpr std::size_t kStep = 16;

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
  PrintedRows rows(batch);
  std::vector<Cursor> columns;
  columns.reserve(m_types.size());
  for (std::size_t i = 0; i < batch.columnCount(); ++i) {
    const BatchColumn& column = batch.column(i);
    columns.push_back({rows.numbers(i), &column, column.textBytes() + column.textSize()});
  }
  while (rows.next() && appendRows(*text, rows, columns)) {
  }
  return text;
}

// False when a field cannot be written.
bool CsvBatchFormat::appendRows(CsvText& text, const PrintedRows& rows,
                                const std::vector<Cursor>& columns) const {
  char* end = text.end();
  for (std::size_t row = rows.begin(); row < rows.end(); ++row) {
    char* target = text.reserve(end, m_fixedCapacity);
    const std::ptrdiff_t start = target - text.begin();
    for (const Cursor& column : columns) {
      target = column.numbers != nullptr ? appendNumber(target, column.numbers[row - rows.begin()])
                                         : appendText(text, target, column, rows.storedRow(row));
      if (target == nullptr) [[unlikely]] {
        const auto index = static_cast<int>(&column - columns.data());
        text.setEnd(text.begin() + start, row);
        text.setUnwritable({row, index, textOfValue(*column.column, rows.storedRow(row))});
        return false;
      }
      *target++ = m_dialect.separator;
    }
    // Replaces the last separator; a row without columns is an empty line.
    end = columns.empty() ? target + 1 : target;
    end[-1] = '\n';
  }
  text.setEnd(end, rows.end());
  return true;
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

// A number that is printed as the null text or holds the separator becomes a quoted field.
inline char* CsvBatchFormat::appendNumber(char* target, const NumberText& number) const {
  if (m_needsNumberCheck) [[unlikely]] {
    if (number.size == 0) {
      return appendNull(target);
    }
    if (needsQuote(number.text())) {
      return appendQuoted(target, number.text());
    }
  }
  std::memcpy(target, number.data(), NumberText::kCopied);
  return target + number.size;
}

inline char* CsvBatchFormat::appendText(CsvText& text, char* target, const Cursor& column,
                                        std::size_t row) const {
  const unsigned char* bytes = column.column->text(row);
  if (isNullText(bytes)) {
    return appendNull(target);
  }
  const std::string_view value = textAt(bytes);
  target = text.reserve(target, 2 * value.size() + m_fixedCapacity);
  if (copyPlain(target, value, column.textEnd)) [[likely]] {
    return target + value.size();
  }
  // An empty line would be a missing value.
  const bool isEmptyLine = value.empty() && m_types.size() == 1;
  if (isEmptyLine || needsQuote(value)) [[unlikely]] {
    return appendQuoted(target, value);
  }
  return std::copy(value.begin(), value.end(), target);
}

// Copies a text that needs no quotes, as can be seen while it is copied. False: it has to be looked
// at.
inline bool CsvBatchFormat::copyPlain([[maybe_unused]] char* target, std::string_view value,
                                      [[maybe_unused]] const unsigned char* end) const {
  if (value.empty() || value.size() == m_dialect.nullText.size()) {
    return false;
  }
#ifdef __SSE2__
  const char* bytes = value.data();
  const char quote = m_dialect.hasQuote ? m_dialect.quote : m_dialect.separator;
  const auto copyStep = [&](std::size_t at) {
    const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at));
    const auto is = [&](char c) { return _mm_cmpeq_epi8(chunk, _mm_set1_epi8(c)); };
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + at), chunk);
    return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(is('\n'), is('\r')),
                                          _mm_or_si128(is(m_dialect.separator), is(quote))));
  };
  if (value.size() < kStep) {
    const bool mayReadStep =
        end - reinterpret_cast<const unsigned char*>(bytes) >= static_cast<std::ptrdiff_t>(kStep);
    return mayReadStep && (copyStep(0) & ((1 << value.size()) - 1)) == 0;
  }
  const std::size_t last = value.size() - kStep;
  int special = copyStep(last);
  for (std::size_t at = 0; at < last; at += kStep) {
    special |= copyStep(at);
  }
  return special == 0;
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
