// Checks a whole columnar file: every record, every chunk, and every summary against the values.
//
// Used by `kelvarin gel verify`. Threads: one.  Errors: damages; never logs, never throws but for a
// lack of memory.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "columnar/reader/gel_file.h"

namespace kelvarin {

struct GelDamage {
  enum class Kind {
    record,         // a descriptor record cannot be used, see `cause`
    mainFileCut,    // the main file ends too early
    rowCount,       // the header's row count is not that of the blocks
    chunk,          // a chunk cannot be used, see `cause`
    unknownLayout,  // a chunk has a layout that this version does not know
    sideFileCut,    // a side file ends inside a chunk
    summary,        // a chunk's values are not those that its block's descriptor tells
    sideFileMissing
  };

  Kind kind = Kind::chunk;
  std::string file;            // that has the damage
  std::uint64_t offset = 0;    // in there
  std::uint64_t block = 0;     // counted from 0
  std::uint64_t firstRow = 0;  // that is lost
  std::uint64_t lastRow = 0;
  std::string column;  // empty when all are concerned
  int layout = -1;     // for unknownLayout
  ReadStatus cause = ReadStatus::ok;  // for records and chunks: checksum, content, limits
};

struct GelVerification {
  std::uint64_t rows = 0;
  std::uint64_t blocks = 0;
  std::uint64_t chunks = 0;
  std::uint64_t damages = 0;
};

// Goes on after damage as far as it can. `report` is called for each one, `progress`, when there is
// one, after each block with the rows so far.
GelVerification verifyGelFile(const GelFile& file,
                              const std::function<void(const GelDamage&)>& report,
                              const std::function<void(std::uint64_t rows)>& progress = {});

}  // namespace kelvarin
