// Reads the data of a CSV file in pieces of whole records.
//
// Records of a pipe do not wait for further ones that take their time.
// A record longer than a piece makes its piece grow, up to the longest record. Regular files and
// pipes are read alike, once.
// Threads: one at a time.
// Errors: texts for the user.
#pragma once

#include <memory>

#include "host/tables/csv/csv_cutter.h"
#include "host/tables/csv/csv_indexer.h"
#include "host/tables/files/buffer_store.h"
#include "host/tables/text_input/text_input.h"

namespace kelvarin {

using CsvBlockStore = BufferStore<CsvBlock>;

struct CsvPiece {
  CsvBlock block;  // not indexed yet
  std::size_t size = 0;
  // Ends with a record. Else the one record is too long, or none whatever follows.
  bool isWhole = true;
  // Nothing follows.
  bool isLast = false;
  QString failure;  // of reading; there are no bytes then
};

class CsvUnitReader {
 public:
  // Enough for a task, and few enough that bytes, marks and values stay in the processor's caches.
  static constexpr std::size_t kUnitSize = 128 * 1024;

  // `bytesRead` stand before what `file` yields. `store` has used blocks.
  CsvUnitReader(TextInput& file, const CsvDialect& dialect, std::size_t columnCount,
                std::string bytesRead, std::shared_ptr<CsvBlockStore> store, std::size_t unitSize);

  // False: the end.
  bool read(CsvPiece& piece);

 private:
  bool fill(CsvPiece& piece);
  bool isHopeless(CsvPiece& piece);

  TextInput& m_file;
  CsvCutter m_cutter;
  CsvIndexer m_indexer;
  std::string m_left;  // read, and to be the start of the next piece
  std::shared_ptr<CsvBlockStore> m_store;
  std::size_t m_unitSize;
  std::size_t m_spareBytes;  // behind the bytes of a block
  bool m_isFileRead = false;
  bool m_hasEnded = false;
};

}  // namespace kelvarin
