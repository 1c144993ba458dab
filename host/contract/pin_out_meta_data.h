// The column names, types and sort order of an output pin.
#pragma once

#include <QHash>
#include <QString>
#include <QVector>

#include "base/export.h"
#include "host/contract/meta_info.h"
#include "host/contract/sort_infos.h"

class KELVARIN_CORE PinOutMetaData {
 public:
  PinOutMetaData() = default;

  int columnCount() const { return static_cast<int>(m_metas.size()); }
  // New columns are nameless texts. The sort order loses entries whose column is gone.
  void setColumnCount(int count);

  const QVector<QString>& names() const { return m_names; }
  void setName(int column, const QString& name);
  void setNames(const QVector<QString>& names);
  // -1 when no column has this name; the first one when several have.
  int indexOf(const QString& name) const;

  const QVector<MetaInfo>& metas() const { return m_metas; }
  void setMeta(int column, MetaInfo meta) { m_metas[column] = meta; }
  void setMetas(const QVector<MetaInfo>& metas) { m_metas = metas; }

  const QVector<SortInfos>& sortOrder() const { return m_sortOrder; }
  void setSortOrder(const QVector<SortInfos>& order) { m_sortOrder = order; }

 private:
  QVector<QString> m_names;
  QVector<MetaInfo> m_metas;
  QVector<SortInfos> m_sortOrder;
  mutable QHash<QString, int>
      m_indexOfName;  // filled at the first search, emptied when a name changes
};
