// `kelvarin gel verify`: every checksum, every chunk and every summary of a columnar file.
#include <cstdio>

#include "cli/gel_command.h"
#include "cli/gel_command_messages.h"
#include "cli/printable_text.h"
#include "cli/progress_line.h"
#include "columnar/reader/verification.h"

namespace kelvarin {

namespace {

using Kind = GelDamage::Kind;

const char* reasonOfRecord(ReadStatus cause) {
  switch (cause) {
    case ReadStatus::wrongChecksum:
      return gel_messages::kRecordChecksum;
    case ReadStatus::beyondLimits:
      return gel_messages::kRecordTooLarge;
    default:
      return gel_messages::kRecordContent;
  }
}

const char* reasonOfChunk(ReadStatus cause) {
  switch (cause) {
    case ReadStatus::wrongChecksum:
      return gel_messages::kChunkChecksum;
    case ReadStatus::beyondLimits:
      return gel_messages::kChunkTooLarge;
    default:
      return gel_messages::kChunkContent;
  }
}

QString reasonOf(const GelDamage& damage) {
  switch (damage.kind) {
    case Kind::record:
      return QString::fromLatin1(reasonOfRecord(damage.cause));
    case Kind::mainFileCut:
      return QString::fromLatin1(gel_messages::kMainFileCut);
    case Kind::rowCount:
      return QString::fromLatin1(gel_messages::kBadRowCount);
    case Kind::chunk:
      return QString::fromLatin1(reasonOfChunk(damage.cause));
    case Kind::unknownEncoding:
      return QString::fromLatin1(gel_messages::kUnknownLayout).arg(damage.encoding);
    case Kind::sideFileCut:
      return QString::fromLatin1(gel_messages::kSideFileCut);
    case Kind::statistics:
      return QString::fromLatin1(gel_messages::kBadSummary);
    case Kind::sideFileMissing:
      break;
  }
  return QString::fromLatin1(gel_messages::kSideFileMissing)
      .arg(QString::fromStdString(damage.file));
}

QString textOf(const GelDamage& damage) {
  if (damage.kind == Kind::sideFileMissing) {
    return reasonOf(damage);
  }
  const QString column =
      damage.column.empty()
          ? QString()
          : QString::fromLatin1(gel_messages::kColumn)
                .arg(QString::fromStdString(printable(damage.column)));
  return QString::fromLatin1(gel_messages::kPlace)
      .arg(QString::fromStdString(damage.file), QString::number(damage.offset),
           QString::number(damage.block), QString::number(damage.firstRow),
           QString::number(damage.lastRow), column, reasonOf(damage));
}

// Results go to standard output: what was found is what the command is for.
void print(const QString& text) {
  std::fputs(qUtf8Printable(text), stdout);
}

QString verdictOf(const GelFile& file, const GelVerification& result) {
  if (result.damages > 0) {
    return QString::fromStdString(counted(result.damages, "damaged place"));
  }
  return QString::fromLatin1(file.isComplete() ? gel_messages::kNoDamage
                                               : gel_messages::kIncompleteButSound);
}

ExitStatus verify(const std::string& path, bool isQuiet) {
  Console console(isQuiet);
  const auto file = openGelFile(path, console, true);
  if (!file) {
    return ExitStatus::failed;
  }
  ProgressLine progress(console);
  const auto showProgress = [&](std::uint64_t rows) {
    const double share = file->rowCount() > 0
                             ? static_cast<double>(rows) / static_cast<double>(file->rowCount())
                             : -1.0;
    progress.show({static_cast<long long>(rows), share});
  };
  std::uint64_t reported = 0;
  const auto report = [&](const GelDamage& damage) {
    if (++reported <= kMostLines) {
      print(textOf(damage) + u'\n');
    }
  };
  const GelVerification result = verifyGelFile(*file, report, showProgress);
  console.clearProgress();
  if (reported > kMostLines) {
    print(QString::fromLatin1(gel_messages::kMoreDamage)
              .arg(QString::fromStdString(path))
              .arg(reported - kMostLines));
  }
  print(QString::fromLatin1(gel_messages::kVerified)
            .arg(QString::fromStdString(path), QString::fromStdString(counted(result.rows, "row")),
                 QString::fromStdString(counted(result.blocks, "block")),
                 QString::fromStdString(counted(result.chunks, "chunk")),
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
  command->footer("Example:\n  kelvarin gel verify sales.cgel_kelvarin");
  command->callback([arguments, &chosen] {
    chosen = [arguments] { return verify(arguments->file, arguments->isQuiet); };
  });
}

}  // namespace kelvarin
