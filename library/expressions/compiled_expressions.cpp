#include "library/expressions/compiled_expressions.h"

#include <algorithm>
#include <utility>

#include "expression/evaluator/expression_evaluator.h"
#include "expression/options/evaluation_attributes.h"
#include "library/expressions/messages.h"
#include "library/runs/installation.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

// A stream of these columns without rows.
class NoRows final : public BatchSupply {
 public:
  explicit NoRows(TableColumns columns) : m_columns(std::move(columns)) {}
  Outcome<TableColumns> columns() override { return m_columns; }
  Outcome<OwnedArray> next() override { return OwnedArray(); }

 private:
  TableColumns m_columns;
};

// One of a few rows.
class FewRows final : public BatchSupply {
 public:
  FewRows(TableColumns columns, const RowBatch& batch)
      : m_columns(std::move(columns)), m_arrays(exportedBatch(batch, {}, m_memory)) {}
  Outcome<TableColumns> columns() override { return m_columns; }
  Outcome<OwnedArray> next() override {
    return m_next < m_arrays.size() ? std::move(m_arrays[m_next++]) : OwnedArray();
  }

 private:
  TableColumns m_columns;
  ArrayMemory m_memory;
  std::vector<OwnedArray> m_arrays;
  std::size_t m_next = 0;
};

InputStream streamOf(std::unique_ptr<BatchSupply> supply) {
  ArrowArrayStream stream;
  exportStream(std::move(supply), TextFormat::views, stream);
  return InputStream(stream);
}

WorkSettings onOneThread() {
  WorkSettings settings;
  settings.threads = 1;
  return settings;
}

ErrorDetails asExpressionError(ErrorDetails error) {
  if (error.status == KELVARIN_FAILED && !error.expression.empty()) {
    error.status = KELVARIN_WRONG_EXPRESSION;
  }
  return error;
}

}  // namespace

Outcome<std::shared_ptr<CompiledExpressions>> CompiledExpressions::compile(
    ExpressionSettings settings, const ArrowSchema& schema) {
  std::shared_ptr<CompiledExpressions> made(new CompiledExpressions(std::move(settings)));
  if (const auto settled = made->settleInput(schema); !settled) {
    return Failure{settled.error()};
  }
  if (const auto settled = made->settleTypes(); !settled) {
    return Failure{settled.error()};
  }
  if (const auto tried = made->tryWithoutRows(); !tried) {
    return Failure{asExpressionError(tried.error())};
  }
  return made;
}

Outcome<Done> CompiledExpressions::settleInput(const ArrowSchema& schema) {
  if (m_settings.outputs.empty() && m_settings.condition.isEmpty()) {
    return Failure{errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::noExpression())};
  }
  for (const ExpressionSettings::Setting& setting : m_settings.settings) {
    if (!isExpressionSetting(setting.name)) {
      return Failure{
          errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::unknownSetting(setting.name))};
    }
  }
  auto columns = StreamColumns::of(schema, m_settings.input.rules.declared);
  if (!columns) {
    return Failure{errorOfRead(columns.error())};
  }
  m_input = std::move(columns->columns);
  m_settings.input.expected = m_input;
  if (m_settings.input.sortedBy.empty()) {  // else the rows are compared
    m_settings.input.untouched = graph().unreadColumns();
  }
  return Done{};
}

// The type of a result shows when it is computed once, with the samples that a check takes.
Outcome<Done> CompiledExpressions::settleTypes() {
  const auto catalogue = installedActions();
  if (!catalogue) {
    return Failure{catalogue.error()};
  }
  const auto graph = this->graph().calculator(**catalogue);
  if (!graph) {
    return Failure{graph.error()};
  }
  EvaluationOptions options;
  readAttributes(graph->actions.front().item->node(), evaluationAttributes(), options, nullptr);
  std::vector<InputVariable> variables;
  for (std::size_t i = 0; i < m_input.types.size(); ++i) {
    InputVariable variable;
    variable.label = m_input.names[static_cast<qsizetype>(i)];
    variable.isNumber = fixedSizeOf(m_input.types[i]) != 0;
    variables.push_back(std::move(variable));
  }
  for (ExpressionSettings::Output& output : m_settings.outputs) {
    if (output.type) {
      continue;
    }
    ExpressionEvaluator evaluator;
    evaluator.expressions.configure(options, variables, nullptr, false);
    OutputVariable variable;
    variable.expression = output.expression;
    const ExpressionCheck check = evaluator.expressions.check(variable, ResultUse::anyValue);
    const bool isTextual = check.value && check.value->type == ExpressionValue::Type::text;
    output.type = isTextual ? MetaTypeColumn::text : MetaTypeColumn::number;
  }
  return Done{};
}

// Compiles the expressions as a run does, for a table without rows.
Outcome<Done> CompiledExpressions::tryWithoutRows() {
  auto stream = run(streamOf(std::make_unique<NoRows>(m_input)), onOneThread(), {}, 0);
  if (!stream) {
    return Failure{stream.error()};
  }
  if (const auto end = (*stream)->next(); !end) {
    return Failure{end.error()};
  }
  m_output = (*stream)->columnsOfSink();
  noteComputed();
  noteInfos((*stream)->run());
  return Done{};
}

void CompiledExpressions::noteComputed() {
  for (const QString& name : m_output.names) {
    m_computed.push_back(
        std::ranges::find(m_settings.outputs, name, &ExpressionSettings::Output::name) !=
        m_settings.outputs.end());
  }
}

void CompiledExpressions::noteInfos(PulledRun& run) {
  for (int action = 1; action <= graph().transformCount(); ++action) {
    for (const OutputReport& report : run.reportOf(action).outputs) {
      m_infos.emplace_back().report = report;
    }
  }
  for (std::size_t i = 0; i < m_infos.size(); ++i) {
    ExpressionInfo& info = m_infos[i];
    const bool isOutput = i < m_settings.outputs.size();
    info.dependence =
        dependenceOf(isOutput ? m_settings.outputs[i].expression : m_settings.condition,
                     graph().hasRowNumber(!isOutput));
    info.type = isOutput ? static_cast<int>(*m_settings.outputs[i].type) : 0;
    if (!isOutput && truncates(m_settings)) {
      info.dependence.add(KELVARIN_DEPENDS_ON_EARLIER_ROWS, QStringLiteral("truncate"), -1);
    }
    info.texts = {.name = info.report.name.toStdString(),
                  .engine = info.report.engine.toStdString(),
                  .slowedBy = info.report.slowedBy.toStdString(),
                  .reason = info.report.reason.toStdString(),
                  .batchRefusal = info.report.batchRefusal.toStdString(),
                  .dependenceToken = info.dependence.token.toStdString()};
  }
}

Outcome<std::unique_ptr<PulledStream>> CompiledExpressions::run(InputStream stream,
                                                                const WorkSettings& work,
                                                                const BatchForm& form,
                                                                long long firstRow) const {
  const auto catalogue = installedActions();
  if (!catalogue) {
    return Failure{catalogue.error()};
  }
  auto graph = this->graph().whole(**catalogue);
  if (!graph) {
    return Failure{graph.error()};
  }
  InputSettings input = m_settings.input;
  input.firstRow = firstRow;
  if (const auto bound = bindInput(*graph, 0, std::move(stream), std::move(input)); !bound) {
    return Failure{bound.error()};
  }
  return PulledStream::open(std::move(*graph), work, form, firstRow);
}

bool CompiledExpressions::mayKeepStages() const {
  return std::ranges::all_of(m_infos, [](const ExpressionInfo& info) {
    return info.report.isByBatch &&
           (info.dependence.reasons & ~KELVARIN_DEPENDS_ON_ROW_NUMBER) == 0;
  });
}

std::shared_ptr<const CompiledStages> CompiledExpressions::stages(const RowBatchPointer& batch) {
  const std::lock_guard lock(m_mutex);
  if (m_stages != nullptr || m_hasNoStages) {
    return m_stages;
  }
  if (!mayKeepStages()) {
    m_hasNoStages = true;
    return nullptr;
  }
  auto rows = std::make_unique<FewRows>(m_input, *batch->narrowSlice(0, 1));
  auto stream = run(streamOf(std::move(rows)), onOneThread(), {}, 0);
  if (!stream) {
    return nullptr;
  }
  PulledRun& run = (*stream)->run();
  while (run.advance()) {
  }
  if (run.state() == State::running) {  // else the first row has failed, and another one may not
    m_stages = CompiledStages::of(std::move(*stream), graph().transformCount());
    m_hasNoStages = m_stages == nullptr;
  }
  return m_stages;
}

}  // namespace kelvarin
