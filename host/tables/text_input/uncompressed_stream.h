// What is in a compressed stream: gzip or zstd, of which several may follow one another.
//
// It is uncompressed only as far as it is read.
// Errors: data that is damaged or cut off, with the position in the compressed stream. What was
// uncompressed before is read first.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/tables/text_input/byte_stream.h"

namespace kelvarin {

// One format of compressed data; implementations wrap a library each.
class Decompressor {
 public:
  virtual ~Decompressor() = default;
  virtual const char* formatName() const = 0;
  // Uncompresses some of `input` to `output`; both begin after what is done. A failure is the
  // library's own word for it.
  virtual Status<QString> step(std::string_view& input, char*& output, char* outputEnd) = 0;
  // Compressed data may end here.
  virtual bool isBetween() const = 0;
};

// By the first bytes of the data; null where they are of no compressed format that is known.
std::unique_ptr<Decompressor> decompressorOf(std::string_view start);

class UncompressedStream final : public ByteStream {
 public:
  // `compressed` outlives it; `path` is for messages.
  UncompressedStream(ByteStream& compressed, std::unique_ptr<Decompressor> decompressor,
                     QString path);

  Result<Piece, QString> readNext(char* bytes, std::size_t size, std::size_t atLeast) override;

 private:
  // False: there is nothing yet.
  Result<bool, QString> readCompressed(bool mayWait);
  Status<QString> uncompress(char*& output, char* outputEnd);

  ByteStream& m_compressed;
  std::unique_ptr<Decompressor> m_decompressor;
  QString m_path;
  std::string m_buffer;
  std::string_view m_input;  // not uncompressed yet
  long long m_inputEnd = 0;  // where it ends in the compressed stream
  bool m_isInputRead = false;
  bool m_mayHaveMore = false;  // the decompressor had no space for all
  QString m_failure;           // reported when what came before has been read
};

}  // namespace kelvarin
