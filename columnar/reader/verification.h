// Checks a whole columnar file: every record, every chunk, and all statistics against the values.
//
// Used by `kelvarin gel verify` and by the dialog of the reading action.
// Errors: damages; never logs, throws only std::bad_alloc.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "columnar/reader/gel_file.h"

namespace kelvarin {

struct GelDamage {
  enum class Kind {
    record,           // a descriptor record cannot be used, see `cause`
    mainFileCut,      // the main file ends too early
    rowCount,         // the header's row count is not that of the blocks
    chunk,            // a chunk cannot be used, see `cause`
    unknownEncoding,  // a chunk has an encoding that this version does not know
    sideFileCut,      // a side file ends inside a chunk
    statistics,       // a chunk's values do not have the statistics in the descriptor
    sideFileMissing
  };

  Kind kind = Kind::chunk;
  std::string file;            // the damaged file
  std::uint64_t offset = 0;    // in that file
  std::uint64_t block = 0;     // counted from 0
  std::uint64_t firstRow = 0;  // of the lost rows
  std::uint64_t lastRow = 0;
  std::string column;                 // empty: all columns
  int encoding = -1;                  // for unknownEncoding
  ReadStatus cause = ReadStatus::ok;  // for records and chunks: checksum, content, limits
};

struct GelVerification {
  std::uint64_t rows = 0;
  std::uint64_t blocks = 0;
  std::uint64_t chunks = 0;
  std::uint64_t damages = 0;
};

// Continues after damage as far as possible. `report` is called for each damage; `progress`, where
// given, after each block with the number of rows so far. `isStopped`, where given, is asked before
// each block, and ends it early.
GelVerification verifyGelFile(const GelFile& file,
                              const std::function<void(const GelDamage&)>& report,
                              const std::function<void(std::uint64_t rows)>& progress = {},
                              const std::function<bool()>& isStopped = {});

}  // namespace kelvarin
