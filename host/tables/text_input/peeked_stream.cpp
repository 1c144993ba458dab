#include "host/tables/text_input/peeked_stream.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

Result<std::string_view, QString> PeekedStream::peek(std::size_t size) {
  constexpr std::size_t kMinStep = 64 * 1024;
  while (m_ahead.size() - m_used < size && !m_isSourceRead) {
    const std::size_t before = m_ahead.size();
    const std::size_t missing = size - (before - m_used);
    m_ahead.resize(before + std::max(missing, kMinStep));
    const Result<Piece, QString> got =
        m_source.readNext(m_ahead.data() + before, m_ahead.size() - before, missing);
    m_ahead.resize(before + (got ? got->size : 0));
    if (!got) {
      return Failure{got.error()};
    }
    m_isSourceRead = got->isLast;
  }
  return std::string_view(m_ahead).substr(m_used);
}

Result<ByteStream::Piece, QString> PeekedStream::readNext(char* bytes, std::size_t size,
                                                          std::size_t atLeast) {
  const std::size_t ahead = std::min(m_ahead.size() - m_used, size);
  if (ahead > 0) {
    std::memcpy(bytes, m_ahead.data() + m_used, ahead);
    m_used += ahead;
    if (m_used == m_ahead.size()) {
      m_ahead = {};
      m_used = 0;
    }
  }
  if (m_isSourceRead) {
    return Piece{ahead, m_ahead.empty()};
  }
  if (ahead == size) {
    return Piece{ahead, false};
  }
  Result<Piece, QString> got =
      m_source.readNext(bytes + ahead, size - ahead, atLeast > ahead ? atLeast - ahead : 0);
  if (got) {
    got->size += ahead;
  } else if (ahead > 0) {
    return Piece{ahead, false};  // the failure comes again
  }
  return got;
}

}  // namespace kelvarin
