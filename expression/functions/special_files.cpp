// Texts from files.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

constexpr qint64 kLargestFileBytes = qint64{64} << 20;

// Only regular files: to open a pipe or to read a device may wait for ever. Asked of the open file,
// since a name can be given to another one at any time.
bool openRegularFile(const QString& path, QFile& file) {
  const int descriptor =
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  struct stat about{};
  if (descriptor < 0) {
    return false;
  }
  if (::fstat(descriptor, &about) != 0 || !S_ISREG(about.st_mode) ||
      about.st_size > kLargestFileBytes) {
    ::close(descriptor);
    return false;
  }
  return file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

// Characters that UTF-8 does not know become U+FFFD, and a byte order mark goes. Null for what
// cannot be read.
QString textOfFile(const QString& path) {
  QFile file;
  if (!openRegularFile(path, file)) {
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
  if (!context.bounds.readsFiles) {
    return {};
  }
  LoadedFile& last = context.lastLoaded;
  if (!last.isLoaded || last.name != name) {
    const QString path = QDir(context.filesFolder).filePath(name);
    last = {true, name, name.isEmpty() ? QString() : textOfFile(path)};
  }
  return last.text;
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"load", 1, kInString, kText, valueBody<load>,
     "load(filename) - returns the text of the file", {}, Source::files},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> fileTexts() {
  return kLines;
}

}  // namespace kelvarin
