#include "host/contract/file_keys.h"

#include <filesystem>
#include <string>

#include <sys/stat.h>

#include <QFile>

namespace kelvarin {

namespace {

namespace fs = std::filesystem;

QString textOf(const fs::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

fs::path withoutLinks(const fs::path& path) {
  std::error_code error;
  const fs::path resolved = fs::weakly_canonical(path, error);
  return error ? path.lexically_normal() : resolved;
}

// Where a link leads although nothing is there yet.
fs::path endOfLinks(fs::path path) {
  constexpr int kMaxLinks = 40;
  std::error_code error;
  for (int i = 0; i < kMaxLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return withoutLinks(path);
}

// "sales.012.cs" has the form "sales.???.cs"; empty when the name has no such form.
QString formOfCompanion(const QString& name) {
  const qsizetype last = name.lastIndexOf(u'.');
  const qsizetype first = last < 1 ? -1 : name.lastIndexOf(u'.', last - 1);
  if (first < 0 || last - first < 2) {
    return {};
  }
  QString form = name;
  for (qsizetype i = first + 1; i < last; ++i) {
    if (form[i] < u'0' || form[i] > u'9') {
      return {};
    }
    form[i] = u'?';
  }
  return form;
}

}  // namespace

std::vector<FileKey> keysOf(const UsedFile& file) {
  if (isStandardOutput(file.path)) {
    return {{QStringLiteral("-")}};
  }
  std::vector<FileKey> keys;
  if (readsStandardInput(file)) {
    keys.push_back({QStringLiteral("<")});
  }
  std::error_code error;
  const fs::path path = fs::absolute(QFile::encodeName(file.path).toStdString(), error);
  struct stat status{};
  if (::stat(path.c_str(), &status) == 0) {
    if (!S_ISREG(status.st_mode)) {
      return keys;
    }
    keys.push_back({QStringLiteral("i%1:%2").arg(status.st_dev).arg(status.st_ino)});
  }
  const fs::path folder = withoutLinks(path.parent_path());
  const QString name = textOf(path.filename());
  keys.push_back({u'n' + textOf(folder / path.filename())});
  if (const QString end = u'n' + textOf(endOfLinks(path)); end != keys.back().text) {
    keys.push_back({end});
  }
  const auto companionKey = [&](const QString& form) {
    return u'c' + textOf(folder) + u'/' + form;
  };
  if (!file.companions.isEmpty()) {
    keys.push_back({companionKey(file.companions)});
  }
  if (const QString form = formOfCompanion(name); !form.isEmpty()) {
    keys.push_back({companionKey(form), true});
  }
  return keys;
}

bool readsStandardInput(const UsedFile& file) {
  return file.use == FileUse::reads && file.path == QLatin1String("/dev/stdin");
}

bool isStandardOutput(const QString& path) {
  return path == QLatin1String("-") || path == QLatin1String("/dev/stdout") ||
         path == QLatin1String("/dev/fd/1") || path == QLatin1String("/proc/self/fd/1");
}

}  // namespace kelvarin
