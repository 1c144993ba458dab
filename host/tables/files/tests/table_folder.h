// A folder that is gone after the test, and the files of a test in it.
#pragma once

#include <string>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace kelvarin::testing {

class TableFolder {
 public:
  std::string path(const std::string& name) const {
    return m_folder.filePath(QString::fromStdString(name)).toStdString();
  }
  // Gives the file's path.
  std::string write(const std::string& name, const std::string& bytes) const {
    QFile file(QString::fromStdString(path(name)));
    file.open(QIODevice::WriteOnly);
    file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    return path(name);
  }
  std::string read(const std::string& name) const {
    QFile file(QString::fromStdString(path(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "(absent)";
  }
  // Names of everything in the folder, hidden files too.
  std::string listing() const {
    return QDir(m_folder.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name)
        .join(u' ')
        .toStdString();
  }

 private:
  QTemporaryDir m_folder;
};

}  // namespace kelvarin::testing
