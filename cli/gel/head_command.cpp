// `kelvarin gel head`: the first rows of a columnar file, as CSV.
#include <algorithm>
#include <cstdio>
#include <limits>

#include <unistd.h>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/printable_text.h"
#include "columnar/reader/block_reader.h"
#include "host/tables/csv/csv_batch_format.h"

namespace kelvarin {

namespace {

struct HeadArguments {
  std::string file;
  std::int64_t rows = 10;
};

// The columns of the file as a row.
PinOutMetaData columnsOf(const GelFile& file, const std::vector<std::size_t>& order) {
  PinOutMetaData columns;
  columns.setColumnCount(static_cast<int>(order.size()));
  for (std::size_t i = 0; i < order.size(); ++i) {
    columns.setName(static_cast<int>(i), QString::fromStdString(file.column(order[i]).name));
    columns.setMeta(static_cast<int>(i), file.meta(order[i]));
  }
  return columns;
}

std::vector<MetaTypeColumn> typesOf(const PinOutMetaData& columns) {
  std::vector<MetaTypeColumn> types;
  for (const MetaInfo& meta : columns.metas()) {
    types.push_back(meta.type());
  }
  return types;
}

// What an event without rows means to the user; empty at the end.
QString damageText(const QString& file, const ReadEvent& event) {
  switch (event.kind) {
    case ReadEvent::Kind::corrupted:
      return gel_messages::rowsLost(file, event.firstRow, event.lastRow);
    case ReadEvent::Kind::truncated:
      return gel_messages::fileCut(file, event.firstRow);
    case ReadEvent::Kind::noMemory:
      return gel_messages::noMemory(file);
    case ReadEvent::Kind::rows:
    case ReadEvent::Kind::end:
      break;
  }
  return {};
}

// A file or a pipe gets the data as they are.
void print(const CsvText& csv) {
  static const bool isForTerminal = ::isatty(STDOUT_FILENO) != 0;
  const std::string_view text = csv.text();
  const std::string shown = isForTerminal ? printable(text, LineBreaks::keep) : std::string();
  const std::string_view output = isForTerminal ? std::string_view(shown) : text;
  std::fwrite(output.data(), 1, output.size(), stdout);
}

bool printRows(const GelFile& file, BlockReader& reader, PinOutMetaData& columns,
               std::int64_t rowsLeft, Console& console) {
  const CsvBatchFormat format(CsvDialect{}, typesOf(columns));
  print(*format.encodeNames(OneRow(&columns)));
  std::size_t damages = 0;
  while (rowsLeft > 0 && !isOutputClosed()) {
    const ReadEvent event = reader.next();
    if (event.kind != ReadEvent::Kind::rows) {
      const QString text = damageText(QString::fromStdString(file.path()), event);
      damages += text.isEmpty() ? 0 : 1;
      if (!text.isEmpty() && damages <= kMaxLines) {
        console.writeLog(LogLevel::error, text);
      }
      if (event.isLast()) {
        break;
      }
      continue;
    }
    const auto count =
        std::min<std::int64_t>(rowsLeft, static_cast<std::int64_t>(event.batch->rowCount()));
    print(*format.encodeRows(*event.batch->slice(0, static_cast<std::size_t>(count))));
    rowsLeft -= count;
  }
  if (damages > kMaxLines) {
    console.writeLog(LogLevel::error, gel_messages::moreLost(QString::fromStdString(file.path()),
                                                             damages - kMaxLines));
  }
  return damages == 0;
}

ExitStatus showHead(const HeadArguments& arguments) {
  Console console(false);
  const auto file = openGelFile(arguments.file, console);
  if (!file) {
    return ExitStatus::failed;
  }
  const std::vector<std::size_t> order = file->columnsInRowOrder();
  auto reader = BlockReader::open(*file, order);
  if (!reader) {
    console.writeLog(LogLevel::error,
                     gel_messages::cannotOpenSide(QString::fromStdString(reader.error())));
    return ExitStatus::failed;
  }
  PinOutMetaData columns = columnsOf(*file, order);
  return printRows(*file, **reader, columns, arguments.rows, console) ? ExitStatus::done
                                                                      : ExitStatus::failed;
}

}  // namespace

void addGelHead(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<HeadArguments>();
  CLI::App* command = gel.add_subcommand("head", "Print the first rows as CSV");
  command->add_option("FILE", arguments->file, "the main file")->required()->type_name("");
  command->add_option("-n,--rows", arguments->rows, "how many")
      ->check(CLI::Range(std::int64_t{0}, std::numeric_limits<std::int64_t>::max()))
      ->type_name("N")
      ->capture_default_str();
  command->footer(
      "Examples:\n  kelvarin gel head sales.cgel_kelvarin\n"
      "  kelvarin gel head -n 5 sales.cgel_kelvarin");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return showHead(*arguments); }; });
}

}  // namespace kelvarin
