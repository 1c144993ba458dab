// A stream whose first bytes can be looked at before they are read.
#pragma once

#include <string>
#include <string_view>

#include "host/tables/text_input/byte_stream.h"

namespace kelvarin {

class PeekedStream final : public ByteStream {
 public:
  // What it reads from outlives it.
  explicit PeekedStream(ByteStream& source) : m_source(source) {}

  // At least the next `size` bytes; fewer where the stream ends before. Waits for them. Good until
  // the next call.
  Result<std::string_view, QString> peek(std::size_t size);
  // The same, but fewer also where the source has no more without much waiting and so many lines
  // have ended.
  Result<std::string_view, QString> peekUntilPause(std::size_t size, long long lines);
  // What peek() has seen is all there is.
  bool isWhole() const { return m_isSourceRead; }

  Result<Piece, QString> readNext(char* bytes, std::size_t size, std::size_t atLeast) override;

 private:
  Status<QString> readAhead(std::size_t size, std::size_t atLeast);
  std::string_view ahead() const { return std::string_view(m_ahead).substr(m_used); }

  ByteStream& m_source;
  std::string m_ahead;  // read from the source already
  std::size_t m_used = 0;
  bool m_isSourceRead = false;
};

}  // namespace kelvarin
