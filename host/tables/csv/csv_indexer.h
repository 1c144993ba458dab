// Finds the records of a CSV text and marks their fields, at the speed of the bulk.
//
// The grammar is that of CsvScanner. Missing fields of a short row are marked as quoted and have no
// bytes, not even quotes.
// Errors: the position of the record that is none; the caller makes the message.
#pragma once

#include "host/tables/csv/csv_block.h"
#include "host/tables/csv/csv_bytes.h"

namespace kelvarin {

struct CsvIndex {
  long long rowCount = 0;
  std::size_t bytesUsed = 0;  // by whole records and the empty lines between them
  long long emptyLines = 0;   // that are no records
  bool hasRareBytes = false;  // a quote, CR or comment may be among the bytes used
  bool hasFault = false;      // the record after the bytes used is none
};

class CsvIndexer {
 public:
  CsvIndexer(const CsvDialect& dialect, std::size_t columnCount)
      : m_dialect(dialect), m_finder(dialect), m_columnCount(columnCount) {}

  // What CsvBlock::reserve() has to add, since fields that are missing have marks of their own
  // behind the end of their row.
  static std::size_t spareBytes(const CsvDialect& dialect, std::size_t columnCount) {
    return dialect.areShortRowsFilled ? columnCount : 0;
  }

  // Marks the whole records among the first `size` bytes of `block`. `isEnd`: nothing follows, so
  // that the last record needs no line end.
  CsvIndex index(CsvBlock& block, std::size_t size, bool isEnd);

 private:
  void takePlain(std::uint32_t start, std::uint64_t special);
  void takeSpecial(std::uint32_t at);
  void takeQuote(std::uint32_t at);
  void takeLineEnd(std::uint32_t at, std::uint32_t next);
  bool isOfComment(std::uint32_t at, char c);
  void endComment(std::uint32_t next);
  void fillRow(std::uint32_t at);
  void endRow(std::uint32_t next);
  void finish();
  void mark(std::uint32_t offset) { *m_mark++ = offset; }
  std::uint32_t fieldStart() const { return m_mark[-1] & ~CsvBlock::kQuotedMark; }
  bool isRecordStart(std::uint32_t at) const {
    return m_mark - m_record == 1 && at == m_record[0] && !m_isInQuotes;
  }
  // For as many marks as one step can make.
  void ensureCapacity(std::vector<std::uint32_t>& marks) {
    if (m_marksEnd - m_mark < kMaxMarksInStep) [[unlikely]] {
      grow(marks);
    }
  }
  void grow(std::vector<std::uint32_t>& marks);
  void dropSurplusMarks();

  // A line end makes two.
  static constexpr std::ptrdiff_t kMaxMarksInStep = 2 * CsvByteFinder::kStep + 2;

  CsvDialect m_dialect;
  CsvByteFinder m_finder;
  std::size_t m_columnCount;

  // Of the text being indexed:
  const char* m_bytes = nullptr;
  std::vector<std::uint32_t>* m_marks = nullptr;
  std::uint32_t m_size = 0;
  bool m_isEnd = false;
  std::uint32_t* m_record = nullptr;  // the first mark of the open record
  std::uint32_t* m_mark = nullptr;    // the next mark
  std::uint32_t* m_marksEnd = nullptr;
  std::uint32_t m_skipTo = 0;  // special bytes before have been taken with another
  bool m_isInQuotes = false;
  bool m_isInComment = false;
  bool m_isStopped = false;  // by a fault, or where it depends on bytes to come
  CsvIndex m_index;
};

}  // namespace kelvarin
