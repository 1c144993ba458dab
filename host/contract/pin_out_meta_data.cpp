#include "host/contract/pin_out_meta_data.h"

void PinOutMetaData::setColumnCount(int count) {
  m_names.resize(count);
  m_metas.resize(count);
  m_indexOfName.clear();
  m_sortOrder.removeIf([count](const SortInfos& entry) { return entry.column() >= count; });
}

void PinOutMetaData::setName(int column, const QString& name) {
  m_names[column] = name;
  m_indexOfName.clear();
}

void PinOutMetaData::setNames(const QVector<QString>& names) {
  m_names = names;
  m_indexOfName.clear();
}

int PinOutMetaData::indexOf(const QString& name) const {
  if (m_indexOfName.isEmpty()) {
    m_indexOfName.reserve(m_names.size());
    for (int i = static_cast<int>(m_names.size()) - 1; i >= 0; --i) {
      m_indexOfName.insert(m_names[i], i);
    }
  }
  return m_indexOfName.value(name, -1);
}
