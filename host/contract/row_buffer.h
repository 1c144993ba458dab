// Growable storage for the bytes of produced column values.
//
// Bytes stay where they are until the next reset(), so that rows can point at them; memory is kept
// over a reset, so that a steady run allocates nothing.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include <QString>

#include "base/export.h"

class KELVARIN_CORE RowBuffer {
 public:
  // `size` is the first chunk's size in bytes.
  explicit RowBuffer(int size);
  ~RowBuffer();
  RowBuffer(const RowBuffer&) = delete;
  RowBuffer& operator=(const RowBuffer&) = delete;

  // Starts again at the first byte; what was allocated before is invalid.
  void reset();
  // As reset(), and returns memory beyond `bytesKept` to the system.
  void deepReset(long long bytesKept);
  bool isEmpty() const { return m_chunkInUse == 0 && m_used == 0; }

  // A buffer of `size` bytes, valid until the next reset.
  unsigned char* allocate(std::size_t size) {
    if (size <= m_chunks[m_chunkInUse].size - m_used) [[likely]] {
      unsigned char* bytes = m_chunks[m_chunkInUse].bytes.get() + m_used;
      m_used += size;
      return bytes;
    }
    return allocateInNextChunk(size);
  }

 private:
  struct Chunk {
    std::unique_ptr<unsigned char[]> bytes;
    std::size_t size;
  };

  unsigned char* allocateInNextChunk(std::size_t size);

  std::vector<Chunk> m_chunks;
  std::size_t m_chunkInUse = 0;
  std::size_t m_used = 0;
};

// Stores a value and returns its bytes for a row's pointer slot. `alignment` is the wanted
// alignment of the bytes; 0 and 1 mean none.
KELVARIN_CORE unsigned char* bytesFromDouble(RowBuffer* buffer, double value, int alignment);
KELVARIN_CORE unsigned char* bytesFromKey(RowBuffer* buffer, unsigned int key);
// A null QString is stored as the null text. Half a surrogate pair is stored as U+FFFD.
KELVARIN_CORE unsigned char* bytesFromQString(RowBuffer* buffer, const QString& text);
KELVARIN_CORE unsigned char* bytesFromUtf8(RowBuffer* buffer, std::string_view text);
// Writes to `out`, which has space for bytesNeeded(text); returns the end of what was written.
KELVARIN_CORE unsigned char* bytesFromQString(unsigned char* out, const QString& text);
KELVARIN_CORE std::size_t bytesNeeded(const QString& text);
KELVARIN_CORE unsigned char* bytesOfNullText();

KELVARIN_CORE QString qStringFromBytes(const unsigned char* bytes);
