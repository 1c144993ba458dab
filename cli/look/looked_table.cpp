#include "cli/look/looked_table.h"

#include <utility>

#include "cli/look/messages.h"

namespace kelvarin {

namespace {

QByteArray documentOf(const QString& source, const QString& table) {
  const QString rows = QStringLiteral("rows");
  return commandDocument(table + QStringLiteral("<TakenRows name='%1'/>").arg(rows), {source, rows},
                         {{source, {}}});
}

ExitStatus workOnTable(const LookedTable& table, RowTaker& taker, Console& console, GraphWork work,
                       std::function<void(Graph& graph)> prepare,
                       const std::function<ExitStatus(const RunResult& result)>& finish) {
  const TableKind* kind = table.kind(console);
  if (kind == nullptr) {
    return ExitStatus::wrongUsage;
  }
  const QString source = QStringLiteral("table");
  CommandGraph graph{.document = documentOf(source, table.readElement(*kind, source)),
                     .values = {{source, absolutePath(table.file)}},
                     .ownAction = std::make_unique<TakenRows>(XMLNode::emptyNode(), nullptr, taker),
                     .work = work,
                     .prepare = std::move(prepare)};
  return runCommandGraph(std::move(graph), QStringLiteral("table"), table.options, console, finish);
}

}  // namespace

void LookedTable::addTo(CLI::App& command) {
  addFileTo(command);
  source.addTo(command);
  options.addTo(command);
}

void LookedTable::addCountedTo(CLI::App& command) {
  addFileTo(command);
  source.csv.addTo(command);
  options.addTo(command);
}

void LookedTable::addFileTo(CLI::App& command) {
  command.add_option("FILE", file, "the table; - is standard input")->required()->type_name("");
  command.add_option("--from", from, "csv, tsv, parquet, arrow or gel [by extension; csv for -]")
      ->check(CLI::IsMember({"csv", "tsv", "parquet", "arrow", "gel"}))
      ->type_name("KIND");
}

const TableKind* LookedTable::kind(Console& console) const {
  const bool isInput = file == kStandardStream;
  const TableKind& kind = !from.empty() ? *tableKindNamed(from)
                          : isInput     ? csvKind()
                                        : tableKindOfContent(file);
  if (isInput && !kind.isCsv() && &kind != tableKindNamed("arrow")) {
    console.writeLog(LogLevel::error, look_messages::columnarNotFromInput());
    return nullptr;
  }
  if (const QString fault = source.fault(kind, file); !fault.isEmpty()) {
    console.writeLog(LogLevel::error, fault);
    return nullptr;
  }
  return &kind;
}

QString LookedTable::readElement(const TableKind& kind, const QString& action) const {
  return source.element(kind, action);
}

ExitStatus checkTable(const LookedTable& table, Console& console,
                      const std::function<ExitStatus(const RunResult& result)>& finish) {
  class NoRows final : public RowTaker {
    void begin(const OneRow&, TaskPool*) override {}
    bool take(const RowBatchPointer&) override { return false; }
  } taker;
  return workOnTable(table, taker, console, checkGraph, {}, finish);
}

ExitStatus runOverTable(const LookedTable& table, RowTaker& taker, Console& console,
                        std::function<void(Graph& graph)> prepare,
                        const std::function<ExitStatus(const RunResult& result)>& finish) {
  return workOnTable(table, taker, console, runGraph, std::move(prepare), finish);
}

}  // namespace kelvarin
