// Which files a sink writes: one, or one for each value of a column; and whether it makes their
// folder.
//
// Used by: TableSink.
#pragma once

#include <vector>

#include "host/contract/attribute_table.h"

namespace kelvarin {

struct OutputSettings {
  bool createDirectory = false;
  int split = 0;
  QString splitColumn = QStringLiteral("");

  bool isSplit() const { return split == kByValue; }
  // 1 stands for files by size in the writer of columnar files, and is no value here.
  bool isSplitKnown() const { return split == kNone || split == kByValue; }

  static constexpr int kNone = 0;
  static constexpr int kByValue = 2;
};

inline constexpr Attribute<OutputSettings> kOutputAttributes[] = {
    attribute<&OutputSettings::createDirectory>(u"createDir", "creates the file's folder"),
    attribute<&OutputSettings::split>(
        u"split", "the files that are written",
        AllowedValues{0, 2, "", "0 (one file) or 2 (by the value of splitVar)"}),
    attribute<&OutputSettings::splitColumn>(u"splitVar", "the column to split on"),
};

}  // namespace kelvarin
