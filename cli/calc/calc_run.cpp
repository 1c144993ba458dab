#include "cli/calc/calc_run.h"

#include <utility>

#include <QDir>
#include <QFileInfo>

#include "cli/calc/calculation_graph.h"
#include "cli/calc/calculation_input.h"
#include "cli/calc/messages.h"
#include "cli/expression_explanation.h"
#include "expression/tokens/expression_tokens.h"
#include "host/engine/graph_writer.h"

namespace kelvarin {

namespace {

// For readers that go to and fro in a file, which standard input may be.
constexpr char kStandardInputFile[] = "/dev/stdin";

QString graphName() {
  return QStringLiteral("calculation");
}

}  // namespace

CalcRun::CalcRun(const CalcRequest& request, Console& console)
    : m_request(request),
      m_conversion(request.conversion),
      m_console(console),
      m_log(console, request.conversion.options.diskWaitSeconds) {
  const QLatin1String format(request.inputKind->format);
  const bool isSearched = format == QLatin1String("Parquet") || request.inputKind->isColumnar();
  if (request.readsStandardInput() && isSearched) {
    m_conversion.input = kStandardInputFile;
  }
}

ExitStatus CalcRun::run() {
  auto catalogue = loadCatalogue(m_conversion.options.plugin);
  if (!catalogue) {
    m_console.writeLog(LogLevel::error, catalogue.error());
    return ExitStatus::failed;
  }
  m_catalogue = std::move(*catalogue);
  ExitStatus status = m_request.hasExpressions() ? plan() : ExitStatus::done;
  if (status == ExitStatus::done && !m_request.graph.isEmpty()) {
    status = save();
  }
  return status != ExitStatus::done || m_request.isOnlySaved ? status : work();
}

ExitStatus CalcRun::plan() {
  if (m_request.readsStandardInput()) {
    m_standardInput.emplace();
  }
  const auto columns = columnsOfInput(m_conversion, source(), *m_catalogue, m_console, m_log);
  if (m_standardInput) {
    m_standardInput->startAgain();
  }
  if (!columns) {
    explainArguments(columns.error());
    return columns.error();
  }
  return bind(*columns);
}

ExitStatus CalcRun::bind(const std::vector<PinColumns::Column>& columns) {
  m_parameters.setWorkingDir(QDir::currentPath());
  for (const GraphParameter& parameter : m_request.parameters) {
    m_parameters.setValue(parameter.name, parameter.value);
  }
  m_calculation.emplace(columns, m_request.options, m_parameters, m_request.expressions(),
                        m_request.dates);
  m_log.setLabels(m_calculation->labels());
  for (const NamedExpression& output : m_request.outputs) {
    if (const auto added = m_calculation->addOutput(output); !added) {
      report(added.error());
      explainArguments(ExitStatus::failed);
      return ExitStatus::failed;
    }
  }
  for (const QString& filter : m_request.filters) {
    if (const auto added = m_calculation->addFilter(filter); !added) {
      report(added.error());
      explainArguments(ExitStatus::failed);
      return ExitStatus::failed;
    }
  }
  if (const auto checked = m_calculation->checkDates(); !checked) {
    m_console.writeLog(LogLevel::error, checked.error());
    return ExitStatus::failed;
  }
  return ExitStatus::done;
}

void CalcRun::report(const ExpressionFault& fault) {
  const ColumnLabels& labels = m_calculation->labels();
  m_console.writeLog(LogLevel::error, fault.purpose + labels.asTyped(fault.text));
  ExpressionError typed = fault.error;
  typed.token = labels.asTyped(typed.token);
  showMarked(typed, fault.expression, m_console);
  if (fault.labelled.isNull()) {
    return;
  }
  HintNames names;
  names.adviceOnUnknown = calc_messages::quoteColumns();
  for (const QString& column : m_calculation->columnNames()) {
    names.variables += isVariableName(column) ? QStringList{column} : QStringList();
  }
  const QString hint = hintAtExpression(fault.error, fault.labelled, names);
  if (!hint.isEmpty()) {
    m_console.writeReason(LogLevel::information, labels.asTyped(hint));
  }
}

// What failed may have been taken for what it is not.
void CalcRun::explainArguments(ExitStatus status) {
  if (status != ExitStatus::failed) {
    return;
  }
  const QString input = QString::fromStdString(m_request.conversion.input);
  const bool isFile = m_request.readsStandardInput() || QFileInfo::exists(input);
  if (m_request.isInputGuessed && !isFile) {
    m_console.writeReason(LogLevel::information, calc_messages::takenForInput(input));
  }
  for (const QString& file : m_request.existing) {
    m_console.writeReason(LogLevel::information, calc_messages::takenForOutput(file));
  }
}

QString CalcRun::source(const QString& file) const {
  return m_request.source.element(*m_request.inputKind, QLatin1String(kSourceAction), file);
}

ConversionGraph CalcRun::graph(ExpressionForm form, const QString& input,
                               const QString& output) const {
  return {.source = source(input),
          .sink = sinkElement(*m_request.outputKind, output, m_request.sink),
          .steps = m_calculation ? stepsOf(*m_calculation, form) : std::vector<ConversionStep>(),
          .parameters = m_request.parameters};
}

// Relative where it is below the graph's folder.
QString CalcRun::pathInGraph(const std::string& path) const {
  const QString absolute = absolutePath(path);
  const QString relative = QFileInfo(m_request.graph).absoluteDir().relativeFilePath(absolute);
  const bool isBelow = QFileInfo(absolute).isAbsolute() && !relative.startsWith(u"../");
  return isBelow ? relative : absolute;
}

ExitStatus CalcRun::save() {
  CommandGraph document;
  document.document =
      documentOf(graph(ExpressionForm::plain, literalText(pathInGraph(m_conversion.input)),
                       literalText(pathInGraph(m_conversion.output))));
  const auto parsed = parseCommandGraph(document, m_request.graph, *m_catalogue, m_console);
  if (!parsed) {
    return ExitStatus::failed;
  }
  if (const auto saved = saveGraph(*parsed, m_request.graph); !saved) {
    m_console.writeLog(LogLevel::error, saved.error());
    return ExitStatus::failed;
  }
  m_console.writeLog(LogLevel::information, calc_messages::graphSaved(m_request.graph));
  return ExitStatus::done;
}

ExitStatus CalcRun::work() {
  const auto finish = [this](const RunResult& result) {
    const int error = m_standardInput ? m_standardInput->end() : 0;
    if (error != 0) {
      m_console.writeLog(LogLevel::error, calc_messages::inputBroken(qt_error_string(error)));
      return ExitStatus::failed;
    }
    reportRows(m_request.conversion, *m_request.outputKind, result, m_console,
               m_request.sink.splitColumn);
    return ExitStatus::done;
  };
  const ExitStatus status =
      runCommandGraph(commandGraphOf(m_conversion, graph(ExpressionForm::asTyped)), graphName(),
                      *m_catalogue, m_conversion.options, m_console, finish);
  if (!m_request.hasExpressions()) {
    explainArguments(status);
  }
  return status;
}

}  // namespace kelvarin
