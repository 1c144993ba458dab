// How many blocks of a file the block filter of a reading action would skip, and what its
// expression knows of the first ones.
//
// Used by the action's editor, on a copy of the action.
// Threads: any, with an action that no other thread uses.
// Errors: texts for the user; nothing logs.
#pragma once

#include "columnar/actions/read_columnar_gel.h"

namespace kelvarin {

struct BlockFilterTrial {
  std::uint64_t blocks = 0;
  std::uint64_t skippedBlocks = 0;
  std::uint64_t rows = 0;
  std::uint64_t skippedRows = 0;
  bool hasDamage = false;  // some blocks have no sound descriptor and are not counted

  struct Block {
    std::uint64_t firstRow = 0;  // counted from 0
    std::uint32_t rowCount = 0;
    bool isSkipped = false;
    // Of the variables; none where a statistics cannot be used, so that the block is read.
    std::vector<ExpressionValue> values;
  };
  static constexpr std::size_t kFirstBlocks = 20;
  QStringList variables;  // their names
  std::vector<Block> firstBlocks;
};

// Of the file that the settings name, whether or not they apply the filter. `isStopped` is asked
// before each block, and ends it early.
Result<BlockFilterTrial, QString> tryBlockFilter(const ReadColumnarGel& action,
                                                 const std::function<bool()>& isStopped = {});

}  // namespace kelvarin
