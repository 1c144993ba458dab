#include "host/contract/missing_column.h"

#include "host/contract/messages.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

QString missingColumnHint(const QString& name, const QStringList& columns) {
  constexpr qsizetype kFew = 20;
  QString hint = name.isEmpty() ? messages::noColumnNamed() : messages::noSuchColumn(name);
  if (columns.isEmpty()) {
    return hint + messages::noColumns();
  }
  if (const QStringList near = nearestNames(name, columns); !near.isEmpty()) {
    hint += messages::columnsMeant(near);
    if (near.front().trimmed() != near.front() && near.front().trimmed() == name.trimmed()) {
      hint += messages::blanksAround(near.front());
    }
  }
  return hint + (columns.size() <= kFew ? messages::allColumns(columns)
                                        : messages::columnCount(columns.size()));
}

}  // namespace kelvarin
