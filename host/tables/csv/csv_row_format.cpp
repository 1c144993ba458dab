#include "host/tables/csv/csv_row_format.h"


#include <fmt/compile.h>
#include <fmt/format.h>

#include "host/contract/shortest_number.h"

namespace kelvarin {

namespace {

constexpr std::size_t kFirstCapacity = 1 << 20;
constexpr std::size_t kLongestNumber = 40;
constexpr std::string_view kNumberBytes = "0123456789.+-einfa";

}  // namespace

CsvRowFormat::CsvRowFormat(const CsvDialect& dialect, std::vector<MetaTypeColumn> types)
    : m_dialect(dialect),
      m_types(std::move(types)),
      m_buffer(new char[kFirstCapacity]),
      m_capacity(kFirstCapacity) {
  for (const char c : {dialect.separator, '\n', '\r'}) {
    m_isSpecial[static_cast<unsigned char>(c)] = true;
  }
  if (dialect.hasQuote) {
    m_isSpecial[static_cast<unsigned char>(dialect.quote)] = true;
  }
  m_needsNumberCheck = !dialect.nullText.empty() ||
                       kNumberBytes.find(dialect.separator) != kNumberBytes.npos ||
                       (dialect.hasQuote && kNumberBytes.find(dialect.quote) != kNumberBytes.npos);
}

void CsvRowFormat::grow(std::size_t size) {
  m_capacity = 2 * m_capacity + size;
  std::unique_ptr<char[]> larger(new char[m_capacity]);
  std::memcpy(larger.get(), m_buffer.get(), m_used);
  m_buffer = std::move(larger);
}

std::optional<int> CsvRowFormat::appendRow(const OneRow& row) {
  unsigned char* const* values = row.getAllColForRead();
  const int columnCount = static_cast<int>(m_types.size());
  for (int i = 0; i < columnCount; ++i) {
    const unsigned char* value = values[i];
    bool isWritten;
    switch (m_types[static_cast<std::size_t>(i)]) {
      case MetaTypeColumn::number:
        isWritten = appendNumber(numberFromBytes(value));
        break;
      case MetaTypeColumn::key:
        isWritten = appendKey(keyFromBytes(value));
        break;
      default:
        isWritten = isNullText(value) ? appendNull() : appendText(textFromBytes(value));
    }
    if (!isWritten) [[unlikely]] {
      return i;
    }
    *reserve(1) = m_dialect.separator;
    ++m_used;
  }
  endLine();
  return std::nullopt;
}

std::optional<int> CsvRowFormat::appendNames(const OneRow& row) {
  for (int i = 0; i < row.sz(); ++i) {
    const QByteArray name = row.colName(i).toUtf8();
    const std::string_view text(name.constData(), static_cast<std::size_t>(name.size()));
    const bool isQuoted = text.empty() || needsQuote(text);
    if (isQuoted ? !appendQuoted(text) : !appendPlain(text)) {
      return i;
    }
    *reserve(1) = m_dialect.separator;
    ++m_used;
  }
  endLine();
  return std::nullopt;
}

// Replaces the last separator; a row without columns is an empty line.
void CsvRowFormat::endLine() {
  if (m_types.empty()) {
    *reserve(1) = '\n';
    ++m_used;
    return;
  }
  m_buffer[m_used - 1] = '\n';
}

bool CsvRowFormat::appendNumber(double number) {
  if (isNullNumber(number)) {
    return appendNull();
  }
  char* place = reserve(kLongestNumber);
  const std::size_t start = m_used;
  m_used += static_cast<std::size_t>(appendShortest(place, number) - place);
  return quoteIfNeeded(start);
}

bool CsvRowFormat::appendKey(std::uint32_t key) {
  if (isNullKey(key)) {
    return appendNull();
  }
  char* place = reserve(kLongestNumber);
  const std::size_t start = m_used;
  m_used += static_cast<std::size_t>(fmt::format_to(place, FMT_COMPILE("{}"), key) - place);
  return quoteIfNeeded(start);
}

// A number that is printed as the null text or holds the separator, as a quoted field.
bool CsvRowFormat::quoteIfNeeded(std::size_t start) {
  const std::string_view printed(m_buffer.get() + start, m_used - start);
  if (!m_needsNumberCheck || !needsQuote(printed)) [[likely]] {
    return true;
  }
  const std::string text(printed);
  m_used = start;
  return appendQuoted(text);
}

bool CsvRowFormat::needsQuote(std::string_view text) const {
  for (const char c : text) {
    if (m_isSpecial[static_cast<unsigned char>(c)]) {
      return true;
    }
  }
  return text == m_dialect.nullText;
}

bool CsvRowFormat::appendNull() {
  return appendPlain(m_dialect.nullText);
}

bool CsvRowFormat::appendPlain(std::string_view text) {
  std::memcpy(reserve(text.size()), text.data(), text.size());
  m_used += text.size();
  return true;
}

bool CsvRowFormat::appendText(std::string_view text) {
  // An empty line would be a missing value.
  const bool isEmptyLine = text.empty() && m_types.size() == 1;
  if (isEmptyLine || needsQuote(text)) [[unlikely]] {
    return appendQuoted(text);
  }
  return appendPlain(text);
}

bool CsvRowFormat::appendQuoted(std::string_view text) {
  if (!m_dialect.hasQuote) {
    return false;
  }
  reserve(2 * text.size() + 2);
  put(m_dialect.quote);
  for (const char c : text) {
    if (c == m_dialect.quote) {
      put(c);
    }
    put(c);
  }
  put(m_dialect.quote);
  return true;
}

}  // namespace kelvarin
