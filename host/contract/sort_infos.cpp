#include "host/contract/sort_infos.h"

#include <QtEndian>

SortInfos::SortInfos(unsigned char* buffer, int* position)
    : m_column(qFromLittleEndian<qint32>(buffer + *position)),
      m_type(static_cast<SortType>(buffer[*position + 4])) {
  *position += memSize();
}

void SortInfos::write(unsigned char* buffer, int* position) const {
  qToLittleEndian<qint32>(m_column, buffer + *position);
  buffer[*position + 4] = static_cast<unsigned char>(m_type);
  *position += memSize();
}
