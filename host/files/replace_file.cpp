#include "host/files/replace_file.h"

#include <QSaveFile>

namespace kelvarin {

// With a buffer, QSaveFile does not notice that the last of it found no space, and replaces the
// file by an empty one.
Status<QString> replaceFile(const QString& path, const QByteArray& content) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
      file.write(content) != content.size() || !file.commit()) {
    return Failure{file.errorString()};
  }
  return Done{};
}

}  // namespace kelvarin
