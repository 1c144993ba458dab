#include "cli/calc/calculation_input.h"

namespace kelvarin {

Result<std::vector<PinColumns::Column>, ExitStatus> columnsOfInput(
    const TableConversion& conversion, const QString& source, const ActionCatalogue& catalogue,
    Console& console, CalcLog& log) {
  ConversionGraph graph{
      .source = source,
      .sink = QStringLiteral("<Discard name='%1'/>").arg(QLatin1String(kSinkAction))};
  const CommandGraph document = commandGraphOf(conversion, std::move(graph));
  std::optional<Graph> parsed =
      parseCommandGraph(document, QStringLiteral("calculation"), catalogue, console);
  if (!parsed) {
    return Failure{ExitStatus::failed};
  }
  log.setFirstLook(true);
  const RunResult result = workInterruptibly(*parsed, checkGraph, conversion.options, console);
  log.setFirstLook(false);
  if (!result.isOk()) {
    return Failure{exitStatusOf(result)};
  }
  return result.actions.front().pins.front().columns;
}

}  // namespace kelvarin
