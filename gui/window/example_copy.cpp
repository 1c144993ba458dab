#include "gui/window/example_copy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "gui/document/graph_search.h"

namespace kelvarin {

namespace {

using Files = Result<QStringList, QString>;

bool leadsOutside(const QString& name) {
  return QDir::cleanPath(name).startsWith(QLatin1String(".."));
}

// What is there already stays.
Files copyFiles(const QStringList& names, const QDir& from, const QDir& to) {
  QStringList copied;
  for (const QString& name : names) {
    const QFileInfo source(from, name);
    const QString target = to.filePath(name);
    if (!source.isFile() || QFile::exists(target)) {
      continue;
    }
    QFile file(source.filePath());
    if (!to.mkpath(QFileInfo(name).path()) || !file.copy(target)) {
      return Failure{ExampleCopy::tr("%1 cannot be copied to %2: %3")
                         .arg(source.filePath(), target, file.errorString())};
    }
    QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
    copied += name;
  }
  return copied;
}

}  // namespace

ExampleCopy::ExampleCopy(const EditedGraph& graph, QObject* parent)
    : QObject(parent), m_graph(graph) {}

void ExampleCopy::begin(const QString& path) {
  m_task.forget();
  m_folder = path.isEmpty() ? QString() : QFileInfo(path).absolutePath();
  if (!isOpen()) {
    return;
  }
  using Answer = Result<bool, QString>;
  m_task.start<bool>(
      [folder = m_folder](const auto&) { return Answer(QFileInfo(folder).isWritable()); },
      [this](const Answer& isWritable) {
        if (isWritable && !*isWritable) {
          emit folderIsReadOnly(m_folder);
        }
      });
}

// Every setting that may be the name of a file; whether there is one is seen when it is copied.
QStringList ExampleCopy::relativeNames() const {
  QStringList names;
  const auto append = [&names](const QString& name) {
    if (!name.isEmpty() && !name.contains(u'\n') && QDir::isRelativePath(name) &&
        !leadsOutside(name)) {
      names += name;
    }
  };
  for (const DrawnParameter& parameter : m_graph.parameters()) {
    append(parameter.value);
  }
  for (const ActionId action : m_graph.actions()) {
    for (const SearchedText& text : textsOf(m_graph, action)) {
      if (text.kind == SearchedText::Kind::setting) {
        append(text.text);
      }
    }
  }
  names.removeDuplicates();
  return names;
}

void ExampleCopy::takeFilesTo(const QString& path) {
  const QString folder = QFileInfo(path).absolutePath();
  if (!isOpen() || folder == m_folder) {
    m_folder.clear();
    return;
  }
  m_task.start<QStringList>([names = relativeNames(), from = QDir(std::exchange(m_folder, {})),
                             to = QDir(folder)](const auto&) { return copyFiles(names, from, to); },
                            [this](const Files& files) {
                              if (!files) {
                                emit failed(files.error());
                              } else if (!files->isEmpty()) {
                                emit filesTaken(*files);
                              }
                            });
}

}  // namespace kelvarin
