// Decides how a run reacts to damage in a file: it skips the rows with a warning, ends the file, or
// stops.
//
// One object a run of ReadColumnarGel; the reader below only reports what it finds.
// Threads: the engine's.
// Errors: logged here.
#pragma once

#include <cstdint>

#include <QString>

#include "columnar/format/read_status.h"

namespace kelvarin {

enum class AfterDamage { goOn, endFile, stopRun };

class DamagePolicy {
 public:
  explicit DamagePolicy(bool skipsDamage) : m_skipsDamage(skipsDamage) {}

  // A block, or all blocks of a descriptor record, cannot be decoded. Rows are numbered from 0, and
  // `lastRow` is one of them.
  AfterDamage corrupted(const QString& file, std::uint64_t firstRow, std::uint64_t lastRow,
                        ReadStatus cause);
  // The file ends inside the block that starts at `firstRow`.
  AfterDamage truncated(const QString& file, std::uint64_t firstRow);

 private:
  void warnAboutSkippedRows(const QString& file, std::uint64_t firstRow, std::uint64_t lastRow);

  void explain(const QString& file, ReadStatus cause);

  bool m_skipsDamage;
  QString m_explainedFile;  // the last one, so that each is explained once
  int m_warningCount = 0;   // about skipped rows
};

}  // namespace kelvarin
