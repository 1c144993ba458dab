// Decides what a damaged place of a file means to a run: its rows are skipped with a warning, the
// file ends there, or the run stops.
//
// One object a run of ReadColumnarGel; the reader below only tells what it found.
// Threads: the engine's.  Errors: logged here.
#pragma once

#include <cstdint>

#include <QString>

#include "columnar/format/read_status.h"

namespace kelvarin {

enum class AfterDamage { goOn, endFile, stopRun };

class DamagePolicy {
 public:
  explicit DamagePolicy(bool skipsDamage) : m_skipsDamage(skipsDamage) {}

  // A block, or all blocks of a descriptor record, does not decode. Rows count from 0; the last one
  // belongs to it.
  AfterDamage corrupted(const QString& file, std::uint64_t firstRow, std::uint64_t lastRow,
                        ReadStatus cause);
  // The file ends inside what belongs to the block that starts at `firstRow`.
  AfterDamage truncated(const QString& file, std::uint64_t firstRow);

 private:
  void warnAboutSkippedRows(const QString& file, std::uint64_t firstRow, std::uint64_t lastRow);

  void explain(const QString& file, ReadStatus cause);

  bool m_skipsDamage;
  QString m_explainedFile;  // the last one, to be explained once
  int m_warningCount = 0;  // about skipped rows
};

}  // namespace kelvarin
