// `kelvarin gel verify`: every checksum, every chunk and every summary of a columnar file.
#include <cstdio>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/printable_text.h"
#include "cli/progress_line.h"
#include "columnar/reader/failure_texts.h"

namespace kelvarin {

namespace {

// With a column name that is safe on a terminal.
QString textOf(GelDamage damage) {
  damage.column = printable(damage.column);
  return damageText(damage);
}

// Results go to standard output: what was found is what the command is for.
void print(const QString& text) {
  std::fputs(qUtf8Printable(text), stdout);
}

QString verdictOf(const GelFile& file, const GelVerification& result) {
  if (result.damages > 0) {
    return counted(result.damages, gel_messages::damageNoun());
  }
  return file.isComplete() ? gel_messages::noDamage() : gel_messages::incompleteButSound();
}

ExitStatus verify(const std::string& path, bool isQuiet) {
  Console console(isQuiet);
  const auto file = openGelFile(path, console, false);
  if (!file) {
    return ExitStatus::failed;
  }
  ProgressLine progress(console);
  const auto showProgress = [&](std::uint64_t rows) {
    const double share = file->rowCount() > 0
                             ? static_cast<double>(rows) / static_cast<double>(file->rowCount())
                             : -1.0;
    progress.show({static_cast<long long>(rows), share, {}});
  };
  std::uint64_t reported = 0;
  const auto report = [&](const GelDamage& damage) {
    if (++reported <= kMaxLines) {
      print(textOf(damage) + u'\n');
    }
  };
  const GelVerification result = verifyGelFile(*file, report, showProgress);
  console.clearProgress();
  if (reported > kMaxLines) {
    print(gel_messages::moreDamage(QString::fromStdString(path), reported - kMaxLines));
  }
  print(gel_messages::verified(QString::fromStdString(path), counted(result.rows, "row"),
                               counted(result.blocks, "block"), counted(result.chunks, "chunk"),
                               verdictOf(*file, result)));
  return result.damages == 0 && file->isComplete() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace

void addGelVerify(CLI::App& gel, ChosenCommand& chosen) {
  struct Arguments {
    std::string file;
    bool isQuiet = false;
  };
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command = gel.add_subcommand("verify", "Check every checksum and every value");
  command->add_option("FILE", arguments->file, "the main file")->required()->type_name("");
  command->add_flag("--quiet", arguments->isQuiet, "no progress bar");
  command->footer(
      "Examples:\n  kelvarin gel verify sales.cgel_kelvarin\n"
      "  kelvarin gel verify --quiet sales.cgel_kelvarin");
  command->callback([arguments, &chosen] {
    chosen = [arguments] { return verify(arguments->file, arguments->isQuiet); };
  });
}

}  // namespace kelvarin
