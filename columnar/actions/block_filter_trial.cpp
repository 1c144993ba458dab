#include "columnar/actions/block_filter_trial.h"

#include "columnar/actions/messages.h"
#include "columnar/actions/opened_table.h"

namespace kelvarin {

namespace {

BlockFilterTrial countSkipped(BlockFilterEvaluation& filter, const GelFile& file,
                              const std::function<bool()>& isStopped) {
  BlockFilterTrial trial;
  trial.variables = filter.variableNames();
  BlockScan scan(file);
  for (BlockInfo block; !isStopped || !isStopped();) {
    const BlockScan::Step step = scan.next(block);
    if (step == BlockScan::Step::corrupted) {
      trial.hasDamage = true;
      continue;
    }
    if (step != BlockScan::Step::block) {
      trial.hasDamage |= step == BlockScan::Step::truncated;
      break;
    }
    const bool isSkipped = !filter.wantsBlock(file, block);
    ++trial.blocks;
    trial.rows += block.rowCount;
    trial.skippedBlocks += isSkipped ? 1 : 0;
    trial.skippedRows += isSkipped ? block.rowCount : 0;
    if (trial.firstBlocks.size() < BlockFilterTrial::kFirstBlocks) {
      trial.firstBlocks.push_back({.firstRow = block.firstRow,
                                   .rowCount = block.rowCount,
                                   .isSkipped = isSkipped,
                                   .values = filter.variableValues(file, block)});
    }
  }
  return trial;
}

}  // namespace

Result<BlockFilterTrial, QString> tryBlockFilter(const ReadColumnarGel& action,
                                                 const std::function<bool()>& isStopped) {
  if (action.settings().fileNameFromPin) {
    return Failure{columnar_messages::filesKnownInRun()};
  }
  const auto file = openTable(action.expandFile(action.settings().fileName));
  if (!file) {
    return Failure{file.error()};
  }
  BlockFilterEvaluation filter(action.blockFilter());
  QString warning;  // a run logs it
  if (const Status<QString> compiled = filter.compile(action, warning); !compiled) {
    return Failure{compiled.error()};
  }
  if (const Status<QString> bound = filter.bindTo(**file); !bound) {
    return Failure{bound.error()};
  }
  return countSkipped(filter, **file, isStopped);
}

}  // namespace kelvarin
