// A source that can read a part of its table only, for hosts that share a table among several runs.
//
// Implemented by the action that reads columnar files.
// Threads: before a run.
#pragma once

#include <cstdint>
#include <memory>

#include <QString>

#include "base/export.h"
#include "host/contract/value_targets.h"

namespace kelvarin {

// Rows and blocks count from 0; those before the ends are read.
struct TablePart {
  std::uint64_t firstRow = 0;
  std::uint64_t endRow = UINT64_MAX;
  std::uint64_t firstBlock = 0;
  std::uint64_t endBlock = UINT64_MAX;
  // The name of one more column, the last one, with the number that each row has in the table;
  // empty: there is none.
  QString rowNumberColumn;
  // Where values of these rows may be decoded; null: anywhere.
  std::shared_ptr<ValueTargets> targets;

  bool hasRowNumbers() const { return !rowNumberColumn.isEmpty(); }
};

class KELVARIN_CORE PartialSource {
 public:
  virtual ~PartialSource();

  virtual void readOnly(const TablePart& part) = 0;
};

}  // namespace kelvarin
