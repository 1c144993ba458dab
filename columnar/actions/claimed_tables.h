// The claim of an action on a columnar file: the main file and its side files.
//
// Used by the two columnar actions.
#pragma once

#include <QFile>

#include "columnar/format/file_names.h"
#include "host/contract/claimed_names.h"

namespace kelvarin {

// The claim covers side files with any number.
inline UsedFile usedTable(const QString& mainFile, FileUse use) {
  const std::string name(nameWithoutFolder(QFile::encodeName(mainFile).toStdString()));
  QString companions = QFile::decodeName(QByteArray::fromStdString(sideFileName(name, 0)));
  const QString anyNumber = QStringLiteral(".???.");
  const qsizetype number = companions.lastIndexOf(QStringLiteral(".000."));
  companions.replace(number, anyNumber.size(), anyNumber);
  return {.path = mainFile, .use = use, .companions = companions};
}

}  // namespace kelvarin
