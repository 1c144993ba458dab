// `kelvarin gel layout`: which byte of a columnar table's files belongs to what.
#include <QFileInfo>

#include <fmt/format.h>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_contents.h"
#include "cli/gel/table_layout.h"
#include "cli/result_table.h"

namespace kelvarin {

namespace {

struct LayoutArguments {
  std::string file;
  RowFormatOption form;
};

template <typename Value>
Json jsonOrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

ResultTable tableOf(const GelFile& file, const std::vector<LayoutPiece>& pieces) {
  ResultTable table({{"file", "file"},
                     {"offset", "offset", true},
                     {"bytes", "bytes", true},
                     {"what", "what"},
                     {"block", "block", true},
                     {"column", "column"},
                     {"storage", "storage"},
                     {"checksum", "checksum"}});
  for (const LayoutPiece& piece : pieces) {
    const GelColumn* column = piece.column ? &file.column(*piece.column) : nullptr;
    table.add({QFileInfo(QString::fromStdString(piece.file)).fileName().toStdString(), piece.offset,
               piece.size, piece.what, jsonOrNull(piece.block),
               column == nullptr ? Json() : Json(column->name),
               column == nullptr ? Json() : Json(storageWord(column->storage)),
               piece.checksum ? Json(fmt::format("{:08X}", *piece.checksum)) : Json()});
  }
  return table;
}

ExitStatus showLayout(const LayoutArguments& arguments) {
  Console console(false);
  const auto file = openGelFile(arguments.file, console);
  if (!file) {
    return ExitStatus::failed;
  }
  const auto pieces = layoutOf(*file);
  if (!pieces) {
    console.writeLog(LogLevel::error,
                     gel_messages::cannotOpenSide(QString::fromStdString(pieces.error())));
    return ExitStatus::failed;
  }
  tableOf(*file, *pieces).print(arguments.form.format());
  return ExitStatus::done;
}

}  // namespace

void addGelLayout(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<LayoutArguments>();
  CLI::App* command = gel.add_subcommand("layout", "Tell which byte belongs to what");
  command->add_option("FILE", arguments->file, "the main file")->required()->type_name("");
  arguments->form.addTo(*command);
  command->footer(
      "The pieces of each file add up to its size.\n\n"
      "Examples:\n  kelvarin gel layout sales.cgel_kelvarin\n"
      "  kelvarin gel layout sales.cgel_kelvarin --format json");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return showLayout(*arguments); }; });
}

}  // namespace kelvarin
