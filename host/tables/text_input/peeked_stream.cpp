#include "host/tables/text_input/peeked_stream.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

Result<std::string_view, QString> PeekedStream::peek(std::size_t size) {
  while (ahead().size() < size && !m_isSourceRead) {
    const std::size_t missing = size - ahead().size();
    if (const auto status = readAhead(missing, missing); !status) {
      return Failure{status.error()};
    }
  }
  return ahead();
}

Result<std::string_view, QString> PeekedStream::peekUntilPause(std::size_t size, long long lines) {
  const auto hasLines = [&] {
    const std::string_view text = ahead();
    return std::max(std::ranges::count(text, '\n'), std::ranges::count(text, '\r')) >= lines;
  };
  bool isPause = false;
  while (ahead().size() < size && !m_isSourceRead && !isPause) {
    const std::size_t atLeast = hasLines() ? 0 : 1;
    if (const auto status = readAhead(size - ahead().size(), atLeast); !status) {
      return Failure{status.error()};
    }
    isPause = hasLines();
  }
  return ahead();
}

Status<QString> PeekedStream::readAhead(std::size_t size, std::size_t atLeast) {
  constexpr std::size_t kMinStep = 64 * 1024;
  const std::size_t before = m_ahead.size();
  m_ahead.resize(before + std::max(size, kMinStep));
  const Result<Piece, QString> got =
      m_source.readNext(m_ahead.data() + before, m_ahead.size() - before, atLeast);
  m_ahead.resize(before + (got ? got->size : 0));
  if (!got) {
    return Failure{got.error()};
  }
  m_isSourceRead = got->isLast;
  return Done{};
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
