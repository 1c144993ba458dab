// `kelvarin gel`: looks into columnar files, checks them, and turns other tables into them and
// back.
#include "cli/gel_command.h"

#include "cli/gel_command_messages.h"

namespace kelvarin {

std::unique_ptr<GelFile> openGelFile(const std::string& path, Console& console,
                                     bool isToldElsewhere) {
  auto file = GelFile::open(path, IncompleteFiles::accept);
  const QString name = QString::fromStdString(path);
  if (!file) {
    const bool isMissing = file.error().problem == OpenFailure::Problem::cannotOpen;
    const char* text = isMissing ? gel_messages::kCannotOpen : gel_messages::kNotAGelFile;
    console.writeLog(LogLevel::error, QString::fromLatin1(text).arg(name));
    return nullptr;
  }
  if (!(*file)->isComplete() && !isToldElsewhere) {
    console.writeLog(LogLevel::warning, QString::fromLatin1(gel_messages::kIncomplete).arg(name));
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
}

}  // namespace kelvarin
