// Where things stand in a CSV file, found by reading it a second time after an error.
//
// A pipe cannot be read a second time; its places are row numbers.
// Threads: any; the file is read at own offsets.
#pragma once

#include <optional>

#include "host/tables/csv/csv_head.h"

namespace kelvarin {

class CsvPlaces {
 public:
  // `head` describes where the data of `file` begins.
  CsvPlaces(const CsvFile& file, const CsvDialect& dialect, const CsvHead& head);

  // "file 'a.csv', line 17" for a row of data, counted from 0.
  QString placeOfRow(long long row) const;
  // The same for ascending rows, in one pass.
  QStringList placesOfRows(const std::vector<long long>& rows) const;

  // The first record that is no row: a quote that is not closed, more than the longest record,
  // another number of fields. Empty when there is none, or it cannot be found.
  QString firstFault() const;
  // True when a quote in the data from `offset`, the start of a record, is never closed.
  bool endsInsideQuote(long long offset) const;

 private:
  template <typename Visitor>
  void visitRecords(long long offset, Visitor visitor) const;
  QString faultOf(const CsvRecord& record) const;

  const CsvFile& m_file;
  CsvDialect m_dialect;
  QVector<QString> m_names;
  long long m_dataOffset;
  long long m_dataLine;
};

}  // namespace kelvarin
