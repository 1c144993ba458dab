// A pin's whole table kept in a file: its columns, then its rows one after the other.
//
// Layout, integers little-endian:
//   8 bytes "KelvTbl1"
//   u32 byte length of the head that follows
//   head: u32 column count; each column: MetaInfo (8 bytes), name (u32 byte count, UTF-8);
//         u32 count of sort entries; each entry: SortInfos (5 bytes)
//   each row: u32 byte length, then each column: u8 1 when missing, else 0 and the value's bytes
//   (column_bytes.h)
// The file ends after the last row.
// Errors: a file of another layout is refused, and reading stops with an error text at a row that
// is damaged or cut off; nothing is read out of bounds.
#pragma once

#include <vector>

#include "base/export.h"
#include "host/contract/one_row.h"
#include "host/files/buffer_writer.h"
#include "host/files/read_file.h"

// Append the file's beginning, from a row's columns, and a row to a buffer.
KELVARIN_CORE void putTableHead(BufferWriter& out, const OneRow& columns);
KELVARIN_CORE void putTableRow(BufferWriter& out, const OneRow& row);

class KELVARIN_CORE CItemHDReader {
 public:
  CItemHDReader() = default;
  CItemHDReader(const CItemHDReader&) = delete;
  CItemHDReader& operator=(const CItemHDReader&) = delete;

  // False when the file cannot be read or is no saved table; errorText() says which.
  bool open(const QString& path);
  // The table's columns; its values are those of the last row read.
  const OneRow& columns() const { return m_row; }
  // Valid until the next call. Null at the end, and where the file is damaged: then errorText() is
  // not empty.
  const OneRow* next();
  QString errorText() const { return m_errorText; }

 private:
  bool readHead();
  // Points the row at the values in m_bytes; false when they do not fit.
  bool pointAtValues();
  bool fail(const QString& text);

  MyReadFileCached m_file;
  PinOutMetaData m_metaData;
  OneRow m_row{&m_metaData};
  std::vector<unsigned char> m_bytes;
  QString m_errorText;
};
