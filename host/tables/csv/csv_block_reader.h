// Reads the data of a CSV file block by block, each of some whole records.
//
// A record longer than a block makes its block grow, up to the longest record. Regular files and
// pipes are read alike, once.
// Errors: texts for the user, with the line.
#pragma once

#include <QVector>

#include "host/tables/csv/csv_file.h"
#include "host/tables/csv/csv_head.h"
#include "host/tables/csv/csv_indexer.h"
#include "host/tables/files/batch_reader.h"

namespace kelvarin {

class CsvBlockReader {
 public:
  // Goes on where `head` ended, and takes the bytes that it has read too many.
  CsvBlockReader(CsvFile& file, const CsvDialect& dialect, CsvHead& head,
                 const QVector<QString>& columnNames);

  // A block has one row at least.
  Result<ReadOutcome, QString> next(CsvBlock& block);
  // Bytes of the file after the last block.
  long long offset() const { return m_offset; }

 private:
  Result<std::size_t, QString> fill(CsvBlock& block, std::size_t kept);
  QString faultText(const char* record, std::size_t size) const;

  CsvFile& m_file;
  CsvDialect m_dialect;
  QVector<QString> m_columnNames;
  CsvIndexer m_indexer;
  std::string m_left;  // read, and to be the start of the next block
  bool m_isFileRead = false;
  long long m_offset;
  long long m_line;
};

}  // namespace kelvarin
