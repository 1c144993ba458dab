// The bytes of long texts that views point to, of one column of a whole table.
//
// Used by: whole_columns.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace kelvarin {

class TextPieces {
 public:
  // Behind the memory for texts there are so many bytes more.
  static constexpr std::size_t kMargin = 16;

  // One piece, which belongs to whoever has it until it is given back.
  struct Piece {
    unsigned char* bytes = nullptr;
    std::size_t size = 0;
    std::size_t used = 0;
    std::uint32_t index = 0;  // of its buffer

    unsigned char* end() const { return bytes + used; }
  };

  // A piece with space for so many bytes of texts, less than INT_MAX. All of them may take
  // `expected` bytes.
  Piece take(std::size_t bytes, std::size_t expected);
  void giveBack(const Piece& piece);

  // Of the texts so far, which live as long as the shared memory.
  struct Buffers {
    std::vector<std::shared_ptr<const unsigned char[]>> memory;
    std::vector<std::int64_t> sizes;
  };
  Buffers buffers() const;

 private:
  mutable std::mutex m_mutex;  // guards what follows
  Buffers m_buffers;
  std::vector<Piece> m_open;  // those that nobody has
};

}  // namespace kelvarin
