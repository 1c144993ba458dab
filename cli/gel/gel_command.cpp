// `kelvarin gel`: looks into columnar files, checks them, and turns other tables into them and
// back.
#include "cli/gel/gel_command.h"

#include "cli/gel/messages.h"
#include "columnar/reader/failure_texts.h"
#include "host/files/file_hints.h"

namespace kelvarin {

namespace {

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
    console.writeLog(LogLevel::error, openFailureText(path, file.error().problem));
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
  CLI::App* gel =
      program.add_subcommand("gel", "Look into, check, compare or convert columnar files");
  gel->require_subcommand(1);
  gel->footer(
      "Examples:\n  kelvarin gel info sales.cgel_kelvarin\n"
      "  kelvarin gel import sales.csv sales.cgel_kelvarin");
  addGelInfo(*gel, chosen);
  addGelHead(*gel, chosen);
  addGelTail(*gel, chosen);
  addGelStats(*gel, chosen);
  addGelDiff(*gel, chosen);
  addGelLayout(*gel, chosen);
  addGelVerify(*gel, chosen);
  addGelExport(*gel, chosen);
  addGelImport(*gel, chosen);
  addGelRecover(*gel, chosen);
}

}  // namespace kelvarin
