// Bytes that are read once, from their start to their end.
//
// A file, a pipe, what is uncompressed or recoded of another stream: each stage reads from the one
// before. The last stage is what TextInput reads from.
// Threads: one at a time.
// Errors: texts for the user.
#pragma once

#include "host/tables/files/input_file.h"

namespace kelvarin {

class ByteStream {
 public:
  using Piece = InputFile::Piece;

  virtual ~ByteStream() = default;
  // Up to `size` bytes: of a pipe, those that come without much waiting, once there are `atLeast`
  // of them.
  virtual Result<Piece, QString> readNext(char* bytes, std::size_t size, std::size_t atLeast) = 0;
};

}  // namespace kelvarin
