#include "host/tables/arrow/column_tally.h"

#include "host/tables/arrow/value_messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

QStringList warningsAbout(const std::vector<ColumnTally>& tallies, const QVector<QString>& names,
                          const std::function<QString(long long)>& locationOfRow) {
  QStringList warnings;
  for (std::size_t i = 0; i < tallies.size(); ++i) {
    const QString& name = names.at(static_cast<qsizetype>(i));
    if (const RowCount& bad = tallies[i].badValues; bad.count > 0) {
      warnings += table_messages::readAsNull(locationOfRow(bad.firstRow), name, bad.count);
    }
    if (const RowCount& finer = tallies[i].finerTimes; finer.count > 0) {
      warnings +=
          table_messages::finerThanMilliseconds(locationOfRow(finer.firstRow), name, finer.count);
    }
  }
  return warnings;
}

}  // namespace kelvarin
