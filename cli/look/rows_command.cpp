// `kelvarin head`, `tail` and `sample`: some rows of a table.
#include <algorithm>
#include <charconv>
#include <deque>
#include <limits>
#include <optional>
#include <utility>

#include "cli/first_rows.h"
#include "cli/gel/gel_command.h"
#include "cli/look/look_command.h"
#include "cli/look/looked_table.h"
#include "cli/look/messages.h"
#include "cli/look/sampled_rows.h"
#include "host/contract/batch_collector.h"
#include "host/contract/partial_source.h"
#include "host/tables/files/reader_source.h"

namespace kelvarin {

namespace {

struct RowsArguments {
  LookedTable table;
  RowFormatOption form;
  std::int64_t count = 10;
  std::uint64_t seed = 0;
};

// Prints rows that are known at the end of the run.
class PrintedAtEnd : public RowTaker {
 public:
  explicit PrintedAtEnd(RowFormat format) : m_format(format) {}

  void begin(const OneRow& columns, TaskPool*) override {
    m_types = typesOf(columns);
    m_printer.emplace(m_format, columns);
  }
  // Where the run has ended well.
  void finish() {
    if (m_printer) {
      m_printer->finish();
    }
  }

 protected:
  RowPrinter& printer() { return *m_printer; }
  const std::vector<MetaTypeColumn>& types() const { return m_types; }

 private:
  const RowFormat m_format;
  std::vector<MetaTypeColumn> m_types;
  std::optional<RowPrinter> m_printer;
};

class LastRows final : public PrintedAtEnd {
 public:
  LastRows(RowFormat format, std::int64_t count)
      : PrintedAtEnd(format), m_count(static_cast<std::size_t>(count)) {}

  bool take(const RowBatchPointer& batch) override {
    m_batches.push_back(batch);
    m_rows += batch->rowCount();
    while (m_rows - m_batches.front()->rowCount() >= m_count && m_batches.size() > 1) {
      m_rows -= m_batches.front()->rowCount();
      m_batches.pop_front();
    }
    return m_count > 0;
  }
  void end() override {
    std::size_t rowsBefore = m_rows - std::min(m_rows, m_count);
    for (const RowBatchPointer& batch : m_batches) {
      const std::size_t begin = std::min(rowsBefore, batch->rowCount());
      rowsBefore -= begin;
      printer().print(*batch->slice(begin, batch->rowCount()));
    }
  }

 private:
  const std::size_t m_count;
  std::deque<RowBatchPointer> m_batches;
  std::size_t m_rows = 0;  // in them
};

class RowSample final : public PrintedAtEnd {
 public:
  RowSample(RowFormat format, std::int64_t count, std::uint64_t seed)
      : PrintedAtEnd(format), m_sample(static_cast<std::size_t>(count), seed) {}

  bool take(const RowBatchPointer& batch) override {
    m_sample.add(*batch);
    return true;
  }
  void end() override {
    if (const RowBatchPointer rows = m_sample.take(types())) {
      printer().print(*rows);
    }
  }

 private:
  SampledRows m_sample;
};

template <typename Taker>
ExitStatus show(const RowsArguments& arguments, Taker& taker, Console& console,
                std::function<void(Graph& graph)> prepare = {}) {
  return runOverTable(arguments.table, taker, console, std::move(prepare), [&](const RunResult&) {
    taker.finish();
    return ExitStatus::done;
  });
}

ExitStatus showHead(const RowsArguments& arguments) {
  Console console(arguments.table.options.isQuiet);
  FirstRows taker(arguments.form.format(), arguments.count);
  return show(arguments, taker, console);
}

// Columnar files are read from the first of the rows on, others from near it where they can.
void readLast(Graph& graph, std::int64_t count, const GelFile* file) {
  ActionItem* source = graph.actions.front().item.get();
  if (auto* reader = dynamic_cast<ReaderSource*>(source)) {
    reader->wantLastRows(count);
  }
  auto* part = dynamic_cast<PartialSource*>(source);
  if (part != nullptr && file != nullptr && file->isComplete()) {
    TablePart rows;
    rows.firstRow =
        file->rowCount() - std::min(file->rowCount(), static_cast<std::uint64_t>(count));
    part->readOnly(rows);
  }
}

ExitStatus showTail(const RowsArguments& arguments) {
  Console console(arguments.table.options.isQuiet);
  LastRows taker(arguments.form.format(), arguments.count);
  const TableKind* kind = arguments.table.kind(console);
  if (kind == nullptr) {
    return ExitStatus::wrongUsage;
  }
  std::unique_ptr<GelFile> file;
  if (kind->isColumnar()) {
    file = openGelFile(arguments.table.file, console);
    if (file == nullptr) {
      return ExitStatus::failed;
    }
  }
  return show(arguments, taker, console,
              [&](Graph& graph) { readLast(graph, arguments.count, file.get()); });
}

ExitStatus showSample(const RowsArguments& arguments) {
  Console console(arguments.table.options.isQuiet);
  RowSample taker(arguments.form.format(), arguments.count, arguments.seed);
  return show(arguments, taker, console);
}

// Of -5, as people type it; none where the word is something else.
std::optional<std::int64_t> shortCount(const std::string& word) {
  std::int64_t count = -1;
  const char* end = word.data() + word.size();
  const bool isShort = word.size() > 1 && word[0] == '-' && word[1] != '-';
  const auto parsed =
      isShort ? std::from_chars(word.data() + 1, end, count) : std::from_chars_result{};
  return isShort && parsed.ec == std::errc() && parsed.ptr == end ? std::optional(count)
                                                                  : std::nullopt;
}

// The word behind "--", whatever it looks like; empty where there is none. Nothing of it is left in
// what is left over.
std::string fileBehindMark(std::vector<std::string>& leftOver, std::string& file) {
  const auto mark = std::ranges::find(leftOver, "--");
  if (mark == leftOver.end()) {
    return {};
  }
  std::vector<std::string> behind(mark + 1, leftOver.end());
  leftOver.erase(mark, leftOver.end());
  if (behind.empty()) {
    return std::exchange(file, {});
  }
  if (behind.size() > 1) {
    throw CLI::ExtrasError({behind[1]});
  }
  return behind.front();
}

// A number with a sign may have been taken for the file, which is among what is left over then.
void takeShortCount(const CLI::App& command, RowsArguments& arguments) {
  std::vector<std::string> words = command.remaining();
  std::string file = fileBehindMark(words, arguments.table.file);
  words.insert(words.begin(), std::exchange(arguments.table.file, std::move(file)));
  std::erase(words, std::string());
  for (std::string& word : words) {
    if (const auto count = shortCount(word)) {
      arguments.count = *count;
    } else if (arguments.table.file.empty()) {
      arguments.table.file = std::move(word);
    } else {
      throw CLI::ExtrasError({word});
    }
  }
  if (arguments.table.file.empty()) {
    throw CLI::RequiredError("FILE");
  }
}

using ShowRows = ExitStatus (*)(const RowsArguments& arguments);

std::shared_ptr<RowsArguments> addRowsCommand(CLI::App& command, ChosenCommand& chosen,
                                              ShowRows showRows) {
  auto arguments = std::make_shared<RowsArguments>();
  command.allow_extras();
  command.add_option("-n,--rows", arguments->count, "how many; also as -5")
      ->check(CLI::Range(std::int64_t{0}, std::numeric_limits<std::int64_t>::max()))
      ->type_name("N")
      ->capture_default_str();
  arguments->form.addTo(command);
  arguments->table.addTo(command);
  command.callback([arguments, &command, &chosen, showRows] {
    takeShortCount(command, *arguments);
    chosen = [arguments, showRows] { return showRows(*arguments); };
  });
  return arguments;
}

}  // namespace

void addRowsCommands(CLI::App& program, ChosenCommand& chosen) {
  CLI::App* head = program.add_subcommand("head", "Show the first rows of a table");
  addRowsCommand(*head, chosen, showHead);
  head->footer(
      "Examples:\n  kelvarin head -5 sales.csv\n"
      "  kelvarin head -n 100 sales.parquet --format json");

  CLI::App* tail = program.add_subcommand("tail", "Show the last rows of a table");
  addRowsCommand(*tail, chosen, showTail);
  tail->footer(
      "Examples:\n  kelvarin tail -5 sales.parquet\n"
      "  sort sales.tsv | kelvarin tail - --from tsv");

  CLI::App* sample = program.add_subcommand("sample", "Show rows of a table taken at random");
  const auto arguments = addRowsCommand(*sample, chosen, showSample);
  sample
      ->add_option("--seed", arguments->seed, "another one takes other rows, the same one the same")
      ->type_name("N")
      ->capture_default_str();
  sample->footer(
      "The rows come in the order of the table.\n\n"
      "Examples:\n  kelvarin sample -20 sales.csv\n"
      "  kelvarin sample -n 1000 sales.parquet --seed 7 --format csv");
}

}  // namespace kelvarin
