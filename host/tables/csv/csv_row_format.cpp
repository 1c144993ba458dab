#include "host/tables/csv/csv_row_format.h"

#include <algorithm>

#include "base/shortest_number.h"

namespace kelvarin {

namespace {

constexpr std::size_t kFirstCapacity = 256 * 1024;
// With quotes around, every byte doubled, and a separator.
constexpr std::size_t kMaxNumberSize = 2 * kLongestNumberText + 3;
constexpr std::string_view kNumberBytes = "0123456789.+-einfa";

}  // namespace

CsvRowFormat::CsvRowFormat(const CsvDialect& dialect, std::vector<MetaTypeColumn> types)
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
  reserve(kFirstCapacity);
}

char* CsvRowFormat::reserve(std::size_t size) {
  if (m_capacity - m_used < size + m_fixedCapacity) [[unlikely]] {
    m_capacity = m_capacity + m_capacity / 2 + size + m_fixedCapacity;
    std::unique_ptr<char[]> larger(new char[m_capacity]);
    if (m_used > 0) {
      std::memcpy(larger.get(), m_buffer.get(), m_used);
    }
    m_buffer = std::move(larger);
  }
  return m_buffer.get() + m_used;
}

std::optional<int> CsvRowFormat::appendRow(const OneRow& row) {
  unsigned char* const* values = row.getAllColForRead();
  const int columnCount = static_cast<int>(m_types.size());
  char* target = reserve(0);
  for (int i = 0; i < columnCount; ++i) {
    target = appendValue(target, m_types[static_cast<std::size_t>(i)], values[i]);
    if (target == nullptr) [[unlikely]] {
      return i;
    }
    *target++ = m_dialect.separator;
  }
  endLine(target);
  return std::nullopt;
}

std::optional<int> CsvRowFormat::appendNames(const OneRow& row) {
  char* target = reserve(0);
  for (int i = 0; i < row.sz(); ++i) {
    const QByteArray name = row.colName(i).toUtf8();
    const std::string_view text(name.constData(), static_cast<std::size_t>(name.size()));
    // Nor is a name to look like a missing value.
    target = text.empty() ? appendQuoted(target, text) : appendText(target, text);
    if (target == nullptr) {
      return i;
    }
    *target++ = m_dialect.separator;
  }
  endLine(target);
  return std::nullopt;
}

// Replaces the last separator; a row without columns is an empty line.
void CsvRowFormat::endLine(char* end) {
  if (m_types.empty()) {
    ++end;
  }
  end[-1] = '\n';
  m_used = static_cast<std::size_t>(end - m_buffer.get());
}

inline char* CsvRowFormat::appendValue(char* target, MetaTypeColumn type,
                                       const unsigned char* value) {
  if (type == MetaTypeColumn::number) {
    const double number = numberFromBytes(value);
    return isNullNumber(number) ? appendNull(target)
                                : quotedIfNeeded(target, appendShortest(target, number));
  }
  if (type == MetaTypeColumn::key) {
    const std::uint32_t key = keyFromBytes(value);
    return isNullKey(key) ? appendNull(target) : quotedIfNeeded(target, appendWhole(target, key));
  }
  return isNullText(value) ? appendNull(target) : appendText(target, textFromBytes(value));
}

// A number that is printed as the null text or holds the separator becomes a quoted field.
inline char* CsvRowFormat::quotedIfNeeded(char* target, char* end) const {
  const std::string_view printed(target, static_cast<std::size_t>(end - target));
  if (!m_needsNumberCheck || !needsQuote(printed)) [[likely]] {
    return end;
  }
  return appendQuoted(target, std::string(printed));
}

bool CsvRowFormat::needsQuote(std::string_view text) const {
  for (const char c : text) {
    if (m_isSpecial[static_cast<unsigned char>(c)]) {
      return true;
    }
  }
  return text == m_dialect.nullText;
}

char* CsvRowFormat::appendNull(char* target) const {
  const std::string& text = m_dialect.nullText;
  std::memcpy(target, text.data(), text.size());
  return target + text.size();
}

char* CsvRowFormat::appendText(char* target, std::string_view text) {
  m_used = static_cast<std::size_t>(target - m_buffer.get());
  target = reserve(2 * text.size() + 2);
  // An empty line would be a missing value.
  const bool isEmptyLine = text.empty() && m_types.size() == 1;
  if (isEmptyLine || needsQuote(text)) [[unlikely]] {
    return appendQuoted(target, text);
  }
  std::memcpy(target, text.data(), text.size());
  return target + text.size();
}

// The capacity suffices for all bytes doubled.
char* CsvRowFormat::appendQuoted(char* target, std::string_view text) const {
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
