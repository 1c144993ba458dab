// Finds the records of a CSV text, with the lines they stand in and their fields.
//
// Follows the grammar of the bulk reader, at a fraction of its speed: it reads the header, and
// after an error it finds the position. A quote counts at the start of a field only; after the
// closing quote the field goes on unquoted. LF, CR and CR LF end a line. A line outside quotes that
// begins with the comment character is no record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/tables/csv/csv_dialect.h"

namespace kelvarin {

inline constexpr int kLongestRecordMebibytes = 256;
inline constexpr long long kLongestRecord = kLongestRecordMebibytes * 1024LL * 1024;

struct CsvRecord {
  long long line = 0;        // its first line, counted from 1
  long long byteCount = 0;   // without its line end
  bool isQuoteOpen = false;  // the text ended inside a quoted field,
  long long quoteLine = 0;   // which began in this line
  std::size_t fieldCount = 0;
  std::vector<std::string> fields;  // those that are kept; of too long a record, the beginning
};

class CsvScanner {
 public:
  static constexpr std::size_t kAllFields = SIZE_MAX;

  // Of each record the texts of the first `keptFields` fields are kept.
  CsvScanner(const CsvDialect& dialect, bool skipsEmptyLines, long long firstLine,
             std::size_t keptFields = kAllFields);

  // Reads on at `begin`, which moves. True: record() is complete and `begin` stands after its line
  // end. False: all bytes are used up; pass the following ones.
  bool scan(const char*& begin, const char* end);
  // To be called after the last byte; true when a record was open and is now complete.
  bool finish();
  const CsvRecord& record() const { return m_record; }
  // The line of the byte to be read next.
  long long line() const { return m_line; }

 private:
  enum class State { recordStart, fieldStart, field, quotedField, quoteInQuotedField, comment };

  bool take(char c);
  bool takeLineEnd(char c);
  void beginRecord();
  void beginField();
  void append(char c);
  void countLine(char c);

  CsvDialect m_dialect;
  bool m_skipsEmptyLines;
  std::size_t m_keptFields;
  State m_state = State::recordStart;
  CsvRecord m_record;
  long long m_line;
  bool m_isAfterReturn = false;  // the last byte was a CR, already counted as a line end
};

}  // namespace kelvarin
