// Texts from files.

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

constexpr qint64 kLargestFileBytes = qint64{64} << 20;

// Characters that UTF-8 does not know become U+FFFD, and a byte order mark goes. Null for what is
// no regular file, such as a folder or a pipe that nobody writes to.
QString textOfFile(const QString& path) {
  if (!QFileInfo(path).isFile()) {
    return {};
  }
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  const QByteArray bytes = file.read(kLargestFileBytes + 1);
  if (bytes.size() > kLargestFileBytes || file.error() != QFileDevice::NoError) {
    return {};
  }
  constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
  const qsizetype start = bytes.startsWith(byteOrderMark) ? byteOrderMark.size() : 0;
  // Not null, also when the file is empty.
  return QStringLiteral("") + QString::fromUtf8(QByteArrayView(bytes).sliced(start));
}

// A file that an expression names on every row is read once.
QString load(FunctionContext& context, const QString& name) {
  LoadedFile& last = context.lastLoaded;
  if (!last.isLoaded || last.name != name) {
    const QString path = QDir(context.filesFolder).filePath(name);
    last = {true, name, name.isEmpty() ? QString() : textOfFile(path)};
  }
  return last.text;
}

constexpr FunctionLine kLines[] = {
    {"load",
     1,
     kInString,
     ResultKind::text,
     {},
     valueBody<load>,
     "load(filename) - returns the text of the file"},
};

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> fileTexts() {
  return kLines;
}

}  // namespace kelvarin
