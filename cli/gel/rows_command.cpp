// `kelvarin gel head` and `gel tail`: the first and the last rows of a columnar file.
#include <algorithm>
#include <limits>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_contents.h"
#include "cli/row_printer.h"
#include "columnar/reader/block_reader.h"

namespace kelvarin {

namespace {

struct RowsArguments {
  std::string file;
  std::int64_t rows = 10;
  RowFormatOption form;
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

// From this row on.
bool printRows(const GelFile& file, BlockReader& reader, RowPrinter& printer,
               std::uint64_t firstRow, std::int64_t rowsLeft, Console& console) {
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
    const std::size_t rows = event.batch->rowCount();
    const std::size_t begin =
        std::min<std::uint64_t>(firstRow - std::min(firstRow, event.firstRow), rows);
    const auto count = std::min<std::int64_t>(rowsLeft, static_cast<std::int64_t>(rows - begin));
    printer.print(*event.batch->slice(begin, begin + static_cast<std::size_t>(count)));
    rowsLeft -= count;
  }
  if (damages > kMaxLines) {
    console.writeLog(LogLevel::error, gel_messages::moreLost(QString::fromStdString(file.path()),
                                                             damages - kMaxLines));
  }
  return damages == 0;
}

// The rows of files that their writer has not finished are those that can be found.
Result<std::uint64_t, std::string> rowsIn(const GelFile& file) {
  if (file.isComplete()) {
    return file.rowCount();
  }
  const auto contents = contentsOf(file, false);
  if (!contents) {
    return Failure{contents.error()};
  }
  return contents->rows;
}

using FirstRowToShow = std::uint64_t (*)(std::uint64_t rowsInFile, std::uint64_t rowsToShow);

Status<std::string> printFrom(const GelFile& file, const RowsArguments& arguments,
                              FirstRowToShow firstRowToShow, Console& console, bool& isDamaged) {
  const auto rows = rowsIn(file);
  if (!rows) {
    return Failure{rows.error()};
  }
  const std::uint64_t first = firstRowToShow(*rows, static_cast<std::uint64_t>(arguments.rows));
  const std::vector<std::size_t> order = file.columnsInRowOrder();
  auto reader = BlockReader::open(file, order, [first](const GelFile&, const BlockInfo& block) {
    return block.lastRow() >= first;
  });
  if (!reader) {
    return Failure{reader.error()};
  }
  PinOutMetaData columns = columnsOf(file, order);
  RowPrinter printer(arguments.form.format(), OneRow(&columns));
  isDamaged = !printRows(file, **reader, printer, first, arguments.rows, console);
  printer.finish();
  return Done{};
}

ExitStatus show(const RowsArguments& arguments, FirstRowToShow firstRowToShow) {
  Console console(false);
  const auto file = openGelFile(arguments.file, console);
  if (!file) {
    return ExitStatus::failed;
  }
  bool isDamaged = false;
  const auto status = printFrom(*file, arguments, firstRowToShow, console, isDamaged);
  if (!status) {
    console.writeLog(LogLevel::error,
                     gel_messages::cannotOpenSide(QString::fromStdString(status.error())));
  }
  return status && !isDamaged ? ExitStatus::done : ExitStatus::failed;
}

void addCommand(CLI::App& command, ChosenCommand& chosen, FirstRowToShow firstRowToShow) {
  auto arguments = std::make_shared<RowsArguments>();
  command.add_option("FILE", arguments->file, "the main file")->required()->type_name("");
  command.add_option("-n,--rows", arguments->rows, "how many")
      ->check(CLI::Range(std::int64_t{0}, std::numeric_limits<std::int64_t>::max()))
      ->type_name("N")
      ->capture_default_str();
  arguments->form.addTo(command);
  command.callback([arguments, &chosen, firstRowToShow] {
    chosen = [arguments, firstRowToShow] { return show(*arguments, firstRowToShow); };
  });
}

}  // namespace

void addGelHead(CLI::App& gel, ChosenCommand& chosen) {
  CLI::App* command = gel.add_subcommand("head", "Show the first rows");
  addCommand(*command, chosen, [](std::uint64_t, std::uint64_t) { return std::uint64_t{0}; });
  command->footer(
      "Examples:\n  kelvarin gel head sales.cgel_kelvarin -n 5\n"
      "  kelvarin gel head sales.cgel_kelvarin --format json");
}

void addGelTail(CLI::App& gel, ChosenCommand& chosen) {
  CLI::App* command = gel.add_subcommand("tail", "Show the last rows");
  addCommand(*command, chosen, [](std::uint64_t inFile, std::uint64_t toShow) {
    return inFile - std::min(inFile, toShow);
  });
  command->footer(
      "Examples:\n  kelvarin gel tail sales.cgel_kelvarin -n 5\n"
      "  kelvarin gel tail sales.cgel_kelvarin --format json");
}

}  // namespace kelvarin
