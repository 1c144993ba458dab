// The types that columns can have in Parquet and Arrow files that are written.
//
// Used by: the actions that write them, which take the types from the user, and the formats.
#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "host/contract/one_row.h"

namespace kelvarin {

struct StoredType {
  enum class Kind { number, key, text, int64, int32, boolean, date, timestamp };

  Kind kind = Kind::number;
  int decimals = 0;    // of the seconds of a timestamp: 3, 6 or 9
  bool isUtc = false;  // a timestamp is an instant, not the time of a clock

  bool operator==(const StoredType&) const = default;

  // As users call it; nothing where it is no type.
  static std::optional<StoredType> named(const QString& name);
  QString name() const;
  // A text that becomes a value of a date or a timestamp.
  QString example() const;
};

// What a column of rows is stored as where nobody says otherwise, and all that it can be stored as.
StoredType plainStoredType(MetaTypeColumn type);
bool canBeStoredAs(MetaTypeColumn type, const StoredType& stored);
// By their names; all types, or those that a column can be stored as.
QStringList storedTypeNames();
QStringList storedTypeNames(MetaTypeColumn type);

// How a file stores the columns of its rows.
struct StoredColumns {
  std::vector<StoredType> types;
  bool areBadValuesNull = false;  // values that their type cannot hold; else they are errors

  static StoredColumns plain(const OneRow& columns);
};

}  // namespace kelvarin
