// The values by which a table is divided into files, and the names that the files get.
//
// Used by: the sinks that write several files.
// Threads: any, one at a time for an object.
#pragma once

#include <string>
#include <string_view>

#include <QHash>
#include <QString>

#include "base/export.h"
#include "host/contract/one_row.h"

namespace kelvarin {

// Stands for a missing value in names.
inline const QString kNullSplitValue = QStringLiteral("_null");

// Slashes, backslashes, control characters and a leading point become "_".
KELVARIN_CORE QString cleanedForFileName(QString value);

// Before the last "." of the name, when that stands after the last "/" and "\"; else at its end.
KELVARIN_CORE QString insertedBeforeExtension(const QString& file, const QString& text);

// Whether equal values of the column stand together.
KELVARIN_CORE bool isSortedOn(const OneRow& columns, int column);

// Equal values have equal marks, which are the bytes of a value that is equal to them; a missing
// value has the empty mark, and no other value has. All NaNs are one value, since they have one
// name. As long as the value is there.
KELVARIN_CORE std::string_view splitMark(MetaTypeColumn type, const unsigned char* value);

// The row's value as names of files have it, and as messages show it.
KELVARIN_CORE QString splitNameText(const OneRow& row, int column);
KELVARIN_CORE QString shownSplitValue(const OneRow& row, int column);

// The files of one run, each of one value.
class KELVARIN_CORE SplitFiles {
 public:
  struct Entry {
    std::string mark;
    QString shown;
    QString file;
  };

  // `key` is equal for files that exclude each other. Null where it is new, else what has it.
  const Entry* enter(const QString& key, const Entry& entry);
  void clear() { m_entries.clear(); }

 private:
  QHash<QString, Entry> m_entries;
};

}  // namespace kelvarin
