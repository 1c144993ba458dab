#include "library/expressions/compiled_expressions.h"

#include <algorithm>
#include <set>
#include <utility>

#include "expression/evaluator/expression_evaluator.h"
#include "expression/options/evaluation_attributes.h"
#include "expression/tokens/expression_tokens.h"
#include "library/expressions/messages.h"
#include "library/runs/installation.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

constexpr char16_t kSource[] = u"stream";
constexpr char16_t kCalculation[] = u"calculation";
constexpr char16_t kCondition[] = u"condition";
const QString kRowNumber = QStringLiteral("_n");
const QString kOffersRowNumber = QStringLiteral("addN");
const QString kTruncates = QStringLiteral("truncate");

std::set<QString> namesIn(const QStringList& expressions) {
  std::set<QString> names;
  for (const QString& expression : expressions) {
    const ExpressionTokens tokens(expression);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      if (isFreeName(tokens.all(), i)) {
        names.insert(tokens.text(tokens[i]).toString());
      }
    }
  }
  return names;
}

bool isText(MetaTypeColumn type) {
  return fixedSizeOf(type) == 0;
}

bool isAmong(EvaluationAttributes attributes, const QString& name) {
  return std::ranges::any_of(attributes, [&](const Attribute<EvaluationOptions>& line) {
    return name == QString::fromUtf16(line.name);
  });
}

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
      : m_columns(std::move(columns)), m_arrays(exportedBatch(batch, {})) {}
  Outcome<TableColumns> columns() override { return m_columns; }
  Outcome<OwnedArray> next() override {
    return m_next < m_arrays.size() ? std::move(m_arrays[m_next++]) : OwnedArray();
  }

 private:
  TableColumns m_columns;
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
    if (!isAmong(evaluationAttributes(), setting.name) && setting.name != kTruncates) {
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
  return Done{};
}

// The type of a result shows when it is computed once, with the samples that a check takes.
Outcome<Done> CompiledExpressions::settleTypes() {
  const auto catalogue = installedActions();
  if (!catalogue) {
    return Failure{catalogue.error()};
  }
  GraphText text;
  addCalculator(text);
  const auto graph = text.parse(**catalogue);
  if (!graph) {
    return Failure{graph.error()};
  }
  EvaluationOptions options;
  readAttributes(graph->actions.front().item->node(), evaluationAttributes(), options, nullptr);
  std::vector<InputVariable> variables;
  for (std::size_t i = 0; i < m_input.types.size(); ++i) {
    InputVariable variable;
    variable.label = m_input.names[static_cast<qsizetype>(i)];
    variable.isNumber = !isText(m_input.types[i]);
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
  noteInfos((*stream)->run());
  return Done{};
}

void CompiledExpressions::noteInfos(PulledRun& run) {
  for (int action = 1; action <= transformCount(); ++action) {
    for (const OutputReport& report : run.reportOf(action).outputs) {
      m_infos.emplace_back().report = report;
    }
  }
  for (std::size_t i = 0; i < m_infos.size(); ++i) {
    ExpressionInfo& info = m_infos[i];
    const bool isOutput = i < m_settings.outputs.size();
    info.dependence =
        dependenceOf(isOutput ? m_settings.outputs[i].expression : m_settings.condition,
                     hasRowNumber(isOutput ? m_input : columnsOfCondition()));
    info.type = isOutput ? static_cast<int>(*m_settings.outputs[i].type) : 0;
    const auto truncates =
        std::ranges::find(m_settings.settings, kTruncates, &ExpressionSettings::Setting::name);
    if (!isOutput && truncates != m_settings.settings.end() &&
        truncates->value != QLatin1String("0")) {
      info.dependence.add(KELVARIN_DEPENDS_ON_EARLIER_ROWS, kTruncates, -1);
    }
    info.texts = {.name = info.report.name.toStdString(),
                  .engine = info.report.engine.toStdString(),
                  .slowedBy = info.report.slowedBy.toStdString(),
                  .reason = info.report.reason.toStdString(),
                  .batchRefusal = info.report.batchRefusal.toStdString(),
                  .dependenceToken = info.dependence.token.toStdString()};
  }
}

bool CompiledExpressions::hasOutput(const QString& name) const {
  return std::ranges::find(m_settings.outputs, name, &ExpressionSettings::Output::name) !=
         m_settings.outputs.end();
}

// A column of that name is what `_n` means.
bool CompiledExpressions::hasRowNumber(const TableColumns& columns) const {
  const auto offers =
      std::ranges::find(m_settings.settings, kOffersRowNumber, &ExpressionSettings::Setting::name);
  const bool isOff = offers != m_settings.settings.end() && offers->value == QLatin1String("0");
  return !isOff && !columns.names.contains(kRowNumber);
}

// It sees the outputs, too.
TableColumns CompiledExpressions::columnsOfCondition() const {
  TableColumns columns = m_input;
  for (const ExpressionSettings::Output& output : m_settings.outputs) {
    const qsizetype index = columns.names.indexOf(output.name);
    if (index < 0) {
      columns.names.append(output.name);
      columns.types.push_back(output.type.value_or(MetaTypeColumn::number));
    } else {
      columns.types[static_cast<std::size_t>(index)] = output.type.value_or(MetaTypeColumn::number);
    }
  }
  return columns;
}

int CompiledExpressions::transformCount() const {
  return (m_settings.outputs.empty() ? 0 : 1) + (m_settings.condition.isEmpty() ? 0 : 1);
}

void CompiledExpressions::addSettings(GraphText& graph, bool isCondition) const {
  const TableColumns columns = isCondition ? columnsOfCondition() : m_input;
  for (const ExpressionSettings::Setting& setting : m_settings.settings) {
    const bool isKnown = setting.name == kTruncates
                             ? isCondition
                             : !isCondition || isAmong(conditionAttributes(), setting.name);
    if (isKnown && setting.name != kOffersRowNumber) {
      graph.attribute(setting.name.toStdU16String().c_str(), setting.value);
    }
  }
  graph.attribute(u"addN", hasRowNumber(columns) ? 1 : 0);
}

// Only the columns that the expressions name, so that no others are loaded.
void CompiledExpressions::addVariables(GraphText& graph, const QStringList& expressions,
                                       const TableColumns& columns) const {
  const std::set<QString> names = namesIn(expressions);
  graph.open(u"InputVars");
  for (std::size_t i = 0; i < columns.types.size(); ++i) {
    const QString& name = columns.names[static_cast<qsizetype>(i)];
    if (names.contains(name)) {
      graph.open(u"InputVar");
      graph.attribute(u"column", name);
      graph.attribute(u"isNumber", isText(columns.types[i]) ? 0 : 1);
      graph.close();
    }
  }
  graph.close();
}

void CompiledExpressions::addCalculator(GraphText& graph) const {
  graph.openAction(u"Calculator", kCalculation);
  addSettings(graph, false);
  QStringList expressions;
  for (const ExpressionSettings::Output& output : m_settings.outputs) {
    expressions += output.expression;
  }
  addVariables(graph, expressions, m_input);
  graph.open(u"OutputVars");
  for (const ExpressionSettings::Output& output : m_settings.outputs) {
    const auto type = static_cast<char>(output.type.value_or(MetaTypeColumn::number));
    graph.open(u"OutputVar");
    graph.attribute(u"name", output.name);
    graph.attribute(u"meta", QString(QChar::fromLatin1(type)));
    graph.attribute(u"update", m_input.names.contains(output.name) ? 1 : 0);
    graph.text(output.expression);
    graph.close();
  }
  graph.close();
  graph.close();
}

void CompiledExpressions::addFilter(GraphText& graph) const {
  graph.openAction(u"FilterRows", kCondition);
  addSettings(graph, true);
  graph.open(u"Expression");
  graph.text(m_settings.condition);
  graph.close();
  addVariables(graph, {m_settings.condition}, columnsOfCondition());
  graph.close();
}

Outcome<std::unique_ptr<PulledStream>> CompiledExpressions::run(InputStream stream,
                                                                const WorkSettings& work,
                                                                const BatchForm& form,
                                                                long long firstRow) const {
  const auto catalogue = installedActions();
  if (!catalogue) {
    return Failure{catalogue.error()};
  }
  GraphText text;
  text.openAction(u"InlineTable", kSource);
  text.close();
  if (!m_settings.outputs.empty()) {
    addCalculator(text);
  }
  if (!m_settings.condition.isEmpty()) {
    addFilter(text);
  }
  text.openAction(u"Discard", u"output");
  text.close();
  auto graph = text.parse(**catalogue);
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
    m_stages = CompiledStages::of(std::move(*stream), transformCount());
    m_hasNoStages = m_stages == nullptr;
  }
  return m_stages;
}

}  // namespace kelvarin
