// `kelvarin gel info`: header, columns, sets and blocks of a columnar file.
#include <cstdio>
#include <numeric>
#include <optional>

#include <fmt/format.h>

#include "base/null_number.h"
#include "cli/gel_command.h"
#include "cli/gel_command_messages.h"
#include "cli/printable_text.h"
#include "cli/value_json.h"
#include "columnar/reader/chunk_reader.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

struct InfoArguments {
  std::string file;
  bool showsBlocks = false;
  bool isJson = false;
};

struct BlockColumn {
  bool hasNull = false;
  Json low;  // null: there is no value
  Json high;
  Json size;  // null: told by the chunk itself
};

struct Block {
  std::uint64_t row = 0;
  std::uint64_t rows = 0;
  std::vector<BlockColumn> columns;  // in the order of the rows
};

struct Contents {
  std::uint64_t rows = 0;
  std::uint64_t blockCount = 0;
  std::vector<Block> blocks;  // when they are asked for
  struct Rows {
    std::uint64_t first;
    std::uint64_t last;
  };
  std::vector<Rows> lostRows;
  std::optional<std::uint64_t> cutAtRow;

  bool isDamaged() const { return !lostRows.empty() || cutAtRow; }
};

// Damage beside damage is one.
void addLostRows(Contents& contents, const BlockScan& scan) {
  std::vector<Contents::Rows>& lost = contents.lostRows;
  if (!lost.empty() && lost.back().last + 1 == scan.lostFirstRow()) {
    lost.back().last = scan.lostLastRow();
  } else {
    lost.push_back({scan.lostFirstRow(), scan.lostLastRow()});
  }
}

void tellDamage(const GelFile& file, const Contents& contents, Console& console) {
  const QString name = QString::fromStdString(file.path());
  const std::size_t listed = std::min(contents.lostRows.size(), kMostLines);
  for (const Contents::Rows& rows : std::span(contents.lostRows).first(listed)) {
    console.writeLog(LogLevel::error,
                     QString::fromLatin1(gel_messages::kRowsLost)
                         .arg(name, QString::number(rows.first), QString::number(rows.last)));
  }
  if (contents.lostRows.size() > listed) {
    console.writeLog(LogLevel::error, QString::fromLatin1(gel_messages::kMoreLost)
                                          .arg(name)
                                          .arg(contents.lostRows.size() - listed));
  }
  if (contents.cutAtRow) {
    console.writeLog(
        LogLevel::error,
        QString::fromLatin1(gel_messages::kFileCut).arg(name, QString::number(*contents.cutAtRow)));
  }
}

const char* storageWord(StorageCode code) {
  switch (code) {
    case StorageCode::raw:
      return "raw";
    case StorageCode::key:
      return "key";
    case StorageCode::ascendingKey:
      return "key, sorted ascending";
    case StorageCode::descendingKey:
      break;
  }
  return "key, sorted descending";
}

Json jsonOfBound(double bound) {
  if (isFiniteNumber(bound)) {
    return bound;
  }
  return shortestText(bound).toStdString();
}

template <typename Summary>
std::optional<Summary> statisticsOf(const GelFile& file, const BlockInfo& block, std::size_t column) {
  Summary summary;
  const bool isRead = file.descriptorLayout().readStatistics(block.descriptor, column, summary);
  return isRead ? std::optional(summary) : std::nullopt;
}

BlockColumn describe(const GelFile& file, const BlockInfo& block, std::size_t column) {
  BlockColumn described;
  switch (file.column(column).type) {
    case GelType::key:
      if (const auto keys = statisticsOf<KeyStatistics>(file, block, column)) {
        described.hasNull = keys->hasNull;
        described.low = keys->hasValues() ? Json(keys->low) : Json();
        described.high = keys->hasValues() ? Json(keys->high) : Json();
      }
      break;
    case GelType::number:
      if (const auto numbers = statisticsOf<NumberStatistics>(file, block, column)) {
        described.hasNull = numbers->hasNull;
        described.low = numbers->hasValues ? jsonOfBound(numbers->low) : Json();
        described.high = numbers->hasValues ? jsonOfBound(numbers->high) : Json();
      }
      break;
    case GelType::text:
      if (const auto texts = statisticsOf<TextStatistics>(file, block, column)) {
        const auto low = texts->lowerBound();
        const auto high = texts->upperBound();
        described.hasNull = texts->hasNull;
        described.low = low ? Json(*low) : Json();
        described.high = high ? Json(*high) : Json();
      }
      break;
  }
  return described;
}

Block describe(const GelFile& file, const BlockInfo& info, ChunkReader& chunks,
               const std::vector<std::size_t>& order) {
  Block block{.row = info.firstRow, .rows = info.rowCount, .columns = {}};
  chunks.locate(info);
  for (std::size_t place = 0; place < order.size(); ++place) {
    BlockColumn column = describe(file, info, order[place]);
    if (const auto size = chunks.chunkSize(place)) {
      column.size = *size;
    }
    block.columns.push_back(std::move(column));
  }
  return block;
}

std::optional<Contents> contentsOf(const GelFile& file, bool withBlocks, Console& console) {
  const std::vector<std::size_t> order = file.columnsInRowOrder();
  std::unique_ptr<ChunkReader> chunks;
  if (withBlocks) {
    auto opened = ChunkReader::open(file, order);
    if (!opened) {
      console.writeLog(LogLevel::error, QString::fromLatin1(gel_messages::kCannotOpenSide)
                                            .arg(QString::fromStdString(opened.error())));
      return std::nullopt;
    }
    chunks = std::move(*opened);
  }
  Contents contents;
  BlockScan scan(file);
  for (BlockInfo info;;) {
    switch (scan.next(info)) {
      case BlockScan::Step::block:
        ++contents.blockCount;
        contents.rows += info.rowCount;
        if (chunks) {
          contents.blocks.push_back(describe(file, info, *chunks, order));
        }
        break;
      case BlockScan::Step::corrupted:
        addLostRows(contents, scan);
        break;
      case BlockScan::Step::truncated:
        contents.cutAtRow = scan.lostFirstRow();
        return contents;
      case BlockScan::Step::end:
        return contents;
    }
  }
}

Json jsonOf(const Block& block) {
  Json columns = Json::array();
  for (const BlockColumn& column : block.columns) {
    columns.push_back({{"hasNull", column.hasNull},
                       {"min", column.low},
                       {"max", column.high},
                       {"bytes", column.size}});
  }
  return {{"row", block.row}, {"rows", block.rows}, {"columns", columns}};
}

Json jsonOf(const GelFile& file, const Contents& contents, bool withBlocks) {
  Json columns = Json::array();
  for (const std::size_t index : file.columnsInRowOrder()) {
    const GelColumn& column = file.column(index);
    columns.push_back({{"name", column.name},
                       {"meta", std::string(1, static_cast<char>(column.type))},
                       {"storage", static_cast<int>(column.storage)},
                       {"set", column.columnSet}});
  }
  Json document = {{"complete", file.isComplete()},
                   {"rows", file.isComplete() ? file.rowCount() : contents.rows},
                   {"nRowsInBlock", file.rowsInBlock()},
                   {"columns", columns},
                   {"sets", file.columnSetCount()}};
  if (withBlocks) {
    document["blocks"] = Json::array();
    for (const Block& block : contents.blocks) {
      document["blocks"].push_back(jsonOf(block));
    }
  }
  return document;
}

// A text in quotes, so that the empty one can be seen and "-" is not taken for a missing one.
std::string wordOf(const Json& value, GelType type) {
  if (value.is_null()) {
    return "-";
  }
  if (value.is_number_float()) {
    return shortestText(value.get<double>()).toStdString();
  }
  const bool isQuoted = value.is_string() && type == GelType::text;
  return value.is_string() && !isQuoted
             ? value.get<std::string>()
             : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string lineOf(const GelColumn& column, const BlockColumn& described) {
  return fmt::format("  {:<24} {:>10} bytes  {}{} to {}\n", printable(column.name),
                     wordOf(described.size, column.type), described.hasNull ? "nulls, " : "",
                     printable(wordOf(described.low, column.type)),
                     printable(wordOf(described.high, column.type)));
}

std::string tableOf(const GelFile& file, const Contents& contents) {
  const auto setCount = static_cast<std::uint64_t>(file.columnSetCount());
  std::string text =
      fmt::format("{}\n  {}, {}, {} of up to {}, {}\n\n", printable(file.path()),
                  file.isComplete() ? "complete" : "incomplete",
                  counted(file.isComplete() ? file.rowCount() : contents.rows, "row"),
                  counted(contents.blockCount, "block"), counted(file.rowsInBlock(), "row"),
                  counted(setCount, "column set"));
  text += fmt::format("{:<6}{:<5}{:<24}{}\n", "type", "set", "storage", "column");
  const std::vector<std::size_t> order = file.columnsInRowOrder();
  for (const std::size_t index : order) {
    const GelColumn& column = file.column(index);
    text += fmt::format("{:<6}{:<5}{:<24}{}\n", static_cast<char>(column.type), column.columnSet,
                        storageWord(column.storage), printable(column.name));
  }
  for (const Block& block : contents.blocks) {
    text += fmt::format("\nrows {} to {}\n", block.row, block.row + block.rows - 1);
    for (std::size_t i = 0; i < order.size(); ++i) {
      text += lineOf(file.column(order[i]), block.columns[i]);
    }
  }
  return text;
}

ExitStatus showInfo(const InfoArguments& arguments) {
  Console console(false);
  const auto file = openGelFile(arguments.file, console, true);
  if (!file) {
    return ExitStatus::failed;
  }
  const auto contents = contentsOf(*file, arguments.showsBlocks, console);
  if (!contents) {
    return ExitStatus::failed;
  }
  const std::string text = arguments.isJson
                               ? printed(jsonOf(*file, *contents, arguments.showsBlocks))
                               : tableOf(*file, *contents);
  std::fputs(text.c_str(), stdout);
  tellDamage(*file, *contents, console);
  return contents->isDamaged() ? ExitStatus::failed : ExitStatus::done;
}

}  // namespace

void addGelInfo(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<InfoArguments>();
  CLI::App* command = gel.add_subcommand("info", "Show header, columns and blocks");
  command->add_option("FILE", arguments->file, "the main file")->required()->type_name("");
  command->add_flag("--blocks", arguments->showsBlocks, "show each block with its statistics");
  command->add_flag("--json", arguments->isJson, "print one JSON object");
  command->footer("Example:\n  kelvarin gel info sales.cgel_kelvarin --blocks");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return showInfo(*arguments); }; });
}

}  // namespace kelvarin
