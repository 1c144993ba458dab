#include "host/tables/csv/csv_indexer.h"

#include <bit>

namespace kelvarin {

CsvIndex CsvIndexer::index(CsvBlock& block, std::size_t size, bool isEnd) {
  std::vector<std::uint32_t>& marks = block.marks();
  m_bytes = block.bytes();
  m_marks = &marks;
  m_size = static_cast<std::uint32_t>(size);
  m_isEnd = isEnd;
  m_record = m_mark = marks.data();
  m_marksEnd = m_mark + marks.size();
  m_skipTo = 0;
  m_isInQuotes = false;
  m_isInComment = false;
  m_isStopped = false;
  m_index = {};
  ensureCapacity(marks);
  mark(0);
  for (std::uint32_t start = 0; start < m_size && !m_isStopped; start += CsvByteFinder::kStep) {
    CsvByteBits bits = m_finder.look(m_bytes + start);
    if (m_dialect.hasComments) [[unlikely]] {
      const std::uint64_t comments = bitsOfByte(m_dialect.comment, m_bytes + start);
      bits = {bits.special | comments, bits.rare | comments};
    }
    if (m_size - start < CsvByteFinder::kStep) {
      const std::uint64_t present = (std::uint64_t{1} << (m_size - start)) - 1;
      bits = {bits.special & present, bits.rare & present};
    }
    ensureCapacity(marks);
    if (m_isStopped) {
      break;
    }
    if (bits.rare == 0 && !m_isInQuotes && !m_isInComment && m_skipTo <= start) [[likely]] {
      takePlain(start, bits.special);
    } else {
      m_index.hasRareBytes = true;
      for (std::uint64_t left = bits.special; left != 0 && !m_isStopped; left &= left - 1) {
        takeSpecial(start + static_cast<std::uint32_t>(std::countr_zero(left)));
      }
    }
  }
  if (isEnd && !m_isStopped) {
    finish();
  }
  return m_index;
}

// Separators and LF only, outside quotes.
void CsvIndexer::takePlain(std::uint32_t start, std::uint64_t special) {
  const char separator = m_dialect.separator;
  std::uint32_t* next = m_mark;
  for (; special != 0; special &= special - 1) {
    const std::uint32_t at = start + static_cast<std::uint32_t>(std::countr_zero(special));
    *next++ = at + 1;
    if (m_bytes[at] == separator) {
      continue;
    }
    if (next - m_record != static_cast<std::ptrdiff_t>(m_columnCount) + 1) [[unlikely]] {
      m_mark = next - 1;
      takeLineEnd(at, at + 1);
      if (m_isStopped) {
        return;
      }
      next = m_mark;
      continue;
    }
    ++m_index.rowCount;
    m_index.bytesUsed = at + 1;
    m_record = next;
    *next++ = at + 1;
  }
  m_mark = next;
}

// A record that has more fields than columns already gets no memory for more: it is at fault
// whatever follows, or cut.
void CsvIndexer::grow(std::vector<std::uint32_t>& marks) {
  if (m_mark - m_record > static_cast<std::ptrdiff_t>(m_columnCount) + 1) {
    if (!m_dialect.areLongRowsCut) {
      m_index.hasFault = true;
      m_isStopped = true;
      return;
    }
    dropSurplusMarks();
    if (m_marksEnd - m_mark >= kMaxMarksInStep) {
      return;
    }
  }
  const auto used = static_cast<std::size_t>(m_mark - marks.data());
  const auto record = static_cast<std::size_t>(m_record - marks.data());
  marks.resize(2 * marks.size() + kMaxMarksInStep);
  m_record = marks.data() + record;
  m_mark = marks.data() + used;
  m_marksEnd = marks.data() + marks.size();
}

// Of the surplus fields only the last one, which is open, is kept.
void CsvIndexer::dropSurplusMarks() {
  std::uint32_t* surplus = m_record + m_columnCount + 1;
  *surplus = m_mark[-1];
  m_mark = surplus + 1;
}

void CsvIndexer::takeSpecial(std::uint32_t at) {
  if (at < m_skipTo) {
    return;
  }
  const char c = m_bytes[at];
  if (m_dialect.hasComments && isOfComment(at, c)) [[unlikely]] {
    return;
  }
  if (m_isInQuotes || (m_dialect.hasQuote && c == m_dialect.quote)) {
    takeQuote(at);
  } else if (c == '\n') {
    takeLineEnd(at, at + 1);
  } else if (c == m_dialect.separator) {
    mark(at + 1);
  } else if (at + 1 == m_size && !m_isEnd) {
    m_isStopped = true;
  } else {
    const bool isTwoBytes = at + 1 < m_size && m_bytes[at + 1] == '\n';
    m_skipTo = at + (isTwoBytes ? 2 : 1);
    takeLineEnd(at, m_skipTo);
  }
}

// A byte of a comment but its end, or a comment character that begins none.
bool CsvIndexer::isOfComment(std::uint32_t at, char c) {
  if (m_isInComment) {
    return c != '\n' && c != '\r';
  }
  if (c != m_dialect.comment) {
    return false;
  }
  m_isInComment = isRecordStart(at);
  return true;
}

// A special byte inside quotes, or a quote.
void CsvIndexer::takeQuote(std::uint32_t at) {
  if (!m_isInQuotes) {
    if (at == fieldStart()) {
      m_mark[-1] |= CsvBlock::kQuotedMark;
      m_isInQuotes = true;
    }
    return;
  }
  if (m_bytes[at] != m_dialect.quote) {
    return;
  }
  if (at + 1 == m_size && !m_isEnd) {
    m_isStopped = true;
  } else if (at + 1 < m_size && m_bytes[at + 1] == m_dialect.quote) {
    m_skipTo = at + 2;
  } else {
    m_isInQuotes = false;
  }
}

void CsvIndexer::takeLineEnd(std::uint32_t at, std::uint32_t next) {
  if (m_isInComment) [[unlikely]] {
    endComment(next);
    return;
  }
  const auto fieldCount = static_cast<std::size_t>(m_mark - m_record);
  if (fieldCount == m_columnCount) [[likely]] {
    mark(at + 1);
  } else if (fieldCount == 1 && at == m_record[0]) {
    m_mark = m_record;
    ++m_index.emptyLines;
    m_index.bytesUsed = next;
    mark(next);
    return;
  } else if (fieldCount < m_columnCount && m_dialect.areShortRowsFilled) {
    fillRow(at);
  } else if (fieldCount > m_columnCount && m_dialect.areLongRowsCut) {
    m_mark = m_record + m_columnCount + 1;
  } else {
    m_index.hasFault = true;
    m_isStopped = true;
    return;
  }
  endRow(next);
}

void CsvIndexer::endComment(std::uint32_t next) {
  m_isInComment = false;
  ++m_index.emptyLines;
  m_index.bytesUsed = next;
  m_mark = m_record;
  mark(next);
}

// The row ends before `at`, with too few fields.
void CsvIndexer::fillRow(std::uint32_t at) {
  while (m_marksEnd - m_mark < static_cast<std::ptrdiff_t>(m_columnCount) + kMaxMarksInStep) {
    grow(*m_marks);
  }
  mark(at + 1);
  while (m_mark - m_record < static_cast<std::ptrdiff_t>(m_columnCount) + 1) {
    const std::uint32_t missing = fieldStart();
    m_mark[-1] |= CsvBlock::kQuotedMark;
    mark(missing + 1);
  }
}

void CsvIndexer::endRow(std::uint32_t next) {
  ++m_index.rowCount;
  m_index.bytesUsed = next;
  m_record = m_mark;
  mark(next);
}

// The text ends without a line end, or after one.
void CsvIndexer::finish() {
  if (m_isInQuotes) {
    m_index.hasFault = true;
  } else if (m_isInComment || m_record[0] != m_size || m_mark - m_record > 1) {
    takeLineEnd(m_size, m_size);
  }
}

}  // namespace kelvarin
