// Which columns of a columnar file become the output's, and where another file of the same read has
// them.
//
// Used by ColumnarRead. Threads: plain values.  Errors: the name that is missing, and in which
// file.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

struct MissingColumn {
  QString name;
  bool isMissingInFirstFile = false;  // a later file has it, and all columns are read
};

// Columns as places in GelFile::columns().
using ChosenColumns = std::vector<std::size_t>;

class ColumnChoice {
 public:
  // Nothing: all columns. A name that is listed twice counts once.
  explicit ColumnChoice(const std::optional<QStringList>& names);

  // The first file decides names, order and types; the others must have the same columns, in any
  // order.
  Result<ChosenColumns, MissingColumn> choose(const GelFile& file);

  const QVector<QString>& names() const { return m_names; }
  const QVector<MetaInfo>& metas() const { return m_metas; }

 private:
  Result<ChosenColumns, MissingColumn> chooseInFirst(const GelFile& file);

  const bool m_readsAll;
  bool m_isDecided = false;
  QVector<QString> m_names;
  QVector<MetaInfo> m_metas;
};

}  // namespace kelvarin
