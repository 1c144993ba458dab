// `kelvarin count`: the number of rows of a table.
#include <cstdio>

#include "cli/gel/gel_command.h"
#include "cli/look/look_command.h"
#include "cli/look/looked_table.h"
#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/files/reader_source.h"

namespace kelvarin {

namespace {

class CountedRows final : public RowTaker {
 public:
  void begin(const OneRow&, TaskPool*) override {}
  bool take(const RowBatchPointer& batch) override {
    m_count += static_cast<long long>(batch->rowCount());
    return true;
  }
  long long count() const { return m_count; }

 private:
  long long m_count = 0;
};

ExitStatus print(long long rows) {
  std::printf("%lld\n", rows);
  return ExitStatus::done;
}

// What the file says without being read; -1 where it says nothing, or cannot be opened.
long long statedRows(const LookedTable& table, const TableKind& kind) {
  if (kind.isColumnar()) {
    const auto file = GelFile::open(table.file, IncompleteFiles::refuse);
    return file ? static_cast<long long>((*file)->rowCount()) : -1;
  }
  const QLatin1String format(kind.format);
  if (format == QLatin1String("CSV")) {
    return -1;
  }
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return -1;
  }
  const auto reader = (*formats)->makeReader(
      format == QLatin1String("Parquet") ? ArrowFormat::parquet : ArrowFormat::arrow,
      absolutePath(table.file), {{}, UnreadableColumns::text});
  return reader->open([] { return false; }) ? reader->rowCount() : -1;
}

// A file that does not open so gets the messages of a run.
ExitStatus countRows(const LookedTable& table) {
  Console console(table.options.isQuiet);
  const TableKind* kind = table.kind(console);
  if (kind == nullptr) {
    return ExitStatus::wrongUsage;
  }
  if (const long long rows = statedRows(table, *kind); rows >= 0) {
    return print(rows);
  }
  CountedRows taker;
  const auto prepare = [](Graph& graph) {
    if (auto* reader = dynamic_cast<ReaderSource*>(graph.actions.front().item.get())) {
      reader->wantCountOnly();
    }
  };
  return runOverTable(table, taker, console, prepare,
                      [&](const RunResult&) { return print(taker.count()); });
}

}  // namespace

void addCountCommand(CLI::App& program, ChosenCommand& chosen) {
  auto table = std::make_shared<LookedTable>();
  CLI::App* command = program.add_subcommand("count", "Count the rows of a table");
  table->addCountedTo(*command);
  command->footer(
      "Parquet, Arrow and columnar files say how many they have; records of CSV are counted.\n\n"
      "Examples:\n  kelvarin count sales.parquet\n  zcat sales.csv.gz | kelvarin count -");
  command->callback([table, &chosen] { chosen = [table] { return countRows(*table); }; });
}

}  // namespace kelvarin
