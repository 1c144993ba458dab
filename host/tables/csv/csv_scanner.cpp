#include "host/tables/csv/csv_scanner.h"

namespace kelvarin {

CsvScanner::CsvScanner(const CsvDialect& dialect, bool skipsEmptyLines, long long firstLine,
                       std::size_t keptFields)
    : m_dialect(dialect),
      m_skipsEmptyLines(skipsEmptyLines),
      m_keptFields(keptFields),
      m_line(firstLine) {}

bool CsvScanner::scan(const char*& begin, const char* end) {
  while (begin < end) {
    const char c = *begin++;
    if (m_isAfterReturn && c == '\n' && m_state != State::quotedField) {
      m_isAfterReturn = false;
      continue;
    }
    const bool isComplete = take(c);
    if (isComplete) {
      if (m_isAfterReturn && begin < end && *begin == '\n') {
        ++begin;
        m_isAfterReturn = false;
      }
      return true;
    }
  }
  return false;
}

bool CsvScanner::finish() {
  if (m_state == State::recordStart || m_state == State::comment) {
    return false;
  }
  if (m_state == State::fieldStart) {
    beginField();
  }
  m_record.isQuoteOpen = m_state == State::quotedField;
  m_state = State::recordStart;
  return true;
}

void CsvScanner::beginRecord() {
  m_record.line = m_line;
  m_record.byteCount = 0;
  m_record.isQuoteOpen = false;
  m_record.fieldCount = 0;
  m_record.fields.clear();
}

void CsvScanner::beginField() {
  if (m_record.fieldCount++ < m_keptFields) {
    m_record.fields.emplace_back();
  }
}

void CsvScanner::append(char c) {
  if (m_record.byteCount <= kLongestRecord && m_record.fieldCount <= m_keptFields) {
    m_record.fields.back() += c;
  }
}

void CsvScanner::countLine(char c) {
  m_line += c == '\r' || (c == '\n' && !m_isAfterReturn) ? 1 : 0;
  m_isAfterReturn = c == '\r';
}

// True when the line end completes a record.
bool CsvScanner::takeLineEnd(char c) {
  if (m_state == State::comment) {
    countLine(c);
    m_state = State::recordStart;
    return false;
  }
  const bool isEmptyLine = m_state == State::recordStart;
  if (isEmptyLine) {
    beginRecord();
  }
  countLine(c);
  if (isEmptyLine && m_skipsEmptyLines) {
    return false;
  }
  if (isEmptyLine || m_state == State::fieldStart) {
    beginField();
  }
  m_state = State::recordStart;
  return true;
}

bool CsvScanner::take(char c) {
  const bool isLineEnd = c == '\n' || c == '\r';
  if (m_state == State::quotedField) {
    ++m_record.byteCount;
    countLine(c);
    if (c == m_dialect.quote) {
      m_state = State::quoteInQuotedField;
    } else {
      append(c);
    }
    return false;
  }
  if (isLineEnd) {
    return takeLineEnd(c);
  }
  m_isAfterReturn = false;
  if (m_state == State::comment) {
    return false;
  }
  if (m_state == State::recordStart) {
    if (m_dialect.hasComments && c == m_dialect.comment) {
      m_state = State::comment;
      return false;
    }
    beginRecord();
    m_state = State::fieldStart;
  }
  ++m_record.byteCount;
  if (m_state == State::fieldStart) {
    beginField();
    if (m_dialect.hasQuote && c == m_dialect.quote) {
      m_record.quoteLine = m_line;
      m_state = State::quotedField;
      return false;
    }
  }
  if (m_state == State::quoteInQuotedField && c == m_dialect.quote) {
    append(c);
    m_state = State::quotedField;
    return false;
  }
  if (c == m_dialect.separator) {
    m_state = State::fieldStart;
    return false;
  }
  append(c);
  m_state = State::field;
  return false;
}

}  // namespace kelvarin
