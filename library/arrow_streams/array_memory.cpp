#include "library/arrow_streams/array_memory.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "library/arrow_streams/large_pages.h"

namespace kelvarin {

namespace {

constexpr std::size_t kFewBytes = 1 << 20;
constexpr std::size_t kPieceSize = 8 << 20;
constexpr std::size_t kMaxSparePieces = 8;
constexpr std::size_t kAlignment = 64;

// Pieces that nobody uses, of all streams: fresh memory costs as much as what is put into it.
class SparePieces {
 public:
  static SparePieces& instance() {
    // Never destroyed, since arrays may be released when the process ends.
    static auto* const pieces = new SparePieces;
    return *pieces;
  }

  // Null: there is none.
  unsigned char* take() {
    const std::lock_guard lock(m_mutex);
    if (m_pieces.empty()) {
      return nullptr;
    }
    unsigned char* const piece = m_pieces.back();
    m_pieces.pop_back();
    return piece;
  }
  // False: there are enough.
  bool put(unsigned char* piece) {
    const std::lock_guard lock(m_mutex);
    if (m_pieces.size() == kMaxSparePieces) {
      return false;
    }
    m_pieces.push_back(piece);
    return true;
  }

 private:
  SparePieces() { m_pieces.reserve(kMaxSparePieces); }

  std::mutex m_mutex;
  std::vector<unsigned char*> m_pieces;
};

unsigned char* pieceBytes(std::size_t size) {
  unsigned char* const spare = size == kPieceSize ? SparePieces::instance().take() : nullptr;
  return spare != nullptr ? spare : mapLargePages(size);
}

void releasePieceBytes(unsigned char* bytes, std::size_t size) {
  if (size != kPieceSize || !SparePieces::instance().put(bytes)) {
    unmapLargePages(bytes, size);
  }
}

}  // namespace

// Memory in large pages for several arrays.
class ArrayMemory::Piece {
 public:
  Piece(std::size_t size, std::shared_ptr<ByteCount> kept)
      : m_size(size), m_bytes(pieceBytes(size)), m_kept(std::move(kept)) {
    *m_kept += m_size;
  }
  ~Piece() {
    releasePieceBytes(m_bytes, m_size);
    *m_kept -= m_size;
  }
  Piece(const Piece&) = delete;
  Piece& operator=(const Piece&) = delete;

  std::size_t size() const { return m_size; }
  unsigned char* bytes() const { return m_bytes; }

 private:
  const std::size_t m_size;
  unsigned char* const m_bytes;
  const std::shared_ptr<ByteCount> m_kept;
};

std::shared_ptr<void> ArrayMemory::allocateBytes(std::size_t column, std::size_t size) {
  const std::lock_guard lock(m_mutex);
  Column& taken = columnAt(column);
  return *taken.kept < kFewBytes ? smallBytes(taken, size) : partOfPiece(taken, size);
}

std::shared_ptr<const void> ArrayMemory::keepBytes(std::size_t column,
                                                   std::shared_ptr<const void> owner,
                                                   const void* bytes, std::size_t size) {
  std::shared_ptr<void> copy;
  {
    const std::lock_guard lock(m_mutex);
    Column& taken = columnAt(column);
    if (*taken.kept < kFewBytes) {
      *taken.kept += size;
      return {bytes, [owner = std::move(owner), kept = taken.kept, size](const void*) mutable {
                owner.reset();
                *kept -= size;
              }};
    }
    copy = partOfPiece(taken, size);
  }
  std::memcpy(copy.get(), bytes, size);
  return copy;
}

// With the mutex locked.
ArrayMemory::Column& ArrayMemory::columnAt(std::size_t column) {
  if (column >= m_columns.size()) {
    m_columns.resize(column + 1);
  }
  return m_columns[column];
}

std::shared_ptr<void> ArrayMemory::smallBytes(const Column& column, std::size_t size) {
  const std::shared_ptr<ByteCount> kept = column.kept;
  std::shared_ptr<void> bytes(::operator new(std::max<std::size_t>(size, 1)),
                              [kept, size](void* freed) {
                                ::operator delete(freed);
                                *kept -= size;
                              });
  *kept += size;
  return bytes;
}

std::shared_ptr<void> ArrayMemory::partOfPiece(Column& column, std::size_t size) {
  if (column.piece == nullptr || column.piece->size() - column.used < size) {
    const std::size_t whole = std::max(roundedUp(size, kLargePage), kPieceSize);
    column.piece = std::make_shared<const Piece>(whole, column.kept);
    column.used = 0;
  }
  unsigned char* const begin = column.piece->bytes() + column.used;
  column.used = std::min(roundedUp(column.used + size, kAlignment), column.piece->size());
  return {column.piece, begin};
}

}  // namespace kelvarin
