#include "host/tables/csv/csv_unit_reader.h"

#include <algorithm>
#include <cstring>

#include "host/tables/csv/csv_scanner.h"

namespace kelvarin {

namespace {

// A short row that is filled has as many values as a long one, however few bytes it has. Pieces are
// smaller where their values could take more memory than a file is worth.
std::size_t unitSizeFor(const CsvDialect& dialect, std::size_t columnCount, std::size_t wanted) {
  constexpr std::size_t kMaxValues = 8 * 1024 * 1024;
  constexpr std::size_t kShortestRow = 2;
  return dialect.areShortRowsFilled
             ? std::min(wanted,
                        std::max(kMaxValues / std::max<std::size_t>(columnCount, 1), kShortestRow))
             : wanted;
}

}  // namespace

CsvUnitReader::CsvUnitReader(TextInput& file, const CsvDialect& dialect, std::size_t columnCount,
                             std::string bytesRead, std::shared_ptr<CsvBlockStore> store,
                             std::size_t unitSize)
    : m_file(file),
      m_cutter(dialect),
      m_indexer(dialect, columnCount),
      m_left(std::move(bytesRead)),
      m_store(std::move(store)),
      m_unitSize(unitSizeFor(dialect, columnCount, unitSize)),
      m_spareBytes(CsvIndexer::spareBytes(dialect, columnCount)) {}

bool CsvUnitReader::read(CsvPiece& piece) {
  if (m_hasEnded) {
    return false;
  }
  piece.block = m_store->take();
  for (;;) {
    if (!fill(piece)) {
      return true;
    }
    if (m_isFileRead) {
      m_hasEnded = true;
      piece.isLast = true;
      return piece.size > 0;
    }
    const char* bytes = piece.block.bytes();
    const std::size_t whole = m_cutter.wholeRecords(bytes, piece.size);
    if (whole > 0) {
      m_left.insert(0, bytes + whole, piece.size - whole);
      piece.size = whole;
      return true;
    }
    if (isHopeless(piece)) {
      m_hasEnded = true;
      piece.isWhole = false;
      return true;
    }
  }
}

// False when reading has failed.
bool CsvUnitReader::fill(CsvPiece& piece) {
  const std::size_t size = std::max(m_unitSize, 2 * piece.size);
  piece.block.reserve(size + m_spareBytes, piece.size);
  const std::size_t left = std::min(m_left.size(), size - piece.size);
  std::memcpy(piece.block.bytes() + piece.size, m_left.data(), left);
  m_left.erase(0, left);
  piece.size += left;
  // What is left over may have whole records, which wait for nothing.
  const Result<ByteStream::Piece, QString> got =
      m_file.readNext(piece.block.bytes() + piece.size, size - piece.size, left > 0 ? 0 : 1);
  if (!got) {
    m_hasEnded = true;
    piece.failure = got.error();
    piece.size = 0;
    return false;
  }
  m_isFileRead = got->isLast && m_left.empty();
  piece.size += got->size;
  return true;
}

// The record that the piece is the start of is too long, or none whatever follows.
bool CsvUnitReader::isHopeless(CsvPiece& piece) {
  return piece.size > static_cast<std::size_t>(kLongestRecord) ||
         m_indexer.index(piece.block, piece.size, false).hasFault;
}

}  // namespace kelvarin
