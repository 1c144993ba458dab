#include "library/arrow_streams/text_pieces.h"

#include <algorithm>

#include "library/arrow_streams/large_pages.h"

namespace kelvarin {

namespace {

constexpr std::size_t kLargestPiece = std::size_t{8} << 20;

}  // namespace

TextPieces::Piece TextPieces::take(std::size_t bytes, std::size_t expected) {
  const std::size_t size = bytes + kMargin;
  const std::lock_guard lock(m_mutex);
  // What has no space for these has little for others.
  while (!m_open.empty()) {
    const Piece piece = m_open.back();
    m_open.pop_back();
    if (piece.size - piece.used >= size) {
      return piece;
    }
  }
  Piece piece{nullptr, std::max(size, std::min(expected, kLargestPiece)), 0,
              static_cast<std::uint32_t>(m_buffers.memory.size())};
  auto memory = largeBytes(piece.size);
  piece.bytes = memory.get();
  m_buffers.memory.push_back(std::move(memory));
  m_buffers.sizes.push_back(0);
  return piece;
}

void TextPieces::giveBack(const Piece& piece) {
  const std::lock_guard lock(m_mutex);
  m_buffers.sizes[piece.index] = static_cast<std::int64_t>(piece.used);
  m_open.push_back(piece);
}

TextPieces::Buffers TextPieces::buffers() const {
  const std::lock_guard lock(m_mutex);
  return m_buffers;
}

}  // namespace kelvarin
