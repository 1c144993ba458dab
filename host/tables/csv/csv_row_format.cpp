#include "host/tables/csv/csv_row_format.h"

#include <algorithm>

#include "base/shortest_number.h"

namespace kelvarin {

namespace {

constexpr std::size_t kFirstCapacity = 256 * 1024;
// With quotes around, every byte doubled, and a separator.
constexpr std::size_t kRoomOfNumber = 2 * kLongestNumberText + 3;
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
  const std::size_t roomOfField = std::max(kRoomOfNumber, dialect.nullText.size() + 1);
  m_fixedRoom = m_types.size() * roomOfField + 1;
  reserve(kFirstCapacity);
}

char* CsvRowFormat::reserve(std::size_t size) {
  if (m_capacity - m_used < size + m_fixedRoom) [[unlikely]] {
    m_capacity = m_capacity + m_capacity / 2 + size + m_fixedRoom;
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
  char* place = reserve(0);
  for (int i = 0; i < columnCount; ++i) {
    place = appendValue(place, m_types[static_cast<std::size_t>(i)], values[i]);
    if (place == nullptr) [[unlikely]] {
      return i;
    }
    *place++ = m_dialect.separator;
  }
  endLine(place);
  return std::nullopt;
}

std::optional<int> CsvRowFormat::appendNames(const OneRow& row) {
  char* place = reserve(0);
  for (int i = 0; i < row.sz(); ++i) {
    const QByteArray name = row.colName(i).toUtf8();
    const std::string_view text(name.constData(), static_cast<std::size_t>(name.size()));
    // Nor is a name to look like a missing value.
    place = text.empty() ? appendQuoted(place, text) : appendText(place, text);
    if (place == nullptr) {
      return i;
    }
    *place++ = m_dialect.separator;
  }
  endLine(place);
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

inline char* CsvRowFormat::appendValue(char* place, MetaTypeColumn type,
                                       const unsigned char* value) {
  if (type == MetaTypeColumn::number) {
    const double number = numberFromBytes(value);
    return isNullNumber(number) ? appendNull(place)
                                : quotedIfNeeded(place, appendShortest(place, number));
  }
  if (type == MetaTypeColumn::key) {
    const std::uint32_t key = keyFromBytes(value);
    return isNullKey(key) ? appendNull(place) : quotedIfNeeded(place, appendWhole(place, key));
  }
  return isNullText(value) ? appendNull(place) : appendText(place, textFromBytes(value));
}

// A number that is printed as the null text or holds the separator becomes a quoted field.
inline char* CsvRowFormat::quotedIfNeeded(char* place, char* end) const {
  const std::string_view printed(place, static_cast<std::size_t>(end - place));
  if (!m_needsNumberCheck || !needsQuote(printed)) [[likely]] {
    return end;
  }
  return appendQuoted(place, std::string(printed));
}

bool CsvRowFormat::needsQuote(std::string_view text) const {
  for (const char c : text) {
    if (m_isSpecial[static_cast<unsigned char>(c)]) {
      return true;
    }
  }
  return text == m_dialect.nullText;
}

char* CsvRowFormat::appendNull(char* place) const {
  const std::string& text = m_dialect.nullText;
  std::memcpy(place, text.data(), text.size());
  return place + text.size();
}

char* CsvRowFormat::appendText(char* place, std::string_view text) {
  m_used = static_cast<std::size_t>(place - m_buffer.get());
  place = reserve(2 * text.size() + 2);
  // An empty line would be a missing value.
  const bool isEmptyLine = text.empty() && m_types.size() == 1;
  if (isEmptyLine || needsQuote(text)) [[unlikely]] {
    return appendQuoted(place, text);
  }
  std::memcpy(place, text.data(), text.size());
  return place + text.size();
}

// There is room for all bytes doubled.
char* CsvRowFormat::appendQuoted(char* place, std::string_view text) const {
  if (!m_dialect.hasQuote) {
    return nullptr;
  }
  *place++ = m_dialect.quote;
  for (const char c : text) {
    if (c == m_dialect.quote) {
      *place++ = c;
    }
    *place++ = c;
  }
  *place++ = m_dialect.quote;
  return place;
}

}  // namespace kelvarin
