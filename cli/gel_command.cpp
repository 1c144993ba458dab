// `kelvarin gel`: looks into columnar files, checks them, and turns other tables into them and
// back.
#include "cli/gel_command.h"

#include <QFile>
#include <QFileInfo>

#include "cli/gel_command_messages.h"
#include "columnar/format/file_names.h"
#include "host/files/file_hints.h"

namespace kelvarin {

namespace {

QString reasonNotOpened(const QString& name) {
  const QFileInfo info(name);
  if (!info.exists()) {
    return QString::fromLatin1(gel_messages::kNoSuchFile);
  }
  if (!info.isFile()) {  // to open a pipe would wait for its other end
    return QString::fromLatin1(info.isDir() ? gel_messages::kIsFolder
                                            : gel_messages::kIsNoOrdinaryFile);
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
    return QString::fromLatin1(gel_messages::kCannotOpen).arg(name, reasonNotOpened(name));
  }
  if (problem == OpenFailure::Problem::exchangeDamaged) {
    return QString::fromLatin1(gel_messages::kJournalDamaged)
        .arg(name, QString::fromStdString(journalFile(path)));
  }
  const QString mainFile = mainFileOf(path);
  return mainFile.isEmpty() ? QString::fromLatin1(gel_messages::kNotAGelFile).arg(name)
                            : QString::fromLatin1(gel_messages::kSideFileGiven).arg(name, mainFile);
}

QString hintAbout(const QString& path) {
  const QString hint = missingFileHint(path);
  return hint.isEmpty() ? foreignFormatHint(path, FileFormat::columnar) : hint;
}

}  // namespace

std::string counted(std::uint64_t count, const char* thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

std::unique_ptr<GelFile> openGelFile(const std::string& path, Console& console,
                                     bool isToldElsewhere) {
  auto file = GelFile::open(path, IncompleteFiles::accept);
  if (!file) {
    console.writeLog(LogLevel::error, textAbout(path, file.error().problem));
    if (const QString hint = hintAbout(QString::fromStdString(path)); !hint.isEmpty()) {
      console.writeReason(LogLevel::information, hint);
    }
    return nullptr;
  }
  if (!(*file)->isComplete() && !isToldElsewhere) {
    const QString name = QString::fromStdString(path);
    console.writeLog(LogLevel::warning, QString::fromLatin1(gel_messages::kIncomplete).arg(name));
    console.writeLog(LogLevel::information,
                     QString::fromLatin1(gel_messages::kRecoverAdvice).arg(name));
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
  addGelConversions(*gel, chosen);
  addGelRecover(*gel, chosen);
}

}  // namespace kelvarin
