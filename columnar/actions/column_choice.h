// Which columns of a columnar file are read, and where further files of the same run have them.
//
// Used by ColumnarRead.
// Errors: the name that is missing, and in which file.
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
  bool isMissingInFirstFile = false;  // all columns are read, and only a later file has this one
};

// Indices in GelFile::columns().
using ChosenColumns = std::vector<std::size_t>;

class ColumnChoice {
 public:
  // Without names, all columns are read. A name that is listed twice counts once.
  explicit ColumnChoice(const std::optional<QStringList>& names);

  // The first file determines names, order and types. The others must have the same columns, in any
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
