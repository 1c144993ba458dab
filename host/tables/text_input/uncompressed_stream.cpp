#include "host/tables/text_input/uncompressed_stream.h"

#include "host/tables/text_input/messages.h"

namespace kelvarin {

UncompressedStream::UncompressedStream(ByteStream& compressed,
                                       std::unique_ptr<Decompressor> decompressor, QString path)
    : m_compressed(compressed),
      m_decompressor(std::move(decompressor)),
      m_path(std::move(path)),
      m_buffer(128 * 1024, '\0') {}

Result<ByteStream::Piece, QString> UncompressedStream::readNext(char* bytes, std::size_t size,
                                                                std::size_t atLeast) {
  char* output = bytes;
  char* const end = bytes + size;
  const auto done = [&] { return static_cast<std::size_t>(output - bytes); };
  while (output < end && m_failure.isEmpty()) {
    if (m_input.empty() && !m_mayHaveMore) {
      if (m_isInputRead && m_decompressor->isBetween()) {
        return Piece{done(), true};
      }
      const Result<bool, QString> isThere = readCompressed(done() < atLeast);
      if (isThere && !*isThere) {
        break;
      }
      m_failure = isThere ? m_failure : isThere.error();
      continue;
    }
    if (const auto status = uncompress(output, end); !status) {
      m_failure = status.error();
    }
  }
  if (done() == 0 && !m_failure.isEmpty()) {
    return Failure{m_failure};
  }
  return Piece{done(), false};
}

Result<bool, QString> UncompressedStream::readCompressed(bool mayWait) {
  if (m_isInputRead) {
    return Failure{text_messages::compressedCutOff(
        m_path, QLatin1String(m_decompressor->formatName()), m_inputEnd)};
  }
  const Result<Piece, QString> got =
      m_compressed.readNext(m_buffer.data(), m_buffer.size(), mayWait ? 1 : 0);
  if (!got) {
    return Failure{got.error()};
  }
  m_isInputRead = got->isLast;
  m_input = std::string_view(m_buffer).substr(0, got->size);
  m_inputEnd += static_cast<long long>(got->size);
  return got->size > 0 || got->isLast;
}

Status<QString> UncompressedStream::uncompress(char*& output, char* outputEnd) {
  if (const auto status = m_decompressor->step(m_input, output, outputEnd); !status) {
    return Failure{text_messages::compressedDamaged(
        m_path, QLatin1String(m_decompressor->formatName()),
        m_inputEnd - static_cast<long long>(m_input.size()), status.error())};
  }
  m_mayHaveMore = output == outputEnd;
  return Done{};
}

}  // namespace kelvarin
