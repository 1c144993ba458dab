// `kelvarin gel`: looks into columnar files, checks them, and turns other tables into them and
// back.
#include "cli/gel/gel_command.h"

#include <QFile>
#include <QFileInfo>

#include "cli/gel/messages.h"
#include "columnar/format/file_names.h"
#include "host/files/file_hints.h"

namespace kelvarin {

namespace {

QString reasonNotOpened(const QString& name) {
  const QFileInfo info(name);
  if (!info.exists()) {
    return gel_messages::noSuchFile();
  }
  if (!info.isFile()) {  // to open a pipe would wait for its other end
    return info.isDir() ? gel_messages::isFolder() : gel_messages::isNoOrdinaryFile();
  }
  QFile file(name);
  (void)file.open(QIODevice::ReadOnly);
  return file.errorString();
}

// The main file that `path` would be a side file of; empty when it is none by its name.
QString mainFileOf(const std::string& path) {
  constexpr std::size_t kNumberSize = 4;  // ".000"
  const std::size_t stem = stemOfMainFile(path).size();
  if (stem < kNumberSize) {
    return {};
  }
  const std::string mainFile = path.substr(0, stem - kNumberSize).append(kMainFileExtension);
  return isSideFileName(mainFile, path) ? QString::fromStdString(mainFile) : QString();
}

QString textAbout(const std::string& path, OpenFailure::Problem problem) {
  const QString name = QString::fromStdString(path);
  if (problem == OpenFailure::Problem::cannotOpen) {
    return gel_messages::cannotOpen(name, reasonNotOpened(name));
  }
  if (problem == OpenFailure::Problem::exchangeDamaged) {
    return gel_messages::journalDamaged(name, QString::fromStdString(journalFile(path)));
  }
  const QString mainFile = mainFileOf(path);
  return mainFile.isEmpty() ? gel_messages::notAGelFile(name)
                            : gel_messages::sideFileGiven(name, mainFile);
}

QString hintAbout(const QString& path) {
  const QString hint = missingFileHint(path);
  return hint.isEmpty() ? foreignFormatHint(path, FileFormat::columnar) : hint;
}

}  // namespace

QString counted(std::uint64_t count, const char* thing) {
  return QString::number(count) + u' ' + QLatin1String(thing) +
         QLatin1String(count == 1 ? "" : "s");
}

std::unique_ptr<GelFile> openGelFile(const std::string& path, Console& console,
                                     bool warnsOfIncomplete) {
  auto file = GelFile::open(path, IncompleteFiles::accept);
  if (!file) {
    console.writeLog(LogLevel::error, textAbout(path, file.error().problem));
    if (const QString hint = hintAbout(QString::fromStdString(path)); !hint.isEmpty()) {
      console.writeReason(LogLevel::information, hint);
    }
    return nullptr;
  }
  if (!(*file)->isComplete() && warnsOfIncomplete) {
    const QString name = QString::fromStdString(path);
    console.writeLog(LogLevel::warning, gel_messages::incomplete(name));
    console.writeLog(LogLevel::information, gel_messages::recoverAdvice(name));
  }
  return std::move(*file);
}

void addGelCommand(CLI::App& program, ChosenCommand& chosen) {
  CLI::App* gel = program.add_subcommand("gel", "Look into, check or convert a columnar file");
  gel->require_subcommand(1);
  gel->footer("Example:\n  kelvarin gel info sales.cgel_kelvarin");
  addGelInfo(*gel, chosen);
  addGelHead(*gel, chosen);
  addGelVerify(*gel, chosen);
  addGelExport(*gel, chosen);
  addGelImport(*gel, chosen);
  addGelRecover(*gel, chosen);
}

}  // namespace kelvarin
