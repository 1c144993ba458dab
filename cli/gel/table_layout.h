// Which byte of each file of a columnar table belongs to what.
//
// Every byte is in one piece: what nothing refers to is a piece, too, so that the pieces of a file
// add up to its size.
// Used by `kelvarin gel layout`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

struct LayoutPiece {
  std::string file;
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
  const char* what = "";
  std::optional<std::uint64_t> block{};     // of chunks
  std::optional<std::size_t> column{};      // of chunks: its index in the file
  std::optional<std::uint32_t> checksum{};  // as the piece states it
};

// File after file, by offset. The error is the path of a side file that cannot be opened.
Result<std::vector<LayoutPiece>, std::string> layoutOf(const GelFile& file);

}  // namespace kelvarin
