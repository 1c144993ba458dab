#include "cli/graph_tests/sandbox.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include "cli/graph_tests/messages.h"
#include "host/contract/file_user.h"

namespace kelvarin {

Sandbox::Sandbox(const QString& graph)
    : m_folder(QDir::tempPath() + QStringLiteral("/kelvarin_test_XXXXXX")),
      m_root(QFileInfo(m_folder.path()).absoluteFilePath()),
      m_graph(graph) {}

QString Sandbox::graphFolder() const {
  return QFileInfo(graph()).absolutePath();
}

void Sandbox::link(const QString& target, const QString& path) {
  QFile::remove(path);
  QFile::link(target, path);
}

void Sandbox::linkEntries(const QString& folder, bool withoutTests) {
  constexpr auto kAll = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
  for (const QFileInfo& entry : QDir(folder).entryInfoList(kAll)) {
    const QString path = inside(entry.absoluteFilePath());
    const bool isTest = entry.isDir() && entry.fileName().endsWith(QStringLiteral(".test"));
    if (!(isTest && withoutTests) && !QFileInfo::exists(path)) {
      link(entry.absoluteFilePath(), path);
    }
  }
}

// A folder of its own in here, with links to what the system's has.
void Sandbox::makeReal(const QString& folder) {
  const QString path = inside(folder);
  const QFileInfo info(path);
  if (info.isDir() && !info.isSymLink()) {
    return;
  }
  makeReal(QFileInfo(folder).absolutePath());
  if (QFileInfo(path).isSymLink()) {
    QFile::remove(path);
    QDir().mkdir(path);
    linkEntries(folder, false);
  } else {
    QDir().mkdir(path);
  }
}

void Sandbox::linkGraphFolder() {
  const QString folder = QFileInfo(m_graph).absolutePath();
  makeReal(folder);
  linkEntries(folder, true);
}

void Sandbox::layOver(const QString& folder) {
  const QDir source(folder);
  const QString graphFolder = QFileInfo(m_graph).absolutePath();
  QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString file = files.next();
    const QString original = graphFolder + u'/' + source.relativeFilePath(file);
    makeReal(QFileInfo(original).absolutePath());
    link(file, inside(original));
  }
}

Status<QString> Sandbox::prepareFilesOf(const Graph& graph) {
  for (const GraphAction& action : graph.actions) {
    const auto* user = dynamic_cast<const FileUser*>(action.item.get());
    if (user == nullptr || action.isDisabled) {
      continue;
    }
    for (const UsedFile& file : user->usedFiles()) {
      const QString path = QDir::cleanPath(file.path);
      const bool isInside = path.startsWith(m_root + u'/');
      const QString original = path.sliced(isInside ? m_root.size() : 0);
      const QString folder = QFileInfo(original).absolutePath();
      if (file.use == FileUse::reads) {
        if (isInside && !QFileInfo::exists(path)) {
          makeReal(folder);
          linkEntries(folder, false);
        }
        continue;
      }
      if (isStandardOutput(file.path)) {
        continue;
      }
      if (!isInside) {
        return Failure{test_messages::writesOutside(action.name, file.path)};
      }
      makeReal(folder);
      QStringList older{QFileInfo(original).fileName()};
      older += file.companions.isEmpty() ? QStringList() : QStringList{file.companions};
      const QDir written(inside(folder));
      for (const QString& name : written.entryList(older, QDir::Files | QDir::System)) {
        QFile::remove(written.filePath(name));
      }
    }
  }
  return Done{};
}

}  // namespace kelvarin
