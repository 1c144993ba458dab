// `kelvarin eval`: evaluates one expression.
#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/expression_explanation.h"
#include "cli/expression_options.h"
#include "cli/expression_run.h"
#include "cli/messages.h"
#include "cli/name_value.h"
#include "cli/value_json.h"
#include "expression/evaluator/expression_warnings.h"

namespace kelvarin {

namespace {

struct EvalArguments {
  std::string expression;
  std::vector<std::string> numbers;
  std::vector<std::string> texts;
  std::vector<std::string> nulls;
  std::vector<std::string> options;
  std::string meta;
  std::string backend = "auto";
  long long rows = 0;  // 0: one row, printed as a single value
  bool isJson = false;
};

const std::map<std::string, BackendKind> kBackends = {
    {"fastest", BackendKind::native}, {"fast", BackendKind::fast}, {"string", BackendKind::string}};

InputVariable variable(const QString& name, bool isNumber) {
  InputVariable made;
  made.columns = QStringList{name};
  made.isNumber = isNumber;
  return made;
}

Status<QString> addNumbers(const EvalArguments& arguments, std::vector<InputVariable>& variables) {
  const auto pairs = splitNameValues("--var", arguments.numbers);
  if (!pairs) {
    return Failure{pairs.error()};
  }
  for (const NameValue& pair : *pairs) {
    const std::optional<double> number = numberFromText(pair.value);
    if (!number) {
      return Failure{program_messages::notANumber(pair.name, pair.value)};
    }
    variables.push_back(variable(pair.name, true));
    variables.back().number = *number;
  }
  return Done{};
}

Status<QString> addTexts(const EvalArguments& arguments, std::vector<InputVariable>& variables) {
  // A name alone declares a text variable that --null makes null.
  std::vector<std::string> withValue = arguments.texts;
  for (std::string& argument : withValue) {
    const bool isBareNull = std::find(arguments.nulls.begin(), arguments.nulls.end(), argument) !=
                            arguments.nulls.end();
    if (isBareNull) {
      argument.push_back('=');
    }
  }
  const auto pairs = splitNameValues("--text", withValue);
  if (!pairs) {
    return Failure{pairs.error()};
  }
  for (const NameValue& pair : *pairs) {
    variables.push_back(variable(pair.name, false));
    variables.back().text = pair.value;
  }
  return Done{};
}

void addNulls(const EvalArguments& arguments, std::vector<InputVariable>& variables) {
  for (const std::string& argument : arguments.nulls) {
    const QString name = QString::fromStdString(argument);
    auto found = std::find_if(variables.begin(), variables.end(),
                              [&name](const InputVariable& known) { return known.name() == name; });
    if (found == variables.end()) {
      found = variables.insert(variables.end(), variable(name, true));
    }
    found->number = kNullNumber;
    found->text = QString();
  }
}

Result<ExpressionRequest, QString> makeRequest(const EvalArguments& arguments) {
  ExpressionRequest request;
  request.expression = QString::fromStdString(arguments.expression);
  if (!arguments.meta.empty()) {
    request.meta = static_cast<MetaTypeColumn>(arguments.meta.front());
  }
  if (const auto backend = kBackends.find(arguments.backend); backend != kBackends.end()) {
    request.backend = backend->second;
  }
  if (const auto added = addNumbers(arguments, request.variables); !added) {
    return Failure{added.error()};
  }
  if (const auto added = addTexts(arguments, request.variables); !added) {
    return Failure{added.error()};
  }
  std::set<QString> names;
  for (const InputVariable& known : request.variables) {
    if (!names.insert(known.name()).second) {
      return Failure{program_messages::variableTwice(known.name())};
    }
  }
  addNulls(arguments, request.variables);
  const auto options = expressionOptions(arguments.options, {request.expression});
  if (!options) {
    return Failure{options.error()};
  }
  request.options = *options;
  if (request.options.addN && names.contains(QStringLiteral("_n"))) {
    return Failure{program_messages::variableIsRowNumber()};
  }
  return request;
}

// Where results go: standard output at once, or into one JSON object at the end.
class ResultPrinter {
 public:
  explicit ResultPrinter(const EvalArguments& arguments)
      : m_isJson(arguments.isJson), m_isList(arguments.rows > 0) {}

  void add(const ExpressionResult& result) {
    if (!m_isJson) {
      std::puts(plainText(result).toUtf8().constData());
      return;
    }
    // The type of a list is that of its first value that is not missing.
    if (m_values.empty() || (m_isTypeOpen && !result.isNull)) {
      m_type = result.type;
    }
    m_isTypeOpen = m_isTypeOpen && result.isNull;
    bool isSpecial = false;
    m_values.push_back(jsonOf(result, isSpecial));
    if (isSpecial) {
      m_special.push_back(m_values.size() - 1);
    }
  }

  void finish(BackendKind backend) {
    if (!m_isJson) {
      return;
    }
    Json object;
    if (m_isList) {
      object["values"] = m_values;
    } else {
      object["value"] = m_values.front();
    }
    object["type"] = typeWord(m_type);
    object["backend"] = backendLabel(backend);
    if (!m_special.empty()) {
      object["special"] = m_isList ? m_special : Json(true);
    }
    std::fputs(printed(object).c_str(), stdout);
  }

 private:
  const bool m_isJson;
  const bool m_isList;
  bool m_isTypeOpen = true;
  MetaTypeColumn m_type = MetaTypeColumn::number;
  Json m_values = Json::array();
  Json m_special = Json::array();
};

ExitStatus reportError(const ExpressionCheck& check, const ExpressionRequest& request, bool isJson,
                       Console& console) {
  if (isJson) {
    const Json object = {{"error", check.text.toStdString()},
                         {"token", check.error.token.toStdString()},
                         {"position", check.error.position}};
    std::fputs(printed(object).c_str(), stdout);
  } else {
    console.writeLog(LogLevel::error, check.text);
    HintNames names;
    names.adviceOnUnknown = program_messages::giveValue();
    for (const InputVariable& known : request.variables) {
      names.variables += known.name();
    }
    showMarked(check.error, request.expression, console);
    const QString hint = hintAtExpression(check.error, request.expression, names);
    if (!hint.isEmpty()) {
      console.writeReason(LogLevel::information, hint);
    }
  }
  return ExitStatus::failed;
}

ExitStatus evaluate(const EvalArguments& arguments) {
  Console console(false);
  const auto request = makeRequest(arguments);
  if (!request) {
    console.writeLog(LogLevel::error, request.error());
    return ExitStatus::wrongUsage;
  }
  const QString expression = QString::fromStdString(arguments.expression);
  for (const QString& warning : warningsAbout(expression, expression)) {
    console.writeLog(LogLevel::warning, warning);
  }
  ExpressionRun run(*request);
  if (const auto started = run.start(); !started) {
    return reportError(started.error(), *request, arguments.isJson, console);
  }
  ResultPrinter printer(arguments);
  const long long rows = std::max(1LL, arguments.rows);
  for (long long row = 0; row < rows && !isOutputClosed(); ++row) {
    const auto result = run.next();
    if (!result) {
      return reportError(result.error(), *request, arguments.isJson, console);
    }
    printer.add(*result);
  }
  printer.finish(run.backend());
  for (const QString& warning : run.warnings()) {
    console.writeLog(LogLevel::warning, warning);
  }
  if (!run.advice().isEmpty()) {
    console.writeReason(LogLevel::information, run.advice());
  }
  return ExitStatus::done;
}

}  // namespace

void addEvalCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<EvalArguments>();
  CLI::App* command = program.add_subcommand("eval", "Evaluate one expression");
  command
      ->add_option("EXPR", arguments->expression,
                   "the expression; put -- before one that begins with a minus")
      ->required();
  command
      ->add_option("--var", arguments->numbers, "a number variable; nan, inf, -inf, null allowed")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command->add_option("--text", arguments->texts, "a text variable")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command
      ->add_option("--null", arguments->nulls,
                   "a missing variable, a number unless --text names it")
      ->allow_extra_args(false)
      ->type_name("NAME");
  command->add_option("--meta", arguments->meta, "the type of the result: F number, K key, U text")
      ->check(CLI::IsMember({"F", "K", "U"}));
  command->add_option("--backend", arguments->backend, "the engine that evaluates it")
      ->check(CLI::IsMember({"auto", "fastest", "fast", "string"}))
      ->capture_default_str();
  addExpressionOptions(*command, arguments->options);
  command->add_option("--rows", arguments->rows, "evaluate on N rows, _n counting from 0")
      ->check(CLI::Range(1LL, 1'000'000'000LL))
      ->type_name("N");
  command->add_flag("--json", arguments->isJson, "print one JSON object");
  command->footer(
      "Examples:\n"
      "  kelvarin eval 'distance / (minutes / 60)' --var distance=1400 --var minutes=227\n"
      "  kelvarin eval 'nvl(a, 0) + 1' --null a");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return evaluate(*arguments); }; });
}

}  // namespace kelvarin
