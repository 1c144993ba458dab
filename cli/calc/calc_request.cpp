#include "cli/calc/calc_request.h"

#include <unistd.h>

#include <QFileInfo>

#include "cli/calc/messages.h"
#include "cli/expression_options.h"
#include "cli/gel/messages.h"
#include "cli/name_value.h"

namespace kelvarin {

namespace {

using Understood = Status<QString>;

Understood takePositionals(const CalcArguments& arguments, CalcRequest& request) {
  request.conversion.input = arguments.input;
  for (const std::string& argument : arguments.positionals) {
    const QString text = QString::fromStdString(argument);
    if (isNamedExpression(text)) {
      auto output = namedExpressionOf(text);
      if (!output) {
        return Failure{output.error()};
      }
      request.existing += QFileInfo::exists(text) ? QStringList{text} : QStringList();
      request.outputs.push_back(std::move(*output));
      continue;
    }
    if (!request.conversion.input.empty()) {
      return Failure{
          calc_messages::secondInput(QString::fromStdString(request.conversion.input), text)};
    }
    request.conversion.input = argument;
    request.isInputGuessed = true;
  }
  if (request.conversion.input.empty() && isatty(STDIN_FILENO) != 0) {
    return Failure{calc_messages::noInput()};
  }
  if (request.conversion.input.empty()) {
    request.conversion.input = kStandardStream;
  }
  return Done{};
}

Understood takeKinds(const CalcArguments& arguments, CalcRequest& request) {
  TableConversion& conversion = request.conversion;
  conversion.output = arguments.output;
  request.inputKind = !arguments.inputKind.empty()   ? tableKindNamed(arguments.inputKind)
                      : request.readsStandardInput() ? &csvKind()
                                                     : &tableKindOfContent(conversion.input);
  request.outputKind = !arguments.outputKind.empty() ? tableKindNamed(arguments.outputKind)
                       : conversion.isPiped()        ? &csvKind()
                                                     : tableKindOf(conversion.output);
  if (request.outputKind == nullptr) {
    return Failure{calc_messages::unknownKind(QString::fromStdString(conversion.output),
                                              knownTableExtensions())};
  }
  request.source = arguments.source;
  const QString fault = request.source.fault(*request.inputKind, conversion.input);
  if (!fault.isEmpty()) {
    return Failure{fault};
  }
  const bool mayBePiped =
      request.inputKind->isCsv() || request.inputKind == tableKindNamed("arrow");
  if (request.readsStandardInput() && !mayBePiped && ::lseek(STDIN_FILENO, 0, SEEK_CUR) < 0) {
    return Failure{calc_messages::needsFile(QLatin1String(request.inputKind->name))};
  }
  if (conversion.isPiped() && request.outputKind->isColumnar()) {
    return Failure{calc_messages::columnarNeedsFile()};
  }
  if (conversion.isPiped() && !request.outputKind->isCsv() && isatty(STDOUT_FILENO) != 0) {
    return Failure{calc_messages::notToTerminal()};
  }
  if (request.outputKind->isColumnar()) {
    conversion.output = nameOfColumnarTable(conversion.output);
  }
  return Done{};
}

Understood takeSinkOptions(const CalcArguments& arguments, CalcRequest& request) {
  request.sink.splitColumn = QString::fromStdString(arguments.splitColumn);
  if (!request.sink.splitColumn.isEmpty() && request.conversion.isPiped()) {
    return Failure{calc_messages::splitNeedsFile()};
  }
  const auto types = splitNameValues("--store", arguments.storedTypes);
  if (!types) {
    return Failure{types.error()};
  }
  if (!types->empty() && !request.outputKind->hasTypes()) {
    return Failure{calc_messages::noTypesToStore(QLatin1String(request.outputKind->name))};
  }
  for (const NameValue& type : *types) {
    request.sink.types.emplace_back(type.name, type.value);
  }
  return Done{};
}

bool isSameFile(const QString& one, const std::string& other) {
  const QString path = QFileInfo(one).canonicalFilePath();
  return !path.isEmpty() && path == QFileInfo(QString::fromStdString(other)).canonicalFilePath();
}

Understood takeGraph(const CalcArguments& arguments, CalcRequest& request) {
  request.graph = QString::fromStdString(arguments.graph);
  request.isOnlySaved = arguments.isOnlySaved;
  if (isSameFile(request.graph, request.conversion.input) ||
      isSameFile(request.graph, request.conversion.output)) {
    return Failure{calc_messages::graphReplacesTable(request.graph)};
  }
  return Done{};
}

Understood takeSettings(const CalcArguments& arguments, CalcRequest& request) {
  const auto settings = splitNameValues("--set", arguments.settings);
  if (!settings) {
    return Failure{settings.error()};
  }
  for (const NameValue& setting : *settings) {
    request.parameters.push_back({setting.name, setting.value});
  }
  auto options = expressionOptions(arguments.options, request.expressions());
  if (!options) {
    return Failure{options.error()};
  }
  request.options = std::move(*options);
  return Done{};
}

}  // namespace

Result<CalcRequest, QString> requestOf(const CalcArguments& arguments) {
  CalcRequest request;
  request.conversion.options = arguments.run;
  for (const std::string& filter : arguments.filters) {
    request.filters += QString::fromStdString(filter);
  }
  for (const std::string& date : arguments.dates) {
    request.dates += QString::fromStdString(date);
  }
  for (const auto take : {takePositionals, takeKinds, takeSinkOptions, takeGraph, takeSettings}) {
    if (const auto taken = take(arguments, request); !taken) {
      return Failure{taken.error()};
    }
  }
  return request;
}

}  // namespace kelvarin
